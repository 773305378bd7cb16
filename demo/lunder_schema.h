#pragma once

#include <vector>

#include "demo/source_schema.h"

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

}  // namespace korvel::demo
