#include "toolkit/numbers.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "support/money.h"

namespace korvel::toolkit {
namespace {

using test::Money;

const Marks kPortuguese;
const Marks kEnglish{".", ",", "3"};

struct Written {
  const char* value;
  int casas;
  const char* thousands;
  const char* decimal;
  const char* text;
};

// Rounded by magnitude: no asymmetry of halves here.
TEST(FDNum, WritesForTheFileAndForLists) {
  const Written kRows[] = {
      {"1234567.5", 2, "SSM", ".", "1234567.50"},
      {"0", 2, "SSM", ".", "0.00"},
      {"5", 2, "SSM", ".", "5.00"},
      {"-0.001", 2, "SSM", ".", "0.00"},
      {"-0.006", 2, "SSM", ".", "-0.01"},
      {"-5", 0, "SSM", ".", "-5"},
      {"0.996", 2, "SSM", ".", "1.00"},
      {"1.005", 2, "SSM", ".", "1.01"},
      {"-1.005", 2, "SSM", ".", "-1.01"},
      {"1.23", 9, "SSM", ".", "1.2300"},
      {"1.23", -3, "SSM", ".", "1"},
      {"1234567.5", 2, "", "", "1.234.567,50"},
      {"123", 0, "", "", "123"},
      {"1234", 0, " ", "", "1 234"},
      {"-123456", 1, "", "", "-123.456,0"},
      {"922337203685477.5807", 4, "", "", "922.337.203.685.477,5807"},
  };
  for (const Written& row : kRows) {
    EXPECT_EQ(FDNum(Money(row.value), row.casas, row.thousands, row.decimal, kPortuguese), row.text)
        << row.value;
  }
}

TEST(FDNum, FollowsTheSessionMarks) {
  const Currency value = Money("1234567.5");
  EXPECT_EQ(FDNum(value, 1, "", "", {",", ".", "2"}), "1.23.45.67,5");
  EXPECT_EQ(FDNum(value, 1, "", "", {",", ".", "0"}), "1234567,5");
  EXPECT_EQ(FDNum(value, 1, "", "", {",", ".", ""}), "1234567,5");
  EXPECT_EQ(FDNum(value, 1, "", "", {"", "", "3"}), "1,234,567.5");
  EXPECT_EQ(FDNum(value, 1, "", "", {",", "\u00A0", "3"}), "1\u00A0234\u00A0567,5");
}

struct Read {
  const char* text;
  const char* value;
};

TEST(NumericPrefix, StopsAtTheFirstOtherCharacter) {
  constexpr Read kRows[] = {{"12,50", "12"}, {"", "0"},        {"abc", "0"},     {"  -3.5x", "-3.5"},
                            {"+7", "7"},     {"1.2.3", "1.2"}, {"- 5", "0"},     {".5", "0.5"},
                            {"5.", "5"},     {".", "0"},       {"0007", "7"},    {"1 2", "1"},
                            {"--1", "0"},    {"1-2", "1"},     {"1.00005", "1"}, {"1.00015", "1.0002"}};
  for (const Read& row : kRows)
    EXPECT_EQ(NumericPrefix(row.text), Money(row.value)) << '"' << row.text << '"';
}

TEST(NumericPrefix, RefusesWhatDoesNotFit) {
  EXPECT_EQ(NumericPrefix("922337203685477.5807"), Currency::FromUnits(INT64_MAX));
  EXPECT_THROW(NumericPrefix("922337203685477.5808"), std::overflow_error);
  EXPECT_THROW(NumericPrefix("99999999999999999999999999"), std::overflow_error);
  EXPECT_THROW(NumericPrefix(std::string(100, '9')), std::overflow_error);
  EXPECT_EQ(NumericPrefix("0.12345" + std::string(100, '9')), Money("0.1235"));
}

TEST(TextoParaValor, ReadsWithTheSessionSymbols) {
  constexpr Read kRows[] = {{" 1.234,50 ", "1234.5"},
                            {"1234,5", "1234.5"},
                            {"-0,01", "-0.01"},
                            {"1,2,3", "1.2"},
                            {"..5", "5"},
                            {"", "0"},
                            {"n/d", "0"},
                            {"12,5 EUR", "12.5"}};
  for (const Read& row : kRows)
    EXPECT_EQ(TextoParaValor(row.text, kPortuguese), Money(row.value)) << row.text;
  EXPECT_EQ(TextoParaValor("1,234.50", kEnglish), Money("1234.5"));
  // With another thousands symbol a point is a decimal point beside the session's own.
  EXPECT_EQ(TextoParaValor("1.5", {",", "\u00A0", "3"}), Money("1.5"));
  EXPECT_EQ(TextoParaValor("1\u00A0234,5", {",", "\u00A0", "3"}), Money("1234.5"));
}

TEST(TextoParaValor, UndoesWhatFDNumWrites) {
  for (const char* text : {"0", "0.01", "-0.01", "1234567.89", "-999999.9999", "922337203685477.5807"}) {
    for (const Marks& marks : {kPortuguese, kEnglish}) {
      EXPECT_EQ(TextoParaValor(FDNum(Money(text), 4, "", "", marks), marks), Money(text)) << text;
    }
  }
}

TEST(StrToCurr, PrefersTheSymbolsGiven) {
  EXPECT_EQ(StrToCurr("1,234.5", ",", ".", kPortuguese), Money("1234.5"));
  EXPECT_EQ(StrToCurr("1.234,5", "", "", kPortuguese), Money("1234.5"));
}

TEST(TextToCurrency, TakesWholeNumbersOnly) {
  EXPECT_EQ(TextToCurrency(" -1.234,5 ", kPortuguese), Money("-1234.5"));
  EXPECT_EQ(TextToCurrency("5,", kPortuguese), Money("5"));
  for (const char* text : {"", " ", "abc", "1,2,3", "1,5x", ".5", "1,2.3", "-", "1 2", "99999999999999999"}) {
    EXPECT_EQ(TextToCurrency(text, kPortuguese), std::nullopt) << '"' << text << '"';
  }
}

TEST(NumToVBNum, JoinsWholeAndDecimals) {
  EXPECT_EQ(NumToVBNum("1.234,5", 2, kPortuguese), "1234.5");
  EXPECT_EQ(NumToVBNum("1.234", 3, kPortuguese), "1234.000");
  EXPECT_EQ(NumToVBNum("-0,5", 2, kPortuguese), "0.5");  // the sign is lost, deliberately
  EXPECT_EQ(NumToVBNum("-1,5", 2, kPortuguese), "-1.5");
  EXPECT_EQ(NumToVBNum("", 0, kPortuguese), "0.");
}

TEST(NumberText, IsTheShortestWithItsSymbol) {
  EXPECT_EQ(NumberText(Money("0.125"), ","), "0,125");
  EXPECT_EQ(NumberText(Money("-5"), ","), "-5");
}

TEST(Zerar, PadsAndRaisesTheSize) {
  int size = 3;
  EXPECT_EQ(Zerar("12345", size), "12345");
  EXPECT_EQ(size, 5);
  size = 8;
  EXPECT_EQ(Zerar(" 42 ", size), "00000042");
  EXPECT_EQ(size, 8);
  EXPECT_EQ(Zerar("é", 3, "*"), "**é");
  EXPECT_EQ(Zerar("", 2), "00");
}

TEST(AcertaDecimais, GivesFourDecimals) {
  const std::pair<const char*, const char*> kRows[] = {
      {"1,5", "1,5000"}, {"1,55", "1,5500"}, {"1,555", "1,5550"}, {"1,5555", "1,5555"},
      {"1,", "1,"},      {"12", "12,0000"},  {"-5", "-5000"},     {"1,55555", "1,55555"}};
  for (const auto& [text, padded] : kRows) {
    std::string value = text;
    AcertaDecimais(value, ",");
    EXPECT_EQ(value, padded);
  }
}

}  // namespace
}  // namespace korvel::toolkit
