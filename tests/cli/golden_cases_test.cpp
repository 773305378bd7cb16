#include <gtest/gtest.h>

#include "cli/golden_case.h"
#include "support/tds/tds_server.h"
#include "support/temp_folder.h"

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

/// What the embedded server gives is what ODBC brings through another one's protocol.
TEST(GoldenCaseByOdbc, AWholeLifeIsTheSame) {
  const TempFolder servers;
  tds::TdsServer server(servers.Path(), "VIDA");
  CliWorld world(server.Address());
  RunCase(ReadCase(std::filesystem::path(KORVEL_CASES_DIR) / "vida.case"), world);
}

TEST(GoldenLines, FitWhatTheyLeaveOpen) {
  EXPECT_TRUE(LineFits("a{*}c", "abbc"));
  EXPECT_TRUE(LineFits("{*}", ""));
  EXPECT_TRUE(LineFits("a{*}b{*}c", "a-b-b-c"));
  EXPECT_FALSE(LineFits("a{*}c", "abcd"));
  EXPECT_FALSE(LineFits("abc", "abcd"));
}

}  // namespace
}  // namespace korvel::test
