#include "auditfile/xml_writer.h"

#include <gtest/gtest.h>
#include <libxml/parser.h>
#include <libxml/tree.h>

#include <memory>
#include <random>

#include "support/memory_sink.h"
#include "toolkit/utf8.h"

namespace korvel::auditfile {
namespace {

using test::MemorySink;

std::string LeafBytes(std::string_view text) {
  MemorySink sink;
  XmlWriter(sink).Leaf("E", text);
  sink.Finish();
  return sink.bytes;
}

TEST(XmlWriter, EncodesAndEscapesText) {
  const struct {
    std::string_view text, written;
  } cases[] = {
      {"", "<E/>"},
      {"  ", "<E>  </E>"},
      {"a & b < c > d \"e\" 'f'", "<E>a &amp; b &lt; c &gt; d \"e\" 'f'</E>"},
      {"]]>", "<E>]]&gt;</E>"},
      {"Facturação €", "<E>Factura\xE7\xE3o \x80</E>"},
      {"\xC2\xA0\xC3\xBF", "<E>\xA0\xFF</E>"},  // both ends of the upper half
      {"a\r\nb\tc", "<E>a&#13;\nb\tc</E>"},
      {"Ω≠", "<E>&#937;&#8800;</E>"},
      {"😀", "<E>&#128512;</E>"},
      {"\xC2\x80\xC2\x81\xC2\x9F",
       "<E>&#128;&#129;&#159;</E>"},  // control characters, no letters of the code page
      {std::string_view("a\0b\x01\x0B\x1F", 6), "<E>ab</E>"},
      {"\xEF\xBF\xBE"
       "x"
       "\xEF\xBF\xBF",
       "<E>x</E>"},                 // U+FFFE, U+FFFF
      {"a\xFFz\xC3", "<E>az</E>"},  // ill-formed
      {"\x01\x02", "<E/>"},         // nothing is left
  };
  for (const auto& [text, written] : cases) EXPECT_EQ(LeafBytes(text), written) << text;
}

TEST(XmlWriter, NestsElementsWithoutWhitespace) {
  MemorySink sink;
  XmlWriter xml(sink);
  xml.Declaration();
  xml.OpenElement("Root", " a=\"b\"");
  xml.OpenElement("Empty");
  xml.CloseElement();
  xml.Element("Full", [&] {
    xml.Leaf("A", "1");
    xml.Element("Inner", [&] { xml.Leaf("B", ""); });
  });
  xml.Raw().Append("<Raw/>");
  xml.CloseElement();
  sink.Finish();
  EXPECT_EQ(sink.bytes,
            "<?xml version=\"1.0\" encoding=\"windows-1252\"?>\r\n"
            "<Root a=\"b\"><Empty/><Full><A>1</A><Inner><B/></Inner></Full><Raw/></Root>");
}

std::string ReadBack(const std::string& bytes) {
  const std::unique_ptr<xmlDoc, decltype(&xmlFreeDoc)> document(
      xmlReadMemory(bytes.data(), static_cast<int>(bytes.size()), "leaf.xml", nullptr, XML_PARSE_HUGE),
      xmlFreeDoc);
  if (!document) return "not well-formed";
  const std::unique_ptr<xmlChar, void (*)(xmlChar*)> text(
      xmlNodeGetContent(xmlDocGetRootElement(document.get())), [](xmlChar* chars) { xmlFree(chars); });
  return reinterpret_cast<const char*>(text.get());
}

std::string RandomText(std::mt19937& random, std::size_t characters) {
  static constexpr char32_t kCharacters[] = {'a',  '&',  '<',    '>',   '"',     '\r',
                                             '\n', 0xE7, 0x20AC, 0x3A9, 0x1F600, 0x81};
  std::uniform_int_distribution<std::size_t> pick(0, std::size(kCharacters) - 1);
  std::string text;
  while (characters-- > 0) toolkit::AppendUtf8(text, kCharacters[pick(random)]);
  return text;
}

// Lengths around the pieces in which long texts are encoded, which may end inside a character.
TEST(XmlWriter, WhatIsWrittenReadsBack) {
  std::mt19937 random(11);
  for (const std::size_t characters : {1u, 40u, 9000u, 16384u, 400000u}) {
    const std::string text = RandomText(random, characters);
    MemorySink sink;
    XmlWriter xml(sink);
    xml.Declaration();
    xml.Leaf("E", text);
    sink.Finish();
    EXPECT_TRUE(ReadBack(sink.bytes) == text) << characters << " characters";
  }
}

}  // namespace
}  // namespace korvel::auditfile
