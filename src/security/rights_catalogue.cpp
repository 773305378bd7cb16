#include "security/rights_catalogue.h"

#include <algorithm>
#include <array>

#include "toolkit/text.h"

namespace korvel::security {

namespace {

constexpr FormButton kAlterar{"cmdAlterar", "&Alterar"};
constexpr FormButton kFechar{"cmdFechar", "&Fechar"};
constexpr FormButton kGravar{"cmdGravar", "&Gravar"};
constexpr FormButton kImprimir{"cmdImprimir", "&Imprimir"};
constexpr FormButton kLimpaLVW{"cmdLimpaLVW", "&Limpar Grelha"};
constexpr FormButton kPesquisaPastas{"cmdPesquisaPastas", "..."};
constexpr FormButton kVerRegistos{"cmdVerRegistos", "&Ver Registos"};

constexpr FormButton kLogGeral[]{{"cmdProcurar", "&Procurar"}, kImprimir, {"Eliminar", "&Eliminar"}, kFechar};
constexpr FormButton kAlteraPassword[]{{"cmdOK", "&OK"}, {"cmdCancelar", "&Cancelar"}};

constexpr FormButton kCustomerLunder[]{
    {"cmdCalcular", "Carregar &Plano de Contas (Clientes)"}, kGravar, kAlterar, kFechar};
constexpr FormButton kSupplierLunder[]{
    {"cmdCalcular", "Carregar &Plano de Contas (Fornecedores)"}, kGravar, kAlterar, kFechar};
constexpr FormButton kTaxTable[]{{"cmdCalcular", "Carregar Tabela de &Impostos"}, kGravar, kAlterar, kFechar};
constexpr FormButton kGeneralLedger[]{{"cmdCalcular", "Carregar &Plano de Contas"}, kGravar, kFechar};
constexpr FormButton kGeneralLedgerEntries[]{
    {"cmdCalcular", "&Processar Movimentos"}, kVerRegistos, kGravar, kLimpaLVW, kFechar};
constexpr FormButton kCustomerBrevant[]{{"cmdCalcular", "Carregar &Clientes"}, kGravar, kAlterar, kFechar};
constexpr FormButton kProductBrevant[]{{"cmdCalcular", "Carregar &Produtos"}, kGravar, kFechar};
constexpr FormButton kSourceDocuments[]{
    {"cmdCalcular", "&Processar Documentos"}, kVerRegistos, kGravar, kLimpaLVW, kFechar};

constexpr FormButton kListing[]{kImprimir, kFechar};
constexpr FormButton kExportaSAFT[]{kPesquisaPastas, {"cmdProcessar", "&Processar"}, kFechar};

constexpr FormButton kWizard[]{
    kPesquisaPastas,
    {"cmdGravar", "&Processar"},
    kFechar,
    {"cmdEnvioAuto", "Envio Automático"},
    {"cmdExportacao_Prepara", "..."},
    {"cmdExportar", "&Exportar"},
    {"cmdC_Contas_Carregar", "Carregar Plano de Contas"},
    {"cmdC_Contas_Gravar", "Gravar Plano de Contas"},
    {"cmdC_Clientes_Carregar", "Carregar Clientes da Contabilidade"},
    {"cmdC_Clientes_Gravar", "Gravar Clientes da Contabilidade"},
    {"cmdC_Clientes_Alterar", "Alterar Clientes da Contabilidade"},
    {"cmdC_Fornece_Carregar", "Carregar Fornecedores da Contabilidade"},
    {"cmdC_Fornece_Gravar", "Gravar Fornecedores da Contabilidade"},
    {"cmdC_Fornece_Alterar", "Alterar Fornecedores da Contabilidade"},
    {"cmdC_Impostos_Carregar", "Carregar Impostos da Contabilidade"},
    {"cmdC_Impostos_Gravar", "Gravar Impostos da Contabilidade"},
    {"cmdC_Impostos_Alterar", "Alterar Impostos da Contabilidade"},
    {"cmdC_Movimentos_Gravar", "Gravar Movimentos Contabilísticos"},
    {"cmdG_Clientes_Carregar", "Carregar Clientes da Gestão"},
    {"cmdG_Clientes_Gravar", "Gravar Clientes da Gestão"},
    {"cmdG_Produtos_Carregar", "Carregar Produtos da Gestão"},
    {"cmdG_Produtos_Gravar", "Gravar Produtos da Gestão"},
    {"cmdG_Impostos_Carregar", "Carregar Impostos da Gestão"},
    {"cmdG_Impostos_Gravar", "Gravar Impostos da Gestão"},
    {"cmdG_Movimentos_Gravar", "Gravar Documentos Comerciais da Gestão"},
};

constexpr FormButton kTabHeader[]{{"cmdAdicionar", "A&dicionar"},
                                  kAlterar,
                                  {"cmdVer", "&Ver"},
                                  {"cmdEliminar", "&Eliminar"},
                                  {"cmdPesquisar", "&Pesquisar"},
                                  {"cmdRefresh", "&Refrescar"},
                                  kFechar};

constexpr FormButton kParamGeral[]{
    {"cmdDBBrevant", "..."},
    {"cmdDBLunder", "..."},
    {"cmdActivarLigacoes", "Activar Ligações"},
    {"cmdHeader_ContaInicial", "..."},
    {"cmdHeader_ContaFinal", "..."},
    {"cmdProduct_Grupo", "..."},
    {"cmdProduct_Familia", "..."},
    {"cmdProduct_SubFamilia", "..."},
    {"cmdProduct_Situacao", "..."},
    {"cmdCarregarTiposMov", "Carregar &Tipos de Movimentos"},
    {"cmdCarregarArmazens", "Carregar Armazéns"},
    {"cmdActualizaArmazem", "Actualizar Armazém"},
    kGravar,
    kFechar,
};
constexpr FormButton kAAResponsavel[]{kGravar, kFechar};

constexpr CatalogueForm kForms[]{
    {"frmLogGeral", "Histórico de Trabalho", kLogGeral},
    {"frmAlteraPassword", "Alterar Password", kAlteraPassword},
    {"frmCustomerLunder", "Clientes da Contabilidade  -  Customer", kCustomerLunder},
    {"frmCustomerBrevant", "Clientes da Gestão  -  Customer", kCustomerBrevant},
    {"frmExportaSAFT", "Exportação de Ficheiros SAF-T", kExportaSAFT},
    {"frmWizard", "Envio de SAF-T em Modo Sequencial", kWizard},
    {"frmGeneralLedger", R"("General Ledger" - Plano de Contas)", kGeneralLedger},
    {"frmGeneralLedgerEntriesLunder", "Movimentos Contabilísticos", kGeneralLedgerEntries},
    {"frmImpTabHeader", R"(Impressão do "Header" - Identificação da Empresa)", kListing},
    {"frmImpCustomerBrevant", R"(Impressão do "Customer" - Clientes da Gestão)", kListing},
    {"frmImpCustomerLunder", R"(Impressão do "Customer" - Clientes da Contabilidade)", kListing},
    {"frmImpSupplierLunder", R"(Impressão do "Supplier" - Fornecedores)", kListing},
    {"frmImpGeneralLedger", R"(Impressão do "General Ledger" - Plano de Contas)", kListing},
    {"frmImpGeneralLedgerEntriesLunder",
     R"(Impressão do "General Ledger Entries" - Movimentos Contabilísticos)", kListing},
    {"frmImpTaxTableLunder", R"(Impressão da "Tax Table" - Impostos da Contabilidade)", kListing},
    {"frmImpTaxTableBrevant", R"(Impressão da "Tax Table" - Impostos da Gestão)", kListing},
    {"frmImpProductBrevant", R"(Impressão de "Product" - Produtos)", kListing},
    {"frmImpSourceDocumentsBrevant", R"(Impressão de "Source Documents" - Documentos Comerciais)", kListing},
    {"frmProductBrevant", "Produtos da Gestão", kProductBrevant},
    {"frmSourceDocumentsBrevant", "Documentos Comerciais da Gestão", kSourceDocuments},
    {"frmSupplierLunder", "Fornecedores da Contabilidade  -  Supplier", kSupplierLunder},
    {"frmTabHeader", R"(Identificação da Empresa - "Header")", kTabHeader},
    {"frmTaxTableBrevant", R"(Tabela de Impostos da Gestão  - "Tax Table")", kTaxTable},
    {"frmTaxTableLunder", R"(Tabela de Impostos da Contabilidade  - "Tax Table")", kTaxTable},
    {"frmParamGeral", "Parâmetros Gerais", kParamGeral},
    {"frmAAResponsavel", "Config. Entidade Responsável pelo Processamento", kAAResponsavel},
};

/// The columns of `Acessos` hold every entry whole.
constexpr bool Fits(const CatalogueForm& form) {
  constexpr std::size_t kCaptions = 50, kKeys = 100;
  return form.caption.size() <= kKeys &&
         std::all_of(form.buttons.begin(), form.buttons.end(), [&](const FormButton& button) {
           return button.caption.size() <= kCaptions &&
                  kProgramFile.size() + form.name.size() + button.name.size() <= kKeys;
         });
}
static_assert(std::all_of(std::begin(kForms), std::end(kForms), Fits));

bool LeavesTheForm(std::string_view caption) {
  constexpr std::array<std::string_view, 4> kWords{"FECHA", "CANCEL", "VOLTA", "SAI"};
  const std::string text = toolkit::Upper(WithoutAccessKey(caption));
  const std::string_view trimmed = toolkit::Trim(text);
  return std::any_of(kWords.begin(), kWords.end(),
                     [&](std::string_view word) { return trimmed.starts_with(word); });
}

}  // namespace

std::span<const CatalogueForm> RightsCatalogue() {
  return kForms;
}

const CatalogueForm* FindForm(std::string_view name) {
  const auto found = std::find_if(std::begin(kForms), std::end(kForms), [&](const CatalogueForm& form) {
    return toolkit::SameIgnoringCase(form.name, name);
  });
  return found == std::end(kForms) ? nullptr : found;
}

std::string_view FormCaption(std::string_view name) {
  const CatalogueForm* form = FindForm(name);
  return form ? form->caption : std::string_view();
}

bool IsGuardable(std::string_view name, std::string_view caption) {
  const std::string lower = toolkit::Lower(name);
  return lower.starts_with("cmd") && lower != "cmdsim" && lower != "cmdnao" && IsGuardableCaption(caption);
}

bool IsGuardableCaption(std::string_view caption) {
  constexpr std::string_view kSigns = "<>.";
  const bool sign = !caption.empty() && kSigns.find(caption.front()) != std::string_view::npos;
  return !sign && !LeavesTheForm(caption);
}

std::string WithoutAccessKey(std::string_view caption) {
  return toolkit::ReplaceAll(caption, "&", "");
}

std::string RightKey(std::string_view form, std::string_view control) {
  return std::string(kProgramFile).append(form).append(control);
}

}  // namespace korvel::security
