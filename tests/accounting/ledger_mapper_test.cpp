#include "accounting/ledger_mapper.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include "accounting/ledger_writer.h"
#include "support/money.h"

namespace korvel::accounting {
namespace {

using namespace ledger;  // the columns
using test::Money;

JournalLine Sale() {
  JournalLine line;
  line.numRegisto = 4711;
  line.contaSp = "21111";
  line.afecta = "D";
  line.diario = "V";
  line.data = "2010-03-05";
  line.numero = "12-3+FAC";
  line.descricao = "Venda a O'Neill & Filhos";
  line.utilizador = "ana";
  line.contribuinte = " 501 234 567 ";
  line.tipoMovSaft = "N";
  line.valor = Money("12.5");
  line.hasDataSys = true;
  line.dataSys = {2010, 4, 1, 9, 5, 7, 0};
  return line;
}

class LedgerMapperTest : public testing::Test {
 protected:
  LedgerMapperTest() {
    journals_["V"] = {"Vendas", nullptr};
    journals_["EN"] = {"Fim do ano", &kClosing};
  }
  LedgerLine Mapped(const JournalLine& line) { return LedgerMapper(run_, journals_).Map(line); }

  static constexpr JournalRole kClosing{"15", "Encerramento"};
  Journals journals_;
  LedgerRun run_{.integrated = true,
                 .casas = 2,
                 .marks = {},
                 .totals = {.entries = 12, .debit = Money("1234567.5"), .credit = Money("0")}};
};

TEST_F(LedgerMapperTest, FillsAllColumns) {
  JournalLine line = Sale();
  line.integracao = 1;
  EXPECT_EQ(fmt::format("{}", fmt::join(Mapped(line), "|")),
            "4711|12|1234567,50|0,00||V|Vendas||2010-03-05 V 12K3YFAC|3|2010-03-05|ana|"
            "Venda a O'Neill & Filhos|12K3YFAC|N|2010-04-01T09:05:07||||4711|21111|FAC12K3Y|"
            "2010-04-01T09:05:07|Venda a O'Neill & Filhos|12,5|0");
}

TEST_F(LedgerMapperTest, TheTaxpayerGoesToTheSideOfItsAccount) {
  const struct {
    const char *cliFor, *rcrf, *valRecap, *customer, *supplier;
  } cases[] = {
      {"C", "", "1", "501234567", ""},
      {"F", "", "-1", "", "501234567"},
      {"R", "RC", "1", "501234567", ""},
      {"R", "RF", "1", "", "501234567"},
      {"F", "RC", "1", "501234567", ""},
      {"C", "RF", "1", "501234567", ""},
      {"R", "", "1", "", ""},
      {"C", "", "0", "", ""},
      {"F", "RF", "0", "", ""},
  };
  for (const auto& one : cases) {
    JournalLine line = Sale();
    line.cliFor = one.cliFor;
    line.rcrf = one.rcrf;
    line.valRecap = Money(one.valRecap);
    const LedgerLine staged = Mapped(line);
    EXPECT_EQ(staged[kCustomerId], one.customer) << one.cliFor << one.rcrf << one.valRecap;
    EXPECT_EQ(staged[kSupplierId], one.supplier) << one.cliFor << one.rcrf << one.valRecap;
  }
}

TEST_F(LedgerMapperTest, OnlyLinesOfTheBillingProductNameTheirDocument) {
  const struct {
    bool integrated;
    int integracao;
    const char *numero, *document;
  } cases[] = {{true, 1, "12-FAC", "FAC12K"}, {true, 1, "F+", ""},     {true, 1, "F+C", "FYC"},
               {true, 0, "12-FAC", ""},       {true, 2, "12-FAC", ""}, {false, 1, "12-FAC", ""}};
  for (const auto& one : cases) {
    run_.integrated = one.integrated;
    JournalLine line = Sale();
    line.integracao = one.integracao;
    line.numero = one.numero;
    EXPECT_EQ(Mapped(line)[kSourceDocumentId], one.document)
        << one.integrated << one.integracao << one.numero;
  }
}

TEST_F(LedgerMapperTest, AmountsAreRoundedAndTakeTheirSide) {
  const struct {
    const char *afecta, *valor, *debit, *credit;
  } cases[] = {{"D", "1.125", "1,13", "0"},
               {"C", "1.125", "0", "1,13"},
               {"C", "-1.125", "0", "-1,12"},
               {"D", "1000000", "1000000", "0"},
               {"D", "0.001", "0", "0"},
               {"X", "5", "0", "0"},
               {"", "5", "0", "0"}};
  for (const auto& one : cases) {
    JournalLine line = Sale();
    line.afecta = one.afecta;
    line.valor = Money(one.valor);
    const LedgerLine staged = Mapped(line);
    EXPECT_EQ(staged[kDebitAmount], one.debit) << one.afecta << one.valor;
    EXPECT_EQ(staged[kCreditAmount], one.credit) << one.afecta << one.valor;
  }
}

TEST_F(LedgerMapperTest, LongTextsAreCutByCharactersAndBlankOnesNamed) {
  std::string long30;
  for (int i = 0; i < 30; ++i) long30 += "ç";
  const std::string long60 = long30 + long30;
  JournalLine line = Sale();
  const std::string descricao = long60 + "x";
  line.descricao = descricao;
  line.utilizador = descricao;
  EXPECT_EQ(Mapped(line)[kDescription], long60);
  EXPECT_EQ(Mapped(line)[kLineDescription], long60);
  EXPECT_EQ(Mapped(line)[kSourceId], long30);
  line.descricao = "   ";
  EXPECT_EQ(Mapped(line)[kDescription], "Sem Descrição");
  EXPECT_EQ(Mapped(line)[kLineDescription], "Sem Descrição");
}

// What is kept from line to line must never leak into a line that has something else there.
TEST_F(LedgerMapperTest, TheResultDoesNotDependOnEarlierLines) {
  std::vector<JournalLine> lines(12, Sale());
  lines[1].numero = "9";
  lines[2].numero = "";
  lines[3].data = "2010-12-31";
  lines[4].data = "";
  lines[5].diario = "EN";
  lines[6].diario = "??";
  lines[7].hasDataSys = false;
  lines[7].dataSys = {};
  lines[8].dataSys.second = 8;
  lines[9].descricao = "";
  lines[10].contaSp = "";
  lines[11].cliFor = "C";
  lines[11].valRecap = Money("1");
  for (const JournalLine& before : lines) {
    for (const JournalLine& line : lines) {
      LedgerMapper mapper(run_, journals_);
      mapper.Map(before);
      EXPECT_EQ(mapper.Map(line), Mapped(line));
    }
  }
}

TEST_F(LedgerMapperTest, TheFirstEmptyRequiredValueIsNamed) {
  const struct {
    void (*spoil)(JournalLine&);
    const char* label;
  } cases[] = {
      {[](JournalLine& line) { line.diario = " "; }, "Diário"},
      {[](JournalLine& line) { line.diario = "XX"; }, "Descrição do Diário"},
      {[](JournalLine& line) { line.data = "sem data"; }, "Período"},
      {[](JournalLine& line) { line.utilizador = "  "; }, "Utilizador"},
      {[](JournalLine& line) { line.hasDataSys = false; }, "Data de Gravação do Movimento"},
      {[](JournalLine& line) { line.contaSp = ""; }, "Conta POC"},
      {[](JournalLine& line) { line.utilizador = line.contaSp = ""; }, "Utilizador"},
  };
  for (const auto& one : cases) {
    JournalLine line = Sale();
    one.spoil(line);
    const RequiredValue* empty = FirstEmpty(Mapped(line));
    ASSERT_NE(empty, nullptr) << one.label;
    EXPECT_EQ(empty->label, one.label);
  }
  EXPECT_EQ(FirstEmpty(Mapped(Sale())), nullptr);

  LedgerLine line = Mapped(Sale());
  line[kLineDescription] = " ";
  EXPECT_EQ(FirstEmpty(line)->label, "Descrição da Linha do Documento: GoTo SaidaForcada");
  line[kTransactionId] = "";
  EXPECT_EQ(FirstEmpty(line)->label, "Chave Única do Movimento");
}

}  // namespace
}  // namespace korvel::accounting
