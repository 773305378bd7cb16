#include "periods/warehouses.h"

#include <array>
#include <unordered_map>

#include "data/collation.h"
#include "session/connections.h"

namespace korvel::periods {

namespace {

using Classifications =
    std::unordered_map<std::string, std::string>;  // by data::CollationKey of the warehouse

Classifications ReadClassifications(data::Connection& company) {
  Classifications known;
  auto rows = company.Query("Select Armazem,Classificacao from TabArmazens order by NumRegisto");
  for (; !rows.Eof(); rows.MoveNext()) {
    known.try_emplace(data::CollationKey(rows.Text("Armazem")), rows.Text("Classificacao"));
  }
  return known;
}

}  // namespace

std::vector<Warehouse> StoredWarehouses(data::Connection& company) {
  std::vector<Warehouse> stored;
  auto rows = company.Query("Select Armazem,Classificacao from TabArmazens order by NumRegisto");
  for (; !rows.Eof(); rows.MoveNext()) {
    stored.push_back({std::string(rows.Text("Armazem")), {}, std::string(rows.Text("Classificacao"))});
  }
  return stored;
}

std::vector<Warehouse> CarregarArmazens(const session::Context& context, data::Connection& company) {
  session::ConnectionPtr billing;
  if (!session::AbreConnection_bln(context, billing, session::kBrevant)) return StoredWarehouses(company);
  const Classifications known = ReadClassifications(company);
  std::vector<Warehouse> warehouses;
  auto rows =
      billing->Query("Select Codigo,Descricao from Armazens With (NoLock) order by Codigo,NumRegisto");
  for (; !rows.Eof(); rows.MoveNext()) {
    const auto found = known.find(data::CollationKey(rows.Text("Codigo")));
    warehouses.push_back({std::string(rows.Text("Codigo")), std::string(rows.Text("Descricao")),
                          found == known.end() ? std::string() : found->second});
  }
  return warehouses;
}

void ReplaceWarehouses(data::Connection& company, std::span<const Warehouse> warehouses) {
  static constexpr std::array<std::string_view, 2> kColumns{"Armazem", "Classificacao"};
  company.Execute("Delete from TabArmazens ");
  const auto batch = company.OpenBatch("TabArmazens", kColumns);
  for (const Warehouse& warehouse : warehouses) {
    const std::array<data::Parameter, 2> row{warehouse.armazem, warehouse.classificacao};
    batch->Add(row);
  }
  batch->Finish();
}

}  // namespace korvel::periods
