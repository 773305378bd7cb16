#include "demo/demo_company.h"

#include <fmt/format.h>

#include "data/sql_text.h"
#include "databases/companies.h"
#include "databases/sql_admin.h"
#include "demo/taxpayers.h"
#include "periods/parameters.h"
#include "periods/period_editor.h"
#include "session/connections.h"

namespace korvel::demo {

namespace {

using session::Context;

constexpr std::string_view kCompanyName = "Padaria d'Ávila & Filhos, Lda";
constexpr std::int64_t kCompanyNumber = 50999001;  // the first eight digits of its tax number

/// Drops what an earlier demonstration left. False when the user wants to keep it.
bool ClearTheWay(const Context& context, data::Connection& master) {
  const std::string company = databases::CompanyDatabase(kCompanyCode);
  const bool hasCompany = databases::CheckDatabase(master, company);
  const bool hasBooks = databases::CheckDatabase(master, kLunderDatabase);
  if (!hasCompany && !hasBooks) return true;
  const std::string question = fmt::format(
      "Já existe a empresa {} ou a base de dados {}. Pretende Eliminá-las?", kCompanyCode, kLunderDatabase);
  if (!context.dialogs.ConfirmDeletion("Confirmar Eliminação :", question)) return false;
  if (hasCompany) master.Execute("drop database " + company);
  if (hasBooks) master.Execute("drop database " + std::string(kLunderDatabase));
  master.Execute("use KorvelConfig");
  master.Execute("delete from empresas where codigo=" + data::Quoted(kCompanyCode));
  master.Execute("use master");
  return true;
}

void EnterCompany(session::SessionRecord& session) {
  session.gCodEmpresa = kCompanyCode;
  session.gBaseDados = databases::CompanyDatabase(kCompanyCode);
  session.gNomeEmpresa = kCompanyName;
  session.gDescEmpresa = kCompanyName;
}

bool SaveParameters(const Context& context) {
  periods::Parameters parameters;
  parameters.lunder = {context.session.gServidor, context.session.gLogin, context.session.gPassword,
                       std::string(kLunderDatabase)};
  parameters.Header_ApenasDiarioSI = true;  // opening balances come from the journal of opening balances
  return periods::GravarParametros(context, parameters, {});
}

struct HeaderValue {
  std::string_view column;
  std::string_view value;
};

constexpr HeaderValue kHeaderValues[] = {
    {"CompanyName", kCompanyName},
    {"BusinessName", "Padaria d'Ávila"},
    {"BuildingNumber", "12"},
    {"StreetName", "Rua da Conceição"},
    {"AddressDetail", "Rua da Conceição, 12"},
    {"City", "Ponta Delgada"},
    {"PostalCode", "9500-053"},
    {"Region", "Açores"},
    {"CurrencyCode", "EUR"},
    {"ProductCompanyTaxId", "508123453"},
    {"SoftwareCertificateNumber", "0"},
    {"HeaderComment", "Empresa de demonstração"},
    {"Telephone", "296000000"},
    {"Email", "geral@exemplo.pt"},
    {"WebSite", "www.exemplo.pt"},
};

bool SavePeriod(const Context& context, int year) {
  auto form = periods::OpenHeader(context, periods::HeaderMode::New, 0);
  if (!form) return false;
  periods::PeriodHeader& header = form->header;
  periods::ChangeKind(header, "C");
  for (const HeaderValue& row : kHeaderValues) header[row.column] = row.value;
  header["CompanyID"] = header["TaxRegistrationNumber"] = PortugueseTaxNumber(kCompanyNumber);
  header["FiscalYear"] = std::to_string(year);
  periods::LeaveFiscalYear(context.clock, header);
  return periods::GravarHeader(context, periods::HeaderMode::New, header);
}

}  // namespace

std::optional<LunderSummary> MakeDemoCompany(const Context& context, const LunderOptions& options) {
  session::ConnectionPtr connection;
  if (!session::OpenSessionDatabase(context, connection, "master")) {
    session::ShowConnectionError(context);
    return std::nullopt;
  }
  databases::EnsureConfigDatabase(*connection);
  if (!ClearTheWay(context, *connection)) return std::nullopt;
  databases::CreateDatabase(context, *connection, kLunderDatabase, {});
  connection->Execute("use " + std::string(kLunderDatabase));
  const LunderSummary summary = FillLunder(*connection, options, context.progress);
  connection.reset();

  const databases::NewCompany company{.code = std::string(kCompanyCode),
                                      .description = std::string(kCompanyName)};
  if (!databases::CreateCompany(context, company)) return std::nullopt;
  EnterCompany(context.session);
  if (!SaveParameters(context) || !SavePeriod(context, options.year)) return std::nullopt;
  return summary;
}

}  // namespace korvel::demo
