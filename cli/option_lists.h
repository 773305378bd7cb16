#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "toolkit/options.h"

namespace korvel::cli {

/// The key of an option list ("0:Não;1:Sim;") that a typed one means, in any case. Throws UsageError that lists the keys.
std::string ChosenKey(std::string_view option, std::string_view list, std::string_view typed);
/// What a stored key stands for; the key itself when no list has it.
std::string CaptionOf(std::string_view list, const std::string& key);

/// An "S" or "N" typed for `name`. Throws UsageError for anything else.
bool YesOrNo(std::string_view name, std::string_view typed);

/// Codes between commas, trimmed, blank ones left out.
std::vector<std::string> CodeList(std::string_view text);

}  // namespace korvel::cli
