#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "accounting/ledger_entries.h"
#include "lunder_world.h"

namespace korvel::accounting {
namespace {

using test::MovDiario;
using testing::ElementsAre;

class LedgerReviewTest : public test::LunderWorld {
 protected:
  LedgerReviewTest() { StageAccounts({"2111"}); }

  void Stage(std::size_t lines) {
    AddLines(std::vector<MovDiario>(lines));
    ASSERT_TRUE(CalcularMovimentos(server.Context(), period, Confirmation::Skip));
  }
  periods::Grid Reviewed() {
    const auto review = VerRegistos(server.Context(), period, Confirmation::Skip);
    periods::Grid grid;
    periods::GridRow row;
    while (review && review->Next(row)) grid.push_back(row);
    return grid;
  }
};

TEST_F(LedgerReviewTest, AsksThenReadsInTheOrderOfTheJournalWhatThereIs) {
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

TEST_F(LedgerReviewTest, WhatWasReviewedCanBeSavedAgain) {
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
