#include "demo/brevant_schema.h"

#include <string_view>

namespace korvel::demo {

namespace {

using databases::ColumnDefinition;

constexpr ColumnDefinition kClientesColumns[] = {
    {"Codigo", "varchar(10)"},
    {"Descricao", "varchar(100)"},
    {"Policia", "varchar(10)"},
    {"Rua", "varchar(50)"},
    {"Distrito", "varchar(50)"},
    {"Morada", "varchar(60)"},
    {"Local", "varchar(50)"},
    {"CodPost", "varchar(10)"},
    {"Pais", "varchar(12)"},
    {"Contacto", "varchar(50)"},
    {"Expedicao_Policia", "varchar(10)"},
    {"Expedicao_Rua", "varchar(50)"},
    {"Expedicao_Morada", "varchar(60)"},
    {"Expedicao_Local", "varchar(50)"},
    {"Expedicao_CodPost", "varchar(10)"},
    {"Expedicao_Distrito", "varchar(50)"},
    {"Expedicao_Pais", "varchar(12)"},
    {"Contribuinte", "varchar(20)"},
    {"Telefone", "varchar(20)"},
    {"Fax", "varchar(20)"},
    {"Email", "varchar(60)"},
    {"Site", "varchar(60)"},
    {"Diversos", "varchar(1)"},
    {"AutoFacturacao", "smallint"},
    {"ContaContabil", "varchar(30)"},
    {"ContaContabilB", "varchar(30)"},
    {"ContaContabilC", "varchar(30)"},
    {"ContaContabilD", "varchar(30)"},
    {"ContaContabilSNC", "varchar(30)"},
    {"ContaContabilBSNC", "varchar(30)"},
    {"ContaContabilCSNC", "varchar(30)"},
    {"ContaContabilDSNC", "varchar(30)"},
};

constexpr ColumnDefinition kTabPostalColumns[] = {
    {"Codigo", "varchar(10)"},
    {"Descricao", "varchar(50)"},
};

constexpr ColumnDefinition kMovClienteColumns[] = {
    {"Codigo", "varchar(10)"},
    {"Tipo", "varchar(4)"},
    {"Numero", "varchar(8)"},
    {"Ano", "varchar(4)"},
    {"Data", "varchar(10)"},
    {"DataVenc", "varchar(10)"},
    {"Descricao", "varchar(100)"},
    {"Morada", "varchar(60)"},
    {"Local", "varchar(50)"},
    {"CodPostal", "varchar(10)"},
    {"Pais", "varchar(12)"},
    {"Contribuinte", "varchar(20)"},
    {"DataSys", "datetime"},
    {"PagaComo", "varchar(4)"},
    {"Valor", "money"},
    {"Desconto", "money"},
    {"IVA", "money"},
    {"TotalDoc", "money"},
    {"ValorIRS", "money"},
    {"TabIva1", "varchar(2)"},
    {"TaxIva1", "money"},
    {"Armazem", "varchar(3)"},
    {"Hash", "varchar(200)"},
    {"HashControl", "varchar(40)"},
    {"Observa", "text"},
    {"Afecta", "varchar(1)"},
    {"NumeroRecuperado", "varchar(20)"},
    {"SerieRecuperado", "varchar(20)"},
    {"Carga", "varchar(60)"},
    {"Descarga", "varchar(60)"},
};

constexpr ColumnDefinition kMovProdutoColumns[] = {
    {"Tipo", "varchar(4)"},        {"Numero", "varchar(8)"},
    {"Ano", "varchar(4)"},         {"Data", "varchar(10)"},
    {"Codigo", "varchar(15)"},     {"Descricao", "varchar(100)"},
    {"QuantNormal", "money"},      {"Unidade", "varchar(10)"},
    {"TipoGuia", "varchar(4)"},    {"NumGuia", "varchar(10)"},
    {"DataGuia", "varchar(10)"},   {"NumEncomenda", "varchar(10)"},
    {"ValorIliq", "money"},        {"TotalDesconto", "money"},
    {"IvaTabela", "varchar(2)"},   {"IvaTaxa", "money"},
    {"ValorIVA", "money"},         {"Armazem", "varchar(3)"},
    {"Identifica", "varchar(20)"}, {"IdentificaRelacionado", "varchar(20)"},
    {"ObsLinha", "text"},
};

constexpr ColumnDefinition kLogMovTerceiroColumns[] = {
    {"Entidade", "varchar(10)"}, {"Tipo", "varchar(4)"},     {"Numero", "varchar(8)"},
    {"Ano", "varchar(4)"},       {"Data", "varchar(10)"},    {"DataVenc", "varchar(10)"},
    {"Pais", "varchar(12)"},     {"PagaComo", "varchar(4)"}, {"ValorIliq", "money"},
    {"Desconto", "money"},       {"IVA", "money"},           {"TotalDoc", "money"},
    {"ValorIRS", "money"},       {"TabIva1", "varchar(2)"},  {"TaxaIva1", "money"},
    {"Armazem", "varchar(3)"},   {"Hash", "varchar(200)"},   {"HashControl", "varchar(40)"},
    {"Observa", "text"},
};

constexpr ColumnDefinition kMovItemColumns[] = {
    {"Tipo", "varchar(4)"},     {"Numero", "varchar(8)"},   {"Ano", "varchar(4)"},
    {"Data", "varchar(10)"},    {"Item", "varchar(15)"},    {"ItemDesc", "varchar(100)"},
    {"Linha1", "varchar(60)"},  {"Linha2", "varchar(60)"},  {"Linha3", "varchar(60)"},
    {"Linha4", "varchar(60)"},  {"Linha5", "varchar(60)"},  {"Linha6", "varchar(60)"},
    {"Linha7", "varchar(60)"},  {"Linha8", "varchar(60)"},  {"Linha9", "varchar(60)"},
    {"Linha10", "varchar(60)"}, {"Linha11", "varchar(60)"}, {"Linha12", "varchar(60)"},
    {"Linha13", "varchar(60)"}, {"Linha14", "varchar(60)"}, {"Linha15", "varchar(60)"},
    {"Linha16", "varchar(60)"}, {"Linha17", "varchar(60)"}, {"Linha18", "varchar(60)"},
    {"Linha19", "varchar(60)"}, {"Linha20", "varchar(60)"}, {"ValorInc", "money"},
    {"ValorDesc", "money"},     {"IvaTab", "varchar(2)"},   {"IvaTaxa", "money"},
};

constexpr ColumnDefinition kTabTipoMovColumns[] = {
    {"Codigo", "varchar(4)"},
    {"Descricao", "varchar(50)"},
    {"Modulo", "varchar(2)"},
    {"AfectaCli", "varchar(2)"},
    {"AfectaStk", "varchar(2)"},
    {"AfectaIVA", "smallint"},
    {"TipoMovClassifica", "varchar(3)"},
    {"ControloHash", "smallint"},
    {"CopiaDocumentoOriginal", "smallint"},
    {"CopiaDocumentoOriginal_Manual", "smallint"},
};

constexpr ColumnDefinition kTabIVAColumns[] = {
    {"Codigo", "varchar(2)"},
    {"Descricao", "varchar(50)"},
    {"CompraVenda", "varchar(1)"},
    {"Zona", "varchar(10)"},
    {"Taxa", "money"},
    {"Saft_TaxType", "varchar(10)"},
    {"SAFT_TaxCountryRegion", "varchar(5)"},
    {"Saft_TaxCode", "varchar(10)"},
    {"Saft_Description", "varchar(100)"},
    {"SAFT_TaxExpirationDate", "varchar(10)"},
    {"Saft_TaxExemptionReason", "varchar(60)"},
};

constexpr ColumnDefinition kPagaComoColumns[] = {
    {"Codigo", "varchar(4)"},
    {"Descricao", "varchar(50)"},
    {"ClassificaSaft", "varchar(2)"},
};

constexpr ColumnDefinition kCliMovEncColumns[] = {
    {"NumEnc", "varchar(10)"},
    {"DataPedido", "varchar(10)"},
};

constexpr ColumnDefinition kImpostosConfigColumns[] = {
    {"Codigo", "varchar(10)"},
    {"Descricao", "varchar(100)"},
};

constexpr ColumnDefinition kImpostosMovProdutoColumns[] = {
    {"CliFor", "varchar(1)"},   {"Processa", "varchar(1)"},
    {"Tipo", "varchar(4)"},     {"Numero", "varchar(8)"},
    {"Ano", "varchar(4)"},      {"Identifica", "varchar(20)"},
    {"Produto", "varchar(15)"}, {"CodigoImposto", "varchar(10)"},
    {"Imposto", "money"},       {"ValorUnitario", "money"},
    {"TabIva", "varchar(2)"},   {"TaxaIva", "money"},
    {"ValorIva", "money"},
};

constexpr ColumnDefinition kAtribuiColumns[] = {
    {"Tipo0", "varchar(4)"}, {"Num0", "varchar(8)"}, {"Ano0", "varchar(4)"},
    {"Tipo1", "varchar(4)"}, {"Num1", "varchar(8)"}, {"Ano1", "varchar(4)"},
};

constexpr ColumnDefinition kProdutosColumns[] = {
    {"Codigo", "varchar(15)"},    {"Descricao", "varchar(100)"}, {"Servico", "smallint"},
    {"Portes", "smallint"},       {"Grupo", "varchar(3)"},       {"Familia", "varchar(3)"},
    {"SubFamilia", "varchar(3)"}, {"Situacao", "varchar(1)"},
};

constexpr ColumnDefinition kTabGrupoProColumns[] = {
    {"Codigo", "varchar(3)"},
    {"Descricao", "varchar(50)"},
};

constexpr ColumnDefinition kTabFamProColumns[] = {
    {"Codigo", "varchar(3)"},
    {"Descricao", "varchar(50)"},
};

constexpr ColumnDefinition kTabSubFamProColumns[] = {
    {"Codigo", "varchar(3)"},
    {"Descricao", "varchar(50)"},
};

constexpr ColumnDefinition kTabSituacaoColumns[] = {
    {"Codigo", "varchar(1)"},
    {"Descricao", "varchar(50)"},
};

constexpr ColumnDefinition kTabItemColumns[] = {
    {"Codigo", "varchar(15)"},
    {"Descricao", "varchar(100)"},
};

constexpr ColumnDefinition kArmazensColumns[] = {
    {"Codigo", "varchar(3)"},
    {"Descricao", "varchar(50)"},
};

constexpr ColumnDefinition kBillingConfiguraColumns[] = {
    {"AnoSNC", "varchar(4)"},
};

constexpr std::string_view kViews[] = {
    "CREATE VIEW V_TabPostal AS SELECT Codigo, Descricao FROM TabPostal",
    "CREATE VIEW CodigosIva AS SELECT NumRegisto, Codigo, Descricao, CompraVenda, Zona, Taxa FROM TabIVA",
};

}  // namespace

namespace brevant {
constexpr databases::TableDefinition kClientes = SourceTable("Clientes", kClientesColumns);
constexpr databases::TableDefinition kTabPostal = SourceTable("TabPostal", kTabPostalColumns);
constexpr databases::TableDefinition kMovCliente = SourceTable("MovCliente", kMovClienteColumns);
constexpr databases::TableDefinition kMovProduto = SourceTable("MovProduto", kMovProdutoColumns);
constexpr databases::TableDefinition kLogMovTerceiro = SourceTable("LOG_MovTerceiro", kLogMovTerceiroColumns);
constexpr databases::TableDefinition kLogMovProduto = SourceTable("LOG_MovProduto", kMovProdutoColumns);
constexpr databases::TableDefinition kMovItem = SourceTable("MovItem", kMovItemColumns);
constexpr databases::TableDefinition kTabTipoMov = SourceTable("TabTipoMov", kTabTipoMovColumns);
constexpr databases::TableDefinition kTabIVA = SourceTable("TabIVA", kTabIVAColumns);
constexpr databases::TableDefinition kPagaComo = SourceTable("PagaComo", kPagaComoColumns);
constexpr databases::TableDefinition kCliMovEnc = SourceTable("CliMovEnc", kCliMovEncColumns);
constexpr databases::TableDefinition kImpostosConfig = SourceTable("ImpostosConfig", kImpostosConfigColumns);
constexpr databases::TableDefinition kImpostosMovProduto =
    SourceTable("ImpostosMovProduto", kImpostosMovProdutoColumns);
constexpr databases::TableDefinition kAtribui = SourceTable("Atribui", kAtribuiColumns);
constexpr databases::TableDefinition kProdutos = SourceTable("Produtos", kProdutosColumns);
constexpr databases::TableDefinition kTabGrupoPro = SourceTable("TabGrupoPro", kTabGrupoProColumns);
constexpr databases::TableDefinition kTabFamPro = SourceTable("TabFamPro", kTabFamProColumns);
constexpr databases::TableDefinition kTabSubFamPro = SourceTable("TabSubFamPro", kTabSubFamProColumns);
constexpr databases::TableDefinition kTabSituacao = SourceTable("TabSituacao", kTabSituacaoColumns);
constexpr databases::TableDefinition kTabItem = SourceTable("TabItem", kTabItemColumns);
constexpr databases::TableDefinition kArmazens = SourceTable("Armazens", kArmazensColumns);
constexpr databases::TableDefinition kConfigura = SourceTable("Configura", kBillingConfiguraColumns);
}  // namespace brevant

void CreateBrevantTables(data::Connection& connection) {
  using namespace brevant;
  for (const auto* table :
       {&kClientes,      &kTabPostal,      &kMovCliente,         &kMovProduto,  &kLogMovTerceiro,
        &kLogMovProduto, &kMovItem,        &kTabTipoMov,         &kTabIVA,      &kPagaComo,
        &kCliMovEnc,     &kImpostosConfig, &kImpostosMovProduto, &kAtribui,     &kProdutos,
        &kTabGrupoPro,   &kTabFamPro,      &kTabSubFamPro,       &kTabSituacao, &kTabItem,
        &kArmazens,      &kConfigura}) {
    connection.Execute(databases::CreateTableStatement(*table));
  }
  for (const std::string_view view : kViews) connection.Execute(view);
}

}  // namespace korvel::demo
