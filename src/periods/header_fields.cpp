#include "periods/header_fields.h"

#include <array>

namespace korvel::periods {

namespace {

constexpr std::array<HeaderField, 29> kFields{{
    {"FiscalYear", "txtHeader_FiscalYear", "Ano"},
    {"StartDate", "edatHeader_StartDate", "Data Inicial"},
    {"EndDate", "edatHeader_EndDate", "Data Final"},
    {"AuditFileVersion", "txtHeader_AuditFileVersion", "Versão", {}, true},
    {"CompanyID", "txtHeader_CompanyID", "Registo Comercial",
     "Exemplo: CRCPD 0000 (Conservatória do Registo Comercial de Ponta Delgada nº 0000) ou então apenas o "
     "NIF",
     true},
    {"TaxRegistrationNumber", "txtHeader_TaxResgistrationNumber", "Nº de Contribuinte",
     "O preenchimento do NIF/Contribuinte não pode conter espaços nem Letras", true},
    {"TaxAccountingBasis", "eselHeader_TaxAccountingBasis", "Sistema Contabilístico", {}, true},
    {"CompanyName", "txtHeader_CompanyName", "Empresa", {}, true},
    {"BusinessName", "txtHeader_BusinessName", "Designação Comercial"},
    {"BuildingNumber", "txtHeader_BuildingNumber", "Número de Polícia", {}, true},
    {"StreetName", "txtHeader_StreetName", "Nome da Rua", {}, true},
    {"AddressDetail", "txtHeader_AdressDetail", "Nome da Rua + Número de Polícia", {}, true},
    {"City", "txtHeader_City", "Localidade", {}, true},
    {"PostalCode", "txtHeader_PostalCode", "Código Postal", "Formato do Códgio Postal: 0000-000", true},
    {"Region", "txtHeader_Region", "Distrito / País", {}, true},
    {"Country", "txtHeader_Country", "País", {}, true},
    {"CurrencyCode", "txtHeader_CurrencyCode", "Moeda", {}, true},
    {"DateCreated", "txtHeader_DateCreated", "Data de Criação"},
    {"ProductCompanyTaxId", "txtHeader_ProductCompanyTaxId",
     "Identificação fiscal da Entidade produtora do software"},
    {"SoftwareCertificateNumber", "txtHeader_SoftwareCertificateNumber",
     "Número do certificado / Versão do Produto"},
    {"TaxEntity", "txtHeader_TaxEntity", "Estabelecimento",
     "Na ausência do Estabelecimento, deve preencher com:  Caso seja Contabilidade ou Integrado= Sede  ou "
     "Facturação= Global"},
    {"ProductID", "txtHeader_ProductID", "Produto"},
    {"ProductVersion", "txtHeader_ProductVersion", "Versão do Produto"},
    {"HeaderComment", "txtHeader_HeaderComment", "Comentário", {}, true},
    {"Telephone", "txtHeader_Telephone", "Telefone", {}, true},
    {"Fax", "txtHeader_Fax", "Fax", {}, true},
    {"Email", "txtHeader_Email", "Email", {}, true},
    {"WebSite", "txtHeader_Website", "Página na Internet", {}, true},
    {"Cliente", "txtCliente", "Cliente (Autofacturação)"},
}};

constexpr std::array<HeaderListColumn, 9> kListColumns{{
    {"FiscalYear", "Ano"},
    {"StartDate", "Dt Inicial"},
    {"EndDate", "Dt Final"},
    {"CompanyName", "Empresa"},
    {"MTaxAccountingBasis", "Sistema Contabilístico"},
    {"AuditFileVersion", "Versão"},
    {"utilizador", "Utilizador"},
    {"datasys", "Data Sistema"},
    {"Cliente", "Cliente Autofacturação"},
}};

}  // namespace

std::span<const HeaderField> HeaderFields() {
  return kFields;
}

std::span<const HeaderListColumn> HeaderListColumns() {
  return kListColumns;
}

}  // namespace korvel::periods
