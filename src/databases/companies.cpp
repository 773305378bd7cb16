#include "databases/companies.h"

#include <fmt/format.h>

#include "databases/company_upgrade.h"
#include "databases/config_upgrade.h"
#include "databases/names.h"
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

void ShowExists(toolkit::Dialogs& dialogs) {
  dialogs.Message(Icon::Warning, "Empresa Já  Existente!", "Atenção:");
}

void ShowCreationError(toolkit::Dialogs& dialogs, const data::Error& error) {
  if (error.Native() == kDatabaseExists) {
    ShowExists(dialogs);  // another process was faster
  } else if (error.Kind() == data::Failure::Permission) {
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
      ShowExists(context.dialogs);
      return false;
    }
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

std::string FullCompanyCode(std::string_view code) {
  code = toolkit::Trim(code);
  const bool valid = !code.empty() && code.size() <= kCodeLength && toolkit::SoDigitos(code);
  return valid ? toolkit::Zerar(code, int{kCodeLength}) : std::string();
}

std::string CheckedCode(const session::Context& context, std::string_view code) {
  std::string full = FullCompanyCode(code);
  if (full.empty()) context.dialogs.Message(Icon::Warning, "O Codigo da Empresa tem que ser numérico !");
  return full;
}

void CreateDatabase(const session::Context& context, data::Connection& master, std::string_view database,
                    const NewCompany& company) {
  master.Execute("Create Database " + AsName(database));
  if (!toolkit::IsBlank(company.code)) InsertCompany(master, context.session.gLogin, company);
  master.Execute("use master");
}

std::string NextCompanyCode(data::Connection& config) {
  const auto highest = config.Query("select a=isnull(max(codigo),0) from empresas");
  const auto next = toolkit::NumericPrefix(highest.Text("a")).Whole() + 1;
  return toolkit::Zerar(std::to_string(next), int{kCodeLength});
}

void DeleteDatabase(data::Connection& master, std::string_view database, std::string_view code) {
  master.Execute("use master");
  if (CheckDatabase(master, database)) master.Execute("drop database " + AsName(database));
  if (toolkit::IsBlank(code)) return;
  master.Execute("use Korvelconfig");
  master.Execute("delete from empresas where codigo=?", {code});
  master.Execute("use master");
}

std::vector<std::string> CompanyCodes(data::Connection& config) {
  std::vector<std::string> codes;
  auto rows = config.Query("Select * from Empresas Where NumRegisto > 0  Order By Codigo,NumRegisto");
  for (; !rows.Eof(); rows.MoveNext()) codes.emplace_back(rows.Text("Codigo"));
  return codes;
}

std::optional<UpgradeResult> CreateCompany(const session::Context& context, NewCompany company) {
  company.code = CheckedCode(context, company.code);
  if (company.code.empty() || !EnsureConfigDatabase(context)) return std::nullopt;
  const std::string database = CompanyDatabase(company.code);
  if (!CreateEmpty(context, database, company)) return std::nullopt;
  UpgradeResult upgraded = ActDBaseExecuta(context, database);
  if (!upgraded.ran) return std::nullopt;
  return upgraded;
}

}  // namespace korvel::databases
