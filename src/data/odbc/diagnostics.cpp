#include "data/odbc/diagnostics.h"

#include <algorithm>
#include <array>
#include <optional>
#include <span>
#include <string_view>

namespace korvel::data::odbc {
namespace {

struct NativeMeaning {
  int native;
  Failure failure;
};

/// The server's own numbers, the more telling ones first: of several records the one that stands higher here wins.
constexpr std::array kNatives{
    NativeMeaning{4060, Failure::NoServer},     // database cannot be opened; 18456 follows it
    NativeMeaning{911, Failure::Statement},     // no such database
    NativeMeaning{18456, Failure::WrongLogin},  // login or password
    NativeMeaning{18452, Failure::WrongLogin},  // login not trusted
    NativeMeaning{18470, Failure::WrongLogin},  // account disabled
    NativeMeaning{18486, Failure::WrongLogin},  // account locked
    NativeMeaning{18487, Failure::WrongLogin},  // password expired
    NativeMeaning{18488, Failure::WrongLogin},  // password must be changed
    NativeMeaning{2627, Failure::Integrity},    // duplicate key
    NativeMeaning{2601, Failure::Integrity},    // duplicate key of an index
    NativeMeaning{1505, Failure::Integrity},    // duplicate key while making an index
    NativeMeaning{515, Failure::Integrity},     // null refused
    NativeMeaning{547, Failure::Integrity},     // constraint
    NativeMeaning{8152, Failure::Truncation},   // text too long
    NativeMeaning{2628, Failure::Truncation},   // text too long, newer servers
    NativeMeaning{8115, Failure::Truncation},   // arithmetic overflow
    NativeMeaning{220, Failure::Truncation},    // too large for a small integer type
    NativeMeaning{232, Failure::Truncation},    // too large for its type
    NativeMeaning{244, Failure::Truncation},    // text too large for a small integer type
    NativeMeaning{248, Failure::Truncation},    // text too large for int
    NativeMeaning{206, Failure::Conversion},    // types that do not go together
    NativeMeaning{235, Failure::Conversion},    // text to money
    NativeMeaning{241, Failure::Conversion},    // text to datetime
    NativeMeaning{242, Failure::Conversion},    // date outside the range
    NativeMeaning{245, Failure::Conversion},    // text to int
    NativeMeaning{257, Failure::Conversion},    // implicit conversion refused
    NativeMeaning{260, Failure::Conversion},    // implicit conversion refused, column named
    NativeMeaning{293, Failure::Conversion},    // text to smallmoney
    NativeMeaning{295, Failure::Conversion},    // text to smalldatetime
    NativeMeaning{296, Failure::Conversion},    // smalldatetime outside the range
    NativeMeaning{8114, Failure::Conversion},   // text to numeric
    NativeMeaning{208, Failure::NoTable},       // no such table or view
    NativeMeaning{3701, Failure::Statement},    // nothing to drop
    NativeMeaning{4902, Failure::Statement},    // nothing to alter
    NativeMeaning{229, Failure::Permission},    // right on an object
    NativeMeaning{230, Failure::Permission},    // right on a column
    NativeMeaning{262, Failure::Permission},    // right to a statement
    NativeMeaning{916, Failure::Permission},    // right to a database
    NativeMeaning{15151, Failure::Permission},  // principal missing or no right to it
    NativeMeaning{15247, Failure::Permission},  // no right to the action
    NativeMeaning{1222, Failure::Timeout},      // lock time-out
    NativeMeaning{207, Failure::Statement},     // no such column
    NativeMeaning{102, Failure::Statement},     // syntax
    NativeMeaning{105, Failure::Statement},     // unclosed quote
    NativeMeaning{156, Failure::Statement},     // syntax near a keyword
    NativeMeaning{170, Failure::Statement},     // syntax, older servers
    NativeMeaning{2714, Failure::Statement},    // object exists already
    NativeMeaning{2812, Failure::Statement},    // no such procedure
};

struct StateMeaning {
  std::string_view prefix;
  Failure failure;
};

/// What a driver's own state tells where the server's number is not in the table above. First match wins.
constexpr std::array kStates{
    StateMeaning{"HYT", Failure::Timeout},      StateMeaning{"28", Failure::WrongLogin},
    StateMeaning{"23", Failure::Integrity},     StateMeaning{"22001", Failure::Truncation},
    StateMeaning{"22003", Failure::Truncation}, StateMeaning{"22", Failure::Conversion},
    StateMeaning{"07006", Failure::Conversion}, StateMeaning{"42S02", Failure::NoTable},
    StateMeaning{"42", Failure::Statement},     StateMeaning{"37", Failure::Statement},
    StateMeaning{"07", Failure::Statement},     StateMeaning{"24", Failure::Busy},
};

std::size_t NativeRank(const Diagnostic& record) {
  const auto found = std::find_if(kNatives.begin(), kNatives.end(),
                                  [&](const NativeMeaning& known) { return known.native == record.native; });
  return static_cast<std::size_t>(found - kNatives.begin());
}

/// Lower tells more: known numbers, then records that are errors, those with a number first, then mere warnings.
std::size_t Rank(const Diagnostic& record) {
  const std::size_t rank = NativeRank(record);
  if (rank < kNatives.size()) return rank;
  if (record.state.starts_with("HYT")) return kNatives.size();
  if (record.state.starts_with("01")) return kNatives.size() + 3;
  return kNatives.size() + (record.native != 0 ? 1 : 2);
}

Failure Meaning(const Diagnostic& record) {
  const std::size_t rank = NativeRank(record);
  if (rank < kNatives.size()) return kNatives[rank].failure;
  const auto found = std::find_if(kStates.begin(), kStates.end(), [&](const StateMeaning& known) {
    return record.state.starts_with(known.prefix);
  });
  return found != kStates.end() ? found->failure : Failure::NoServer;
}

/// The message without the "[driver][server]" marks in front of it.
std::string_view WithoutMarks(std::string_view text) {
  while (text.starts_with('[') && text.find(']') != std::string_view::npos)
    text.remove_prefix(text.find(']') + 1);
  return text;
}

}  // namespace

Error ToError(const std::vector<Diagnostic>& records, Stage stage) {
  if (records.empty()) return {Failure::NoServer, "O servidor não respondeu"};
  const Diagnostic& told =
      *std::min_element(records.begin(), records.end(),
                        [](const Diagnostic& a, const Diagnostic& b) { return Rank(a) < Rank(b); });
  Failure failure = Meaning(told);
  if (stage == Stage::Connecting && failure != Failure::WrongLogin) failure = Failure::NoServer;
  return {failure, told.native, told.state, std::string(WithoutMarks(told.text))};
}

}  // namespace korvel::data::odbc
