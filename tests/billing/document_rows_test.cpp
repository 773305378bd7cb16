#include "billing/document_rows.h"

#include <gtest/gtest.h>

#include <string>

#include "billing/billing_period.h"
#include "billing/numbering_walk.h"

namespace korvel::billing {
namespace {

StagedRow FullRow() {
  StagedRow row;
  for (std::size_t i = 0; i < kMappedColumns; ++i) row[static_cast<Col>(i)] = "x";
  return row;
}

TEST(CompleteRowTest, NamesTheFirstEmptyColumnWithItsPosition) {
  struct Case {
    Col column;
    const char* label;  // "" where the column may be empty
    std::size_t position;
  };
  const Case cases[]{{Col::NumberOfEntries, "Nº Total de Documentos", 2},
                     {Col::Hash, "Assinatura do Documento - HASH", 8},
                     {Col::Period, "Período Contabilistico:  intCampo = 10: GoTo SaidaForcada", 10},
                     {Col::CustomerID, "Contribuinte/Cliente", 16},
                     {Col::TaxType, "Tipo de Taxa de IVA", 58},
                     {Col::GrossTotal, "Total do Documento com IVA", 68},
                     {Col::HashControl, "", 0},
                     {Col::UnitOfMeasure, "", 0},
                     {Col::TransactionID, "", 0}};
  for (const Case& c : cases) {
    StagedRow row = FullRow();
    row[c.column] = "  ";
    const auto empty = CompleteRow(row, periods::Basis::Billing);
    EXPECT_EQ(empty ? empty->label : "", c.label);
    EXPECT_EQ(empty ? empty->position : 0, c.position) << c.label;
  }
}

TEST(CompleteRowTest, RequiresTheTransactionOfIntegratedPeriodsOnly) {
  StagedRow row = FullRow();
  row[Col::TransactionID] = "";
  EXPECT_TRUE(CompleteRow(row, periods::Basis::Integrated).has_value());
  EXPECT_FALSE(CompleteRow(row, periods::Basis::Accounting).has_value());
  EXPECT_FALSE(CompleteRow(row, std::nullopt).has_value());
}

TEST(CompleteRowTest, RequiresAReasonAtAZeroRateOnly) {
  for (const auto& [rate, stops] : {std::pair{"0", true}, {"0,00", true}, {"23", false}, {"0,5", false}}) {
    StagedRow row = FullRow();
    row[Col::TaxPercentage] = rate;
    row[Col::TaxExemptionReason] = "";
    EXPECT_EQ(CompleteRow(row, periods::Basis::Billing).has_value(), stops) << rate;
  }
}

TEST(CompleteRowTest, CompletesPlacesAndCutsReferences) {
  StagedRow row = FullRow();
  row[Col::ShipTo_City] = " ";
  row[Col::ShipTo_PostalCode] = "0000000000";
  row[Col::ShipFrom_PostalCode] = "";
  row[Col::ShipTo_Region] = "";
  row[Col::References] = std::string(58, 'r') + "çãõ";
  EXPECT_FALSE(CompleteRow(row, periods::Basis::Billing).has_value());
  EXPECT_EQ(row[Col::ShipTo_City] + row[Col::ShipTo_PostalCode] + row[Col::ShipFrom_PostalCode],
            "DesconhecidoDesconhecidoDesconhecido");
  EXPECT_EQ(row[Col::ShipTo_Region], "");
  EXPECT_EQ(row[Col::References], std::string(58, 'r') + "çã");
}

TEST(CompleteRowTest, TellsWhereTheValueIsMissing) {
  StagedRow row = FullRow();
  row[Col::InvoiceNo] = "FT 2011/00000001";
  row[Col::CustomerID] = "123";
  EXPECT_EQ(EmptyColumnText({"Preço", 48}, row),
            "O Campo [Preço-(48) ] está Vazio!\nNão pode Gravar\n Documento: FT 2011/00000001  "
            "Contribuinte/Cliente: "
            "123");
}

TEST(NumberingWalkTest, OpensGapsInsideASeriesOnly) {
  struct Step {
    const char *ano, *tipo, *numero;
    std::int64_t first;  // 0: no gap
    std::int64_t last;
  };
  NumberingWalk walk;
  for (const Step& s : {Step{"2011", "FT", "00000005", 0, 0}, Step{"2011", "FT", "00000006", 0, 0},
                        Step{"2011", "FT", "00000006", 0, 0}, Step{"2011", "FT", "00000009", 7, 8},
                        Step{"2011", "FT", "1", 0, 0}, Step{"2011", "ft", "3", 2, 2},
                        Step{"2011", "FS", "00000009", 0, 0}, Step{"2012", "FS", "00000020", 0, 0},
                        Step{"2012", "FS", "", 0, 0}, Step{"2012", "FS", "00000002", 1, 1}}) {
    const auto gap = walk.Step(s.ano, s.tipo, s.numero);
    EXPECT_EQ(gap ? gap->first : 0, s.first) << s.tipo << s.numero;
    EXPECT_EQ(gap ? gap->last : 0, s.last) << s.tipo << s.numero;
  }
}

TEST(BillingPeriodTest, ReadsTheKeyOfTheSelector) {
  EXPECT_FALSE(BillingPeriod::FromChave(" "));
  const auto plain = BillingPeriod::FromChave("20112011-01-012011-12-31");
  ASSERT_TRUE(plain);
  EXPECT_EQ(plain->key, (periods::PeriodKey{"2011", "2011-01-01", "2011-12-31"}));
  EXPECT_EQ(plain->Documents(), " And Data>='2011-01-01' and Data<='2011-12-31'");
  const auto customer = BillingPeriod::FromChave("20112011-01-012011-12-31O'C");
  EXPECT_EQ(customer->Documents(), plain->Dates() + " and Codigo='O''C'");
}

}  // namespace
}  // namespace korvel::billing
