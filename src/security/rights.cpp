#include "security/rights.h"

#include <algorithm>
#include <array>

#include "data/collation.h"
#include "databases/sql_admin.h"
#include "security/base_rights.h"
#include "security/rights_catalogue.h"
#include "session/connections.h"
#include "toolkit/text.h"

namespace korvel::security {

namespace {

using session::Context;
using toolkit::Icon;

/// Stands for all users, or all companies.
constexpr std::string_view kAll = "TODOS";

bool RightIs1(data::Connection& config, std::string_view key, std::string_view user,
              std::string_view company) {
  const auto row = config.Query(
      "select chave,value from acessos where chave=? and utilizador=? and empresa=?", {key, user, company});
  return !row.Eof() && row.Integer("value") == 1;
}

bool SessionMay(const Context& context, data::Connection& config, std::string_view form,
                std::string_view control) {
  const std::string& user = context.session.gUtilizador;
  return IsServiceLogin(user) ||
         AccCheckAcesso(config, user, RightsCompany(config, context.session.gCodEmpresa), kProgramFile, form,
                        control);
}

bool CompanyIsWritable(const Context& context) {
  session::ConnectionPtr company;
  std::string database;
  if (!session::AbreGeral(context, company, database)) return false;
  if (!databases::CheckForReadOnly(*company, database)) return true;
  context.dialogs.Message(
      Icon::Warning,
      "Não Pode Efectuar Mudanças à Empresa Devido ao Facto de a Mesma se Encontrar Bloqueada!",
      "Não é Possível Continuar:");
  return false;
}

}  // namespace

bool IsServiceLogin(std::string_view user) {
  constexpr std::array<std::string_view, 2> kLogins{"SA", "QUILT"};
  const std::string upper = toolkit::Upper(user);
  return std::find(kLogins.begin(), kLogins.end(), upper) != kLogins.end();
}

bool AccCheckAcesso(data::Connection& config, std::string_view user, std::string_view company,
                    std::string_view program, std::string_view form, std::string_view control) {
  if (IsServiceLogin(user)) return true;
  return RightIs1(config, std::string(program).append(form).append(control), user, company);
}

bool AccCheckUtilizApp(data::Connection& config, std::string_view user, std::string_view company,
                       std::string_view key) {
  return IsServiceLogin(user) || RightIs1(config, key, user, company);
}

void AccApagaTodososAcessos(data::Connection& config, std::string_view user, std::string_view company) {
  // Older programs sent these as "delete * from acessos", which no server understands.
  if (user == kAll && company == kAll) {
    config.Execute("delete from acessos");
  } else if (user == kAll) {
    config.Execute("delete from acessos where empresa=?", {company});
  } else {
    config.Execute("delete from acessos where utilizador=? and empresa=?", {user, company});
  }
}

std::string GetAcessoPrincipal(data::Connection& config) {
  std::array arguments{data::ProcedureArgument{"", true}};
  config.Call("GetAcessoPrincipal", arguments);
  return std::string(toolkit::Trim(data::ToText(arguments[0].value)));
}

std::int64_t GetAcessoIndependente(data::Connection& config, std::string_view company) {
  std::array arguments{data::ProcedureArgument{company}};
  return config.Call("GetAcessoIndependente", arguments);
}

std::string RightsCompany(data::Connection& config, std::string_view company) {
  std::string main = GetAcessoPrincipal(config);
  const bool own =
      main.empty() || data::SameText(main, company) || GetAcessoIndependente(config, company) == 1;
  return own ? std::string(company) : main;
}

bool EnterWithRights(const Context& context, data::Connection& config, std::string_view company) {
  const std::string& user = context.session.gUtilizador;
  const std::string rights = RightsCompany(config, company);
  AccCopiaAcessosBase(context, config, user, rights);
  if (AccCheckUtilizApp(config, user, rights, kProgramFile)) return true;
  context.dialogs.Message(Icon::Critical, "Acesso negado à Empresa !");
  return false;
}

bool MayOpenForm(const Context& context, std::string_view form) {
  session::ConnectionPtr config;
  if (!session::AbreConfig(context, config)) {
    session::ShowConnectionError(context);
    return false;
  }
  if (SessionMay(context, *config, form, {})) return true;
  context.dialogs.Message(Icon::Critical, "Acesso Negado!");
  return false;
}

bool Acessos_bln(const Context& context, std::string_view form, std::string_view control, bool forWriting) {
  session::ConnectionPtr config;
  if (!session::AbreConfig(context, config)) return false;
  if (!SessionMay(context, *config, form, control)) {
    context.dialogs.Message(Icon::Critical, "Acesso Negado !");
    return false;
  }
  session::FechaConection(config);
  return !forWriting || CompanyIsWritable(context);
}

}  // namespace korvel::security
