#pragma once

#include <CLI/CLI.hpp>
#include <memory>
#include <string_view>
#include <vector>

#include "cli/needed_right.h"
#include "cli/workspace.h"

namespace korvel::cli {

/// One command of `korvelctl`. It declares its options once, then runs at most once.
class Command {
 public:
  Command() = default;
  virtual ~Command() = default;
  Command(const Command&) = delete;
  Command& operator=(const Command&) = delete;

  /// The words that call it, such as "empresa criar".
  virtual std::string_view Path() const = 0;
  virtual std::string_view Summary() const = 0;
  /// Binds its options to its members, which outlive `app`.
  virtual void Declare(CLI::App& app) = 0;
  /// Whether an embedded server that is not there is made for it: elsewhere a mistyped name must not pass for an empty
  /// server.
  virtual bool MakesServer() const { return false; }
  virtual NeededRight Needs() const { return {}; }
  /// False when the system refused and has said why through the dialogs. Throws Refusal, UsageError, data::Error,
  /// toolkit::Cancelled.
  virtual bool Run(Workspace& workspace) = 0;
};

using CommandList = std::vector<std::unique_ptr<Command>>;

}  // namespace korvel::cli
