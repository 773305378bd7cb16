#include "cli/command_words.h"

namespace korvel::test {

std::vector<std::string> CommandWords(std::string_view line) {
  std::vector<std::string> words;
  bool inWord = false;
  char quote = 0;
  for (const char c : line) {
    if (quote != 0 && c == quote) {
      quote = 0;
    } else if (quote == 0 && (c == '"' || c == '\'')) {
      quote = c;
      if (!inWord) words.emplace_back();
      inWord = true;
    } else if (quote == 0 && c == ' ') {
      inWord = false;
    } else {
      if (!inWord) words.emplace_back();
      inWord = true;
      words.back() += c;
    }
  }
  return words;
}

}  // namespace korvel::test
