#include "databases/companies.h"

#include <fmt/format.h>

#include "databases/config_schema.h"
#include "databases/sql_admin.h"
#include "session/connections.h"
#include "toolkit/numbers.h"
#include "toolkit/text.h"

namespace korvel::databases {

namespace {

using toolkit::Icon;

constexpr int kCodeLength = 4;

void InsertCompany(data::Connection& master, std::string_view login, const NewCompany& company) {
  master.Execute("use Korvelconfig");
  master.Execute(
      "insert into empresas (codigo,descricao,utilizador,acessoprincipal, AcessoIndependente) values "
      "(?,?,?,?,?)",
      {company.code, company.description, login, company.main, company.independent});
  // One company alone is the main one.
  if (company.main) master.Execute("update empresas set acessoprincipal=0 where codigo<>?", {company.code});
}

/// A code of digits, padded; empty when it is none.
std::string FullCode(std::string_view code) {
  code = toolkit::Trim(code);
  const bool valid = !code.empty() && code.size() <= kCodeLength && toolkit::SoDigitos(code);
  return valid ? toolkit::Zerar(code, int{kCodeLength}) : std::string();
}

void ShowCreationError(toolkit::Dialogs& dialogs, const data::Error& error) {
  if (error.Kind() == data::Failure::Permission) {
    dialogs.Message(Icon::Warning,
                    "O seu Login não tem direitos para criar empresas !\nContacte o seu supervisor.");
  } else {
    dialogs.Message(Icon::Critical, fmt::format("Não foi possivel Criar a Nova Empresa!\n{}\n{}",
                                                error.Number(), error.what()));
  }
}

bool CreateEmpty(const session::Context& context, const std::string& database, const NewCompany& company) {
  session::ConnectionPtr master;
  if (!session::OpenSessionDatabase(context, master, "master")) {
    session::ShowConnectionError(context);
    return false;
  }
  try {
    if (CheckDatabase(*master, database)) {
      context.dialogs.Message(Icon::Warning, "Empresa Já  Existente!", "Atenção:");
      return false;
    }
    EnsureConfigDatabase(*master);
    CreateDatabase(context, *master, database, company);
    return true;
  } catch (const data::Error& error) {
    ShowCreationError(context.dialogs, error);
    return false;
  }
}

}  // namespace

std::string CompanyDatabase(std::string_view code) {
  return fmt::format("Korvel{}", code);
}

void EnsureConfigDatabase(data::Connection& master) {
  if (!CheckDatabase(master, session::kConfigDatabase)) master.Execute("Create Database KorvelConfig");
  master.Execute("use KorvelConfig");
  for (const TableDefinition& table : ConfigSchema()) {
    if (!SQLCheckTable(master, table.name)) master.Execute(CreateTableStatement(table));
  }
  master.Execute("use master");
}

void CreateDatabase(const session::Context& context, data::Connection& master, std::string_view database,
                    const NewCompany& company) {
  master.Execute(fmt::format("Create Database {}", database));
  if (!toolkit::IsBlank(company.code)) InsertCompany(master, context.session.gLogin, company);
  master.Execute("use master");
}

std::string NextCompanyCode(data::Connection& config) {
  const auto highest = config.Query("select a=isnull(max(codigo),0) from empresas");
  const auto next = toolkit::NumericPrefix(highest.Text("a")).Whole() + 1;
  return toolkit::Zerar(std::to_string(next), int{kCodeLength});
}

std::optional<UpgradeResult> CreateCompany(const session::Context& context, NewCompany company) {
  company.code = FullCode(company.code);
  if (company.code.empty()) {
    context.dialogs.Message(Icon::Warning, "O Codigo da Empresa tem que ser numérico !");
    return std::nullopt;
  }
  const std::string database = CompanyDatabase(company.code);
  if (!CreateEmpty(context, database, company)) return std::nullopt;
  UpgradeResult upgraded = ActDBaseExecuta(context, database);
  if (!upgraded.ran) return std::nullopt;
  return upgraded;
}

}  // namespace korvel::databases
