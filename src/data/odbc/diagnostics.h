#pragma once

#include <string>
#include <vector>

#include "data/error.h"

namespace korvel::data::odbc {

/// One record of what a driver says about a failed call.
struct Diagnostic {
  std::string state;
  int native = 0;
  std::string text;
};

enum class Stage { Connecting, Running };

/// The failure that a set of records tells of. The useful record is not always the first: a server that refuses a
/// database, for one, adds that the login failed.
Error ToError(const std::vector<Diagnostic>& records, Stage stage);

}  // namespace korvel::data::odbc
