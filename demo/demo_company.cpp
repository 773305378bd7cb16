#include "demo/demo_company.h"

#include <fmt/format.h>

#include <algorithm>
#include <string>
#include <vector>

#include "data/sql_text.h"
#include "databases/companies.h"
#include "databases/config_upgrade.h"
#include "databases/sql_admin.h"
#include "demo/branches.h"
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
  std::vector<std::string> found;
  for (const std::string& name : {databases::CompanyDatabase(kCompanyCode), std::string(kLunderDatabase),
                                  std::string(kBrevantDatabase)}) {
    if (databases::CheckDatabase(master, name)) found.push_back(name);
  }
  if (found.empty()) return true;
  const std::string question =
      fmt::format("Já existe a empresa {} ou as bases de dados {} e {}. Pretende Eliminá-las?", kCompanyCode,
                  kLunderDatabase, kBrevantDatabase);
  if (!context.dialogs.ConfirmDeletion("Confirmar Eliminação :", question)) return false;
  for (const std::string& name : found) master.Execute("drop database " + name);
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
  const session::SessionRecord& session = context.session;
  const auto on = [&](std::string_view database) {
    return periods::SourceLocation{session.gServidor, session.gLogin, session.gPassword,
                                   std::string(database)};
  };
  periods::Parameters parameters;
  parameters.lunder = on(kLunderDatabase);
  parameters.brevant = on(kBrevantDatabase);
  parameters.Header_ApenasDiarioSI = true;  // opening balances come from the journal of opening balances
  parameters.IncluirDocumentosAnulados = true;
  parameters.Product_Patamar = "Grupo";
  std::vector<periods::Warehouse> warehouses;
  for (const Branch& branch : kBranches) {
    warehouses.push_back(
        {std::string(branch.warehouse), std::string(branch.name), std::string(branch.region)});
  }
  return periods::GravarParametros(context, parameters, warehouses);
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

/// A period that stands ready: of a year, for a kind of system, between two days.
struct Period {
  std::string_view kind;
  int year;
  std::string_view start;  // MM-DD
  std::string_view end;
};

bool SavePeriod(const Context& context, const Period& period) {
  auto form = periods::OpenHeader(context, periods::HeaderMode::New, 0);
  if (!form) return false;
  periods::PeriodHeader& header = form->header;
  periods::ChangeKind(header, period.kind);
  for (const HeaderValue& row : kHeaderValues) header[row.column] = row.value;
  header["CompanyID"] = header["TaxRegistrationNumber"] = PortugueseTaxNumber(kCompanyNumber);
  header["FiscalYear"] = std::to_string(period.year);
  header["StartDate"] = fmt::format("{}-{}", period.year, period.start);
  header["EndDate"] = fmt::format("{}-{}", period.year, period.end);
  return periods::GravarHeader(context, periods::HeaderMode::New, header);
}

/// A run of the wizard for a year or a month replaces the period of the same dates whatever its kind, and
/// copies the last one of its own kind. So each kind has a quarter of the year before, which such runs leave
/// alone.
bool SavePeriods(const Context& context, int year) {
  const Period periods[] = {{"C", year - 1, "04-01", "06-30"},
                            {"F", year - 1, "07-01", "09-30"},
                            {"I", year - 1, "10-01", "12-31"},
                            {"C", year, "01-01", "12-31"}};
  return std::ranges::all_of(periods, [&](const Period& period) { return SavePeriod(context, period); });
}

/// Opens a fresh database of the session's server. Nothing when that failed, which is shown.
session::ConnectionPtr MakeDatabase(const Context& context, std::string_view name) {
  session::ConnectionPtr connection;
  if (!session::OpenSessionDatabase(context, connection, "master")) {
    session::ShowConnectionError(context);
    return nullptr;
  }
  databases::CreateDatabase(context, *connection, name, {});
  connection->Execute("use " + std::string(name));
  return connection;
}

std::optional<BooksSummary> MakeSources(const Context& context, const BooksOptions& options) {
  const session::ConnectionPtr lunder = MakeDatabase(context, kLunderDatabase);
  const session::ConnectionPtr brevant = lunder ? MakeDatabase(context, kBrevantDatabase) : nullptr;
  if (!brevant) return std::nullopt;
  return FillBooks(*lunder, *brevant, options, context.progress);
}

}  // namespace

std::optional<BooksSummary> MakeDemoCompany(const Context& context, const BooksOptions& options) {
  if (!databases::EnsureConfigDatabase(context)) return std::nullopt;
  {
    session::ConnectionPtr master;
    if (!session::OpenSessionDatabase(context, master, "master")) {
      session::ShowConnectionError(context);
      return std::nullopt;
    }
    if (!ClearTheWay(context, *master)) return std::nullopt;
  }
  const std::optional<BooksSummary> summary = MakeSources(context, options);
  const databases::NewCompany company{.code = std::string(kCompanyCode),
                                      .description = std::string(kCompanyName)};
  if (!summary || !databases::CreateCompany(context, company)) return std::nullopt;
  EnterCompany(context.session);
  if (!SaveParameters(context) || !SavePeriods(context, options.year)) return std::nullopt;
  return summary;
}

}  // namespace korvel::demo
