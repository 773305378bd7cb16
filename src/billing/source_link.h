#pragma once

#include <array>
#include <cstddef>

#include "data/connection.h"
#include "session/connections.h"
#include "session/context.h"

namespace korvel::billing {

/// The statements that are read at the same time.
enum class Slot : std::size_t {
  Headers,
  Lines,
  Charges,
  FreeText,
  LinksTo,
  LinksFrom,
  Removed,
  RemovedLines
};
inline constexpr std::size_t kSlots = static_cast<std::size_t>(Slot::RemovedLines) + 1;

/// The connections to the Brevant database of one run: one to ask and write, and one a slot, opened when first wanted
/// and kept. The context must outlive it.
class SourceLink {
 public:
  explicit SourceLink(const session::Context& context) : context_(context) {}

  /// False when the database does not open, which is shown unless its location is blank.
  bool Open();
  data::Connection& Main() { return *main_; }
  /// Throws data::Error when it does not open any more.
  data::Connection& At(Slot slot);

 private:
  const session::Context& context_;
  session::ConnectionPtr main_;
  std::array<session::ConnectionPtr, kSlots> slots_;
};

}  // namespace korvel::billing
