#include "demo/taxpayers.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "toolkit/text.h"
#include "toolkit/utf8.h"

namespace korvel::demo {
namespace {

TEST(PortugueseTaxNumber, EndsInItsCheckDigit) {
  const std::pair<std::int64_t, const char*> cases[] = {
      {50812345, "508123453"}, {99999999, "999999990"}, {50000000, "500000000"}, {12345678, "123456789"}};
  for (const auto& [digits, number] : cases) EXPECT_EQ(PortugueseTaxNumber(digits), number);
}

std::vector<Taxpayer> Make(Kind kind) {
  Random random(7);
  return MakeTaxpayers(kind, 600, random);
}

TEST(Taxpayers, HaveTaxNumbersOfTheirOwn) {
  std::set<std::string> numbers;
  for (const Kind kind : {Kind::Customer, Kind::Supplier}) {
    for (const Taxpayer& who : Make(kind)) numbers.insert(toolkit::LimpaContribuinte_str(who.taxNumber));
  }
  EXPECT_EQ(numbers.size(), 1200U);
}

TEST(Taxpayers, FitTheColumnsOfTheChart) {
  for (const Taxpayer& who : Make(Kind::Customer)) {
    EXPECT_LE(toolkit::CharacterCount(who.name), 50U) << who.name;
    EXPECT_LE(toolkit::CharacterCount(who.street), 50U);
    EXPECT_LE(toolkit::CharacterCount(who.street + ", " + who.doorNumber), 60U);
    EXPECT_LE(who.taxNumber.size(), 20U);
    EXPECT_FALSE(toolkit::IsBlank(who.taxNumber));
  }
}

TEST(Taxpayers, BringWhatStatementsAndFilesMustSurvive) {
  const auto customers = Make(Kind::Customer);
  const auto some = [&](std::string_view text) {
    return std::ranges::any_of(customers,
                               [&](const Taxpayer& who) { return who.name.find(text) != who.name.npos; });
  };
  for (const char* text : {"'", "&", "ç", "ã", "ñ"}) EXPECT_TRUE(some(text)) << text;
  EXPECT_TRUE(std::ranges::any_of(
      customers, [](const Taxpayer& who) { return who.taxNumber.find(' ') != std::string::npos; }));
  EXPECT_TRUE(std::ranges::any_of(customers, [](const Taxpayer& who) { return who.country == "ES"; }));
  EXPECT_TRUE(
      std::ranges::any_of(Make(Kind::Supplier), [](const Taxpayer& who) { return who.country.empty(); }));
  EXPECT_FALSE(std::ranges::any_of(customers, [](const Taxpayer& who) { return who.country.empty(); }));
}

}  // namespace
}  // namespace korvel::demo
