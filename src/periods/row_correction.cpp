#include "periods/row_correction.h"

#include <algorithm>
#include <array>

#include "periods/company_tables.h"
#include "toolkit/text.h"

namespace korvel::periods {

namespace {

constexpr std::array<CorrectionField, 23> kCustomerFields{{
    {"CustomerID", "Custo&mer ID"},
    {"AccountID", "Códi&go da Conta"},
    {"CustomerTaxID", "&N.º Ident. Fiscal", false, {}, "SupplierTaxID"},
    {"CompanyName", "&Descrição"},
    {"Contact", "&Contacto", true},
    {"BuildingNumber", "N.º &Polícia", true, "Ship_BuildingNumber"},
    {"StreetName", "&Rua", true, "Ship_StreetName"},
    {"AddressDetail", "R&ua e N.º Polícia", true, "Ship_AddressDetail"},
    {"City", "&Localidade", true, "Ship_City"},
    {"PostalCode", "Cód. P&ostal", true, "Ship_PostalCode"},
    {"Region", "D&istrito", true, "Ship_Region"},
    {"Country", "Paí&s", true, "Ship_Country"},
    {"Ship_BuildingNumber", "N.º Polícia", true},
    {"Ship_StreetName", "Rua", true},
    {"Ship_AddressDetail", "Rua e N.º Polícia", true},
    {"Ship_City", "Localidade", true},
    {"Ship_PostalCode", "Cód. Postal", true},
    {"Ship_Region", "Distrito", true},
    {"Ship_Country", "País", true},
    {"Telephone", "&Telefone", true},
    {"Fax", "Fa&x", true},
    {"Email", "&Email", true},
    {"WebSite", "&Web Site", true},
}};

constexpr std::array<TaxField, 5> kTaxFields{{
    {"TaxType", "txtSaft_TaxType", "&Tipo Imposto", "Exemplo: IVA / IS", "chkTaxType"},
    {"TaxCountryRegion", "txtSaft_TaxCountryRegion", "&País ou Região do Imposto",
     "Exemplo: PT / PT-AC / PT-MA", "chkTaxCountryRegion"},
    {"TaxCode", "txtSaft_TaxCode", "&Código Imposto", "Exemplo: RED / INT / NOR / ISE / OUT"},
    {"Description", "txtSaft_Description", "&Descrição do Imposto",
     "Exemplo: Reduzida; Intermédia; Normal; Isenta; Outras"},
    {"TaxExpirationDate", "edatSaft_TaxExpirationDate", "Data de &fim de vigência"},
}};

struct TaxName {
  std::string_view code;
  std::string_view description;
};
constexpr std::array<TaxName, 5> kTaxNames{{{"RED", "Taxa Reduzida"},
                                            {"INT", "Taxa Intermédia"},
                                            {"NOR", "Taxa Normal"},
                                            {"ISE", "Isenta"},
                                            {"OUT", "Outros"}}};

void Fill(Grid& grid, const Correction& correction) {
  for (GridRow& row : grid) {
    std::string& cell = row.cells[correction.column];
    if (toolkit::IsBlank(cell)) cell = correction.text;
  }
}

}  // namespace

std::span<const CorrectionField> CustomerFields() {
  return kCustomerFields;
}

std::span<const TaxField> TaxFields() {
  return kTaxFields;
}

std::optional<std::size_t> ColumnOf(const StagedTable& table, std::string_view column) {
  const auto found = std::ranges::find_if(
      table.columns, [&](const Column& each) { return toolkit::SameIgnoringCase(each.staged, column); });
  if (found == table.columns.end()) return std::nullopt;
  return static_cast<std::size_t>(found - table.columns.begin());
}

std::optional<std::size_t> ColumnOf(const StagedTable& table, const CorrectionField& field) {
  const auto column = ColumnOf(table, field.column);
  return column || field.supplier.empty() ? column : ColumnOf(table, field.supplier);
}

TaxCodeLeft LeaveTaxCode(std::string_view typed) {
  TaxCodeLeft left{toolkit::Upper(typed), std::nullopt};
  const auto found = std::ranges::find(kTaxNames, toolkit::Trim(left.code), &TaxName::code);
  if (found != kTaxNames.end()) left.description = found->description;
  return left;
}

bool ConfirmCorrections(const session::Context& context, std::span<const Correction> corrections) {
  if (std::ranges::none_of(corrections, &Correction::fills)) return true;
  context.dialogs.Message(toolkit::Icon::Warning,
                          "Ao activar o(s) controlo(s) de Preencimento Automático, todos os respectivos "
                          "registos vazios irão ser preenchidos com este conteúdo.",
                          "ATENÇÃO");
  return Confirmed(context, "Confirma o Preenchimento Automático?");
}

void CorrectRow(Grid& grid, std::size_t row, std::span<const Correction> corrections) {
  for (const Correction& correction : corrections) {
    grid[row].cells[correction.column] = correction.text;
  }
  for (const Correction& correction : corrections) {
    if (correction.fills) Fill(grid, correction);
  }
}

}  // namespace korvel::periods
