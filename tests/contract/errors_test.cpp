#include <chrono>

#include "contract/contract.h"

namespace korvel::test {
namespace {

using data::Failure;
using testing::HasSubstr;
using testing::Not;

class ErrorsContract : public Contract {};
INSTANTIATE_TEST_SUITE_P(Drivers, ErrorsContract, kAllDrivers, DriverName);

struct BadStatement {
  const char* sql;
  Failure failure;
  std::vector<int> natives;  // one of these
  std::optional<Feature> needs = std::nullopt;
};

const BadStatement kBadStatements[] = {
    {"select * from nada", Failure::NoTable, {208}},
    {"insert into nada values (1)", Failure::NoTable, {208}},
    {"select nada from t", Failure::Statement, {207}},
    {"select * fro t", Failure::Statement, {102}},
    {"create table t (n int)", Failure::Statement, {2714}},
    {"drop table nada", Failure::Statement, {3701}},
    {"insert into t (n, s) values (1, 'b')", Failure::Integrity, {2627, 2601}},
    {"insert into t (n, s) values (2, null)", Failure::Integrity, {515}},
    {"update t set s=null", Failure::Integrity, {515}},
    {"insert into t (n, s) values (2, 'abcdef')", Failure::Truncation, {8152, 2628}, Feature::StrictTypes},
    {"update t set s='abcdef'", Failure::Truncation, {8152, 2628}, Feature::StrictTypes},
    {"insert into t (n, s) values (3000000000, 'b')", Failure::Truncation, {8115}, Feature::StrictTypes},
    {"select * from t where n='abc'", Failure::Conversion, {245}, Feature::StrictTypes},
    {"insert into t (n, s) values ('abc', 'b')", Failure::Conversion, {245}, Feature::StrictTypes},
    {"select convert(datetime, 'abc')", Failure::Conversion, {241}, Feature::TSql},
    {"exec sp_nada_nada", Failure::Statement, {2812}, Feature::TSql},
};

TEST_P(ErrorsContract, EveryRefusalTellsItsKindAndNumber) {
  Db().Execute("create table t (n int not null primary key, s varchar(5) not null)");
  Db().Execute("insert into t values (1, 'a')");
  for (const BadStatement& bad : kBadStatements) {
    SCOPED_TRACE(bad.sql);
    if (bad.needs && Lacks(*bad.needs)) continue;
    const auto error = ErrorOf([&] { Db().Execute(bad.sql); });
    ASSERT_TRUE(error);
    EXPECT_STRNE(error->what(), "");
    EXPECT_EQ(Text("select s from t"), "a") << "the connection works on and nothing was kept";
    if (Lacks(Feature::Numbers)) continue;
    EXPECT_EQ(error->Kind(), bad.failure) << error->what();
    EXPECT_THAT(bad.natives, testing::Contains(error->Native())) << error->what();
  }
}

TEST_P(ErrorsContract, QueriesFailAsStatementsDo) {
  Db().Execute("create table t (n int)");
  EXPECT_TRUE(ErrorOf([&] { Db().Query("select * from nada"); }));
  EXPECT_TRUE(ErrorOf([&] { Db().Query("select * from t where nada=?", {1}); }));
  EXPECT_EQ(Number("select count(*) from t"), 0) << "a failed query does not keep the connection busy";
}

TEST_P(ErrorsContract, UnreachableServersFailWithinTheTimeout) {
  const auto start = std::chrono::steady_clock::now();
  for (const auto& error :
       {ErrorOf([&] { Server().OpenUnknownServer(); }), ErrorOf([&] { Server().OpenUnknownDatabase(); })}) {
    ASSERT_TRUE(error);
    EXPECT_EQ(error->Kind(), Failure::NoServer) << error->what();
    EXPECT_EQ(error->Number(), static_cast<std::int32_t>(0x80004005));
  }
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(40));
}

TEST_P(ErrorsContract, AWrongPasswordIsNotAMissingServer) {
  if (Lacks(Feature::Logins)) GTEST_SKIP();
  const auto error = ErrorOf([&] { Server().OpenWithPassword("segredo}x=1;y"); });
  ASSERT_TRUE(error);
  EXPECT_EQ(error->Kind(), Failure::WrongLogin) << error->what();
  EXPECT_EQ(error->Native(), 18456);
  EXPECT_THAT(error->what(), Not(HasSubstr("segredo")));
  const auto database = ErrorOf([&] { Server().OpenUnknownDatabase(); });
  ASSERT_TRUE(database);
  EXPECT_THAT((std::vector<int>{4060, 911}), testing::Contains(database->Native()));
}

}  // namespace
}  // namespace korvel::test
