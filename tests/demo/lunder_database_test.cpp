#include "demo/lunder_database.h"

#include <gtest/gtest.h>

#include <fmt/format.h>

#include <map>
#include <set>

#include "support/scripted_world.h"
#include "toolkit/progress_scope.h"
#include "toolkit/text.h"

namespace korvel::demo {
namespace {

/// A server with a filled database "Lunder".
class Books {
 public:
  explicit Books(std::int64_t lines, int year = 2025) {
    server.Run("master", "create database Lunder");
    const auto connection = server.Open("Lunder");
    summary = FillLunder(*connection, {.year = year, .lines = lines}, server.progress);
  }
  std::vector<std::string> Rows(const std::string& query) { return server.Rows("Lunder", query); }

  test::TestServer server;
  LunderSummary summary;
};

class LunderBooks : public testing::Test {
 protected:
  static void SetUpTestSuite() { books_ = new Books(3000); }
  static void TearDownTestSuite() { delete books_; }
  static Books* books_;  // made once: the tests only read it
};
Books* LunderBooks::books_ = nullptr;

TEST_F(LunderBooks, HoldAboutTheLinesAskedFor) {
  EXPECT_EQ(books_->Rows("select count(NumRegisto) from MovDiario"),
            std::vector<std::string>{std::to_string(books_->summary.lines)});
  EXPECT_GT(books_->summary.lines, 2850);
  EXPECT_LT(books_->summary.lines, 3150);
}

TEST_F(LunderBooks, BalanceEntryByEntryUnderNumbersOfTheirOwn) {
  std::map<std::string, std::int64_t> differences;
  std::map<std::string, std::set<std::string>> texts;
  const auto connection = books_->server.Open("Lunder");
  auto rows = connection->Query("select Data,Diario,Numero,Valor,Afecta,Descricao from MovDiario");
  for (; !rows.Eof(); rows.MoveNext()) {
    const std::string key = fmt::format("{} {} {}", rows.Text(0), rows.Text(1), rows.Text(2));
    differences[key] += (rows.Text(4) == "D" ? 1 : -1) * rows.Money(3).Units();
    texts[key].insert(std::string(rows.Text(5)));
    EXPECT_GT(rows.Money(3).Units(), 0);
  }
  EXPECT_EQ(static_cast<std::int64_t>(differences.size()), books_->summary.entries);
  for (const auto& [key, difference] : differences) EXPECT_EQ(difference, 0) << key;
  for (const auto& [key, said] : texts) EXPECT_EQ(said.size(), 1U) << "two entries under " << key;
}

TEST_F(LunderBooks, UseNumbersThatTheFileTakes) {
  bool plus = false;
  bool minus = false;
  for (const std::string& number : books_->Rows("select distinct Numero from MovDiario")) {
    EXPECT_TRUE(toolkit::SoAlfanumerico(number)) << number;
    EXPECT_LE(number.size(), 20U);
    plus = plus || number.find('+') != number.npos;
    minus = minus || number.find('-') != number.npos;
  }
  EXPECT_TRUE(plus);
  EXPECT_TRUE(minus);
}

TEST_F(LunderBooks, PostToMovementAccountsAlone) {
  EXPECT_EQ(books_->Rows("select distinct isnull(Contas.Tipo,'?') from MovDiario "
                         "left outer join Contas on MovDiario.ContaSP=Contas.ContaSP"),
            std::vector<std::string>{"M"});
}

TEST_F(LunderBooks, HaveEntriesInTheJournalOfEveryRole) {
  for (const char* role : {"DiSi", "DiTi", "DiTc", "DiTm", "DiAp", "DiIl", "DiEn"}) {
    const std::string journal =
        books_->server.One("Lunder", std::string("select ") + role + " from Configura");
    ASSERT_FALSE(journal.empty()) << role;
    EXPECT_FALSE(
        books_->Rows("select top 1 NumRegisto from MovDiario where Diario='" + journal + "'").empty())
        << role;
    EXPECT_FALSE(books_->Rows("select Descricao from Diarios where Codigo='" + journal + "'").empty())
        << role;
  }
}

TEST_F(LunderBooks, FillTheYearAndNoDayOutsideIt) {
  EXPECT_EQ(books_->Rows("select min(Data),max(Data) from MovDiario"),
            std::vector<std::string>{"2025-01-01\t2025-12-31"});
  EXPECT_EQ(books_->Rows("select distinct substring(Data,6,2) as Mes from MovDiario order by Mes").size(),
            12U);
  EXPECT_EQ(books_->Rows("select distinct Data from MovDiario where Diario='00'"),
            std::vector<std::string>{"2025-01-01"});
}

TEST_F(LunderBooks, NameTheTaxpayerOfEveryRecapitulativeLine) {
  EXPECT_EQ(books_->Rows("select NumRegisto from MovDiario where ValRecap<>0 and isnull(Contribuinte,'')=''"),
            std::vector<std::string>{});
  EXPECT_FALSE(books_
                   ->Rows("select top 1 MovDiario.NumRegisto from MovDiario inner join Contas "
                          "on MovDiario.ContaSP=Contas.ContaSP where Contas.RCRF='RC' and ValRecap<>0")
                   .empty());
  EXPECT_EQ(books_->Rows(
                "select MovDiario.NumRegisto from MovDiario inner join Contas on "
                "MovDiario.ContaSP=Contas.ContaSP where Contas.RCRF='RF' and ValRecap<>0 and PrefixoNif=''"),
            std::vector<std::string>{});
}

TEST(LunderDatabase, IsTheSameWhereverItIsMade) {
  Books first(700, 2024);
  Books second(700, 2024);
  for (const char* table : {"Contas", "MovDiario", "TaxasIva"}) {
    const std::string all = std::string("select * from ") + table + " order by NumRegisto";
    EXPECT_EQ(first.Rows(all), second.Rows(all)) << table;
  }
}

TEST(LunderDatabase, IsLeftEmptyByACancelledRun) {
  test::TestServer server;
  server.Run("master", "create database Lunder");
  server.progress.cancelAfter = 0;
  const auto connection = server.Open("Lunder");
  EXPECT_THROW(FillLunder(*connection, {}, server.progress), toolkit::Cancelled);
  EXPECT_EQ(server.Rows("Lunder", "select name from sysobjects where xtype='U'"), std::vector<std::string>{});
  EXPECT_EQ(server.progress.open, 0);
}

TEST(LunderDatabase, TakesNoMoreStatementsForMoreLines) {
  Books small(1000);
  Books large(9000);
  // Rows travel in batches of at least 500, so the tenfold rows may take some batches more, not statements a row.
  EXPECT_LT(large.server.statements.size(), small.server.statements.size() + 9000 / 500 + 3);
}

}  // namespace
}  // namespace korvel::demo
