#pragma once

#include <string>
#include <string_view>

namespace korvel::accounting {

/// Whether a journal or document number is made of digits, "-", "+" and letters A to Z alone, once accents are
/// taken off. The accents known are fewer than the language has: "ò" and "ç" are refused, which is deliberate.
bool IsValidCode(std::string_view code);

/// A document number as the audit file takes it: "Y" for each "+", then "K" for each "-".
std::string CleanNumber(std::string_view numero);

/// A cleaned number with its last three characters, the type of the document, moved to its front; "" for a
/// shorter one.
std::string SourceDocumentOf(std::string_view cleanNumber);

}  // namespace korvel::accounting
