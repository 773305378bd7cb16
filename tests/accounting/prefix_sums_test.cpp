#include "accounting/prefix_sums.h"

#include <gtest/gtest.h>

#include <random>
#include <stdexcept>
#include <utility>
#include <vector>

#include "data/collation.h"
#include "toolkit/text.h"
#include "toolkit/utf8.h"

namespace korvel::accounting {
namespace {

using data::Currency;

struct Coded {
  std::string code;
  DebitCredit amounts;
};

std::string RandomCode(std::mt19937& random, std::size_t longest) {
  static const std::vector<std::string> kLetters{"1", "2", "3", "a", "A", "Á", "á", "ç"};
  std::string code;
  for (std::size_t left = random() % longest + 1; left > 0; --left)
    code += kLetters[random() % kLetters.size()];
  return code;
}

/// The amounts added up one code after another, as the condition of a single query picks them.
DebitCredit AddedUp(const std::vector<Coded>& all, std::string_view prefix) {
  const std::size_t length = toolkit::CharacterCount(prefix);
  DebitCredit sum;
  for (const Coded& one : all) {
    if (!data::SameText(toolkit::CutTo(one.code, length), prefix)) continue;
    sum.debito += one.amounts.debito;
    sum.credito += one.amounts.credito;
  }
  return sum;
}

TEST(PrefixSums, EveryPrefixAddsUpItsOwnCodes) {
  std::mt19937 random(20101);
  std::vector<Coded> all;
  PrefixSums sums;
  for (int i = 0; i < 400; ++i) {
    const auto amount = [&] {
      return Currency::FromUnits(static_cast<std::int64_t>(random() % 2000000) - 1000000);
    };
    all.push_back({RandomCode(random, 6), {amount(), amount()}});
    sums.Add(all.back().code, all.back().amounts);
  }
  sums.Seal();
  for (int i = 0; i < 1000; ++i) {
    const std::string prefix = RandomCode(random, 7);
    const DebitCredit expected = AddedUp(all, prefix);
    EXPECT_EQ(sums.Of(prefix).debito, expected.debito) << prefix;
    EXPECT_EQ(sums.Of(prefix).credito, expected.credito) << prefix;
  }
  EXPECT_EQ(sums.Of("").debito, AddedUp(all, "").debito);
}

TEST(PrefixSums, NothingAddsUpToNothing) {
  PrefixSums sums;
  sums.Seal();
  EXPECT_EQ(sums.Of("21").debito, Currency());
  EXPECT_EQ(sums.Of("").credito, Currency());
}

TEST(PrefixSums, ASumOutsideTheRangeIsNotWrapped) {
  PrefixSums sums;
  sums.Add("1", {Currency::FromUnits(INT64_MAX), {}});
  sums.Add("2", {Currency::FromUnits(1), {}});
  EXPECT_THROW(sums.Seal(), std::overflow_error);
}

}  // namespace
}  // namespace korvel::accounting
