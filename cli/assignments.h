#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <string_view>
#include <vector>

namespace korvel::cli {

/// COLUNA=VALOR of a command line; the value may be empty and may hold "=".
struct Assignment {
  std::string name;
  std::string value;
};

/// The arguments of a command that sets columns.
class AssignmentArguments {
 public:
  /// `form` is what the help shows, such as "COLUNA=VALOR".
  void Declare(CLI::App& app, std::string_view form, const std::string& help);
  bool Given() const { return !texts_.empty(); }
  /// In their order. Throws UsageError when there is none or one lacks its "=".
  std::vector<Assignment> Get() const;

 private:
  std::string form_;
  std::vector<std::string> texts_;
};

}  // namespace korvel::cli
