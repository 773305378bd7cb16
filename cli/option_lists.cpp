#include "cli/option_lists.h"

#include <fmt/format.h>

#include <algorithm>

#include "cli/failures.h"
#include "toolkit/text.h"

namespace korvel::cli {

using toolkit::Option;

std::string ChosenKey(std::string_view option, std::string_view list, std::string_view typed) {
  const auto choices = toolkit::eselToArray(list);
  const auto found = std::ranges::find_if(choices, [&](const Option& choice) {
    return toolkit::SameIgnoringCase(choice.key, toolkit::Trim(typed));
  });
  if (found != choices.end()) return found->key;
  std::string keys;
  bool blank = false;
  for (const Option& choice : choices) {
    if (!choice.key.empty()) keys += (keys.empty() ? "" : ", ") + choice.key;
    blank = blank || choice.key.empty();
  }
  throw UsageError(
      fmt::format("A opção {} aceita {}{}, não \"{}\".", option, keys, blank ? ", ou vazio" : "", typed));
}

std::string CaptionOf(std::string_view list, const std::string& key) {
  for (const Option& choice : toolkit::eselToArray(list)) {
    if (choice.key == key) return choice.caption;
  }
  return key;
}

bool YesOrNo(std::string_view name, std::string_view typed) {
  const std::string letter = toolkit::Upper(toolkit::Trim(typed));
  if (letter != "S" && letter != "N") {
    throw UsageError(fmt::format("{} aceita S ou N, não \"{}\".", name, typed));
  }
  return letter == "S";
}

std::vector<std::string> CodeList(std::string_view text) {
  std::vector<std::string> codes = toolkit::StripString(text, ",");
  std::erase(codes, "");
  return codes;
}

}  // namespace korvel::cli
