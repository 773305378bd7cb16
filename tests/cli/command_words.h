#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace korvel::test {

/// The words of a command line as a shell parts them: blanks part, single and double quotes keep, "\" is plain.
std::vector<std::string> CommandWords(std::string_view line);

}  // namespace korvel::test
