#include "periods/row_correction.h"

#include <gtest/gtest.h>

#include <array>

#include "support/scripted_world.h"

namespace korvel::periods {
namespace {

constexpr std::array<Column, 3> kColumns{{{.heading = "", .staged = "NumRegisto"},
                                          {.heading = "N.º Ident. Fiscal", .staged = "SupplierTaxID"},
                                          {.heading = "Web Site", .staged = "Website"}}};
constexpr StagedTable kTable{.table = "TabSupplierPOC", .columns = kColumns};

TEST(RowCorrection, ColumnsAreFoundByTheirStagedNames) {
  EXPECT_EQ(ColumnOf(kTable, "WebSite"), 2U);
  EXPECT_FALSE(ColumnOf(kTable, "CustomerID"));
  const auto field = [](std::string_view column) {
    return *std::ranges::find(CustomerFields(), column, &CorrectionField::column);
  };
  EXPECT_EQ(ColumnOf(kTable, field("CustomerTaxID")), 1U) << "the supplier's stands for it";
  EXPECT_FALSE(ColumnOf(kTable, field("CustomerID")));
}

TEST(RowCorrection, EveryTwinIsAFieldOfItsOwn) {
  int twins = 0;
  for (const CorrectionField& field : CustomerFields()) {
    if (field.twin.empty()) continue;
    ++twins;
    EXPECT_EQ(std::ranges::count(CustomerFields(), field.twin, &CorrectionField::column), 1) << field.twin;
  }
  EXPECT_EQ(twins, 7);
}

TEST(RowCorrection, FillReachesTheBlankCellsOfAllRows) {
  Grid grid{{false, {"1", "", "  "}}, {true, {"2", "  ", "www"}}, {true, {"3", "500", ""}}};
  CorrectRow(grid, 1, std::array{Correction{1, "999", false}, Correction{2, "", true}});
  EXPECT_EQ(grid[1].cells, (std::vector<std::string>{"2", "999", ""})) << "an emptied cell stays empty";
  EXPECT_EQ(grid[0].cells[1], "") << "not filled without being asked";
  CorrectRow(grid, 2, std::array{Correction{1, "501", true}, Correction{2, "x.pt", true}});
  EXPECT_EQ(grid[0].cells, (std::vector<std::string>{"1", "501", "x.pt"}))
      << "not ticked, filled all the same";
  EXPECT_EQ(grid[1].cells, (std::vector<std::string>{"2", "999", "x.pt"}));
  EXPECT_EQ(grid[2].cells, (std::vector<std::string>{"3", "501", "x.pt"}));
}

TEST(RowCorrection, AFillIsWarnedOfAndAskedFor) {
  test::TestServer server;
  const std::array plain{Correction{1, "999", false}};
  EXPECT_TRUE(ConfirmCorrections(server.Context(), plain));
  EXPECT_TRUE(server.dialogs.messages.empty());
  const std::array filling{Correction{1, "999", false}, Correction{2, "x", true}};
  server.dialogs.answers = {1, 0};
  EXPECT_FALSE(ConfirmCorrections(server.Context(), filling));
  EXPECT_EQ(server.dialogs.LastTitle(), "ATENÇÃO");
  EXPECT_EQ(
      server.dialogs.LastText(),
      "Ao activar o(s) controlo(s) de Preencimento Automático, todos os respectivos registos vazios irão ser "
      "preenchidos com este conteúdo.");
  EXPECT_EQ(server.dialogs.questions.back().text, "Confirma o Preenchimento Automático?");
  EXPECT_TRUE(ConfirmCorrections(server.Context(), filling));
}

TEST(RowCorrection, ATaxCodeStandsForItsDescription) {
  EXPECT_EQ(LeaveTaxCode("red").description, "Taxa Reduzida");
  EXPECT_EQ(LeaveTaxCode("Ise").description, "Isenta");
  EXPECT_EQ(LeaveTaxCode("nor").code, "NOR");
  EXPECT_EQ(LeaveTaxCode("esp").code, "ESP");
  EXPECT_FALSE(LeaveTaxCode("esp").description);
  EXPECT_FALSE(LeaveTaxCode("").description);
}

}  // namespace
}  // namespace korvel::periods
