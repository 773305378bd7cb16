#include <algorithm>
#include <chrono>
#include <random>

#include "data/embedded/parser.h"
#include "data/embedded_fixture.h"

namespace korvel::data {
namespace {

using EmbeddedParser = EmbeddedServerTest;

TEST(Parser, KeepsDeepAndLongTextsWithinLimits) {
  const auto refused = [](const std::string& text) {
    try {
      embedded::ParseBatch(text);
    } catch (const Error& error) {
      return error.Native() == 102;
    }
    return false;
  };
  EXPECT_TRUE(refused("select " + std::string(100000, '(') + "1" + std::string(100000, ')')));
  EXPECT_TRUE(refused("select " + std::string(100000, '-') + " 1"));
  std::string sum = "select 1";
  for (int i = 0; i < 5000; ++i) sum += "+1";
  EXPECT_TRUE(refused(sum));
  std::string nots = "select 1 where ";
  for (int i = 0; i < 5000; ++i) nots += "not ";
  EXPECT_TRUE(refused(nots + "1=1"));
}

TEST_F(EmbeddedParser, RunsLongChainsAndLists) {
  std::string either = "select 1 where 1=2";
  std::string list = "select 1 where 7 in (0";
  for (int i = 0; i < 3000; ++i) {
    either += " or 'x'='" + std::to_string(i) + "'";
    list += "," + std::to_string(i);
  }
  EXPECT_EQ(Rows(*connection, either + " or 3=3"), "1");
  EXPECT_EQ(Rows(*connection, list + ")"), "1");
  EXPECT_EQ(Rows(*connection, "select len('" + std::string(200000, 'x') + "')"), "200000");
}

/// Statements cut up and joined at random, always the same ones: each runs or is refused with an Error, and quickly.
TEST_F(EmbeddedParser, SurvivesTextsMadeAtRandom) {
  connection->Execute("create table T (NumRegisto int identity, a varchar(5), m money, d datetime)");
  const std::vector<std::string> pieces = Pieces(
      "select |* |from T |where |a |m |d |='x' |and |or |not |( |) |1 |1.5 |, |like '%' |in (|"
      "between |is null |case when |then |else |end |sum(|isnull(|convert(int,|order by |"
      "group by |union |top 1 |distinct |insert T |values |update T set |delete T |exec |"
      "sp_tables |+ |- |/ |? |'|[|]|\"|;|--|/*|left join T b on |exists |null |@@identity |"
      "create table X (|drop |alter table T add |varchar(3) |= |<> |as |.|T.|\xC3|\x01|count(*) |"
      "declare @a int |@a |set @a=|begin |if |return |print |create proc P as |exec P ");
  std::mt19937 random(20080229);
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(4);
  int refused = 0;
  int ran = 0;
  for (int i = 0; i < 20000 && std::chrono::steady_clock::now() < end; ++i) {
    std::string text = i % 2 == 0 ? "select " : "";
    const auto length = 1 + random() % 14;
    for (std::size_t n = 0; n < length; ++n) text += pieces[random() % pieces.size()];
    const std::vector<Parameter> given(static_cast<std::size_t>(std::count(text.begin(), text.end(), '?')),
                                       Parameter(1));
    try {
      connection->Execute(text, given);
      ++ran;
    } catch (const Error&) {
      ++refused;
    }
  }
  EXPECT_GT(refused, 100);
  EXPECT_GT(ran, 10);
  EXPECT_EQ(ErrorOf(*connection, "select count(*) from sysobjects"), "ok");
}

}  // namespace
}  // namespace korvel::data
