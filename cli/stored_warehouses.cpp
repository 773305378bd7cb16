#include "cli/stored_warehouses.h"

namespace korvel::cli {

std::vector<periods::Warehouse> StoredWarehouses(data::Connection& company) {
  std::vector<periods::Warehouse> stored;
  auto rows = company.Query("Select Armazem,Classificacao from TabArmazens order by NumRegisto");
  for (; !rows.Eof(); rows.MoveNext()) {
    stored.push_back({std::string(rows.Text("Armazem")), {}, std::string(rows.Text("Classificacao"))});
  }
  return stored;
}

}  // namespace korvel::cli
