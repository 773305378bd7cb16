#include "cli/assignments.h"

#include <fmt/format.h>

#include "cli/failures.h"

namespace korvel::cli {

void AssignmentArguments::Declare(CLI::App& app, std::string_view form, const std::string& help) {
  form_ = form;
  app.add_option("valores", texts_, help)->type_name(form_ + " ...")->option_text(form_ + " ...");
}

std::vector<Assignment> AssignmentArguments::Get() const {
  if (texts_.empty()) throw UsageError(fmt::format("Indique pelo menos um {}.", form_));
  std::vector<Assignment> assignments;
  for (const std::string& text : texts_) {
    const auto equals = text.find('=');
    if (equals == 0 || equals == std::string::npos) {
      throw UsageError(fmt::format("\"{}\" não tem a forma {}.", text, form_));
    }
    assignments.push_back({text.substr(0, equals), text.substr(equals + 1)});
  }
  return assignments;
}

}  // namespace korvel::cli
