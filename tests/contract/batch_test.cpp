#include <algorithm>

#include <fmt/format.h>

#include "contract/contract.h"

namespace korvel::test {
namespace {

using data::BatchInsert;
using data::Parameter;

class BatchContract : public Contract {
 protected:
  void SetUp() override {
    Contract::SetUp();
    if (!IsSkipped())
      Db().Execute("create table lote (" + Server().IdentityColumn() + ", n int not null, t text)");
  }
  std::unique_ptr<BatchInsert> Open() {
    static constexpr std::string_view kColumns[] = {"n", "t"};
    return Db().OpenBatch("lote", kColumns);
  }
  /// Adds rows with `n` from 0 up; the row `bad` lacks its `n`.
  static void AddRows(BatchInsert& batch, int rows, int bad = -1) {
    for (int n = 0; n < rows; ++n) {
      const std::string text = TextOf(n);
      const Parameter row[] = {n == bad ? Parameter() : Parameter(n), text};
      batch.Add(row);
    }
  }
  /// Every text is another, some are hostile, some have to travel apart from their statement.
  static std::string TextOf(int n) {
    return fmt::format("{}{}", n % 7 == 0 ? "a\\\r\nb '?' " : "ç'); --", n);
  }
};
INSTANTIATE_TEST_SUITE_P(Drivers, BatchContract, kAllDrivers, DriverName);

TEST_P(BatchContract, RowsOfAnyNumberArriveInOrder) {
  for (const int count : {0, 1, 999, 1000, 1001, 2500}) {
    SCOPED_TRACE(count);
    const auto batch = Open();
    AddRows(*batch, count);
    batch->Finish();
    batch->Finish();
    int n = 0;
    for (auto rows = Db().Query("select n, t from lote order by NumRegisto"); !rows.Eof();
         rows.MoveNext(), ++n) {
      ASSERT_EQ(rows.Integer("n"), n);
      ASSERT_EQ(rows.Text("t"), TextOf(n));
    }
    EXPECT_EQ(n, count);
    Db().Execute("delete from lote");
  }
}

TEST_P(BatchContract, ABadRowIsSeenAndARollbackTakesAll) {
  for (const int bad : {0, 700, 1000, 2499}) {
    SCOPED_TRACE(bad);
    EXPECT_TRUE(ErrorOf([&] {
      data::Transaction transaction(Db());
      const auto batch = Open();
      AddRows(*batch, 2500, bad);
      batch->Finish();
      transaction.Commit();
    }));
    EXPECT_EQ(Number("select count(*) from lote"), 0);
  }
}

TEST_P(BatchContract, ARowOfTheWrongWidthIsRefused) {
  const auto batch = Open();
  const Parameter row[] = {1};
  EXPECT_TRUE(ErrorOf([&] { batch->Add(row); }));
  AddRows(*batch, 2);
  batch->Finish();
  EXPECT_EQ(Number("select count(*) from lote"), 2);
}

TEST_P(BatchContract, StatementsGrowByBatchesNotByRows) {
  int sent = 0;
  Db().Observe([&](std::string_view) { ++sent; });
  const auto batch = Open();
  AddRows(*batch, 2500);
  batch->Finish();
  Db().Observe({});
  EXPECT_GE(sent, 1);
  EXPECT_LE(sent, 5);
  EXPECT_EQ(Number("select count(*) from lote"), 2500);
}

TEST_P(BatchContract, WideRowsArrive) {
  std::string declared;
  std::vector<std::string> names;
  for (int i = 0; i < 33; ++i) {
    names.push_back(fmt::format("c{}", i));
    declared += fmt::format("{}c{} varchar(40)", i == 0 ? "" : ",", i);
  }
  Db().Execute("create table largo (" + declared + ")");
  const std::vector<std::string_view> columns(names.begin(), names.end());
  const auto batch = Db().OpenBatch("largo", columns);
  const std::vector<Parameter> row(33, Parameter("quarenta caracteres, mais ou menos"));
  for (int n = 0; n < 1200; ++n) batch->Add(row);
  batch->Finish();
  EXPECT_EQ(Number("select count(*) from largo where c0=c32"), 1200);
}

}  // namespace
}  // namespace korvel::test
