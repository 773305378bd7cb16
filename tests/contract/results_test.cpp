#include <fmt/format.h>

#include "contract/contract.h"

namespace korvel::test {
namespace {

using data::Error;
using data::Failure;
using data::Recordset;

class ResultsContract : public Contract {
 protected:
  /// A table `linhas` of that many rows, `n` from 0 up with a text made from it.
  void Fill(int rows) {
    Db().Execute("create table linhas (n int, v money, t varchar(60), nulo varchar(5) null)");
    const std::string_view columns[] = {"n", "v", "t", "nulo"};
    data::Transaction transaction(Db());
    const auto batch = Db().OpenBatch("linhas", columns);
    for (int n = 0; n < rows; ++n) {
      const std::string text = TextOf(n);
      const data::Parameter row[] = {n, data::Currency::FromUnits(n * 25), text, data::Null()};
      batch->Add(row);
    }
    batch->Finish();
    transaction.Commit();
  }
  static std::string TextOf(int n) {
    return fmt::format("linha {} com acção e 'aspas'{:>{}}", n, "", n % 10);
  }
};
INSTANTIATE_TEST_SUITE_P(Drivers, ResultsContract, kAllDrivers, DriverName);

TEST_P(ResultsContract, AnEmptyResultHasItsColumns) {
  Fill(1);
  const auto rows = Db().Query("select n, t from linhas where n=99");
  EXPECT_TRUE(rows.Eof());
  ASSERT_EQ(rows.Fields().size(), 2u);
  EXPECT_EQ(rows.Fields()[1].name, "t");
  EXPECT_EQ(rows.Fields()[1].length, 60);
  EXPECT_TRUE(rows.Has("N"));
  EXPECT_FALSE(rows.Has("x"));
  EXPECT_TRUE(ErrorOf([&] { rows.IndexOf("x"); }));
}

TEST_P(ResultsContract, AStatementWithoutRowsQueriesAsNoRows) {
  auto rows = Db().Query("create table nova (n int)");
  EXPECT_TRUE(rows.Eof());
  EXPECT_TRUE(rows.Fields().empty());
  EXPECT_FALSE(rows.NextRecordset());
}

TEST_P(ResultsContract, RowSetsOfABatchFollowEachOther) {
  if (Lacks(Feature::TSql)) GTEST_SKIP();
  Fill(3);
  auto rows = Db().Query(
      "select n from linhas order by n; update linhas set v=1; select t from linhas where n=99; select 'fim' "
      "as u");
  EXPECT_EQ(rows.Integer("n"), 0);
  ASSERT_TRUE(rows.NextRecordset());  // with two rows unread, over the update
  EXPECT_TRUE(rows.Eof());
  EXPECT_TRUE(rows.Has("t"));
  ASSERT_TRUE(rows.NextRecordset());
  EXPECT_EQ(rows.Text("u"), "fim");
  EXPECT_FALSE(rows.NextRecordset());
  EXPECT_TRUE(rows.Eof());
}

TEST_P(ResultsContract, ExecuteCountsTheRowsOfItsLastStatement) {
  Fill(5);
  EXPECT_EQ(Db().Execute("update linhas set v=0 where n<3"), 3);
  EXPECT_EQ(Db().Execute("update linhas set v=0 where n=99"), 0);
  EXPECT_EQ(Db().Execute("update linhas set v=? where n=?", {7, 4}), 1);
  EXPECT_EQ(Db().Execute("delete from linhas where n=?", {99}), 0);
  EXPECT_EQ(Db().Execute("delete from linhas"), 5);
  if (Lacks(Feature::TSql)) GTEST_SKIP();
  Db().Execute("insert into linhas (n) values (1); insert into linhas (n) values (2)");
  EXPECT_EQ(Db().Execute("update linhas set v=1; delete from linhas where n=2"), 1);
  EXPECT_EQ(Db().Execute("update linhas set v=1; delete from linhas where n=2"), 0);
}

TEST_P(ResultsContract, AConnectionServesOneReaderAtATime) {
  Fill(3000);
  const std::string_view columns[] = {"n"};
  {
    const auto rows = Db().Query("select * from linhas");
    const std::function<void()> calls[] = {
        [&] { Db().Query("select 1"); }, [&] { Db().Execute("delete from linhas"); },
        [&] { Db().BeginTrans(); }, [&] { Db().OpenBatch("linhas", columns); }};
    for (const auto& call : calls) ExpectFailure(call, Failure::Busy);
    EXPECT_EQ(rows.Integer("n"), 0) << "the reader is not disturbed";
  }
  EXPECT_EQ(Number("select count(*) from linhas"), 3000) << "free once the half-read result is dropped";
}

TEST_P(ResultsContract, ManyRowsReadInBlocksAreThoseWritten) {
  constexpr int kRows = 50'000;
  Fill(kRows);
  int n = 0;
  for (auto rows = Db().Query("select * from linhas order by n"); !rows.Eof(); rows.MoveNext(), ++n) {
    ASSERT_EQ(rows.Integer(0), n);
    ASSERT_EQ(rows.Money(1).Units(), n * 25);
    ASSERT_EQ(rows.Text(2), TextOf(n));
    ASSERT_TRUE(rows.IsNull(3));
  }
  EXPECT_EQ(n, kRows);
}

TEST_P(ResultsContract, ClosingDoesNotCutAReaderUnseen) {
  constexpr int kRows = 5000;
  Fill(kRows);
  auto rows = Db().Query("select * from linhas order by n");
  Db().Close();
  Db().Close();
  EXPECT_FALSE(Db().IsOpen());
  int n = 0;
  const auto error = ErrorOf([&] {
    for (; !rows.Eof(); rows.MoveNext(), ++n) ASSERT_EQ(rows.Integer("n"), n);
  });
  EXPECT_TRUE(error || n == kRows) << "a cut read must not pass for a complete one: " << n;
}

TEST_P(ResultsContract, AReaderOutlivesItsConnection) {
  auto connection = Another();
  connection->Execute("create table linhas (n int)");
  auto rows = std::make_unique<Recordset>(connection->Query("select * from linhas"));
  connection.reset();
  rows.reset();
  EXPECT_EQ(Number("select count(*) from linhas"), 0);
}

TEST_P(ResultsContract, AClosedConnectionRefusesWork) {
  Db().Close();
  ExpectFailure([&] { Db().Query("select 1"); }, Failure::NoServer);
  ExpectFailure([&] { Db().Execute("select 1"); }, Failure::NoServer);
  ExpectFailure([&] { Db().BeginTrans(); }, Failure::NoServer);
}

TEST_P(ResultsContract, DatabaseFollowsUse) {
  if (Lacks(Feature::TSql)) GTEST_SKIP();
  EXPECT_EQ(Db().Database().substr(0, 8), "Contrato");
  Db().Execute("use master");
  EXPECT_EQ(Db().Database(), "master");
}

}  // namespace
}  // namespace korvel::test
