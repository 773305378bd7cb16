#include <gtest/gtest.h>

#include <fmt/format.h>

#include "contract/contract.h"
#include "data/odbc/bound_parameters.h"
#include "data/odbc/odbc_connection.h"
#include "data/odbc/open.h"
#include "support/tds/markers.h"
#include "support/tds/raw_client.h"
#include "support/tds/tds_server.h"
#include "support/temp_folder.h"

namespace korvel::test {
namespace {

using data::Connection;
using data::Currency;
using data::DateTime;
using data::Parameter;

/// The test server itself, by what clients other than our driver ask of it.
class TdsPartner : public testing::Test {
 protected:
  std::string Text(std::string_view version, std::string_view database = "master") const {
    return fmt::format(
        "Driver=FreeTDS;Server=127.0.0.1;Port={};UID=sa;PWD=;TDS_Version={};ClientCharset=UTF-8;Database={}",
        server.Port(), version, database);
  }

  /// What the table of every type holds: a row of values, a row of NULLs.
  static void ExpectValues(Connection& db, const std::string& large) {
    auto rows = db.Query("select * from t order by n desc");
    EXPECT_EQ(rows.Integer("n"), -5'000'000'000);
    EXPECT_EQ(rows.Text("q"), "123.456700");
    EXPECT_EQ(rows.Money("m"), Currency::FromUnits(-99));
    EXPECT_EQ(rows.Get("f"), data::Value(2.5));
    EXPECT_EQ(rows.Date("d"), (DateTime{2009, 2, 28, 12, 30, 45, 123}));
    EXPECT_EQ(rows.Date("c"), (DateTime{2009, 2, 28, 12, 30}));
    EXPECT_EQ(rows.Text("s"), "ç € '?'");
    EXPECT_TRUE(rows.Text("x") == large);
    rows.MoveNext();
    for (std::size_t i = 0; i < rows.Fields().size(); ++i) EXPECT_TRUE(rows.IsNull(i)) << i;
  }

  TempFolder folder;
  tds::TdsServer server{folder.Path(), "PARCEIRO"};
};

TEST_F(TdsPartner, EveryVersionCarriesTheSameValuesAndTransactions) {
  for (const char* version : {"7.1", "7.2", "7.3", "7.4"}) {
    SCOPED_TRACE(version);
    const auto db = data::odbc::OpenText(Text(version), 10);
    db->Execute(
        "create table t (n bigint, q numeric(18,6), m money, f float, d datetime, c smalldatetime, "
        "s varchar(50), x text)");
    const std::string large(70'000, 'z');
    const std::vector<Parameter> row = {std::int64_t{-5'000'000'000},
                                        Currency::FromUnits(1'234'567),
                                        Currency::FromUnits(-99),
                                        2.5,
                                        DateTime{2009, 2, 28, 12, 30, 45, 123},
                                        DateTime{2009, 2, 28, 12, 30},
                                        "ç € '?'",
                                        std::string_view(large)};
    db->Execute("insert into t values (?,?,?,?,?,?,?,?)", row);
    db->Execute("insert into t values (null,?,null,null,null,null,null,null)", {data::Null()});
    ExpectValues(*db, large);
    for (const bool kept : {false, true}) {
      db->BeginTrans();
      db->Execute("delete from t");
      kept ? db->CommitTrans() : db->RollbackTrans();
      EXPECT_EQ(data::odbc::OpenText(Text(version), 10)->Query("select count(*) as n from t").Integer("n"),
                kept ? 0 : 2);
    }
    db->Execute("drop table t");
  }
}

TEST_F(TdsPartner, PreparedStatementsRunAgain) {
  const auto link = std::make_shared<data::odbc::Link>(Text("7.4"), 10);
  for (const std::string_view sql : {"select ?+1 as n, ? as s", "select ? as n, ? as s"}) {
    data::odbc::Statement statement(link);
    statement.Check(SQLPrepare(statement.Get(), reinterpret_cast<SQLCHAR*>(const_cast<char*>(sql.data())),
                               static_cast<SQLINTEGER>(sql.size())));
    for (const int n : {1, 2, 3}) {
      const Parameter values[] = {n, "texto"};
      data::odbc::BoundParameters bound(values);
      bound.Bind(statement);
      statement.Check(SQLExecute(statement.Get()));
      statement.Check(SQLFetch(statement.Get()));
      SQLBIGINT read = 0;
      statement.Check(SQLGetData(statement.Get(), 1, SQL_C_SBIGINT, &read, 0, nullptr));
      EXPECT_EQ(read, sql.starts_with("select ?+1") ? n + 1 : n);
      statement.Check(SQLFreeStmt(statement.Get(), SQL_CLOSE));
    }
  }
}

TEST_F(TdsPartner, LoginsAreReadAsWritten) {
  for (const std::string_view password :
       {"simples", "com espaço", "a;b=c", "{chavetas}", "}fim", "a;}", " ç'\"\\ "}) {
    SCOPED_TRACE(password);
    data::OpenOdbc("FreeTDS", {server.Address(), "master", "sa", false, {}}, "", 10);
    ErrorOf([&] { data::OpenOdbc("FreeTDS", {server.Address(), "master", "sa", false, {}}, password, 10); });
    const auto messages = server.Messages();
    EXPECT_EQ(tds::ReadLogin(messages.back().payload).password, password);
  }
}

TEST_F(TdsPartner, AnAttentionEndsALongAnswer) {
  const auto db = data::odbc::OpenText(Text("7.4"), 10);
  db->Execute("create table t (n int, s varchar(1000))");
  const std::string_view columns[] = {"n", "s"};
  const auto batch = db->OpenBatch("t", columns);
  const std::string text(1000, 'x');
  for (int n = 0; n < 6000; ++n) batch->Add(std::vector<Parameter>{n, std::string_view(text)});
  batch->Finish();
  const auto start = std::chrono::steady_clock::now();
  for (int i = 0; i < 5; ++i) {
    EXPECT_EQ(db->Query("select * from t order by n").Integer("n"), 0);
  }
  const auto cancelled = std::chrono::steady_clock::now() - start;
  int n = 0;
  for (auto rows = db->Query("select * from t order by n"); !rows.Eof(); rows.MoveNext()) ++n;
  EXPECT_EQ(n, 6000);
  EXPECT_LT(cancelled, 5 * (std::chrono::steady_clock::now() - start - cancelled));
}

TEST(TdsMarkers, NamesBecomeMarksOutsideQuotes) {
  const struct {
    const char* sql;
    const char* marked;
    std::vector<std::size_t> order = {};
  } cases[] = {
      {"select @P1, @p2 from t where a=@P1", "select ?, ? from t where a=?", {0, 1, 0}},
      {"select '@P1', \"@P1\", [@P1], @P11, @@P1, x@P1",
       "select '@P1', \"@P1\", [@P1], @P11, @@P1, x@P1",
       {}},
      {"/* @P1 */ select @P2 -- @P1\n, @P1", "/* @P1 */ select ? -- @P1\n, ?", {1, 0}},
      {"select 'a''@P1', @P2", "select 'a''@P1', ?", {1}},
      {"select '@P1", "select '@P1", {}},
      {"@P1", "?", {0}},
      {"", "", {}},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(each.sql);
    const tds::Marked marked = tds::MarkParameters(each.sql, {"@P1", "@P2"});
    EXPECT_EQ(marked.sql, each.marked);
    EXPECT_EQ(marked.order, each.order);
  }
  EXPECT_EQ(tds::DeclaredNames("@P1 numeric(10,2), @nome varchar(20) output,@c int"),
            (std::vector<std::string>{"@P1", "@nome", "@c"}));
  EXPECT_TRUE(tds::DeclaredNames("").empty());
}

}  // namespace
}  // namespace korvel::test
