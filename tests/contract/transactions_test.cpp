#include "contract/contract.h"

namespace korvel::test {
namespace {

using data::Failure;
using data::Transaction;

class TransactionsContract : public Contract {
 protected:
  void SetUp() override {
    Contract::SetUp();
    if (!IsSkipped()) Db().Execute("create table t (n int primary key)");
  }
  std::int64_t SeenByAnother() { return Another()->Query("select count(*) from t").Integer(std::size_t{0}); }
};
INSTANTIATE_TEST_SUITE_P(Drivers, TransactionsContract, kAllDrivers, DriverName);

TEST_P(TransactionsContract, CommittedRowsStay) {
  Transaction transaction(Db());
  EXPECT_TRUE(Db().InTransaction());
  Db().Execute("insert into t values (1)");
  Db().Execute("insert into t values (?)", {2});
  EXPECT_EQ(Number("select count(*) from t"), 2);
  transaction.Commit();
  EXPECT_FALSE(Db().InTransaction());
  EXPECT_EQ(SeenByAnother(), 2);
  Db().Execute("insert into t values (3)");
  EXPECT_EQ(SeenByAnother(), 3) << "each statement by itself again";
}

TEST_P(TransactionsContract, AScopeLeftRollsBack) {
  {
    Transaction transaction(Db());
    Db().Execute("insert into t values (1)");
  }
  EXPECT_EQ(Number("select count(*) from t"), 0);
  Db().Execute("insert into t values (2)");
  EXPECT_EQ(SeenByAnother(), 1);
}

TEST_P(TransactionsContract, AFailedStatementLeavesTheRestToTheCaller) {
  Transaction transaction(Db());
  Db().Execute("insert into t values (1)");
  EXPECT_TRUE(ErrorOf([&] { Db().Execute("insert into t values (1)"); }));
  Db().Execute("insert into t values (2)");
  transaction.Commit();
  EXPECT_EQ(SeenByAnother(), 2);
}

TEST_P(TransactionsContract, TransactionsDoNotNest) {
  Transaction transaction(Db());
  Db().Execute("insert into t values (1)");
  ExpectFailure([&] { Transaction second(Db()); }, Failure::Statement);
  transaction.Commit();
  EXPECT_EQ(SeenByAnother(), 1);
}

TEST_P(TransactionsContract, ClosingRollsBack) {
  Db().BeginTrans();
  Db().Execute("insert into t values (1)");
  Db().Close();
  EXPECT_EQ(SeenByAnother(), 0);
  EXPECT_TRUE(ErrorOf([&] { Db().CommitTrans(); })) << "a commit that kept nothing must not look like one";
}

TEST_P(TransactionsContract, AHalfReadResultDoesNotHinderTheRollback) {
  Db().Execute("insert into t values (1)");
  {
    Transaction transaction(Db());
    Db().Execute("insert into t values (2)");
    const auto rows = Db().Query("select n from t order by n");
    EXPECT_EQ(rows.Integer("n"), 1);
  }
  EXPECT_EQ(SeenByAnother(), 1);
}

TEST_P(TransactionsContract, ARefusedCommitIsSeen) {
  if (Lacks(Feature::LateChecks)) GTEST_SKIP();
  Db().Execute("create table filha (n int references t(n) deferrable initially deferred)");
  Transaction transaction(Db());
  Db().Execute("insert into filha values (7)");
  EXPECT_TRUE(ErrorOf([&] { transaction.Commit(); }));
  EXPECT_EQ(Another()->Query("select count(*) from filha").Integer(std::size_t{0}), 0);
}

}  // namespace
}  // namespace korvel::test
