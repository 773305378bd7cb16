#include <gtest/gtest.h>

#include <fmt/format.h>

#include <map>
#include <set>

#include "demo/books_world.h"
#include "toolkit/text.h"

namespace korvel::demo {
namespace {

class LedgerBooks : public testing::Test {
 protected:
  static void SetUpTestSuite() { books_ = new Books(3000); }
  static void TearDownTestSuite() { delete books_; }
  static Books* books_;  // made once: the tests only read it
};
Books* LedgerBooks::books_ = nullptr;

TEST_F(LedgerBooks, HoldAboutTheLinesAskedFor) {
  EXPECT_EQ(books_->Lunder("select count(NumRegisto) from MovDiario where Data>='2025-01-01'"),
            std::vector<std::string>{std::to_string(books_->summary.lines)});
  EXPECT_GT(books_->summary.lines, 2850);
  EXPECT_LT(books_->summary.lines, 3150);
}

TEST_F(LedgerBooks, BalanceEntryByEntryUnderNumbersOfTheirOwn) {
  std::map<std::string, std::int64_t> differences;
  std::map<std::string, std::set<std::string>> texts;
  const auto connection = books_->server.Open("Lunder");
  auto rows = connection->Query(
      "select Data,Diario,Numero,Valor,Afecta,Descricao from MovDiario where Data>='2025-01-01'");
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

TEST_F(LedgerBooks, UseNumbersThatTheFileTakes) {
  bool plus = false;
  bool minus = false;
  for (const std::string& number : books_->Lunder("select distinct Numero from MovDiario")) {
    EXPECT_TRUE(toolkit::SoAlfanumerico(number)) << number;
    EXPECT_LE(number.size(), 20U);
    plus = plus || number.find('+') != number.npos;
    minus = minus || number.find('-') != number.npos;
  }
  EXPECT_TRUE(plus);
  EXPECT_TRUE(minus);
}

TEST_F(LedgerBooks, PostToMovementAccountsAlone) {
  EXPECT_EQ(books_->Lunder("select distinct isnull(Contas.Tipo,'?') from MovDiario "
                           "left outer join Contas on MovDiario.ContaSP=Contas.ContaSP"),
            std::vector<std::string>{"M"});
}

TEST_F(LedgerBooks, HaveEntriesInTheJournalOfEveryRole) {
  for (const char* role : {"DiSi", "DiTi", "DiTc", "DiTm", "DiAp", "DiIl", "DiEn"}) {
    const std::string journal =
        books_->server.One("Lunder", std::string("select ") + role + " from Configura");
    ASSERT_FALSE(journal.empty()) << role;
    EXPECT_FALSE(
        books_->Lunder("select top 1 NumRegisto from MovDiario where Diario='" + journal + "'").empty())
        << role;
    EXPECT_FALSE(books_->Lunder("select Descricao from Diarios where Codigo='" + journal + "'").empty())
        << role;
  }
}

TEST_F(LedgerBooks, FillTwoYearsAndNoDayOutsideThem) {
  EXPECT_EQ(books_->Lunder("select min(Data),max(Data) from MovDiario"),
            std::vector<std::string>{"2024-01-01\t2025-12-31"});
  EXPECT_EQ(books_->Lunder("select distinct substring(Data,1,7) as Mes from MovDiario order by Mes").size(),
            24U);
  EXPECT_EQ(books_->Lunder("select distinct Data from MovDiario where Diario='00' order by Data"),
            (std::vector<std::string>{"2024-01-01", "2025-01-01"}));
}

TEST_F(LedgerBooks, OpenTheYearAsTheOneBeforeClosed) {
  const auto balances = [&](const std::string& where) {
    return books_->Lunder(
        "select case when ContaSP='818' then '561' else ContaSP end as Conta,sum(case when Afecta='D' then "
        "Valor else -Valor end) as Saldo from MovDiario where " +
        where +
        " group by case when ContaSP='818' then '561' else ContaSP end having sum(case when Afecta='D' then "
        "Valor else -Valor end)<>0 order by Conta");
  };
  const auto closed = balances("Data<'2025-01-01'");
  EXPECT_GT(closed.size(), 10U);
  EXPECT_EQ(balances("Data>='2025-01-01' and Diario='00'"), closed);
  EXPECT_EQ(books_->Lunder("select distinct ContaSP from MovDiario where Diario='00' and "
                           "(ContaSP like '6%' or ContaSP like '7%')"),
            std::vector<std::string>{});
}

TEST_F(LedgerBooks, NameTheTaxpayerOfEveryRecapitulativeLine) {
  EXPECT_EQ(
      books_->Lunder("select NumRegisto from MovDiario where ValRecap<>0 and isnull(Contribuinte,'')=''"),
      std::vector<std::string>{});
  EXPECT_FALSE(books_
                   ->Lunder("select top 1 MovDiario.NumRegisto from MovDiario inner join Contas "
                            "on MovDiario.ContaSP=Contas.ContaSP where Contas.RCRF='RC' and ValRecap<>0")
                   .empty());
  EXPECT_EQ(books_->Lunder(
                "select MovDiario.NumRegisto from MovDiario inner join Contas on "
                "MovDiario.ContaSP=Contas.ContaSP where Contas.RCRF='RF' and ValRecap<>0 and PrefixoNif=''"),
            std::vector<std::string>{});
}

}  // namespace
}  // namespace korvel::demo
