#include "accounting/third_parties.h"

#include <fmt/format.h>

#include <array>
#include <string>
#include <utility>

#include "accounting/period_kinds.h"
#include "data/sql_text.h"
#include "periods/company_tables.h"
#include "periods/keyed_grid.h"
#include "session/connections.h"
#include "session/failures.h"
#include "session/lookups.h"
#include "toolkit/progress_scope.h"
#include "toolkit/text.h"

namespace korvel::accounting {
namespace {

namespace party = third_party;  // the columns
using periods::Alignment;
using periods::CellKind;
using periods::Column;
using periods::Grid;
using periods::GridRow;

constexpr std::string_view kUnknown = "Desconhecido";
constexpr std::string_view kNoAddress = "----------";
constexpr std::size_t kThirdPartyColumns = party::kItemKey + 1;
using Columns = std::array<Column, kThirdPartyColumns>;

/// A plain text column of both grids.
constexpr Column Text(std::string_view heading, std::string_view staged, int cut,
                      std::string_view emptyLabel = {}) {
  return {heading, 1000, Alignment::Left, staged, CellKind::Text, cut, emptyLabel};
}
constexpr Column Country(std::string_view staged) {
  return {"País", 1000, Alignment::Left, staged, CellKind::UpperText, 12, "País"};
}
constexpr Column Hidden(std::string_view heading, std::string_view staged = {},
                        std::string_view emptyLabel = {}) {
  return {heading, 0, Alignment::Left, staged, CellKind::Text, 0, emptyLabel};
}

constexpr Columns kCustomerColumns{{
    Hidden("Nº Registo", "NumRegisto"),
    Hidden("Conta do Cliente", "AccountID", "Código"),
    {"N.º Ident. Fiscal", 1500, Alignment::Left, "CustomerTaxID", CellKind::Text, 20,
     "Nº Identificação Fiscal"},
    {"Descrição", 4000, Alignment::Left, "CompanyName", CellKind::Text, 60, "Descrição"},
    Text("Contacto", "Contact", 50),
    Text("Morada Facturação", "BilingAddress", 0, "Morada Facturação"),
    Text("N.º Polícia", "BuildingNumber", 10),
    Text("Rua", "StreetName", 50),
    Text("Rua e N.º Polícia", "AddressDetail", 60, "Rua e Nº Policia"),
    Text("Localidade", "City", 50, "Localidade"),
    Text("Cód. Postal", "PostalCode", 20, "Cód. Postal"),
    Text("Distrito", "Region", 50),
    Country("Country"),
    Text("Morada Expedição", "ShipToAddress", 0),
    Text("N.º Polícia", "Ship_BuildingNumber", 10),
    Text("Rua", "Ship_StreetName", 50),
    Text("Rua e N.º Polícia", "Ship_AddressDetail", 60, "Rua e Nº de Policia"),
    Text("Localidade", "Ship_City", 50, "Localidade"),
    Text("Cód. Postal", "Ship_PostalCode", 20, "Cód. Postal"),
    Text("Distrito", "Ship_Region", 50),
    Country("Ship_Country"),
    Text("Telefone", "Telephone", 20),
    Text("Fax", "Fax", 20),
    Text("Email", "Email", 60),
    Text("Web Site", "Website", 60),
    {"Autofacturação", 1000, Alignment::Centre, "SelfBillingIndicator", CellKind::Text, 1},
    {"Customer ID", 200, Alignment::Left, "CustomerID"},
    Hidden(""),  // the tax number under which the row was made
}};

/// Suppliers have no column for their code: it is always the tax number under which the row was made.
constexpr Columns SupplierColumns() {
  Columns columns = kCustomerColumns;
  columns[party::kTaxId].staged = "SupplierTaxID";
  columns[party::kCode] = Hidden("", "SupplierID");
  return columns;
}
constexpr Columns kSupplierColumns = SupplierColumns();

constexpr periods::StagedTable kCustomerTable{"TabCustomerPOC", kCustomerColumns};
constexpr periods::StagedTable kSupplierTable{"TabSupplierPOC", kSupplierColumns};

std::string OrUnknown(std::string_view text) {
  return std::string(toolkit::IsBlank(text) ? kUnknown : text);
}

/// The row of that taxpayer; a new one when there is none.
GridRow& RowOf(periods::KeyedGrid& rows, const std::string& taxId) {
  const auto [row, added] = rows.FindOrAdd(taxId);
  if (added) {
    row.cells.resize(kThirdPartyColumns);
    row.cells[party::kItemKey] = taxId;
  }
  return row;
}

/// What rows of both sources have in common.
void FillFixedCells(GridRow& row, const std::string& taxId, std::string country) {
  auto& cells = row.cells;
  cells[party::kTaxId] = cells[party::kCode] = taxId;
  cells[party::kBilingAddress] = cells[party::kShipToAddress] = kNoAddress;
  cells[party::kShipAddressDetail] = cells[party::kShipCity] = cells[party::kShipPostalCode] = kUnknown;
  cells[party::kShipCountry] = country;
  cells[party::kCountry] = std::move(country);
}

std::string HomeCountry(const ThirdPartyKind& kind, std::string_view pais) {
  return toolkit::IsBlank(pais) ? std::string(kind.unknownHomeCountry) : toolkit::Upper(pais);
}

void FillFromAccount(GridRow& row, const data::Recordset& conta, const std::string& taxId,
                     const ThirdPartyKind& kind) {
  auto& cells = row.cells;
  FillFixedCells(row, taxId, HomeCountry(kind, conta.Text("Pais")));
  cells[party::kNumRegisto] = conta.Text("NumRegisto");
  cells[party::kAccountId] = toolkit::CutTo(toolkit::Trim(conta.Text("ContaSP")), 30);
  cells[party::kCompanyName] = toolkit::CutTo(toolkit::Trim(conta.Text("Titulo")), 60);
  cells[party::kBuildingNumber] = conta.Text("Policia");
  cells[party::kStreetName] = conta.Text("Rua");
  cells[party::kAddressDetail] = OrUnknown(conta.Text("Morada0"));
  cells[party::kCity] = OrUnknown(conta.Text("Morada1"));
  cells[party::kPostalCode] = OrUnknown(conta.Text("Morada2"));
  cells[party::kRegion] = conta.Text("Distrito");
  cells[party::kTelephone] = conta.Text("Telefone");
  cells[party::kEmail] = conta.Text("Mail");
  cells[party::kSelfBilling] = conta.Text("AutoFacturacao");
}

void FillFromMovement(GridRow& row, const std::string& taxId, std::string_view prefix) {
  FillFixedCells(row, taxId, OrUnknown(prefix));
  for (const std::size_t column : {party::kAccountId, party::kCompanyName, party::kStreetName,
                                   party::kAddressDetail, party::kCity, party::kPostalCode, party::kRegion}) {
    row.cells[column] = kUnknown;
  }
  row.cells[party::kSelfBilling] = "0";
}

void RefuseWithoutTaxId(const session::Context& context, std::string_view account) {
  context.dialogs.Message(toolkit::Icon::Warning,
                          fmt::format("A conta {} não tem contribuinte definido!\n"
                                      "Para continuar, tem que acertar esta situação!",
                                      account));
}

/// False at the first account without a tax number, which is said.
bool ReadAccounts(const session::Context& context, data::Connection& lunder, const ThirdPartyKind& kind,
                  periods::KeyedGrid& rows) {
  const std::string condition = fmt::format(" Where CliFor='{}' and Tipo='M' ", kind.accountLetter);
  toolkit::ProgressScope progress(context.progress, periods::kProcessing,
                                  session::ContaRegistos_lng(lunder, "Contas", condition));
  data::Recordset contas = lunder.Query(
      "select NumRegisto,isnull(ContaSP,'') as ContaSP,isnull(ContaCP,'') as ContaCP,isnull(Titulo,'') as "
      "Titulo,"
      "isnull(Contribuinte,'') as Contribuinte,isnull(Policia,'') as Policia,isnull(Rua,'') as Rua,"
      "isnull(Pais,'') as Pais,isnull(Morada0,'') as Morada0,isnull(Morada1,'') as Morada1,"
      "isnull(Morada2,'') as Morada2,isnull(Distrito,'') as Distrito,isnull(Telefone,'') as Telefone,"
      "isnull(Mail,'') as Mail,isnull(AutoFacturacao,'') as AutoFacturacao  from contas" +
      condition + "order by ContaSP,NumRegisto");
  for (; !contas.Eof(); contas.MoveNext()) {
    progress.Step(
        [&] { return fmt::format("Conta : {} - {}", contas.Text("ContaSP"), contas.Text("Titulo")); });
    const std::string taxId = toolkit::LimpaContribuinte_str(contas.Text("Contribuinte"));
    if (taxId.empty()) {
      RefuseWithoutTaxId(context, contas.Text("ContaCP"));
      return false;
    }
    FillFromAccount(RowOf(rows, taxId), contas, taxId, kind);
  }
  return true;
}

void AddTaxpayersOfMovements(data::Connection& lunder, const periods::PeriodKey& period,
                             const ThirdPartyKind& kind, periods::KeyedGrid& rows) {
  data::Recordset movements = lunder.Query(fmt::format(
      "select Distinct MovDiario.contribuinte,isnull(MovDiario.PrefixoNif,'') as PrefixoNif from MovDiario  "
      "inner join contas on movdiario.contasp=contas.contasp "
      "where ((contas.clifor='R' and contas.RCRF='{}')  or contas.clifor='{}' )  "
      "and MovDiario.Data>={} and MovDiario.data<={} and isnull(MovDiario.SinalRecap,0)<>0 "
      "order by MovDiario.contribuinte,PrefixoNif",
      kind.recapitulative, kind.accountLetter, data::Quoted(period.startDate), data::Quoted(period.endDate)));
  for (; !movements.Eof(); movements.MoveNext()) {
    const std::string taxId = toolkit::LimpaContribuinte_str(movements.Text(0));
    if (taxId.empty() || rows.Find(taxId)) continue;
    FillFromMovement(RowOf(rows, taxId), taxId, movements.Text(1));
  }
}

std::optional<Grid> ReadThirdParties(const session::Context& context, const periods::PeriodKey& period,
                                     const ThirdPartyKind& kind) {
  session::ConnectionPtr lunder;
  if (!session::AbreConnection_bln(context, lunder, session::kLunder)) return std::nullopt;
  periods::KeyedGrid rows;
  if (!ReadAccounts(context, *lunder, kind, rows)) return std::nullopt;
  AddTaxpayersOfMovements(*lunder, period, kind, rows);
  return rows.Take();
}

}  // namespace

const ThirdPartyKind& Clientes() {
  static constexpr ThirdPartyKind kKind{&kCustomerTable, kAccountingPeriods, "C", "RC", kUnknown};
  return kKind;
}

const ThirdPartyKind& Fornecedores() {
  static constexpr ThirdPartyKind kKind{&kSupplierTable, kAccountingOrIntegratedPeriods, "F", "RF", "PT"};
  return kKind;
}

std::optional<Grid> CalcularTerceiros(const session::Context& context, const periods::PeriodKey& period,
                                      const ThirdPartyKind& kind) {
  if (!periods::IsChosen(period)) return std::nullopt;
  return session::Reported(context, std::optional<Grid>(),
                           [&] { return ReadThirdParties(context, period, kind); });
}

bool GravarTerceiros(const session::Context& context, const periods::PeriodKey& period,
                     const ThirdPartyKind& kind, Grid rows) {
  for (GridRow& row : rows) {
    if (toolkit::IsBlank(row.cells[party::kCode])) row.cells[party::kCode] = row.cells[party::kItemKey];
  }
  return periods::SaveToCompany(context, *kind.table, period, rows, periods::kSaving);
}

std::optional<Grid> CarregarTerceiros(const session::Context& context, const periods::PeriodKey& period,
                                      const ThirdPartyKind& kind) {
  std::optional<Grid> grid = periods::LoadFromCompany(context, *kind.table, period);
  if (!grid) return grid;
  for (GridRow& row : *grid) row.cells[party::kItemKey] = row.cells[party::kCode];
  return grid;
}

}  // namespace korvel::accounting
