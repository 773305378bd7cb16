#include "demo/lunder_schema.h"

namespace korvel::demo {

namespace {

using databases::ColumnDefinition;

constexpr ColumnDefinition kContasColumns[] = {
    {"ContaSP", "varchar(30)"},      {"ContaCP", "varchar(50)"},       {"Titulo", "varchar(100)"},
    {"Tipo", "varchar(1)"},          {"CliFor", "varchar(1)"},         {"RCRF", "varchar(2)"},
    {"Contribuinte", "varchar(20)"}, {"Policia", "varchar(10)"},       {"Rua", "varchar(50)"},
    {"Pais", "varchar(12)"},         {"Morada0", "varchar(60)"},       {"Morada1", "varchar(50)"},
    {"Morada2", "varchar(20)"},      {"Distrito", "varchar(50)"},      {"Telefone", "varchar(20)"},
    {"Mail", "varchar(60)"},         {"AutoFacturacao", "varchar(1)"},
};

constexpr ColumnDefinition kMovDiarioColumns[] = {
    {"ContaSP", "varchar(30)"},
    {"Data", "varchar(10)"},
    {"Diario", "varchar(10)"},
    {"Numero", "varchar(30)"},
    {"Valor", "money"},
    {"ValRecap", "money"},
    {"ValIva", "money"},
    {"Afecta", "varchar(1)"},
    {"Sinal", "smallint"},
    {"SinalRecap", "smallint"},
    {"Contribuinte", "varchar(20)"},
    {"PrefixoNif", "varchar(5)"},
    {"Integracao", "smallint"},
    {"Utilizador", "varchar(128)"},
    {"DataSys", "datetime"},
    {"Descricao", "varchar(100)"},
    {"TipoMovSAFT", "varchar(1)"},
};

constexpr ColumnDefinition kDiariosColumns[] = {
    {"Codigo", "varchar(10)"},
    {"Descricao", "varchar(50)"},
};

constexpr ColumnDefinition kLedgerConfiguraColumns[] = {
    {"DiSi", "varchar(10)"}, {"DiTi", "varchar(10)"}, {"DiTc", "varchar(10)"}, {"DiTm", "varchar(10)"},
    {"DiAp", "varchar(10)"}, {"DiIl", "varchar(10)"}, {"DiEn", "varchar(10)"},
};

constexpr ColumnDefinition kTaxasIvaColumns[] = {
    {"Codigo", "varchar(10)"},
    {"Descricao", "varchar(50)"},
    {"Regiao", "varchar(10)"},
    {"Taxa", "money"},
    {"Saft_TaxType", "varchar(10)"},
    {"SAFT_TaxCountryRegion", "varchar(5)"},
    {"Saft_TaxCode", "varchar(10)"},
    {"Saft_Description", "varchar(100)"},
    {"SAFT_TaxExpirationDate", "varchar(10)"},
};

}  // namespace

namespace lunder {
constexpr databases::TableDefinition kContas = SourceTable("Contas", kContasColumns);
constexpr databases::TableDefinition kMovDiario = SourceTable("MovDiario", kMovDiarioColumns);
constexpr databases::TableDefinition kDiarios = SourceTable("Diarios", kDiariosColumns);
constexpr databases::TableDefinition kConfigura = SourceTable("Configura", kLedgerConfiguraColumns);
constexpr databases::TableDefinition kTaxasIva = SourceTable("TaxasIva", kTaxasIvaColumns);
}  // namespace lunder

std::vector<const databases::TableDefinition*> LunderTables() {
  return {&lunder::kContas, &lunder::kMovDiario, &lunder::kDiarios, &lunder::kConfigura, &lunder::kTaxasIva};
}

}  // namespace korvel::demo
