#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace korvel::data::embedded {

/// T-SQL's text functions over UTF-8, counting characters from 1.

/// "%" any characters, "_" one, "[a-c]" one of a set, "[^a]" one outside it; case does not count, accents do, and
/// blanks at the end of the text do not. `escape` takes the meaning from the character behind it; 0 for none.
bool Like(std::string_view text, std::string_view pattern, char32_t escape);

/// Characters, trailing blanks left out.
std::int64_t Length(std::string_view text);
/// From `start`, which may lie before the text; a negative `length` gives nothing.
std::string_view Substring(std::string_view text, std::int64_t start, std::int64_t length);
std::string_view Rightmost(std::string_view text, std::int64_t count);
std::string_view TrimLeft(std::string_view text);
std::string_view TrimRight(std::string_view text);
std::string ToUpper(std::string_view text);
std::string ToLower(std::string_view text);
/// Every occurrence of `from`, found without regard to case.
std::string Replace(std::string_view text, std::string_view from, std::string_view to);
/// Place of `wanted` at or behind `start`, 0 for none.
std::int64_t Find(std::string_view wanted, std::string_view text, std::int64_t start);

}  // namespace korvel::data::embedded
