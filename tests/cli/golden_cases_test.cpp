#include <gtest/gtest.h>

#include "cli/golden_case.h"

namespace korvel::test {

void PrintTo(const GoldenCase& golden, std::ostream* out) {
  *out << golden.name;
}

namespace {

class GoldenCases : public testing::TestWithParam<GoldenCase> {};

TEST_P(GoldenCases, RunsAsWritten) {
  RunCase(GetParam());
}

INSTANTIATE_TEST_SUITE_P(Cli, GoldenCases, testing::ValuesIn(ReadCases()),
                         [](const auto& caseInfo) { return caseInfo.param.name; });

TEST(GoldenLines, FitWhatTheyLeaveOpen) {
  EXPECT_TRUE(LineFits("a{*}c", "abbc"));
  EXPECT_TRUE(LineFits("{*}", ""));
  EXPECT_TRUE(LineFits("a{*}b{*}c", "a-b-b-c"));
  EXPECT_FALSE(LineFits("a{*}c", "abcd"));
  EXPECT_FALSE(LineFits("abc", "abcd"));
}

}  // namespace
}  // namespace korvel::test
