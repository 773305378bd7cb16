#include "session/entry/company_selection.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>

#include "data/collation.h"
#include "databases/backups.h"
#include "databases/companies.h"
#include "databases/company_editor.h"
#include "databases/company_lock.h"
#include "databases/logins.h"
#include "databases/sql_admin.h"
#include "databases/upgrade_all.h"
#include "databases/version_check.h"
#include "security/activity_log.h"
#include "security/rights.h"
#include "session/connections.h"
#include "session/entry/login.h"
#include "session/failures.h"
#include "session/lookups.h"
#include "toolkit/text.h"

namespace korvel::session {
namespace {

using toolkit::Icon;

bool Confirmed(const Context& context, std::string_view question) {
  constexpr std::array<std::string_view, 2> kButtons{"Sim", "Não"};
  return context.dialogs.Ask(question, kButtons) == 0;
}

/// `Entidade` has its one row and the column that this form adds. Nothing is written where that is so.
void PrepareEntity(data::Connection& config) {
  databases::SQLAddField(config, "smallint null", "SetForms", "Entidade");
  if (VerSeExiste(config, "Select NumRegisto from Entidade Where SetForms is null"))
    config.Execute("Update Entidade Set SetForms = 0 Where SetForms is null");
  if (!VerSeExiste(config, "Select * from Entidade"))
    config.Execute("Insert Into Entidade (SetForms) Values (0)");
}

/// Opens the company once, so that the user learns why he cannot enter before anything else is asked.
bool Opens(const Context& context) {
  ConnectionPtr company;
  if (OpenSessionDatabase(context, company, context.session.gBaseDados)) return true;
  context.dialogs.Message(Icon::Critical,
                          fmt::format("{} - Não foi possivel abrir a Empresa seleccionada!\n{}",
                                      context.session.gErroNumero, context.session.gErroDescricao));
  return false;
}

/// The company of the session. Its description goes to the log line of the entry too.
void TakeCompany(SessionRecord& session, const CompanyLine& company) {
  session.gCodEmpresa = company.code;
  session.gNomeEmpresa = company.description;
  session.gDescEmpresa = company.description;
}

/// Stands for work under way.
class Busy {
 public:
  explicit Busy(bool& flag) : flag_(flag) { flag_ = true; }
  ~Busy() { flag_ = false; }
  Busy(const Busy&) = delete;
  Busy& operator=(const Busy&) = delete;

 private:
  bool& flag_;
};

}  // namespace

bool CompanySelection::Load(const Context& context) {
  SessionRecord& session = context.session;
  const bool ready = Reported(context, false, [&] {
    ConnectionPtr config;
    if (!AbreConfig(context, config)) {
      ShowConnectionError(context);
      return false;
    }
    PrepareEntity(*config);
    if (!session.gAutenticacaoWindows) session.gSysAdmin = databases::ValidarLoginSysAdmin(context);
    adminMenus_ = DecideAdminMenus(context, *config);
    return true;
  });
  caption_ =
      fmt::format("Empresas permitidas ao utilizador ({}) no Server ({})", session.gLogin, session.gServidor);
  return ready && LoadEmpresas(context);
}

bool CompanySelection::DecideAdminMenus(const Context& context, data::Connection& config) const {
  const SessionRecord& session = context.session;
  const bool isSa = data::SameText(session.gLogin, "sa");
  if (!session.gSysAdmin) return false;
  if (session.gAutenticacaoWindows || isSa) return true;
  const auto row = config.Query("Select AdminTasks from UserManagement Where LoginName=?", {session.gLogin});
  return !row.Eof() && row.Integer("AdminTasks") != 0;
}

bool CompanySelection::LoadEmpresas(const Context& context) {
  auto listed = Reported(context, std::optional<CompanyLines>(), [&] { return ListCompanies(context); });
  if (!listed) return false;
  companies_ = *std::move(listed);
  if (selected_ && *selected_ >= companies_.size()) selected_.reset();
  return true;
}

bool CompanySelection::Select(std::string_view code) {
  const auto found = std::ranges::find_if(
      companies_, [&](const CompanyLine& company) { return toolkit::SameIgnoringCase(company.code, code); });
  selected_.reset();
  if (found != companies_.end()) selected_ = static_cast<std::size_t>(found - companies_.begin());
  return selected_.has_value();
}

const CompanyLine* CompanySelection::Selected() const {
  return selected_ && *selected_ < companies_.size() ? &companies_[*selected_] : nullptr;
}

bool CompanySelection::Selecionar(const Context& context) {
  if (busy_ || Selected() == nullptr) return false;
  const Busy busy(busy_);
  const CompanyLine company = *Selected();  // an upgrade on the way fills the list anew
  return Reported(context, false, [&] { return Enter(context, company); });
}

bool CompanySelection::Enter(const Context& context, const CompanyLine& company) {
  SessionRecord& session = context.session;
  session.gAnoAberto.clear();
  session.gBaseDados = databases::CompanyDatabase(company.code);
  if (!Opens(context) || !VersionAgrees(context, company)) return false;
  ConnectionPtr config;
  if (!AbreConfig(context, config)) {
    ShowConnectionError(context);
    return false;
  }
  TakeCompany(session, company);
  if (!security::EnterWithRights(context, *config, company.code)) return false;
  const std::string text = "Entrou na Empresa " + company.code;
  security::InsertLog(context, *config,
                      {.module = security::module::kLogIn,
                       .action = security::action::kLogIn,
                       .text = text,
                       .caption = "Log In"});
  return true;
}

bool CompanySelection::VersionAgrees(const Context& context, const CompanyLine& company) {
  if (databases::VerificaVersao(context, {.code = company.code})) return true;
  if (!adminMenus_ || !Confirmed(context, "Quer Actualizar a Base de Dados?")) return false;
  const std::array<std::string, 1> codes{company.code};
  const bool upgraded = databases::UpgradeCompanies(context, codes);
  LoadEmpresas(context);
  return upgraded;
}

bool CompanySelection::EliminarEmpresa(const Context& context) {
  const CompanyLine* company = Selected();
  if (company == nullptr) return false;
  context.dialogs.Message(Icon::Warning,
                          "Atenção que ao eliminar perde todos os dados existentes na Empresa.");
  context.dialogs.Message(Icon::Warning, "Para Eliminar a Empresa , tem que ter um Login Administrativo.");
  if (!RequestLogin(context, true)) {
    context.dialogs.Message(Icon::Critical, "O seu Login não lhe permite esta tarefa !");
    return false;
  }
  const bool confirmed = context.dialogs.ConfirmDeletion(
      "Confirmar Eliminação :",
      fmt::format("Eliminar a Empresa {} - {}", company->code, company->description));
  if (!confirmed || !databases::DeleteCompany(context, company->code)) return false;
  return LoadEmpresas(context);
}

bool CompanySelection::ActualizarEmpresas(const Context& context) {
  std::vector<std::string> codes;
  for (const CompanyLine& company : companies_) codes.push_back(company.code);
  const CompanyLine* company = Selected();
  const std::string selected = company == nullptr ? std::string() : company->code;
  const bool upgraded = databases::AskAndUpgradeCompanies(context, selected, codes);
  return LoadEmpresas(context) && upgraded;
}

bool CompanySelection::BloquearEmpresa(const Context& context) {
  const CompanyLine* company = Selected();
  if (company == nullptr || !databases::SwitchCompanyBlocked(context, company->code)) return false;
  return LoadEmpresas(context);
}

bool CompanySelection::VerificarEmpresa(const Context& context) {
  const CompanyLine* company = Selected();
  if (company == nullptr || !Confirmed(context, "Confirma a Verificação?")) return false;
  const bool checked = databases::VerificaBaseDados(context, databases::CompanyDatabase(company->code));
  return databases::VerificaBaseDados(context, std::string(kConfigDatabase)) && checked;
}

}  // namespace korvel::session
