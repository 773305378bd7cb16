#pragma once

#include <string>
#include <string_view>

namespace korvel::demo {

/// Text of the form and length of a document's signature, always the same for the same document. It signs
/// nothing.
std::string SignatureOf(std::string_view document);

}  // namespace korvel::demo
