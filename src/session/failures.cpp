#include "session/failures.h"

#include <fmt/format.h>

#include <string>
#include <string_view>

#include "data/error.h"

namespace korvel::session {
namespace {

/// The first name between quotes in a server's text, "" without one.
std::string_view QuotedName(std::string_view text) {
  const std::size_t open = text.find_first_of("'\"");
  if (open == std::string_view::npos) return {};
  const std::size_t close = text.find(text[open], open + 1);
  return close == std::string_view::npos ? std::string_view() : text.substr(open + 1, close - open - 1);
}

/// What the failure means to the user, "" where the server's text has to do.
std::string Meaning(const data::Error& error) {
  switch (error.Kind()) {
    case data::Failure::NoTable:
      return fmt::format("Não existe a tabela [{}]!\n", QuotedName(error.what()));
    case data::Failure::Truncation:
      return "Existem valores que não cabem no campo de destino!\n";
    default:
      return {};
  }
}

}  // namespace

void ShowFailure(const Context& context, const std::exception& failure) {
  const auto* error = dynamic_cast<const data::Error*>(&failure);
  const std::string text =
      error ? fmt::format("{}{}\n{}", Meaning(*error), error->what(), error->Number()) : failure.what();
  context.dialogs.Message(toolkit::Icon::Critical, text);
}

}  // namespace korvel::session
