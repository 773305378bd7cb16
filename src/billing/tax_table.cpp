#include "billing/tax_table.h"

#include <fmt/format.h>

#include <array>
#include <string>
#include <utility>

#include "periods/company_tables.h"
#include "session/connections.h"
#include "session/failures.h"
#include "session/lookups.h"
#include "session/regional_values.h"
#include "toolkit/dates.h"
#include "toolkit/numbers.h"
#include "toolkit/progress_scope.h"
#include "toolkit/text.h"

namespace korvel::billing {
namespace {

using periods::Alignment;
using periods::CellKind;
using periods::Column;
using periods::Grid;
using periods::GridRow;

constexpr int kRateDecimals = 2;

/// Texts are cut to the width of the staged columns, so that none stops a save; the source's own code is not, being
/// the key by which documents find their tax.
constexpr std::array<Column, 10> kTaxColumns{{
    {"Nº Registo", 330, Alignment::Left, "NumRegisto"},
    {"Tipo Imposto", 1200, Alignment::Centre, "TaxType", CellKind::Text, 10, "Tipo de Imposto"},
    {"País ou Região do Imposto", 1500, Alignment::Centre, "TaxCountryRegion", CellKind::Text, 5,
     "País ou Região"},
    {"Código Imposto", 1300, Alignment::Centre, "TaxCode", CellKind::Text, 100, "Código do Imposto"},
    {"Descrição do Imposto", 1600, Alignment::Left, "Description", CellKind::Text, 100,
     "Descrição do Imposto"},
    {"Data de fim de vigência", 1200, Alignment::Left, "TaxExpirationDate", CellKind::Date},
    {"Percentagem", 800, Alignment::Right, "TaxPercentage", CellKind::Rate},
    {"Montante do Imposto (IS)", 1000, Alignment::Left, "TaxAmount", CellKind::Rate},
    {"Identificação no Brevant", 2000, Alignment::Left, "DescricaoBrevant", CellKind::Text, 100},
    {"", 0, Alignment::Left, "CodigoBrevant"},
}};

GridRow ReadTax(const session::SessionRecord& session, const data::Recordset& taxas) {
  const auto text = [&](std::string_view column) { return std::string(taxas.Text(column)); };
  const auto number = [&](data::Currency value) {
    const std::string written = toolkit::FDNum(value, kRateDecimals, {}, {}, session.Marks());
    return std::string(toolkit::Trim(written));
  };
  GridRow row;
  row.cells = {
      text("NumRegisto"),
      text("Saft_TaxType"),
      text("SAFT_TaxCountryRegion"),
      text("Saft_TaxCode"),
      text("Saft_Description"),
      toolkit::GData(toolkit::Trim(taxas.Text("SAFT_TaxExpirationDate")), session::DateMarks(session)),
      number(taxas.Money("Taxa")),
      number({}),
      text("Codigo") + " - " + text("Descricao"),
      text("Codigo")};
  return row;
}

/// The parameter `AgrupaIvas` does not regroup the codes, deliberately: it has no effect here yet.
std::optional<Grid> ReadTaxes(const session::Context& context) {
  session::ConnectionPtr brevant;
  if (!session::AbreConnection_bln(context, brevant, session::kBrevant)) return std::nullopt;
  const std::int64_t count = session::ContaRegistos_lng(*brevant, "CodigosIva", " Where CompraVenda='V'");
  toolkit::ProgressScope progress(context.progress, periods::kProcessing, count);
  Grid grid;
  data::Recordset taxas = brevant->Query(
      "select * from TabIVA With (NoLock) where CompraVenda='V' order by Zona,Taxa,NumRegisto");
  for (; !taxas.Eof(); taxas.MoveNext()) {
    progress.Step(
        [&] { return fmt::format("Conta : {} - {}", taxas.Text("Codigo"), taxas.Text("Descricao")); });
    grid.push_back(ReadTax(context.session, taxas));
  }
  return grid;
}

}  // namespace

const periods::StagedTable& ImpostosTable() {
  static constexpr periods::StagedTable kTable{.table = "TabTaxTableGEST",
                                               .columns = kTaxColumns,
                                               .byCustomer = true,
                                               .atEmptyField = periods::AtEmptyField::WriteRowsBefore};
  return kTable;
}

std::optional<Grid> CalcularImpostos(const session::Context& context, const BillingPeriod& period) {
  if (!periods::IsChosen(period.key)) return std::nullopt;
  return session::Reported(context, std::optional<Grid>(), [&] { return ReadTaxes(context); });
}

bool GravarImpostos(const session::Context& context, const BillingPeriod& period, const Grid& impostos) {
  return periods::SaveToCompany(context, ImpostosTable(), period.key, impostos, periods::kSaving,
                                period.cliente);
}

std::optional<Grid> CarregarImpostos(const session::Context& context, const periods::PeriodKey& period) {
  return periods::LoadFromCompany(context, ImpostosTable(), period);
}

}  // namespace korvel::billing
