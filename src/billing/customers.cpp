#include "billing/customers.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <string>
#include <utility>

#include "billing/account_column.h"
#include "billing/audit_codes.h"
#include "billing/customer_rows.h"
#include "billing/source_repairs.h"
#include "data/sql_text.h"
#include "periods/company_tables.h"
#include "session/connections.h"
#include "session/failures.h"
#include "session/lookups.h"
#include "toolkit/progress_scope.h"
#include "toolkit/text.h"

namespace korvel::billing {
namespace {

using periods::Alignment;
using periods::CellKind;
using periods::Column;
using periods::Grid;
using periods::GridRow;

/// Texts are cut to the width of the staged columns, so that none stops a save; tax numbers are not, being keys.
constexpr int kTextWidth = 100;
constexpr int kAccountWidth = 30;

constexpr Column Text(std::string_view heading, std::string_view staged, std::string_view emptyLabel = {}) {
  return {heading, 1000, Alignment::Left, staged, CellKind::Text, kTextWidth, emptyLabel};
}

constexpr std::array<Column, customer::kColumnCount> kCustomerColumns{{
    {"Nº Registo", 0, Alignment::Left, "NumRegisto"},
    {"Código do Cliente", 0, Alignment::Left, "CustomerID", CellKind::Text, 0, "Código"},
    {"Código da Conta", 1500, Alignment::Left, "AccountID", CellKind::Text, kAccountWidth},
    {"N.º Ident. Fiscal", 1500, Alignment::Left, "CustomerTaxID", CellKind::Text, 0,
     "Nº Identificação Fiscal"},
    {"Descrição", 4000, Alignment::Left, "CompanyName", CellKind::Text, kTextWidth, "Descrição"},
    Text("Contacto", "Contact"),
    Text("Morada Facturação", "BilingAddress", "Morada Facturação"),
    Text("N.º Polícia", "BuildingNumber"),
    Text("Rua", "StreetName"),
    Text("Rua e N.º Polícia", "AddressDetail", "Rua e Nº Policia"),
    Text("Localidade", "City", "Localidade"),
    Text("Cód. Postal", "PostalCode", "Cód. Postal"),
    Text("Distrito", "Region"),
    Text("País", "Country", "País"),
    Text("Morada Expedição", "ShipToAddress"),
    Text("N.º Polícia - Expedição", "Ship_BuildingNumber"),
    Text("Rua - Expedição", "Ship_StreetName"),
    Text("Rua e N.º Polícia - Expedição", "Ship_AddressDetail", "Rua e Nº de Policia"),
    Text("Localidade - Expedição", "Ship_City", "Localidade"),
    Text("Cód. Postal - Expedição", "Ship_PostalCode", "Cód. Postal"),
    Text("Distrito - Expedição", "Ship_Region"),
    Text("País - Expedição", "Ship_Country", "País"),
    Text("Telefone", "Telephone"),
    Text("Fax", "Fax"),
    Text("Email", "Email"),
    Text("Web Site", "Website"),
    {"Autofacturação", 1000, Alignment::Centre, "SelfBillingIndicator", CellKind::Text, 1},
}};

std::string Condition(const BillingPeriod& period) {
  const bool one = !toolkit::IsBlank(period.cliente);
  return " Where NumRegisto>0 " + (one ? " and Codigo=" + data::Quoted(period.cliente) : std::string());
}

/// The period's customers by code. Whoever has no account by then is unknown to the accountants.
Grid ReadRows(const session::Context& context, data::Connection& brevant, const BillingPeriod& period,
              std::string_view account) {
  const std::string condition = Condition(period);
  TextMap towns;
  ReadTexts(brevant, "TabPostal", "Codigo", "Descricao", towns);
  const BuyersByAccount buyers = ReadBuyers(brevant, period);
  toolkit::ProgressScope progress(context.progress, periods::kProcessing,
                                  session::ContaRegistos_lng(brevant, "Clientes", condition));
  periods::KeyedGrid rows;
  data::Recordset clientes =
      brevant.Query(fmt::format("select {},{} as MContaContabilidade from Clientes With (NoLock){} "
                                "order by Codigo,NumRegisto",
                                kCustomerFields, account, condition));
  for (; !clientes.Eof(); clientes.MoveNext()) {
    progress.Step([&] {
      return fmt::format("Cliente : {} - {}", clientes.Text("Codigo"), clientes.Text("Descricao"));
    });
    AddCustomer(clientes, towns, buyers, rows);
  }
  Grid grid = rows.Take();
  for (GridRow& row : grid) {
    std::string& cell = row.cells[customer::kAccountId];
    if (toolkit::IsBlank(cell)) cell = kUnknown;
  }
  return grid;
}

std::optional<Grid> ReadCustomers(const session::Context& context, const BillingPeriod& period) {
  session::ConnectionPtr company;
  session::ConnectionPtr brevant;
  if (!session::AbreConnectionLOCAL_bln(context, company) ||
      !session::AbreConnection_bln(context, brevant, session::kBrevant))
    return std::nullopt;
  const auto account = AccountColumn(context, *company, *brevant, period.key);
  if (!account) return std::nullopt;
  RepairMissingCountries(*brevant);
  return ReadRows(context, *brevant, period, *account);
}

}  // namespace

const periods::StagedTable& ClientesTable() {
  static constexpr periods::StagedTable kTable{.table = "TabCustomerGEST",
                                               .columns = kCustomerColumns,
                                               .byCustomer = true,
                                               .atEmptyField = periods::AtEmptyField::WriteRowsBefore};
  return kTable;
}

std::optional<Grid> CalcularClientes(const session::Context& context, const BillingPeriod& period) {
  if (!periods::IsChosen(period.key)) return std::nullopt;
  // Assigned, not returned through: GCC 12 takes the empty one moved out of a failure for uninitialized.
  std::optional<Grid> customers;
  session::Reported(context, false, [&] {
    customers = ReadCustomers(context, period);
    return true;
  });
  return customers;
}

bool GravarClientes(const session::Context& context, const BillingPeriod& period, const Grid& clientes) {
  if (!periods::IsChosen(period.key) || clientes.empty()) return false;
  const auto nameless = std::ranges::find_if(
      clientes, [](const GridRow& row) { return toolkit::IsBlank(row.cells[customer::kCustomerId]); });
  if (nameless != clientes.end()) {
    context.dialogs.Message(toolkit::Icon::Warning, fmt::format("Cliente sem o Código Definido!\n\n[{}]",
                                                                nameless->cells[customer::kCompanyName]));
    return false;
  }
  return periods::SaveToCompany(context, ClientesTable(), period.key, clientes, periods::kSaving,
                                period.cliente);
}

std::optional<Grid> CarregarClientes(const session::Context& context, const periods::PeriodKey& period) {
  return periods::LoadFromCompany(context, ClientesTable(), period);
}

}  // namespace korvel::billing
