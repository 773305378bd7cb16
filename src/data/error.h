#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>

namespace korvel::data {

/// The provider's numbers, by what a caller can do about them.
enum class Failure : std::uint32_t {
  NoServer =
      0x80004005,  // the server does not exist or access was denied; also any failure with no better number
  WrongLogin = 0x80040E4D,  // login or password refused
  Statement = 0x80040E14,   // the server refused the statement text
  NoTable = 0x80040E37,     // a table or view that does not exist
  Integrity = 0x80040E2F,   // a unique key or NOT NULL was violated
  Truncation = 0x80040E57,  // a text too long or a number too large for its column
  Conversion = 0x80040E07,  // a value that cannot become the type wanted
  Permission = 0x80040E09,  // the login lacks the right
  Timeout = 0x80040E31,     // the server took too long
  Busy = 0x80004004,        // the connection still reads an earlier result
};

/// A failed database call. what() is the server's text, without passwords and without statement values.
class Error : public std::runtime_error {
 public:
  Error(Failure failure, int native, std::string sqlState, const std::string& text)
      : std::runtime_error(text), failure_(failure), native_(native), sqlState_(std::move(sqlState)) {}
  Error(Failure failure, const std::string& text) : Error(failure, 0, "", text) {}

  Failure Kind() const { return failure_; }
  /// The provider's number as the signed 32-bit value that error outputs carry.
  std::int32_t Number() const { return static_cast<std::int32_t>(failure_); }
  /// The server's own number, such as 2627 for a duplicate key; 0 when it gave none.
  int Native() const { return native_; }
  const std::string& SqlState() const { return sqlState_; }

 private:
  Failure failure_;
  int native_;
  std::string sqlState_;
};

}  // namespace korvel::data
