#pragma once

#include "data/connection.h"
#include "demo/source_schema.h"

namespace korvel::demo {

/// The tables of the billing product, as far as the extraction reads them; `NumRegisto` is not listed.
namespace brevant {
extern const databases::TableDefinition kClientes;
extern const databases::TableDefinition kTabPostal;
extern const databases::TableDefinition kMovCliente;
extern const databases::TableDefinition kMovProduto;
extern const databases::TableDefinition kLogMovTerceiro;
extern const databases::TableDefinition kLogMovProduto;
extern const databases::TableDefinition kMovItem;
extern const databases::TableDefinition kTabTipoMov;
extern const databases::TableDefinition kTabIVA;
extern const databases::TableDefinition kPagaComo;
extern const databases::TableDefinition kCliMovEnc;
extern const databases::TableDefinition kImpostosConfig;
extern const databases::TableDefinition kImpostosMovProduto;
extern const databases::TableDefinition kAtribui;
extern const databases::TableDefinition kProdutos;
extern const databases::TableDefinition kTabGrupoPro;
extern const databases::TableDefinition kTabFamPro;
extern const databases::TableDefinition kTabSubFamPro;
extern const databases::TableDefinition kTabSituacao;
extern const databases::TableDefinition kTabItem;
extern const databases::TableDefinition kArmazens;
extern const databases::TableDefinition kConfigura;
}  // namespace brevant

/// Makes the tables and the views. Throws data::Error.
void CreateBrevantTables(data::Connection& connection);

}  // namespace korvel::demo
