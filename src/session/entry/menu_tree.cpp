#include "session/entry/menu_tree.h"

#include <algorithm>
#include <iterator>

#include "toolkit/text.h"

namespace korvel::session {
namespace {

constexpr std::string_view kCommon = "mnuDefinicoesComuns";
constexpr std::string_view kLunderMenu = "mnuDefinicoesLunder";
constexpr std::string_view kBrevantMenu = "mnuDefinicoesBrevant";
constexpr std::string_view kExport = "mnuExporta";
constexpr std::string_view kTools = "Util";
constexpr std::string_view kNone = {};
constexpr std::string_view kHeaderListings = "mnuImpressoesHEADER";
constexpr std::string_view kLunderListings = "mnuImpTabLunder";
constexpr std::string_view kBrevantListings = "mnuImpTabBrevant";

constexpr MenuTitle kMenus[] = {
    {kCommon, "Definições Comuns"},
    {kLunderMenu, "Definições para Contabilidade"},
    {kBrevantMenu, "Definições do Brevant"},
    {kExport, "Exportação de Dados"},
    {kTools, "&Utilitários"},
};

constexpr MenuEntry kEntries[] = {
    {kCommon, kNone, "mnuTabHeader", "\"Header\" - Identificação da Empresa", "frmTabHeader"},
    {kCommon, kHeaderListings, "mnuImpTabHeader", "Impressão do \"Header\" - Identificação da Empresa",
     "frmImpTabHeader"},
    {kLunderMenu, kNone, "mnuGeneralLedger", "\"General Ledger\" - Plano de Contas", "frmGeneralLedger"},
    {kLunderMenu, kNone, "mnuCustomerPOC", "\"Customer\" - Clientes", "frmCustomerLunder"},
    {kLunderMenu, kNone, "mnuSupplierPOC", "\"Supplier\" - Fornecedores", "frmSupplierLunder"},
    {kLunderMenu, kNone, "mnuTaxTablePOC", "\"Tax Table\" - Impostos", "frmTaxTableLunder"},
    {kLunderMenu, kNone, "mnuGeneralLedgerEntries", "\"General Ledger Entries\" - Movimentos Contabilísticos",
     "frmGeneralLedgerEntriesLunder"},
    {kLunderMenu, kLunderListings, "mnuImpTabgeneralLedger",
     "Impressão do \"General Ledger\" - Plano de Contas", "frmImpGeneralLedger"},
    {kLunderMenu, kLunderListings, "mnuImpTabCustomeLunder", "Impressão do \"Customer\" - Clientes",
     "frmImpCustomerLunder"},
    {kLunderMenu, kLunderListings, "mnuImpTabSupplierPOC", "Impressão do \"Supplier\" - Fornecedores",
     "frmImpSupplierLunder"},
    {kLunderMenu, kLunderListings, "mnuImpTabTaxTablePOC", "Impressão da \"Tax Table\" - Impostos",
     "frmImpTaxTableLunder"},
    {kLunderMenu, kLunderListings, "mnuImpTab",
     "Impressão do \"General Ledger Entries\" - Movimentos Contabilísticos",
     "frmImpGeneralLedgerEntriesLunder"},
    {kBrevantMenu, kNone, "mnuCustomerBrevant", "\"Customer\" - Clientes", "frmCustomerBrevant"},
    {kBrevantMenu, kNone, "mnuProdutBrevant", "\"Product\" - Produtos", "frmProductBrevant"},
    {kBrevantMenu, kNone, "mnuTaxTableGest", "\"Tax Table\" - Impostos", "frmTaxTableBrevant"},
    {kBrevantMenu, kNone, "mnuSourceDocumentsGest", "\"Source Documents\" - Documentos Comerciais",
     "frmSourceDocumentsBrevant"},
    {kBrevantMenu, kBrevantListings, "mnuImpTabCustomeBrevant", "Impressão do \"Customer\" - Clientes",
     "frmImpCustomerBrevant"},
    {kBrevantMenu, kBrevantListings, "mnuImpTabProductBrevant", "Impressão de \"Product\" - Produtos",
     "frmImpProductBrevant"},
    {kBrevantMenu, kBrevantListings, "mnuImpTabTaxTableBrevant", "Impressão da \"Tax Table\" - Impostos",
     "frmImpTaxTableBrevant"},
    {kBrevantMenu, kBrevantListings, "mnuImpTabSourceDocumentsBrevant",
     "Impressão de \"Source Documents\" - Documentos Comerciais", "frmImpSourceDocumentsBrevant"},
    {kExport, kNone, "mnuExportaSAFT", "Exportação de Ficheiros SAF-T", "frmExportaSAFT"},
    {kExport, kNone, "mnuExportaWizard", "Envio de SAF-T em Modo Sequencial", "frmWizard"},
    {kTools, kNone, "ParamGeral", "Parâmetros Gerais", "frmParamGeral"},
    {kTools, kNone, "EntidadeResp", "Config. Entidade Responsável pelo Processamento", "frmAAResponsavel"},
    {kTools, kNone, "Loggeral", "Histórico de Trabalho", "frmLogGeral"},
    {kTools, kNone, "mnuAlterarPassword", "Mudar Password", "frmAlteraPassword"},
    {kTools, kNone, "mnuBloquearPrograma", "Bloquear Programa", "frmBloquear", false},
    {kTools, kNone, "ActualizaDBase", "Actualização de Base de Dados", "", false},
    {kTools, kNone, "Informa", "&Info...", "frmAbout", false},
    {kTools, kNone, "LogOff", "Log &Off", "", false},
};

}  // namespace

std::span<const MenuTitle> Menus() {
  return kMenus;
}

std::span<const MenuEntry> MenuTree() {
  return kEntries;
}

const MenuEntry* FindMenuEntry(std::string_view name) {
  const auto* found = std::ranges::find_if(
      kEntries, [&](const MenuEntry& entry) { return toolkit::SameIgnoringCase(entry.name, name); });
  return found == std::end(kEntries) ? nullptr : found;
}

}  // namespace korvel::session
