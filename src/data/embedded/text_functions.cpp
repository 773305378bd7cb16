#include "data/embedded/text_functions.h"

#include <algorithm>

#include "data/collation_weights.h"
#include "data/embedded/convert.h"

namespace korvel::data::embedded {
namespace {

bool AllBlank(std::string_view text) {
  return text.find_first_not_of(' ') == std::string_view::npos;
}

/// A set "[...]" of a pattern, which stands at its first character; moves behind the closing bracket.
bool InSet(char32_t c, std::string_view pattern, std::size_t& at) {
  const bool inverted = at < pattern.size() && pattern[at] == '^';
  if (inverted) ++at;
  bool found = false;
  const std::uint32_t weight = CharacterWeight(c);
  while (at < pattern.size() && pattern[at] != ']') {
    const std::uint32_t low = CharacterWeight(NextCharacter(pattern, at));
    std::uint32_t high = low;
    if (at + 1 < pattern.size() && pattern[at] == '-' && pattern[at + 1] != ']') {
      ++at;
      high = CharacterWeight(NextCharacter(pattern, at));
    }
    found |= weight >= low && weight <= high;
  }
  if (at < pattern.size()) ++at;
  return found != inverted;
}

/// Whether one character of a text meets the next item of a pattern (no "%"); moves both on.
bool TakeOne(std::string_view text, std::size_t& t, std::string_view pattern, std::size_t& p,
             char32_t escape) {
  const char32_t c = NextCharacter(text, t);
  char32_t item = NextCharacter(pattern, p);
  if (escape != 0 && item == escape && p < pattern.size()) {
    item = NextCharacter(pattern, p);
  } else if (item == U'_') {
    return true;
  } else if (item == U'[') {
    return InSet(c, pattern, p);
  }
  return CharacterWeight(c) == CharacterWeight(item);
}

struct CasePair {
  char32_t upper;
  char32_t lower;
};
/// Letters of windows-1252 whose two cases are not 32 apart.
constexpr CasePair kPairs[] = {{0x160, 0x161}, {0x152, 0x153}, {0x17D, 0x17E}, {0x178, 0xFF}};

char32_t Upper(char32_t c) {
  for (const CasePair& pair : kPairs) {
    if (c == pair.lower) return pair.upper;
  }
  const bool lower = (c >= U'a' && c <= U'z') || (c >= 0xE0 && c <= 0xFE && c != 0xF7);
  return lower ? c - 0x20 : c;
}

char32_t Lower(char32_t c) {
  for (const CasePair& pair : kPairs) {
    if (c == pair.upper) return pair.lower;
  }
  const bool upper = (c >= U'A' && c <= U'Z') || (c >= 0xC0 && c <= 0xDE && c != 0xD7);
  return upper ? c + 0x20 : c;
}

void AppendTwoBytes(std::string& text, char32_t c) {
  text += static_cast<char>(0xC0 | (c >> 6));
  text += static_cast<char>(0x80 | (c & 0x3F));
}

template <typename Change>
std::string MapCase(std::string_view text, Change change) {
  std::string mapped;
  mapped.reserve(text.size());
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t start = at;
    const char32_t c = NextCharacter(text, at);
    const char32_t other = change(c);
    if (other == c) {
      mapped += text.substr(start, at - start);
    } else if (other < 0x80) {
      mapped += static_cast<char>(other);
    } else {
      AppendTwoBytes(mapped, other);
    }
  }
  return mapped;
}

/// Bytes of `text` at `at` that `wanted` equals, npos if none.
std::size_t MatchAt(std::string_view text, std::size_t at, std::string_view wanted) {
  std::size_t w = 0;
  std::size_t t = at;
  while (w < wanted.size()) {
    if (t >= text.size()) return std::string_view::npos;
    if (CharacterWeight(NextCharacter(text, t)) != CharacterWeight(NextCharacter(wanted, w))) {
      return std::string_view::npos;
    }
  }
  return t - at;
}

}  // namespace

bool Like(std::string_view text, std::string_view pattern, char32_t escape) {
  std::size_t t = 0;
  std::size_t p = 0;
  std::size_t retryText = std::string_view::npos;
  std::size_t retryPattern = 0;
  while (true) {
    if (p == pattern.size() && AllBlank(text.substr(t))) return true;
    if (p < pattern.size() && pattern[p] == '%') {
      retryPattern = ++p;
      retryText = t;
      continue;
    }
    if (t < text.size() && p < pattern.size() && TakeOne(text, t, pattern, p, escape)) continue;
    if (retryText >= text.size()) return false;
    NextCharacter(text, retryText);
    t = retryText;
    p = retryPattern;
  }
}

std::int64_t Length(std::string_view text) {
  return static_cast<std::int64_t>(CountCharacters(TrimRight(text)));
}

std::string_view Substring(std::string_view text, std::int64_t start, std::int64_t length) {
  std::int64_t end = 0;
  if (__builtin_add_overflow(start, std::max<std::int64_t>(length, 0), &end)) end = INT64_MAX;
  const std::int64_t first = std::max<std::int64_t>(start, 1);
  if (end <= first) return {};
  text.remove_prefix(FirstCharacters(text, static_cast<std::size_t>(first - 1)).size());
  return FirstCharacters(text, static_cast<std::size_t>(end - first));
}

std::string_view Rightmost(std::string_view text, std::int64_t count) {
  const auto characters = static_cast<std::int64_t>(CountCharacters(text));
  return Substring(text, std::max<std::int64_t>(characters - count, 0) + 1, std::max<std::int64_t>(count, 0));
}

std::string_view TrimLeft(std::string_view text) {
  return text.substr(std::min(text.find_first_not_of(' '), text.size()));
}

std::string_view TrimRight(std::string_view text) {
  return text.substr(0, text.find_last_not_of(' ') + 1);
}

std::string ToUpper(std::string_view text) {
  return MapCase(text, Upper);
}
std::string ToLower(std::string_view text) {
  return MapCase(text, Lower);
}

std::string Replace(std::string_view text, std::string_view from, std::string_view to) {
  if (from.empty()) return std::string(text);
  std::string result;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t match = MatchAt(text, at, from);
    const std::size_t start = at;
    if (match == std::string_view::npos) {
      NextCharacter(text, at);
      result += text.substr(start, at - start);
    } else {
      result += to;
      at += match;
    }
  }
  return result;
}

std::int64_t Find(std::string_view wanted, std::string_view text, std::int64_t start) {
  std::int64_t place = 1;
  for (std::size_t at = 0; at < text.size() && !wanted.empty(); ++place) {
    if (place >= start && MatchAt(text, at, wanted) != std::string_view::npos) return place;
    NextCharacter(text, at);
  }
  return 0;
}

}  // namespace korvel::data::embedded
