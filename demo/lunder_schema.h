#pragma once

#include <span>
#include <string_view>
#include <vector>

#include "databases/schema.h"

namespace korvel::demo {

/// The tables of the accounting product, as far as the extraction reads them; `NumRegisto` is not listed.
namespace lunder {
extern const databases::TableDefinition kContas;
extern const databases::TableDefinition kMovDiario;
extern const databases::TableDefinition kDiarios;
extern const databases::TableDefinition kConfigura;
extern const databases::TableDefinition kTaxasIva;
}  // namespace lunder

std::vector<const databases::TableDefinition*> LunderTables();

/// Names of the table's columns in their order, for a batch of rows.
std::vector<std::string_view> ColumnNames(const databases::TableDefinition& table);

}  // namespace korvel::demo
