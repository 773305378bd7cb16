#pragma once

#include <string_view>

#include "data/error.h"

namespace korvel::data {

/// What one of the server's own error numbers means to a program.
struct NativeError {
  int native;
  Failure failure;
  std::string_view sqlState;
};

/// The entry of a number; null when the table does not have it. Of two entries the one at the lower address tells
/// more, which decides between several errors of one statement.
const NativeError* FindNativeError(int native);

}  // namespace korvel::data
