#include "data/native_errors.h"

#include <algorithm>
#include <iterator>

namespace korvel::data {
namespace {

/// Numbers as SQL Server gives them (`sys.messages`), the more telling ones first.
constexpr NativeError kErrors[] = {
    {4060, Failure::NoServer, "42000"},     // database cannot be opened; 18456 follows it
    {911, Failure::Statement, "42000"},     // no such database
    {18456, Failure::WrongLogin, "28000"},  // login or password
    {18452, Failure::WrongLogin, "28000"},  // login not trusted
    {18470, Failure::WrongLogin, "28000"},  // account disabled
    {18486, Failure::WrongLogin, "28000"},  // account locked
    {18487, Failure::WrongLogin, "28000"},  // password expired
    {18488, Failure::WrongLogin, "28000"},  // password must be changed
    {2627, Failure::Integrity, "23000"},    // duplicate key
    {2601, Failure::Integrity, "23000"},    // duplicate key of an index
    {1505, Failure::Integrity, "23000"},    // duplicate key while making an index
    {515, Failure::Integrity, "23000"},     // null refused
    {547, Failure::Integrity, "23000"},     // constraint
    {8152, Failure::Truncation, "22001"},   // text too long
    {2628, Failure::Truncation, "22001"},   // text too long, newer servers
    {8115, Failure::Truncation, "22003"},   // arithmetic overflow
    {220, Failure::Truncation, "22003"},    // too large for a small integer type
    {232, Failure::Truncation, "22003"},    // too large for its type
    {244, Failure::Truncation, "22003"},    // text too large for a small integer type
    {248, Failure::Truncation, "22003"},    // text too large for int
    {206, Failure::Conversion, "22018"},    // types that do not go together
    {235, Failure::Conversion, "22018"},    // text to money
    {241, Failure::Conversion, "22007"},    // text to datetime
    {242, Failure::Conversion, "22007"},    // date outside the range
    {245, Failure::Conversion, "22018"},    // text to int
    {257, Failure::Conversion, "22018"},    // implicit conversion refused
    {260, Failure::Conversion, "22018"},    // implicit conversion refused, column named
    {293, Failure::Conversion, "22018"},    // text to smallmoney
    {295, Failure::Conversion, "22007"},    // text to smalldatetime
    {296, Failure::Conversion, "22007"},    // smalldatetime outside the range
    {8114, Failure::Conversion, "22018"},   // text to numeric
    {208, Failure::NoTable, "42S02"},       // no such table or view
    {3701, Failure::Statement, "42S02"},    // nothing to drop
    {4902, Failure::Statement, "42S02"},    // nothing to alter
    {229, Failure::Permission, "42000"},    // right on an object
    {230, Failure::Permission, "42000"},    // right on a column
    {262, Failure::Permission, "42000"},    // right to a statement
    {916, Failure::Permission, "42000"},    // right to a database
    {3704, Failure::Permission, "42000"},   // right to an object's definition
    {5011, Failure::Permission, "42000"},   // right to a database's state
    {6102, Failure::Permission, "42000"},   // right to end processes
    {15151, Failure::Permission, "42000"},  // principal missing or no right to it
    {15247, Failure::Permission, "42000"},  // no right to the action
    {1222, Failure::Timeout, "HYT00"},      // lock time-out
    {207, Failure::Statement, "42S22"},     // no such column
    {102, Failure::Statement, "42000"},     // syntax
    {105, Failure::Statement, "42000"},     // unclosed quote
    {156, Failure::Statement, "42000"},     // syntax near a keyword
    {170, Failure::Statement, "42000"},     // syntax, older servers
    {2714, Failure::Statement, "42S01"},    // object exists already
    {2812, Failure::Statement, "42000"},    // no such procedure
    {213, Failure::Statement, "21S01"},     // another number of values than columns
    {1913, Failure::Statement, "42S11"},    // index exists already
    {2705, Failure::Statement, "42S21"},    // column named twice
    {8134, Failure::Statement, "22012"},    // division by zero
    {824, Failure::NoServer, "HY000"},      // damaged page
    {823, Failure::NoServer, "HY000"},      // reading or writing failed
    {596, Failure::NoServer, "08S01"},      // killed by another connection
    {17809, Failure::NoServer, "08004"},    // no more connections
    {1101, Failure::NoServer, "HY000"},     // no room on the disk
};

}  // namespace

const NativeError* FindNativeError(int native) {
  const auto* found = std::find_if(std::begin(kErrors), std::end(kErrors),
                                   [native](const NativeError& known) { return known.native == native; });
  return found == std::end(kErrors) ? nullptr : found;
}

}  // namespace korvel::data
