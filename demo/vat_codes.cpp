#include "demo/vat_codes.h"

#include <algorithm>

#include "demo/brevant_schema.h"
#include "demo/lunder_schema.h"
#include "demo/table_writer.h"

namespace korvel::demo {

namespace {

constexpr std::string_view kArticle9 = "Isento artigo 9.º do CIVA";

constexpr VatCode kVatCodes[] = {
    {"C0", "Isento", "C", Rate::Exempt, 0, "IVA", "PT", "ISE", "Isenta", kArticle9},
    {"C1", "Reduzida do continente", "C", Rate::Reduced, 6, "IVA", "PT", "RED", "Taxa reduzida"},
    {"C2", "Intermédia do continente", "C", Rate::Intermediate, 13, "IVA", "PT", "INT", "Taxa intermédia"},
    {"C3", "Normal do continente", "C", Rate::Normal, 23, "IVA", "PT", "NOR", "Taxa normal"},
    {"C9", "Normal até 2010", "C", Rate::Normal, 21, "IVA", "PT", "NOR", "Taxa normal (anterior)", "",
     "2010-12-31"},
    {"A0", "Isento nos Açores", "A", Rate::Exempt, 0, "IVA", "PT-AC", "ISE", "Isenta - Açores", kArticle9},
    {"A1", "Reduzida dos Açores", "A", Rate::Reduced, 4, "IVA", "PT-AC", "RED", "Taxa reduzida - Açores"},
    {"A2", "Intermédia dos Açores", "A", Rate::Intermediate, 9, "IVA", "PT-AC", "INT",
     "Taxa intermédia - Açores"},
    {"A3", "Normal dos Açores", "A", Rate::Normal, 16, "IVA", "PT-AC", "NOR", "Taxa normal - Açores"},
    {"M0", "Isento na Madeira", "M", Rate::Exempt, 0, "IVA", "PT-MA", "ISE", "Isenta - Madeira", kArticle9},
    {"M1", "Reduzida da Madeira", "M", Rate::Reduced, 5, "IVA", "PT-MA", "RED", "Taxa reduzida - Madeira"},
    {"M2", "Intermédia da Madeira", "M", Rate::Intermediate, 12, "IVA", "PT-MA", "INT",
     "Taxa intermédia - Madeira"},
    {"M3", "Normal da Madeira", "M", Rate::Normal, 22, "IVA", "PT-MA", "NOR", "Taxa normal - Madeira"},
};

/// Of sales that the accounting product enters under the exempt codes.
constexpr VatCode kForeignCodes[] = {
    {"E0", "Transmissão intracomunitária", "X", Rate::Exempt, 0, "IVA", "PT", "ISE",
     "Isenta - intracomunitária", "Isento artigo 14.º do RITI"},
    {"E1", "Exportação", "X", Rate::Exempt, 0, "IVA", "PT", "ISE", "Isenta - exportação",
     "Isento artigo 14.º do CIVA"},
};

/// No audit file data: they stay out of the file.
constexpr VatCode kNotSubject{"X0", "Não sujeito", "X", Rate::Exempt, 0, "", "", "", ""};
constexpr VatCode kPurchaseCodes[] = {
    {"D1", "Dedutível à taxa reduzida", "C", Rate::Reduced, 6, "", "", "", ""},
    {"D3", "Dedutível à taxa normal", "C", Rate::Normal, 23, "", "", "", ""},
    kNotSubject,
};

void AddAccounting(TableWriter& taxasIva, const VatCode& row) {
  taxasIva.Add({row.code, row.description, row.zone, data::Currency::FromWhole(row.percent), row.taxType,
                row.taxRegion, row.taxCode, row.taxDescription, row.expires});
}

void AddBilling(TableWriter& tabIva, const VatCode& row, std::string_view direction) {
  tabIva.Add({row.code, row.description, direction, row.zone, data::Currency::FromWhole(row.percent),
              row.taxType, row.taxRegion, row.taxCode, row.taxDescription, row.expires, row.exemptionReason});
}

}  // namespace

const VatCode& SaleVat(const Branch& branch, Rate rate) {
  return *std::ranges::find_if(
      kVatCodes, [&](const VatCode& row) { return row.zone == branch.zone && row.rate == rate; });
}

const VatCode& ForeignVat() {
  return kForeignCodes[0];
}

void WriteAccountingVat(data::Connection& lunder) {
  TableWriter taxasIva(lunder, lunder::kTaxasIva);
  for (const VatCode& row : kVatCodes) AddAccounting(taxasIva, row);
  AddAccounting(taxasIva, kNotSubject);
  taxasIva.Finish();
}

void WriteBillingVat(data::Connection& brevant) {
  TableWriter tabIva(brevant, brevant::kTabIVA);
  for (const VatCode& row : kVatCodes) AddBilling(tabIva, row, "V");
  for (const VatCode& row : kForeignCodes) AddBilling(tabIva, row, "V");
  for (const VatCode& row : kPurchaseCodes) AddBilling(tabIva, row, "C");
  tabIva.Finish();
}

}  // namespace korvel::demo
