#include <gtest/gtest.h>

#include <stdexcept>

#include "support/money.h"
#include "toolkit/numbers.h"

namespace korvel::toolkit {
namespace {

using test::Money;

struct Rounding {
  const char* value;
  int casas;
  int tipo;
  const char* rounded;
};

class ArredondaValCases : public testing::TestWithParam<Rounding> {};

TEST_P(ArredondaValCases, Rounds) {
  const Rounding& row = GetParam();
  EXPECT_EQ(ArredondaVal(Money(row.value), row.casas, row.tipo).ToText(), row.rounded)
      << row.value << " casas " << row.casas << " tipo " << row.tipo;
}

INSTANTIATE_TEST_SUITE_P(HalfUp, ArredondaValCases,
                         testing::Values(Rounding{"1.005", 2, 1, "1.01"}, Rounding{"2.675", 2, 1, "2.68"},
                                         Rounding{"1.125", 2, 1, "1.13"}, Rounding{"2.5", 0, 1, "3"},
                                         Rounding{"0.5", 0, 1, "1"}, Rounding{"1.5", 0, 1, "2"},
                                         Rounding{"1.1249", 2, 1, "1.12"}, Rounding{"1.1251", 2, 1, "1.13"},
                                         Rounding{"0.4999", 0, 1, "0"}, Rounding{"12", 2, 1, "12"},
                                         Rounding{"0", 2, 1, "0"}));

// No more decimals than the value has, so that its last 5 is nudged by a place that rounding takes away again.
INSTANTIATE_TEST_SUITE_P(LoweredDecimals, ArredondaValCases,
                         testing::Values(Rounding{"2.67", 4, 1, "2.67"}, Rounding{"2.675", 4, 1, "2.675"},
                                         Rounding{"2.5", 9, 1, "2.5"}, Rounding{"12.34", -1, 1, "12"},
                                         Rounding{"1.2345", 4, 1, "1.2346"}));

// With more than one decimal no nudge reaches a whole number: 2.45 and 2.55 go by their value, as do 0.25 and 0.75.
INSTANTIATE_TEST_SUITE_P(ToWholeWithoutNudge, ArredondaValCases,
                         testing::Values(Rounding{"2.45", 0, 1, "2"}, Rounding{"2.55", 0, 1, "3"},
                                         Rounding{"2.5001", 0, 1, "3"}));

INSTANTIATE_TEST_SUITE_P(NegativeAsymmetry, ArredondaValCases,
                         testing::Values(Rounding{"-1.125", 2, 1, "-1.12"}, Rounding{"-1.135", 2, 1, "-1.13"},
                                         Rounding{"-0.5", 0, 1, "0"}, Rounding{"-1.5", 0, 1, "-2"},
                                         Rounding{"-2.5", 0, 1, "-2"}, Rounding{"-1.126", 2, 1, "-1.13"},
                                         Rounding{"-2.5", 4, 1, "-2.5"}, Rounding{"-2.675", 4, 1, "-2.6749"},
                                         Rounding{"-1.2345", 4, 1, "-1.2344"}));

INSTANTIATE_TEST_SUITE_P(OtherKinds, ArredondaValCases,
                         testing::Values(Rounding{"1.2345", 2, 0, "1.2345"},
                                         Rounding{"1.2345", 2, 16, "1.2345"},
                                         Rounding{"1.2345", 2, -1, "1.2345"}, Rounding{"14.99", 1, 2, "20"},
                                         Rounding{"14.9", 1, 2, "10"}, Rounding{"15", 0, 2, "20"},
                                         Rounding{"149", 0, 3, "100"}, Rounding{"150", 0, 3, "200"},
                                         Rounding{"1499.4", 1, 4, "1000"}, Rounding{"1500", 0, 4, "2000"},
                                         Rounding{"1.999", 2, 5, "1.99"}, Rounding{"-1.999", 2, 5, "-1.99"},
                                         Rounding{"19.9", 1, 6, "10"}, Rounding{"199.9", 1, 7, "100"},
                                         Rounding{"1999.9", 1, 8, "1000"}, Rounding{"1.001", 2, 9, "1.01"},
                                         Rounding{"1.01", 2, 9, "1.01"}, Rounding{"11", 0, 10, "20"},
                                         Rounding{"20", 0, 10, "20"}, Rounding{"101", 0, 11, "200"},
                                         Rounding{"1001", 0, 12, "2000"}, Rounding{"2.449", 2, 13, "2"},
                                         Rounding{"2.5", 2, 13, "3"}, Rounding{"2.99", 2, 14, "2"},
                                         Rounding{"2.01", 2, 15, "3"}, Rounding{"2", 2, 15, "2"}));

TEST(ArredondaValDecimal, HasFourKinds) {
  const Currency value = Money("1.125");
  EXPECT_EQ(ArredondaValDecimal(value, 2, 1), Money("1.13"));
  EXPECT_EQ(ArredondaValDecimal(value, 2, 2), Money("1.12"));
  EXPECT_EQ(ArredondaValDecimal(Money("1.121"), 2, 3), Money("1.13"));
  EXPECT_EQ(ArredondaValDecimal(value, 2, 4), value);
  EXPECT_EQ(ArredondaValDecimal(value, 2, 0), value);
}

TEST(ArredondaVal, NeverWrapsAtTheEdgeOfTheRange) {
  const Currency largest = Currency::FromUnits(INT64_MAX);
  EXPECT_THROW(ArredondaVal(largest, 0), std::overflow_error);
  EXPECT_EQ(ArredondaVal(largest, 2).ToText(), "922337203685477.58");
  EXPECT_THROW(ArredondaVal(largest, 0, 12), std::overflow_error);
}

}  // namespace
}  // namespace korvel::toolkit
