#include <gmock/gmock.h>

#include "brevant_world.h"

namespace korvel::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class DocumentReview : public BrevantWorld {
 protected:
  DocumentReview() {
    AddDocument({});
    AddDocument({{"Numero", "00000002"}, {"Data", "2011-10-05"}});
    EXPECT_TRUE(Run()) << LastText();
  }

  periods::Grid Load() {
    periods::Grid rows;
    server.dialogs.answers = {0};
    EXPECT_TRUE(billing::VerDocumentos(server.Context(), period,
                                       [&](const periods::GridRow& row) { rows.push_back(row); }));
    return rows;
  }
};

TEST_F(DocumentReview, AsksWithTheCountAndLoadsInOrder) {
  const periods::Grid rows = Load();
  EXPECT_EQ(server.dialogs.questions.back().text, "Confirma a visualização de 2 Registos?");
  ASSERT_EQ(rows.size(), 2U);
  const auto columns = billing::DocumentosTable().columns;
  ASSERT_EQ(rows[1].cells.size(), columns.size());
  for (std::size_t i = 0; i < columns.size(); ++i) {
    const std::string staged = "[" + std::string(columns[i].staged) + "]";
    EXPECT_EQ(rows[1].cells[i], Staged(staged).at(1)) << staged;
  }
}

TEST_F(DocumentReview, DecliningHandsNothingOver) {
  server.dialogs.answers = {1};
  EXPECT_FALSE(billing::VerDocumentos(server.Context(), period, [](const periods::GridRow&) { FAIL(); }));
  period.key = {};
  EXPECT_FALSE(billing::VerDocumentos(server.Context(), period, [](const periods::GridRow&) { FAIL(); }));
}

TEST_F(DocumentReview, SavingLosesWhatTheListDoesNotKnow) {
  periods::Grid rows = Load();
  rows[0].cells[12] = "changed";  // CustomerID
  rows[1].cells[rows[1].cells.size() - 3] = "A";
  Company(
      "insert into TabSourceDocumentsGEST (FiscalYear,StartDate,EndDate,Cliente,InvoiceNo) values "
      "('2011','2011-01-01','2011-12-31','C9','other')");
  ASSERT_TRUE(billing::GravarDocumentos(server.Context(), period, rows)) << LastText();
  EXPECT_THAT(Staged("InvoiceNo,CustomerID,Cliente,DocAnulado,PaymentMechanism,TaxType"),
              ElementsAre("other\tNULL\tC9\tNULL\tNULL\tNULL", "FT1 2011/00000001\tchanged\t\tN\t\tIVA",
                          "FT1 2011/00000002\t123456789\t\tS\t\tIVA"));
  EXPECT_THAT(
      server.Rows(
          "Korvel0001",
          "select count(*) from TabSourceDocumentsGEST where Cliente='' and InvoiceStatus is null and "
          "[Hash] is null and HashControl is null and TaxCountryRegion is null and TaxAmount is null "
          "and TaxExemptionReason is null and SelfBillingIndicator is null"),
      ElementsAre("2"));
}

TEST_F(DocumentReview, AFailedSaveChangesNothing) {
  periods::Grid rows = Load();
  rows[1].cells[12] = std::string(101, 'x');
  EXPECT_FALSE(billing::GravarDocumentos(server.Context(), period, rows));
  EXPECT_THAT(Staged("InvoiceNo"), ElementsAre("FT1 2011/00000001", "FT1 2011/00000002"));
  EXPECT_FALSE(billing::GravarDocumentos(server.Context(), period, {}));
}

}  // namespace
}  // namespace korvel::test
