#include <fmt/format.h>

#include "contract/contract.h"
#include "data/sql_text.h"

namespace korvel::test {
namespace {

using data::Currency;
using data::DateTime;
using data::Null;
using data::Parameter;
using data::Type;
using data::Value;

std::string Repeated(std::string_view text, std::size_t times) {
  std::string repeated;
  for (std::size_t i = 0; i < times; ++i) repeated += text;
  return repeated;
}

class ValuesContract : public Contract {
 protected:
  void InsertBatch(std::string_view table, const Parameter& value) {
    const std::string_view columns[] = {"x"};
    const auto batch = Db().OpenBatch(table, columns);
    batch->Add({&value, 1});
    batch->Finish();
  }
};
INSTANTIATE_TEST_SUITE_P(Drivers, ValuesContract, kAllDrivers, DriverName);

const std::string kTexts[] = {
    "",
    "a",
    "ç ã € Ñ ß",
    "o'brien e 'aspas' e \"aspas\"",
    "barra \\ no meio e no fim\\",
    "tab\t, linha\r\nnova\nlinha",
    "barra antes de linha\\\r\nnova e \\\nnova",
    "?",
    "'; drop table curto; --",
    "x' or '1'='1",
    "{fn now()} {d '2009-01-01'} {ts '1'}",
    "-- /* comentário",
    "100%_[a-z]",
    Repeated("0123456789", 800),
    Repeated("ã", 8000),
};

TEST_P(ValuesContract, TextsComeBackAsTheyWent) {
  Db().Execute("create table curto (x varchar(8000) null)");
  Db().Execute("create table longo (antes int null, x text null, depois varchar(5) null)");
  for (const char* table : {"curto", "longo"}) {
    for (const std::string& text : kTexts) {
      SCOPED_TRACE(table + (": " + text.substr(0, 40)));
      Db().Execute(fmt::format("insert into {} (x) values (?)", table), {text});
      InsertBatch(table, text);
      int count = 0;
      for (auto rows = Db().Query(fmt::format("select * from {}", table)); !rows.Eof();
           rows.MoveNext(), ++count) {
        EXPECT_EQ(rows.Text("x"), text);
        EXPECT_EQ(rows.Get("x"), Value(text));
      }
      EXPECT_EQ(count, 2);
      EXPECT_EQ(Db().Execute(fmt::format("delete from {}", table)), 2);
    }
  }
}

TEST_P(ValuesContract, BoundTextsMatchQuotedOnes) {
  Db().Execute("create table curto (x varchar(8000) null)");
  for (const std::string& text : kTexts) {
    // Within a statement's own text a T-SQL server joins two lines at a backslash.
    if (text.find("\\\r") != std::string::npos) continue;
    SCOPED_TRACE(text.substr(0, 40));
    Db().Execute("insert into curto (x) values (" + data::Quoted(text) + ")");
    EXPECT_EQ(Text("select x from curto"), text);
    if (text.size() <= 8000) {
      EXPECT_EQ(Db().Execute("delete from curto where x=?", {text}), 1);
    }
    Db().Execute("delete from curto");
  }
}

TEST_P(ValuesContract, LongTextsStandBetweenOtherColumns) {
  Db().Execute("create table longo (antes varchar(10), x text null, y text null, depois int)");
  const std::string large = Repeated("0123456789ç€\r\n'\\x", 20'000);
  for (int row = 0; row < 3; ++row) {
    const Parameter second = row == 1 ? Parameter() : Parameter("y");
    Db().Execute("insert into longo values (?,?,?,?)", {"antes", large, second, row});
  }
  int row = 0;
  for (auto rows = Db().Query("select * from longo order by depois"); !rows.Eof(); rows.MoveNext(), ++row) {
    EXPECT_EQ(rows.Integer("depois"), row);
    EXPECT_TRUE(rows.Text("x") == large) << "row " << row;
    EXPECT_EQ(rows.IsNull("y"), row == 1);
    EXPECT_EQ(rows.Text("y"), row == 1 ? "" : "y");
    EXPECT_EQ(rows.Text("antes"), "antes");
  }
  EXPECT_EQ(row, 3);
}

TEST_P(ValuesContract, ZeroBytesDoNotCutStatements) {
  const std::string text("a\0b", 3);
  Db().Execute("create table curto (x varchar(10) null)");
  InsertBatch("curto", text);
  Db().Execute("insert into curto (x) values (?)", {text});
  EXPECT_EQ(Number("select count(*) from curto"), 2);
  if (Lacks(Feature::ZeroBytes)) GTEST_SKIP();
  for (auto rows = Db().Query("select x from curto"); !rows.Eof(); rows.MoveNext())
    EXPECT_EQ(rows.Text("x"), text);
}

struct TypeCase {
  const char* declared;
  Type type;
  std::vector<Value> values;
  bool strict = false;  // needs StrictTypes
};

const TypeCase kTypes[] = {
    {"bit", Type::Bit, {0, 1}},
    {"smallint", Type::SmallInt, {-32768, 0, 32767}},
    {"int", Type::Int, {-2147483647 - 1, 0, 2147483647}},
    {"bigint", Type::BigInt, {std::int64_t{-9223372036854775807} - 1, 0, std::int64_t{9223372036854775807}}},
    {"numeric(18,0)",
     Type::Numeric,
     {std::int64_t{-999999999999999999}, 0, std::int64_t{999999999999999999}},
     true},
    {"numeric(18,0)", Type::Numeric, {-1, 0, 123456789}},
    {"numeric(10,2)", Type::Numeric, {Currency::FromUnits(45'000), Currency::FromUnits(-100)}},
    {"numeric(10,2)", Type::Numeric, {Currency::FromUnits(40'000)}, true},
    {"money", Type::Money, {Currency(), Currency::FromUnits(1), Currency::FromUnits(-12'345'678)}},
    {"money",
     Type::Money,
     {Currency::FromUnits(9223372036854775807), Currency::FromUnits(-9223372036854775807 - 1)},
     true},
    {"float", Type::Float, {0.0, -0.1, 1.5e300, 5e-300, 1234567.891}},
    {"smalldatetime", Type::SmallDateTime, {DateTime{1900, 1, 1}, DateTime{2079, 6, 6, 23, 59}}},
    {"datetime",
     Type::DateTime,
     {DateTime{1753, 1, 1}, DateTime{2009, 2, 28, 12, 30, 45, 123}, DateTime{9999, 12, 31, 23, 59, 59, 997}}},
    {"varchar(20)", Type::Varchar, {"", "€ 20"}},
    {"text", Type::Text, {"", "corpo"}},
};

TEST_P(ValuesContract, EveryTypeKeepsItsLimits) {
  for (const TypeCase& kind : kTypes) {
    SCOPED_TRACE(kind.declared);
    if (kind.strict && Lacks(Feature::StrictTypes)) continue;
    Db().Execute(fmt::format("create table tipo (x {} null)", kind.declared));
    for (const Value& value : kind.values) {
      SCOPED_TRACE(data::ToText(value));
      Db().Execute("insert into tipo (x) values (?)", {value});
      // Written as text, a date has the form that T-SQL alone reads without a doubt.
      const bool inBatch = !std::holds_alternative<DateTime>(value) || !Lacks(Feature::TSql);
      if (inBatch) InsertBatch("tipo", value);
      int count = 0;
      for (auto rows = Db().Query("select x from tipo"); !rows.Eof(); rows.MoveNext(), ++count) {
        EXPECT_EQ(rows.Fields()[0].type, kind.type);
        EXPECT_EQ(rows.Get("x"), value) << "read " << data::ToText(rows.Get("x"));
      }
      EXPECT_EQ(count, inBatch ? 2 : 1);
      Db().Execute("delete from tipo");
    }
    Db().Execute("drop table tipo");
  }
}

TEST_P(ValuesContract, NullReadsAsTheEmptyValueOfEachType) {
  for (const TypeCase& kind : kTypes) {
    SCOPED_TRACE(kind.declared);
    Db().Execute(fmt::format("create table tipo (x {} null)", kind.declared));
    Db().Execute("insert into tipo (x) values (?)", {Null()});
    InsertBatch("tipo", Null());
    int count = 0;
    for (auto rows = Db().Query("select x from tipo"); !rows.Eof(); rows.MoveNext(), ++count) {
      EXPECT_TRUE(rows.IsNull("x"));
      EXPECT_TRUE(rows.Get("x").IsNull());
      EXPECT_EQ(rows.Text("x"), "");
      EXPECT_EQ(rows.Integer("x"), 0);
      EXPECT_EQ(rows.Money("x"), Currency());
      EXPECT_EQ(rows.Date("x"), DateTime());
    }
    EXPECT_EQ(count, 2);
    Db().Execute("drop table tipo");
  }
}

TEST_P(ValuesContract, ValuesReadAsOtherTypes) {
  Db().Execute(
      "create table tipo (n int, v money, q numeric(10,2), d datetime, t varchar(30), m text, f float)");
  const DateTime date{2009, 2, 28, 12, 30, 45};
  const Currency amount = Currency::FromUnits(-75'000);
  Db().Execute("insert into tipo values (?,?,?,?,?,?,?)",
               {12, amount, amount, date, "34", "2009-02-28", 0.25});
  const auto rows = Db().Query("select * from tipo");
  EXPECT_EQ(rows.Text("n"), "12");
  EXPECT_EQ(rows.Money("n"), Currency::FromWhole(12));
  EXPECT_EQ(rows.Text("v"), "-7.5");
  EXPECT_EQ(rows.Integer("v"), -8) << "the server rounds money";
  EXPECT_EQ(rows.Integer("q"), -7) << "and cuts numeric";
  EXPECT_EQ(rows.Money("f"), Currency::FromUnits(2500));
  EXPECT_EQ(rows.Text("d"), "2009-02-28 12:30:45.000");
  EXPECT_EQ(rows.Integer("t"), 34);
  EXPECT_EQ(rows.Money("t"), Currency::FromWhole(34));
  EXPECT_EQ(rows.Date("m"), (DateTime{2009, 2, 28}));
  EXPECT_TRUE(ErrorOf([&] { rows.Integer("m"); })) << "a text that is no number is not read as one";
  EXPECT_TRUE(ErrorOf([&] { rows.Date("t"); }));
  EXPECT_EQ(rows.Text("N"), "12") << "column names in any case";
}

}  // namespace
}  // namespace korvel::test
