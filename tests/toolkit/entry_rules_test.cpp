#include "toolkit/entry_rules.h"

#include <gtest/gtest.h>

#include <limits>

#include "support/scripted_ports.h"

namespace korvel::toolkit {
namespace {

const NumberEntry kTwoDecimals{.marks = {}, .characters = 8, .decimals = 2, .grouped = false};

TEST(NumberEntries, AdmitWhatCanBecomeANumber) {
  const NumberEntry whole{.marks = {}, .characters = 8, .decimals = 0, .grouped = false};
  const NumberEntry swiss{.marks = {".", "’", "3"}, .characters = 8, .decimals = 2, .grouped = false};
  const struct {
    const NumberEntry* entry;
    bool admitted;
    std::vector<const char*> texts;
  } kRows[] = {{&kTwoDecimals, true, {"", "-", "-12,50", ",5", "12,", "12345678", "1.234.567"}},
               {&kTwoDecimals, false, {"12,505", "1,2,", "1-", "--1", "12a", "1 2", "123456789"}},
               {&whole, true, {"12"}},
               {&whole, false, {"12,"}},
               {&swiss, true, {"1’234.50"}},
               {&swiss, false, {"1,5"}}};
  for (const auto& row : kRows) {
    for (const char* text : row.texts) EXPECT_EQ(AdmitsNumber(text, *row.entry), row.admitted) << text;
  }
}

TEST(NumberEntries, APointWritesTheDecimalSymbol) {
  EXPECT_EQ(TypedSymbol(".", {",", ".", "3"}), ",");
  EXPECT_EQ(TypedSymbol(".", {".", ",", "3"}), ".");
  EXPECT_EQ(TypedSymbol(",", {".", ",", "3"}), ",");
}

TEST(NumberEntries, ReadAndShowTheirValue) {
  const NumberEntry grouped{.marks = {}, .characters = 30, .decimals = 2, .grouped = true};
  const struct {
    const char* text;
    const NumberEntry* entry;
    std::int64_t units;
    const char* shown;
  } kRows[] = {{"12,5", &kTwoDecimals, 125000, "12,50"},
               {"1.234,5", &kTwoDecimals, 12345000, "1234,50"},
               {"1234567,5", &grouped, 12345675000, "1.234.567,50"},
               {"-0,5", &grouped, -5000, "-0,50"},
               {"", &kTwoDecimals, 0, "0,00"},
               {"-", &kTwoDecimals, 0, "0,00"},
               {"922337203685477,58", &grouped, 9223372036854775800, "922.337.203.685.477,58"}};
  for (const auto& row : kRows) {
    const auto reading = ReadNumber(row.text, *row.entry);
    ASSERT_TRUE(reading) << row.text;
    EXPECT_EQ(reading->value.Units(), row.units) << row.text;
    EXPECT_EQ(reading->shown, row.shown) << row.text;
  }
}

TEST(NumberEntries, RefuseWhatMoneyCannotHoldOrTheBoxCannotShow) {
  const NumberEntry whole{.marks = {}, .characters = 30, .decimals = 0, .grouped = false};
  for (const char* text : {"922337203685478", "-922337203685478", "99999999999999999999999999"}) {
    EXPECT_FALSE(ReadNumber(text, kTwoDecimals)) << text;
  }
  EXPECT_FALSE(ReadNumber("922337203685477,58", whole));  // rounds up out of the range
}

TEST(WholeNumbers, StayAndStepWithinTheirBounds) {
  const IntegerBounds bounds{-1, 4};
  EXPECT_EQ(IntegerRefusal(5, bounds), "Número demasiado Grande !\no Máximo é 4");
  EXPECT_EQ(IntegerRefusal(-2, bounds), "Número demasiado Pequeno !\no Mínimo é -1");
  EXPECT_EQ(IntegerRefusal(4, bounds), "");
  EXPECT_EQ(IntegerRefusal(-1, bounds), "");
  EXPECT_EQ(StepInteger(3, 1, bounds), 4);
  EXPECT_EQ(StepInteger(3, 10, bounds), 4);
  EXPECT_EQ(StepInteger(0, -10, bounds), -1);
  EXPECT_EQ(StepInteger(9, -1, bounds), 4);
  constexpr int kMost = std::numeric_limits<int>::max();
  EXPECT_EQ(StepInteger(kMost, 1, {}), kMost);
}

TEST(DateEntries, StepByCalendarDays) {
  const DateMarks slashes{"dd/MM/yyyy", "/"};
  const DateTime today{2012, 2, 28, 10, 0, 0, 0};
  test::ScriptedDialogs dialogs;
  EXPECT_EQ(StepDate("", 1, slashes, today, dialogs).regional, "29/02/2012");
  EXPECT_EQ(StepDate("", -1, slashes, today, dialogs).neutral, "2012-02-27");
  EXPECT_EQ(StepDate("2011-12-31", 1, slashes, today, dialogs).neutral, "2012-01-01");
  EXPECT_TRUE(dialogs.messages.empty());
  EXPECT_EQ(StepDate("9999-12-31", 1, slashes, today, dialogs).neutral, "");
  EXPECT_EQ(dialogs.LastText(), "Erro Interno ( DataAdd )");
}

TEST(DateEntries, NeutralDatesAreShownAsTypedOnes) {
  const DateMarks noZeros{"d/M/yyyy", "/"};
  EXPECT_EQ(TextsOfDate("2012-03-05", noZeros).regional, "05/03/2012");
  EXPECT_EQ(TextsOfDate("2012-03-05 10:30:00", noZeros).neutral, "2012-03-05");
  EXPECT_EQ(TextsOfDate("2012-02-30", noZeros).regional, "");
  EXPECT_EQ(TextsOfDate("", noZeros).neutral, "");
}

}  // namespace
}  // namespace korvel::toolkit
