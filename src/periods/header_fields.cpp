#include "periods/header_fields.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <stdexcept>
#include <string>

#include "databases/company_schema.h"
#include "periods/staged_tables.h"

namespace korvel::periods {

namespace {

constexpr std::array<HeaderField, 29> kFields{{
    {"FiscalYear", "txtHeader_FiscalYear", "&Ano"},
    {"StartDate", "edatHeader_StartDate", "Data &Inicial"},
    {"EndDate", "edatHeader_EndDate", "Data &Final"},
    {"AuditFileVersion", "txtHeader_AuditFileVersion", "&Versão", {}, true},
    {"CompanyID", "txtHeader_CompanyID", "&Registo Comercial",
     "Exemplo: CRCPD 0000 (Conservatória do Registo Comercial de Ponta Delgada nº 0000) ou então apenas o "
     "NIF",
     true},
    {"TaxRegistrationNumber", "txtHeader_TaxResgistrationNumber", "&Nº de Contribuinte",
     "O preenchimento do NIF/Contribuinte não pode conter espaços nem Letras", true},
    {"TaxAccountingBasis", "eselHeader_TaxAccountingBasis", "&Sistema Contabilístico", {}, true},
    {"CompanyName", "txtHeader_CompanyName", "&Empresa", {}, true},
    {"BusinessName", "txtHeader_BusinessName", "&Designação Comercial"},
    {"BuildingNumber", "txtHeader_BuildingNumber", "Número de &Polícia", {}, true},
    {"StreetName", "txtHeader_StreetName", "Nome da R&ua", {}, true},
    {"AddressDetail", "txtHeader_AdressDetail", "N&ome da Rua + Número de Polícia", {}, true},
    {"City", "txtHeader_City", "&Localidade", {}, true},
    {"PostalCode", "txtHeader_PostalCode", "Código Pos&tal", "Formato do Códgio Postal: 0000-000", true},
    {"Region", "txtHeader_Region", "Distrito / País", {}, true},
    {"Country", "txtHeader_Country", "País", {}, true},
    {"CurrencyCode", "txtHeader_CurrencyCode", "&Moeda", {}, true},
    {"DateCreated", "txtHeader_DateCreated", "Data de Criação"},
    {"ProductCompanyTaxId", "txtHeader_ProductCompanyTaxId",
     "Identificação fiscal da Entidade produtora do soft&ware"},
    {"SoftwareCertificateNumber", "txtHeader_SoftwareCertificateNumber",
     "Número do certificado / Versão do Produto"},
    {"TaxEntity", "txtHeader_TaxEntity", "Esta&belecimento",
     "Na ausência do Estabelecimento, deve preencher com:  Caso seja Contabilidade ou Integrado= Sede  ou "
     "Facturação= Global"},
    {"ProductID", "txtHeader_ProductID", "Produto"},
    {"ProductVersion", "txtHeader_ProductVersion", "Versão do Produto"},
    {"HeaderComment", "txtHeader_HeaderComment", "Comentário", {}, true},
    {"Telephone", "txtHeader_Telephone", "Telefone", {}, true},
    {"Fax", "txtHeader_Fax", "Fa&x", {}, true},
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

int HeaderWidth(std::string_view column) {
  const auto schema = databases::CompanySchema();
  const auto table = std::ranges::find(schema, kHeaderTable, &databases::TableDefinition::name);
  const auto found = std::ranges::find(table->columns, column, &databases::ColumnDefinition::name);
  if (found == table->columns.end()) throw std::out_of_range("TabHeader: " + std::string(column));
  const std::string_view width = found->type.substr(found->type.find('(') + 1);
  int characters = 0;
  std::from_chars(width.data(), width.data() + width.size(), characters);
  return characters;
}

std::span<const HeaderListColumn> HeaderListColumns() {
  return kListColumns;
}

}  // namespace korvel::periods
