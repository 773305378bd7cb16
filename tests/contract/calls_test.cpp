#include "contract/contract.h"

namespace korvel::test {
namespace {

using data::Currency;
using data::DateTime;
using data::Failure;
using data::Null;
using data::ProcedureArgument;
using data::Value;

class CallsContract : public Contract {
 protected:
  void SetUp() override {
    Contract::SetUp();
    if (!IsSkipped() && Lacks(Feature::TSql)) GTEST_SKIP();
  }
};
INSTANTIATE_TEST_SUITE_P(Drivers, CallsContract, kAllDrivers, DriverName);

TEST_P(CallsContract, OutputsAndTheResultComeBack) {
  Db().Execute(
      "create procedure Tudo @antes int, @i int output, @m money output, @d datetime output, @t varchar(50) "
      "output, @f float output, @n int output, @vazio varchar(10) output as select 'fica de fora' as x set "
      "@i=@i+@antes set @m=@m+@m set @t='ç € '''+@t set @f=@f*2 set @n=null set @vazio='cheio' set "
      "@d=convert(datetime, '2020-02-29') return 7");
  std::vector<ProcedureArgument> arguments = {{2},
                                              {40, true},
                                              {Currency::FromUnits(-12'345), true},
                                              {DateTime{2009, 1, 2}, true},
                                              {"D'Água", true},
                                              {1.25, true},
                                              {5, true},
                                              {Null(), true}};
  EXPECT_EQ(Db().Call("Tudo", arguments), 7);
  const Value expected[] = {
      2, 42, Currency::FromUnits(-24'690), DateTime{2020, 2, 29}, "ç € 'D'Água", 2.5, Null(), "cheio"};
  for (std::size_t i = 0; i < arguments.size(); ++i) EXPECT_EQ(arguments[i].value, expected[i]) << i;
}

TEST_P(CallsContract, ArgumentsAreValuesNotText) {
  Db().Execute("create table t (n int, s varchar(40), x text)");
  Db().Execute(
      "create procedure Grava @n int, @s varchar(40), @x text = 'por omissão' as insert into t values (@n, "
      "@s, @x)");
  std::string large;
  for (int i = 0; i < 3000; ++i) large += "0123 ç'€";
  std::vector<ProcedureArgument> first = {{1}, {"'; drop table t; --"}, {large}};
  EXPECT_EQ(Db().Call("Grava", first), 0);
  std::vector<ProcedureArgument> second = {{2}, {Null()}};
  EXPECT_EQ(Db().Call("[dbo].[Grava]", second), 0);
  auto rows = Db().Query("select * from t order by n");
  EXPECT_EQ(rows.Text("s"), "'; drop table t; --");
  EXPECT_TRUE(rows.Text("x") == large);
  rows.MoveNext();
  EXPECT_TRUE(rows.IsNull("s"));
  EXPECT_EQ(rows.Text("x"), "por omissão");
}

TEST_P(CallsContract, CallsFailAsStatementsDo) {
  Db().Execute("create table t (n int not null)");
  Db().Execute("create procedure Grava @n int as insert into t values (@n) return 1");
  const struct {
    const char* procedure;
    std::vector<ProcedureArgument> arguments;
    Failure failure;
    int native;
  } cases[] = {{"NaoHa", {}, Failure::Statement, 2812},
               {"Grava", {{Null()}}, Failure::Integrity, 515},
               {"Grava", {}, Failure::Statement, 201},
               {"Grava", {{"abc"}}, Failure::Conversion, 8114}};
  for (const auto& each : cases) {
    SCOPED_TRACE(each.procedure);
    auto arguments = each.arguments;
    ExpectFailure([&] { Db().Call(each.procedure, arguments); }, each.failure, each.native);
    EXPECT_EQ(Number("select count(*) from t"), 0) << "the connection works on";
  }
}

TEST_P(CallsContract, CallsTakePartInTransactions) {
  Db().Execute("create table t (n int)");
  Db().Execute("create procedure Grava @n int as insert into t values (@n)");
  std::vector<ProcedureArgument> arguments = {{1}};
  {
    data::Transaction transaction(Db());
    Db().Call("Grava", arguments);
  }
  EXPECT_EQ(Number("select count(*) from t"), 0);
  const auto rows = Db().Query("select 1");
  ExpectFailure([&] { Db().Call("Grava", arguments); }, Failure::Busy);
}

}  // namespace
}  // namespace korvel::test
