#pragma once

#include <stdexcept>
#include <string>

namespace korvel::cli {

/// Ends a command with exit status 1; the text goes to standard error.
class Refusal : public std::runtime_error {
 public:
  using runtime_error::runtime_error;
};

/// Ends a command with exit status 1 once the system has said why through the dialogs.
struct Refused {};

/// Ends a command with exit status 2: the command line asks for what there is not.
class UsageError : public std::runtime_error {
 public:
  using runtime_error::runtime_error;
};

}  // namespace korvel::cli
