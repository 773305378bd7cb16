#include "auditfile/xml_writer.h"

#include <array>
#include <charconv>
#include <cstring>
#include <optional>

#include "toolkit/code_page.h"
#include "toolkit/utf8.h"

namespace korvel::auditfile {
namespace {

/// A character of one byte may become five ("&amp;"), one of three bytes eight, one of four ten.
constexpr std::size_t kGrowth = 5;
/// The brackets and the slash around the two names of a leaf.
constexpr std::size_t kTagBytes = 5;
/// Longest stretch of text that is encoded in one go.
constexpr std::size_t kPieceBytes = 16 * 1024;
static_assert(kPieceBytes * kGrowth <= toolkit::FileSink::kBufferBytes / 2);

/// Bytes that go out as they came in: ASCII without markup and without control characters, but tab and line feed.
constexpr std::array<bool, 256> kPlain = [] {
  std::array<bool, 256> plain{};
  for (std::size_t byte = 0x20; byte < 0x80; ++byte) plain[byte] = true;
  plain['\t'] = plain['\n'] = true;
  plain['&'] = plain['<'] = plain['>'] = false;
  return plain;
}();

bool IsPlain(char byte) {
  return kPlain[static_cast<unsigned char>(byte)];
}

char* Put(char* out, std::string_view bytes) {
  std::memcpy(out, bytes.data(), bytes.size());
  return out + bytes.size();
}

/// XML 1.0 allows tab, line feed, carriage return, and from the blank on all but surrogates and two non-characters.
bool IsForbidden(char32_t character) {
  if (character < 0x20) return character != '\t' && character != '\n' && character != '\r';
  return (character >= 0xD800 && character <= 0xDFFF) || character == 0xFFFE || character == 0xFFFF;
}

char* PutReference(char* out, char32_t character) {
  out = Put(out, "&#");
  out = std::to_chars(out, out + 8, static_cast<std::uint32_t>(character)).ptr;
  *out = ';';
  return out + 1;
}

/// The byte of a character; none for the control characters that share the code page's five unassigned bytes, which
/// strict readers of the file would refuse.
std::optional<std::uint8_t> FileByte(char32_t character) {
  if (character >= 0x80 && character < 0xA0) return std::nullopt;
  return toolkit::CodePageByte(character);
}

char* PutCharacter(char* out, char32_t character) {
  switch (character) {
    case '&':
      return Put(out, "&amp;");
    case '<':
      return Put(out, "&lt;");
    case '>':
      return Put(out, "&gt;");
    case '\r':
      return PutReference(out, character);
    default:
      break;
  }
  if (IsForbidden(character)) return out;
  const auto byte = FileByte(character);
  if (!byte) return PutReference(out, character);
  *out = static_cast<char>(*byte);
  return out + 1;
}

/// Writes `text` encoded; `out` has room for kGrowth bytes a byte. An ill-formed byte is left out.
char* PutText(char* out, std::string_view text) {
  for (std::size_t at = 0; at < text.size();) {
    while (at < text.size() && IsPlain(text[at])) *out++ = text[at++];
    if (at == text.size()) break;
    const toolkit::Decoded decoded = toolkit::DecodeUtf8(text, at);
    if (decoded.valid) out = PutCharacter(out, decoded.character);
    at += decoded.bytes;
  }
  return out;
}

/// The first bytes of `text`, at most kPieceBytes, not ending inside a character.
std::string_view Piece(std::string_view text) {
  if (text.size() <= kPieceBytes) return text;
  std::size_t end = kPieceBytes;
  const auto continues = [&] { return (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80; };
  while (end > kPieceBytes - 3 && continues()) --end;
  return text.substr(0, end);
}

}  // namespace

void XmlWriter::Declaration() {
  sink_.Append("<?xml version=\"1.0\" encoding=\"windows-1252\"?>\r\n");
}

void XmlWriter::OpenElement(std::string_view name, std::string_view attributes) {
  CloseStartTag();
  sink_.Append("<");
  sink_.Append(name);
  sink_.Append(attributes);
  open_.push_back(name);
  startTagOpen_ = true;
}

void XmlWriter::CloseElement() {
  const std::string_view name = open_.back();
  open_.pop_back();
  if (startTagOpen_) {
    sink_.Append("/>");
  } else {
    sink_.Append("</");
    sink_.Append(name);
    sink_.Append(">");
  }
  startTagOpen_ = false;
}

void XmlWriter::Leaf(std::string_view name, std::string_view text) {
  if (text.size() > kPieceBytes) return LongLeaf(name, text);
  CloseStartTag();
  char* out = sink_.Reserve(2 * name.size() + kTagBytes + kGrowth * text.size());
  *out++ = '<';
  out = Put(out, name);
  char* const content = out + 1;
  char* const end = PutText(content, text);
  if (end == content) {
    out = Put(out, "/>");
  } else {
    *out = '>';
    out = Put(end, "</");
    out = Put(out, name);
    *out++ = '>';
  }
  sink_.Commit(out);
}

void XmlWriter::LongLeaf(std::string_view name, std::string_view text) {
  OpenElement(name);
  CloseStartTag();
  while (!text.empty()) {
    const std::string_view piece = Piece(text);
    sink_.Commit(PutText(sink_.Reserve(kGrowth * piece.size()), piece));
    text.remove_prefix(piece.size());
  }
  CloseElement();
}

toolkit::FileSink& XmlWriter::Raw() {
  CloseStartTag();
  return sink_;
}

void XmlWriter::CloseStartTag() {
  if (startTagOpen_) sink_.Append(">");
  startTagOpen_ = false;
}

}  // namespace korvel::auditfile
