#pragma once

#include <string_view>

namespace korvel::cli {

/// The right that a command needs in the company that it enters: a form of the catalogue of rights and one of its
/// buttons, so that nobody does by command what his window refuses him. An empty form: none.
struct NeededRight {
  std::string_view form;
  std::string_view button;  // empty: the form's own right is enough
  bool writes = false;      // refused in a company that is locked
};

}  // namespace korvel::cli
