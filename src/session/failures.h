#pragma once

#include <exception>
#include <utility>

#include "session/context.h"
#include "toolkit/progress_scope.h"

namespace korvel::session {

/// Shows what ended an operation: what it means where that is known, the server's text and its number.
void ShowFailure(const Context& context, const std::exception& failure);

/// Runs an operation to its end. What it throws is shown, a cancellation by the user apart, and gives `failed`.
template <typename Result, typename Work>
Result Reported(const Context& context, Result failed, Work&& work) {
  try {
    return std::forward<Work>(work)();
  } catch (const toolkit::Cancelled&) {
    return failed;
  } catch (const std::exception& failure) {
    ShowFailure(context, failure);
    return failed;
  }
}

}  // namespace korvel::session
