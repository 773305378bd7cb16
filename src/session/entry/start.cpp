#include "session/entry/start.h"

#include <stdexcept>

#include "databases/admin_command.h"
#include "session/command_line.h"
#include "session/failures.h"
#include "session/regional_values.h"
#include "toolkit/regional.h"
#include "toolkit/text.h"

namespace korvel::session {
namespace {

using toolkit::Icon;

std::optional<InstanceLock> BeTheOnlyOne(const Context& context, const std::filesystem::path& file) {
  auto lock = InstanceLock::Take(file);
  if (!lock) {
    context.dialogs.Message(Icon::Critical, "Só pode iniciar uma instância da aplicação de cada vez!");
  }
  return lock;
}

void TakePaper(const Context& context, const StartSetting& setting) {
  if (!setting.printer) return;
  const auto paper = setting.printer();
  if (!paper) {
    context.dialogs.Message(Icon::Information,
                            "Não foi possivel detectar o papel definido na impressora\n"
                            "Vai ser utilizado o formato A4 por defeito");
  }
  context.session.gPapel = paper.value_or(PrinterPaper{}).size;
  context.session.gOrientacao = paper.value_or(PrinterPaper{}).orientation;
}

/// Drives the company selection as a user would.
FirstForm Enter(const Context& context, const UnattendedLogin& login, CompanySelection& selection) {
  SessionRecord& session = context.session;
  if (toolkit::IsBlank(login.server)) {
    context.dialogs.Message(Icon::Critical, "Não definiu o Servidor");
    return FirstForm::None;
  }
  TakeLogin(login, session);
  session.gUtilizador = session.gLogin;
  selection.Load(context);
  selection.Select(session.gCodEmpresa);
  return selection.Selecionar(context) ? FirstForm::MainWindow : FirstForm::CompanySelection;
}

}  // namespace

Started Start(const Context& context, std::string_view commandLine, const StartSetting& setting,
              CompanySelection& selection) {
  const CommandLine line = ParseCommandLine(commandLine);
  return Reported(context, Started{}, [&]() -> Started {
    if (const auto* command = std::get_if<AdminCommand>(&line)) {
      databases::RunAdminCommand(context, *command, setting.programFile);
      return {};
    }
    auto lock = BeTheOnlyOne(context, setting.instanceLock);
    if (!lock) return {};
    TakeRegional(toolkit::LoadRegional(context.settings), context.session);
    TakePaper(context, setting);
    const auto* login = std::get_if<UnattendedLogin>(&line);
    const FirstForm form = login ? Enter(context, *login, selection) : FirstForm::Login;
    return {form, std::move(lock)};
  });
}

}  // namespace korvel::session
