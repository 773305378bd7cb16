#include "databases/config_schema.h"

#include <array>

namespace korvel::databases {

namespace {

constexpr std::array<ColumnDefinition, 6> kEmpresas{{
    {"Codigo", "varchar(4)"},
    {"Descricao", "varchar(50)"},
    {"Utilizador", "varchar(128)"},
    {"DataSys", "datetime DEFAULT getdate()"},
    {"AcessoPrincipal", "smallint"},
    {"AcessoIndependente", "smallint"},
}};

constexpr std::array<TableDefinition, 1> kTables{{{"Empresas", Stage::Base, kEmpresas}}};

}  // namespace

std::span<const TableDefinition> ConfigSchema() {
  return kTables;
}

}  // namespace korvel::databases
