#include "toolkit/code_page.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "toolkit/scramble.h"

namespace korvel::toolkit {
namespace {

std::string AllBytes() {
  std::string bytes;
  for (int byte = 0; byte < 256; ++byte) bytes += static_cast<char>(byte);
  return bytes;
}

TEST(CodePage, EveryByteComesBack) {
  const std::string utf8 = FromCodePage(AllBytes());
  EXPECT_EQ(CharacterCount(utf8), 256u);
  const CodePageText back = ToCodePage(utf8);
  EXPECT_EQ(back.bytes, AllBytes());
  EXPECT_EQ(back.missing, 0u);
}

TEST(CodePage, KnownCharacters) {
  EXPECT_EQ(ToCodePage("€ ç Ã – Ÿ").bytes, "\x80 \xE7 \xC3 \x96 \x9F");
  EXPECT_EQ(FromCodePage("\x93 \x94"), "“ ”");
}

TEST(CodePage, TellsWhatItLacks) {
  const CodePageText text = ToCodePage("a Ω 😀 \xC2\x80 z");
  EXPECT_EQ(text.bytes, "a ? ? ? z");
  EXPECT_EQ(text.missing, 3u);
  EXPECT_FALSE(FitsCodePage("Ω"));
  EXPECT_TRUE(FitsCodePage("ligação €"));

  std::string out = "<";
  AppendCodePage("çΩ\xFF", out, [](char32_t c, std::string& to) { to += c == kReplacement ? "!" : "#"; });
  EXPECT_EQ(out, "<\xE7#!");
}

// Each byte that is no part of a character counts alone: cut short, overlong, surrogate, beyond the last one.
TEST(Utf8, CountsIllFormedBytesOneByOne) {
  const std::pair<std::string_view, std::size_t> kRows[] = {
      {"\x80", 1},         {"\xC3", 1},     {"\xE2\x82", 2},         {"\xC0\xAF", 2},
      {"\xED\xA0\x80", 3}, {"\xC3\x41", 2}, {"\xF4\x90\x80\x80", 4}, {"\xE0\x80\x80", 3},
      {"ç\xFFç", 3},
  };
  for (const auto& [text, characters] : kRows) {
    EXPECT_EQ(CharacterCount(text), characters) << text;
    EXPECT_FALSE(FitsCodePage(text)) << text;
  }
}

TEST(Utf8, WritesWhatItReads) {
  for (const char32_t character :
       {U'a', U'ç', U'€', U'😀', char32_t{0x10FFFF}, char32_t{0x7F}, char32_t{0x800}}) {
    std::string text;
    AppendUtf8(text, character);
    const Decoded decoded = DecodeUtf8(text, 0);
    EXPECT_EQ(decoded.character, character);
    EXPECT_EQ(decoded.bytes, text.size());
    EXPECT_TRUE(decoded.valid);
  }
}

TEST(Utf8, FindsTheEndOfAscii) {
  const std::string longRun(21, 'x');
  EXPECT_EQ(AsciiEnd(longRun + "é", 0), 21u);
  EXPECT_EQ(AsciiEnd(longRun + "é", 19), 21u);
  EXPECT_EQ(AsciiEnd("é", 0), 0u);
  EXPECT_EQ(AsciiEnd("", 0), 0u);
  EXPECT_TRUE(IsAscii(longRun));
}

TEST(Encrypt, ComplementsAndSwapsHalves) {
  EXPECT_EQ(Encrypt("A"), "ë");    // 41 to EB
  EXPECT_EQ(Encrypt("a1"), "éì");  // 61 to E9, 31 to EC
  EXPECT_EQ(Encrypt(""), "");
}

TEST(Encrypt, IsItsOwnInverse) {
  const std::string text = FromCodePage(AllBytes());
  EXPECT_EQ(Decrypt(Encrypt(text)), text);
  EXPECT_EQ(CharacterCount(Encrypt(text)), 256u);
  EXPECT_THROW(Encrypt("Ω"), std::invalid_argument);
}

}  // namespace
}  // namespace korvel::toolkit
