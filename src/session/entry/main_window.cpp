#include "session/entry/main_window.h"

#include <fmt/format.h>

#include "data/editable_recordset.h"
#include "databases/version.h"
#include "databases/version_check.h"
#include "periods/parameters.h"
#include "security/rights.h"
#include "security/rights_catalogue.h"
#include "session/connections.h"
#include "session/entry/company_list.h"
#include "session/failures.h"
#include "session/regional_values.h"
#include "toolkit/dates.h"

namespace korvel::session {
namespace {

/// True too when the company cannot be read: nothing is known to be missing then.
bool HasParameters(const Context& context) {
  return Reported(context, true, [&] {
    ConnectionPtr company;
    std::string database;
    if (AbreGeral(context, company, database)) return periods::LoadSessionParameters(context, *company);
    ShowConnectionError(context);
    return true;
  });
}

void LoadEntity(const Context& context) {
  Reported(context, false, [&] {
    ConnectionPtr config;
    if (AbreConfig(context, config)) {
      ReadEntity(context, *config);
    } else {
      ShowConnectionError(context);
    }
    return true;
  });
}

void MarkOut(data::Connection& company, std::string_view user) {
  std::int64_t key = 0;
  {
    const auto row = company.Query("select * from utilizador where codigo=?", {user});
    if (row.Eof()) return;
    key = row.Integer("NumRegisto");
  }
  auto row = data::EditableRecordset::Edit(company, "utilizador", key);
  row.Set("UtilizadorUso", "");
  row.Update();
}

}  // namespace

MainWindow LoadMainWindow(const Context& context) {
  SessionRecord& session = context.session;
  session.gDescEmpresa = session.gNomeEmpresa;
  session.gUtilizador = session.gLogin;
  MainWindow window{.caption = MainCaption(),
                    .asksParameters = !HasParameters(context),
                    .unattended = !session.gCmdEmpresa.empty(),
                    .canUpgrade = session.gSysAdmin,
                    .canUsePassword = !session.gAutenticacaoWindows};
  LoadEntity(context);
  return window;
}

std::string MainCaption() {
  return fmt::format("{} ( Versão: {} )", security::kProgramCaption, databases::ProgramVersion());
}

StatusPanels StatusTexts(const Context& context) {
  const SessionRecord& session = context.session;
  return {session.gDescEmpresa, session.gLogin,
          toolkit::GData(context.clock.Now().DateText(), DateMarks(session)),
          "Cód. Emp. " + session.gCodEmpresa};
}

bool MayOpen(const Context& context, const MenuEntry& entry) {
  if (!entry.guarded) return true;
  return Reported(context, false, [&] { return security::MayOpenForm(context, entry.form); });
}

AfterMainWindow CloseMainWindow(const Context& context) {
  ConnectionPtr company;
  if (OpenSessionDatabase(context, company, context.session.gBaseDados)) {
    try {
      MarkOut(*company, context.session.gUtilizador);
    } catch (const data::Error&) {
      // As a rule a company has no such table: the step fails quietly, deliberately.
    }
  }
  return context.session.gCmdLogin.empty() ? AfterMainWindow::CompanySelection : AfterMainWindow::EndProgram;
}

bool DatabaseWentAhead(const Context& context) {
  ConnectionPtr company;
  return OpenSessionDatabase(context, company, context.session.gBaseDados) &&
         databases::DatabaseVersion(*company) > databases::SchemaVersion();
}

void WarnOfNewerDatabase(const Context& context) {
  context.dialogs.Message(
      toolkit::Icon::Warning,
      "Atenção que a base de dados foi actualizada por uma versão do aplicativo superior à sua !");
}

}  // namespace korvel::session
