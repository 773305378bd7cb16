#include "accounting/tax_table.h"

#include <fmt/format.h>

#include <array>
#include <string>
#include <utility>

#include "periods/company_tables.h"
#include "session/connections.h"
#include "session/failures.h"
#include "session/lookups.h"
#include "toolkit/dates.h"
#include "toolkit/numbers.h"
#include "toolkit/progress_scope.h"
#include "toolkit/text.h"

namespace korvel::accounting {
namespace {

using periods::Alignment;
using periods::CellKind;
using periods::Column;
using periods::Grid;
using periods::GridRow;

constexpr std::array<Column, 9> kTaxColumns{{
    {"Nº Registo", 330, Alignment::Left, "NumRegisto"},
    {"Tipo Imposto", 1200, Alignment::Centre, "TaxType", CellKind::Text, 3, "Tipo de Imposto"},
    {"País ou Região do Imposto", 1500, Alignment::Centre, "TaxCountryRegion", CellKind::Text, 5,
     "País ou Região"},
    {"Código Imposto", 1300, Alignment::Centre, "TaxCode", CellKind::Text, 10, "Código do Imposto"},
    {"Descrição do Imposto", 1600, Alignment::Left, "Description", CellKind::Text, 0, "Descrição do Imposto"},
    {"Data de fim de vigência", 1200, Alignment::Left, "TaxExpirationDate", CellKind::Date},
    {"Percentagem", 800, Alignment::Right, "TaxPercentage", CellKind::Money},
    {"Montante do Imposto (IS)", 1000, Alignment::Left, "TaxAmount", CellKind::Money},
    {"Identificação no Lunder", 2000, Alignment::Left, "DescricaoLunder"},
}};

/// The regional form of a date of Lunder; a blank one stays blank.
std::string ShownDate(const session::Context& context, std::string_view date) {
  if (toolkit::IsBlank(date)) return {};
  return toolkit::GData(date, {context.session.gFormatoData, context.session.gSepData});
}

GridRow ReadTax(const session::Context& context, const data::Recordset& taxas) {
  const auto text = [&](std::string_view column) { return std::string(taxas.Text(column)); };
  const auto number = [&](data::Currency value) {
    return toolkit::FDNum(value, context.session.gCasasDec, {}, {}, context.session.Marks());
  };
  GridRow row;
  row.ticked = !toolkit::IsBlank(taxas.Text("Saft_TaxType"));
  row.cells = {text("NumRegisto"),
               text("Saft_TaxType"),
               text("SAFT_TaxCountryRegion"),
               text("Saft_TaxCode"),
               text("Saft_Description"),
               ShownDate(context, taxas.Text("SAFT_TaxExpirationDate")),
               number(taxas.Money("Taxa")),
               number({}),
               text("Codigo") + " - " + text("Descricao")};
  return row;
}

std::optional<Grid> ReadTaxes(const session::Context& context) {
  session::ConnectionPtr lunder;
  if (!session::AbreConnection_bln(context, lunder, session::kLunder)) return std::nullopt;
  toolkit::ProgressScope progress(context.progress, periods::kProcessing,
                                  session::ContaRegistos_lng(*lunder, "TaxasIva", ""));
  Grid grid;
  data::Recordset taxas = lunder->Query("select * from TaxasIva order by Regiao,Taxa,NumRegisto");
  for (; !taxas.Eof(); taxas.MoveNext()) {
    progress.Step(
        [&] { return fmt::format("Conta : {} - {}", taxas.Text("Codigo"), taxas.Text("Descricao")); });
    grid.push_back(ReadTax(context, taxas));
  }
  return grid;
}

}  // namespace

const periods::StagedTable& ImpostosTable() {
  static constexpr periods::StagedTable kTable{"TabTaxTablePOC", kTaxColumns,
                                               " order by TaxType,TaxPercentage"};
  return kTable;
}

std::optional<Grid> CalcularImpostos(const session::Context& context, const periods::PeriodKey& period) {
  if (!periods::IsChosen(period)) return std::nullopt;
  return session::Reported(context, std::optional<Grid>(), [&] { return ReadTaxes(context); });
}

bool GravarImpostos(const session::Context& context, const periods::PeriodKey& period, const Grid& impostos) {
  return periods::SaveToCompany(context, ImpostosTable(), period, impostos, periods::kSaving);
}

std::optional<Grid> CarregarImpostos(const session::Context& context, const periods::PeriodKey& period) {
  return periods::LoadFromCompany(context, ImpostosTable(), period);
}

}  // namespace korvel::accounting
