#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace korvel::data {

/// The character of a UTF-8 text at `at`, which moves behind it. Bytes that are not UTF-8 give characters of
/// their own and never stop the walk. `at` must lie inside the text.
char32_t NextCharacter(std::string_view text, std::size_t& at);

/// A character's place in the server's order; equal for the two cases of one letter.
std::uint32_t CharacterWeight(char32_t c);

}  // namespace korvel::data
