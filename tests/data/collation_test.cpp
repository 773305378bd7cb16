#include "data/collation.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace korvel::data {
namespace {

using std::string_literals::operator""s;

TEST(Collation, OrdersTextsAsTheServerDoes) {
  // Each text sorts before the next.
  const std::vector<std::string> ordered = {"",  "!",  "-",   "_", "~", "€", "§", "÷", "0", "1", "10",
                                            "2", "a",  "a 1", "à", "á", "ã", "æ", "b", "ç", "d", "e",
                                            "é", "êa", "n",   "ñ", "o", "ó", "õ", "p", "s", "š", "ß",
                                            "u", "ü",  "y",   "z", "ž", "ð", "þ", "Ω", "日"};
  for (std::size_t i = 0; i < ordered.size(); ++i) {
    for (std::size_t j = 0; j < ordered.size(); ++j) {
      const int sign = Collate(ordered[i], ordered[j]);
      EXPECT_EQ(sign < 0, i < j) << ordered[i] << " ~ " << ordered[j];
      EXPECT_EQ(sign == 0, i == j) << ordered[i] << " ~ " << ordered[j];
      EXPECT_EQ(CollationKey(ordered[i]) < CollationKey(ordered[j]), i < j)
          << ordered[i] << " ~ " << ordered[j];
    }
  }
  EXPECT_LT(Collate("a\t", "a"), 0);
}

TEST(Collation, TakesCaseAndTrailingBlanksAsTheSame) {
  const std::vector<std::pair<std::string, std::string>> equal = {{"abc", "ABC"},
                                                                  {"abc", "abc   "},
                                                                  {"", "  "},
                                                                  {"ação", "AÇÃO "},
                                                                  {"Šß", "šß"},
                                                                  {"ÿ", "Ÿ"},
                                                                  {"longtext12", "LONGTEXT12"},
                                                                  {"œÞ", "Œþ"}};
  for (const auto& [a, b] : equal) {
    EXPECT_TRUE(SameText(a, b)) << a << " ~ " << b;
    EXPECT_EQ(CollationKey(a), CollationKey(b)) << a << " ~ " << b;
  }
  const std::vector<std::pair<std::string, std::string>> unequal = {
      {"acao", "ação"},           {"a", "á"},  {" a", "a"}, {"a b", "ab"}, {"c", "ç"},
      {"12345678é", "12345678è"}, {"\0"s, ""s}};
  for (const auto& [a, b] : unequal) EXPECT_FALSE(SameText(a, b)) << a << " ~ " << b;
}

TEST(Collation, IsAnOrderForBrokenTextsToo) {
  const std::vector<std::string> broken = {"\xC3",  "\xC3(", "\xE2\x82",        "\xFF\xFE",
                                           "a\x80", "é\xA9", "abcdefg\xC3\xA9", "abcdefg\xC3\xA8"};
  for (const std::string& a : broken) {
    EXPECT_EQ(Collate(a, a), 0);
    for (const std::string& b : broken) EXPECT_EQ(Collate(a, b) < 0, Collate(b, a) > 0);
  }
}

}  // namespace
}  // namespace korvel::data
