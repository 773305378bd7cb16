#include "billing/products.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <string>
#include <utility>

#include "billing/audit_codes.h"
#include "periods/company_tables.h"
#include "periods/parameters.h"
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

namespace product {
enum : std::size_t { kNumRegisto, kType, kCode, kGroup, kDescription, kEan, kColumnCount };
}

/// Texts are cut to the width of the staged columns, so that none stops a save; codes are not, being keys.
constexpr int kTextWidth = 100;

constexpr std::array<Column, product::kColumnCount> kProductColumns{{
    {"Nº Registo", 0, Alignment::Left, "NumRegisto"},
    {"Tipo Produto", 1000, Alignment::Centre, "ProductType", CellKind::Text, 0, "Tipo de Produto"},
    {"Código", 1500, Alignment::Left, "ProductCode", CellKind::Text, 0, "Código"},
    {"Família do Produto", 2000, Alignment::Left, "ProductGroup", CellKind::Text, kTextWidth, "Família"},
    {"Descrição do Produto", 4000, Alignment::Left, "ProductDescription", CellKind::Text, kTextWidth,
     "Descrição do Produto"},
    {"Código EAN", 1500, Alignment::Left, "ProductNumberCode", CellKind::Text, 0, "Código EAN"},
}};

constexpr std::string_view kProduct = "P";
constexpr std::string_view kService = "S";
constexpr std::string_view kOther = "O";
constexpr std::string_view kTax = "I";

/// Where `ProductGroup` comes from.
struct Level {
  std::string_view patamar;
  std::string_view table;
  std::string_view field;  // of `Produtos`
};
constexpr std::array kLevels{Level{"Grupo", "TabGrupoPro", "Grupo"}, Level{"Familia", "TabFamPro", "Familia"},
                             Level{"SubFamilia", "TabSubFamPro", "SubFamilia"}};

/// The articles by code. At a level, one that belongs to no group there is left out, deliberately; without a level
/// all of them have a blank group, which the save refuses.
std::string Articles(const periods::BrevantFilter& filter) {
  std::string group = "''";
  std::string join;
  std::string order = "Produtos.Codigo,Produtos.NumRegisto";
  for (const Level& level : kLevels) {
    if (!toolkit::SameIgnoringCase(level.patamar, toolkit::Trim(filter.patamar))) continue;
    group = fmt::format("{}.Descricao", level.table);
    join = fmt::format(" Inner Join {0} With (NoLock) on {0}.Codigo=Produtos.{1}", level.table, level.field);
    order += fmt::format(",{}.NumRegisto", level.table);
  }
  return fmt::format(
      "select Produtos.NumRegisto,Produtos.Codigo,Produtos.Descricao,Produtos.Servico,Produtos.Portes,{} as "
      "Patamar from Produtos With (NoLock){} Where Produtos.NumRegisto>0 {} order by {}",
      group, join, filter.filtro, order);
}

/// The later flag wins.
std::string_view TypeOf(const data::Recordset& produto) {
  if (produto.Text("Portes") == "1") return kOther;
  return produto.Text("Servico") == "1" ? kService : kProduct;
}

GridRow MakeRow(std::string_view key, std::string_view type, std::string_view code, std::string_view group,
                std::string_view description) {
  GridRow row;
  row.cells = {std::string(key),   std::string(type),        std::string(code),
               std::string(group), std::string(description), std::string(code)};
  return row;
}

/// Rows are known by their record: a group that is there twice gives its articles once.
void AddArticles(const session::Context& context, data::Connection& brevant,
                 const periods::BrevantFilter& filter, Grid& grid) {
  const std::int64_t count =
      session::ContaRegistos_lng(brevant, "Produtos", "Where Produtos.NumRegisto>0 " + filter.filtro);
  toolkit::ProgressScope progress(context.progress, periods::kProcessing, count);
  data::Recordset produtos = brevant.Query(Articles(filter));
  for (; !produtos.Eof(); produtos.MoveNext()) {
    const std::string_view code = produtos.Text("Codigo");
    const std::string_view description = produtos.Text("Descricao");
    progress.Step([&] { return fmt::format("Produto : {} - {}", code, description); });
    const std::string_view key = produtos.Text("NumRegisto");
    if (!grid.empty() && grid.back().cells[product::kNumRegisto] == key) continue;
    grid.push_back(MakeRow(key, TypeOf(produtos), code, produtos.Text("Patamar"), description));
  }
}

void AddCharges(data::Connection& brevant, Grid& grid) {
  data::Recordset charges = brevant.Query(
      "Select NumRegisto,Codigo,Descricao from ImpostosConfig With (NoLock) order by Codigo,NumRegisto");
  for (; !charges.Eof(); charges.MoveNext()) {
    grid.push_back(
        MakeRow(charges.Text(0), kTax, ChargeProduct(charges.Text(1)), "Outros Impostos", charges.Text(2)));
  }
}

void AddItems(data::Connection& brevant, Grid& grid) {
  data::Recordset items = brevant.Query(
      "Select NumRegisto,Codigo,Descricao from TabItem With (NoLock) order by Codigo,NumRegisto");
  for (; !items.Eof(); items.MoveNext())
    grid.push_back(MakeRow(items.Text(0), kService, items.Text(1), "Serviços", items.Text(2)));
}

void DescribeTheRest(const std::string& description, Grid& grid) {
  for (GridRow& row : grid) {
    if (toolkit::IsBlank(row.cells[product::kDescription])) row.cells[product::kDescription] = description;
  }
}

std::optional<Grid> ReadProducts(const session::Context& context, const periods::BrevantFilter& filter) {
  session::ConnectionPtr company;
  session::ConnectionPtr brevant;
  if (!session::AbreConnectionLOCAL_bln(context, company) ||
      !session::AbreConnection_bln(context, brevant, session::kBrevant))
    return std::nullopt;
  Grid grid;
  AddArticles(context, *brevant, filter, grid);
  AddCharges(*brevant, grid);
  AddItems(*brevant, grid);
  grid.push_back(MakeRow("", kOther, kNoProduct, kNoProduct, ""));
  const auto parameters = periods::ReadParameters(*company).value_or(periods::Parameters());
  DescribeTheRest(parameters.ProductDescriptionDefault, grid);
  return grid;
}

}  // namespace

const periods::StagedTable& ProdutosTable() {
  static constexpr periods::StagedTable kTable{.table = "TabProductGEST",
                                               .columns = kProductColumns,
                                               .byCustomer = true,
                                               .atEmptyField = periods::AtEmptyField::WriteRowsBefore};
  return kTable;
}

std::optional<Grid> CalcularProdutos(const session::Context& context, const BillingPeriod& period,
                                     const periods::BrevantFilter& filter) {
  if (!periods::IsChosen(period.key)) return std::nullopt;
  if (toolkit::SameIgnoringCase(filter.filtro, periods::kFilterCancelled)) return std::nullopt;
  return session::Reported(context, std::optional<Grid>(), [&] { return ReadProducts(context, filter); });
}

bool GravarProdutos(const session::Context& context, const BillingPeriod& period, const Grid& produtos) {
  return periods::SaveToCompany(context, ProdutosTable(), period.key, produtos, periods::kSaving,
                                period.cliente);
}

std::optional<Grid> CarregarProdutos(const session::Context& context, const periods::PeriodKey& period) {
  return periods::LoadFromCompany(context, ProdutosTable(), period);
}

}  // namespace korvel::billing
