#include "accounting/ledger_entries.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "lunder_world.h"

namespace korvel::accounting {
namespace {

using test::MovDiario;
using testing::ElementsAre;

class LedgerEntries : public test::LunderWorld {
 protected:
  LedgerEntries() { StageAccounts({"2111", "31"}); }

  bool Calculate() { return CalcularMovimentos(server.Context(), period, Confirmation::Skip); }
  std::vector<std::string> Entries(std::string_view columns) {
    return Staged("select " + std::string(columns) + " from TabGeneralLedgerEntriesPOC order by NumRegisto");
  }
  /// A line of an earlier run, and one of another period.
  void StageEarlierLines() {
    Company(
        "insert into TabGeneralLedgerEntriesPOC (FiscalYear,StartDate,EndDate,RecordID) values "
        "('2010','2010-01-01','2010-12-31','earlier'),('2009','2009-01-01','2009-12-31','other')");
  }
  std::vector<std::string> Records() { return Entries("RecordID"); }
};

TEST_F(LedgerEntries, LinesAreStagedInTheOrderOfTheJournal) {
  AddLines({{.numero = "2-B", .descricao = "D'Avila", .contribuinte = "501 234 567", .valRecap = "1"},
            {.contaSp = "31", .afecta = "C", .valor = "10.005", .numero = "1+A", .diario = "en"},
            {.afecta = "C", .valor = "0", .numero = "3"},
            {.contaSp = "2112", .valor = "1000"},
            {.data = "2011-01-01"},
            {.diario = "SI"}});
  Lunder("insert into Contas (ContaSP,CliFor,Tipo) values ('2111','C','M')");
  StageEarlierLines();
  ASSERT_TRUE(Calculate()) << LastText();
  EXPECT_THAT(
      Entries("NumberOfEntries,TotalDebit,TotalCredit,JournalID,JournalDescription,TransactionID,Period,"
              "Description,LineDescription,CustomerID,RecordID,DebitAmount,CreditAmount,GLPostingDate,"
              "FiscalYear,Utilizador"),
      ElementsAre(
          "NULL\tNULL\tNULL\tNULL\tNULL\tNULL\tNULL\tNULL\tNULL\tNULL\tother\tNULL\tNULL\tNULL\t2009\tNULL",
          "3\t10,00\t10,01\ten\tFim\t2010-03-05 en 1YA\t15\tEncerramento\tVenda\t\t2\t0\t10,01\t"
          "2010-03-06T10:20:30\t2010\tsa",
          "3\t10,00\t10,01\tV\tVendas\t2010-03-05 V 2KB\t3\tD'Avila\tD'Avila\t501234567\t1\t10\t0\t"
          "2010-03-06T10:20:30\t2010\tsa"));
  EXPECT_EQ(server.dialogs.LastFocus(), "lvwDocumentos");
}

TEST_F(LedgerEntries, OpeningBalancesAndSourceDocumentsComeInOnlyWhenAskedFor) {
  AddLines({{.diario = "SI"}, {.numero = "12FAC", .integracao = "1"}});
  ASSERT_TRUE(Calculate());
  EXPECT_THAT(Entries("NumberOfEntries,JournalID,SourceDocumentID"), ElementsAre("1\tV\t"));
  Company("update ParamGeral set GeneralLedgerEntries_IncluirSI=1");
  Company("update TabHeader set TaxAccountingBasis='I'");
  ASSERT_TRUE(Calculate());
  EXPECT_THAT(Entries("NumberOfEntries,JournalID,SourceDocumentID"), ElementsAre("2\tSI\t", "2\tV\tFAC12"));
}

TEST_F(LedgerEntries, AnAccountMayHaveSeveralRowsInTheChart) {
  AddLines({{.contribuinte = "5", .valRecap = "1"}});
  Lunder("insert into Contas (ContaSP,CliFor) values ('2111','C'),('2111','F')");
  ASSERT_TRUE(Calculate());
  EXPECT_EQ(Records().size(), 2u);
}

TEST_F(LedgerEntries, BadCodesStopBeforeAnythingIsDeleted) {
  const std::string rule = "\nApenas pode conter algarismos de 0 a 9 e letras de A a Z";
  const struct {
    MovDiario line;
    std::string text;
  } cases[] = {
      {{.diario = "V'1"}, "O Diário V'1 contém caracteres inválidos." + rule},
      {{.numero = "1ç"}, "O número do documento  1ç de 2010-03-05  contém caracteres inválidos." + rule},
      {{.numero = "ò", .diario = "V/"}, "O Diário V/ contém caracteres inválidos." + rule},
      {{.valor = "0", .numero = "1 2"},
       "O número do documento  1 2 de 2010-03-05  contém caracteres inválidos." + rule},
  };
  StageEarlierLines();
  for (const auto& one : cases) {
    Lunder("delete from MovDiario");
    AddLines({{}, one.line});
    EXPECT_FALSE(Calculate());
    EXPECT_EQ(LastText(), one.text);
    EXPECT_THAT(Records(), ElementsAre("earlier", "other"));
  }
  Lunder("delete from MovDiario");
  AddLines({{.contaSp = "9", .numero = "ç"}, {}});
  EXPECT_TRUE(Calculate()) << "those of accounts that are not staged do not matter";
}

TEST_F(LedgerEntries, ALineWithoutARequiredValueLeavesThePeriodEmpty) {
  const struct {
    MovDiario line;
    std::string text;
  } cases[] = {
      {{.utilizador = "NULL"},
       "O Campo [Utilizador] está Vazio!\nNão pode Gravar\n\n[ Data: 2010-03-05  Diário: V  Conta: 2111 ]"},
      {{.diario = "ZZ"},
       "O Campo [Descrição do Diário] está Vazio!\nNão pode Gravar\n\n[ Data: 2010-03-05  Diário: ZZ  Conta: "
       "2111 ]"},
      {{.data = "2010-05-06", .dataSys = "NULL"},
       "O Campo [Data de Gravação do Movimento] está Vazio!\nNão pode Gravar\n\n"
       "[ Data: 2010-05-06  Diário: V  Conta: 2111 ]"},
  };
  for (const auto& one : cases) {
    Lunder("delete from MovDiario");
    Company("delete from TabGeneralLedgerEntriesPOC");
    StageEarlierLines();
    AddLines({{.data = "2010-01-02"}, one.line});
    EXPECT_FALSE(Calculate());
    EXPECT_EQ(LastText(), one.text);
    EXPECT_EQ(server.dialogs.LastTitle(), "AVISO");
    EXPECT_THAT(Records(), ElementsAre("other"));
  }
}

TEST_F(LedgerEntries, AFailureInTheMiddleLeavesTheEarlierLines) {
  StageEarlierLines();
  std::vector<MovDiario> lines(700);
  lines.push_back({.numero = std::string(30, '9')});  // too long for `DocArchivalNumber`
  AddLines(lines);
  EXPECT_FALSE(Calculate());
  EXPECT_EQ(LastText().find("Existem valores que não cabem no campo de destino!\n"), 0u) << LastText();
  EXPECT_THAT(Records(), ElementsAre("earlier", "other"));
}

TEST_F(LedgerEntries, CancellingLeavesTheEarlierLines) {
  StageEarlierLines();
  AddLines({{}, {}});
  for (const int shows : {0, 1}) {  // in the verification, and among the rows being written
    server.progress.shown = 0;
    server.progress.cancelAfter = shows;
    EXPECT_FALSE(Calculate());
    EXPECT_THAT(Records(), ElementsAre("earlier", "other"));
    EXPECT_EQ(server.progress.open, 0);
  }
  EXPECT_TRUE(server.dialogs.messages.empty());
}

TEST_F(LedgerEntries, NothingIsDoneWithoutConsentOrPeriod) {
  AddLines({{}});
  server.dialogs.answers = {1};
  EXPECT_FALSE(CalcularMovimentos(server.Context(), period, Confirmation::Ask));
  EXPECT_EQ(server.dialogs.questions.back().text, "Confirma o Processamento?");
  EXPECT_THAT(server.dialogs.questions.back().buttons, ElementsAre("&Sim", "&Não"));
  EXPECT_FALSE(CalcularMovimentos(server.Context(), {}, Confirmation::Ask));
  EXPECT_TRUE(Records().empty());
  server.dialogs.answers = {0};
  EXPECT_TRUE(CalcularMovimentos(server.Context(), period, Confirmation::Ask));
  EXPECT_EQ(Records().size(), 1u);
}

TEST_F(LedgerEntries, MissingTablesAndServersAreTold) {
  StageEarlierLines();
  Lunder("drop table Diarios");
  EXPECT_FALSE(Calculate());
  EXPECT_NE(LastText().find("Não existe a tabela [Diarios]!"), std::string::npos) << LastText();
  Company("update ParamGeral set DBase_Lunder='Outra'");
  server.dialogs.Clear();
  EXPECT_FALSE(Calculate());
  EXPECT_NE(LastText().find("Não foi possível estabelecer ligação com a empresa"), std::string::npos)
      << LastText();
  EXPECT_THAT(Records(), ElementsAre("earlier", "other"));
}

TEST_F(LedgerEntries, StatementsDoNotGrowWithTheLines) {
  const auto statements = [&](std::size_t lines) {
    Lunder("delete from MovDiario");
    AddLines(std::vector<MovDiario>(lines));
    server.statements.clear();
    EXPECT_TRUE(Calculate());
    return server.statements.size();
  };
  const std::size_t few = statements(10);
  EXPECT_LE(statements(400), few + 1);
  EXPECT_LE(statements(2000), few + 5);
}

class LedgerReview : public LedgerEntries {
 protected:
  void Stage(std::size_t lines) {
    AddLines(std::vector<MovDiario>(lines));
    ASSERT_TRUE(Calculate());
  }
  periods::Grid Reviewed() {
    const auto review = VerRegistos(server.Context(), period, Confirmation::Skip);
    periods::Grid grid;
    periods::GridRow row;
    while (review && review->Next(row)) grid.push_back(row);
    return grid;
  }
};

TEST_F(LedgerReview, AsksThenReadsInTheOrderOfTheJournalWhatThereIs) {
  EXPECT_EQ(VerRegistos(server.Context(), period, Confirmation::Ask), nullptr);
  EXPECT_EQ(LastText(), "Não tem registos para Visualizar.");
  Stage(1200);
  server.dialogs.answers = {1, 0};
  EXPECT_EQ(VerRegistos(server.Context(), period, Confirmation::Ask), nullptr);
  EXPECT_EQ(server.dialogs.questions.back().text, "Confirma a visualização de 1200 Registos?");
  const auto review = VerRegistos(server.Context(), period, Confirmation::Ask);
  ASSERT_NE(review, nullptr);
  EXPECT_EQ(review->Caption(), "Movimentos Contabilísticos - 1.200");
  EXPECT_EQ(review->Count(), 1200);
  std::vector<std::string> first;
  periods::GridRow row;
  while (first.size() < 4 && review->Next(row)) first.push_back(row.cells[19]);
  EXPECT_THAT(first, ElementsAre("1", "10", "100", "1000"));  // the key of a line is text
}

TEST_F(LedgerReview, WhatWasReviewedCanBeSavedAgain) {
  Stage(3);
  const std::string columns =
      "select "
      "NumberOfEntries,TotalDebit,Journal,JournalID,[Transaction],TransactionID,Period,TransactionDate,"
      "SourceID,Description,DocArchivalNumber,TransactionType,GLPostingDate,RecordID,AccountID,"
      "LineDescription,DebitAmount,CreditAmount,Utilizador from TabGeneralLedgerEntriesPOC order by RecordID";
  const auto before = Staged(columns);
  periods::Grid grid = Reviewed();
  ASSERT_TRUE(GravarMovimentos(server.Context(), period, grid));
  EXPECT_EQ(Staged(columns), before);

  grid.erase(grid.begin());
  grid[0].cells[5] = "";  // saving from the grid tests nothing
  ASSERT_TRUE(GravarMovimentos(server.Context(), period, grid));
  EXPECT_THAT(Staged("select JournalID,RecordID from TabGeneralLedgerEntriesPOC order by RecordID"),
              ElementsAre("\t2", "V\t3"));
}

}  // namespace
}  // namespace korvel::accounting
