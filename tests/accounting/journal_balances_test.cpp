#include "accounting/journal_balances.h"

#include <gtest/gtest.h>

#include <random>

#include "lunder_world.h"
#include "support/money.h"

namespace korvel::accounting {
namespace {

using data::Currency;
using test::Money;
using test::MovDiario;

Balance Made(std::string_view debito, std::string_view credito, std::string_view saldo) {
  return {Money(debito), Money(credito), Money(saldo)};
}

class JournalBalances : public test::LunderWorld {
 protected:
  Balance Of(const BalanceQuery& query) {
    return GetValoresMovDiarioRST(*server.Open("LunderDemo"), query, server.session.gCasasDec);
  }
  void AddRaw(std::string_view values) {
    Lunder(
        "insert into MovDiario (ContaSP,Data,Diario,Afecta,Valor,ValRecap,ValIva,Sinal,SinalRecap) values " +
        std::string(values));
  }
};

TEST_F(JournalBalances, EachModeSumsTheAccountWithItsSubAccounts) {
  AddRaw(
      "('21','2010-01-01','V','D',100,10,1,1,1),('211','2010-02-01','V','C',30.005,20,2,-1,-1),"
      "('2111','2010-03-01','V','D',5.555,30,3,1,-1),('22','2010-03-01','V','C',1000,40,4,-1,1),"
      "('211','2010-04-01','SI','c',7,NULL,NULL,NULL,NULL),('21',NULL,'V','D',9000,0,0,1,1),"
      "(NULL,'2010-04-01','V','D',500,0,0,1,1),('2','2010-04-01','V','C',70,0,0,-1,1)");
  const BalanceQuery year{.conta = "21", .dataInicial = "2010-01-01", .dataFinal = "2010-12-31"};
  EXPECT_EQ(Of(year), Made("105.56", "37.01", "68.55"));

  BalanceQuery query = year;
  query.filtro1 = " and (Diario='V') ";
  EXPECT_EQ(Of(query), Made("105.56", "30.01", "75.55"));
  query.filtro2 = " and valor<50";
  EXPECT_EQ(Of(query), Made("5.56", "30.01", "-24.45"));

  query = year;
  query.tipoValor = AmountKind::VR;
  EXPECT_EQ(Of(query), Made("40", "20", "20"));
  query.tipoValor = AmountKind::VI;
  EXPECT_EQ(Of(query), Made("4", "2", "2"));

  query = year;
  query.modo = BalanceMode::Signed;
  EXPECT_EQ(Of(query), Made("0", "0", "75.55"));
  query.tipoValor = AmountKind::VR;
  EXPECT_EQ(Of(query), Made("0", "0", "-40"));

  query = year;
  query.modo = BalanceMode::PerAccount;  // 21: 100 to the debit; 211: 37.005 to the credit; 2111: 5.555
  EXPECT_EQ(Of(query), Made("105.56", "37.01", "68.55"));

  query = BalanceQuery{.conta = "21"};
  EXPECT_EQ(Of(query).debito, Money("9105.56"));
  query.conta = "9";
  EXPECT_EQ(Of(query), Balance());
}

TEST_F(JournalBalances, PerAccountNetsFallOnOneSide) {
  AddRaw(
      "('211','2010-01-01','V','D',100,0,0,1,1),('211','2010-01-02','V','C',40,0,0,-1,1),"
      "('212','2010-01-01','V','D',10,0,0,1,1),('212','2010-01-02','V','C',25,0,0,-1,1),"
      "('213','2010-01-01','V','D',5,0,0,1,1),('213','2010-01-02','V','C',5,0,0,-1,1)");
  EXPECT_EQ(Of({.modo = BalanceMode::PerAccount, .conta = "21"}), Made("60", "15", "45"));
}

TEST_F(JournalBalances, OneStatementGivesWhatSingleQueriesGive) {
  std::mt19937 random(45);
  const auto code = [&] {
    std::string text;
    for (std::size_t left = random() % 4 + 1; left > 0; --left) text += "12aA%_["[random() % 7];
    return text;
  };
  std::vector<MovDiario> lines(300);
  for (MovDiario& line : lines) {
    line.contaSp = random() % 20 == 0 ? "NULL" : code();
    line.afecta = std::string(1, "DCdX"[random() % 4]);
    line.valor = random() % 10 == 0
                     ? "NULL"
                     : Currency::FromUnits(static_cast<std::int64_t>(random() % 999999)).ToText();
    line.data = "2010-0" + std::to_string(random() % 9 + 1) + "-15";
    line.diario = random() % 3 == 0 ? "SI" : "V";
  }
  AddLines(lines);
  const auto lunder = server.Open("LunderDemo");
  const BalanceQuery query{
      .dataInicial = "2010-02-01", .dataFinal = "2010-07-31", .filtro1 = " and (Diario='V') "};
  const AccountBalances balances(*lunder, query, 2);
  for (int i = 0; i < 120; ++i) {
    const std::string conta = code();
    BalanceQuery single = query;
    single.conta = conta;
    EXPECT_EQ(balances.Of(conta), GetValoresMovDiarioRST(*lunder, single, 2)) << conta;
  }
}

}  // namespace
}  // namespace korvel::accounting
