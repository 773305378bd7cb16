#include "security/password.h"

#include <array>

#include "databases/logins.h"
#include "security/activity_log.h"
#include "session/connections.h"
#include "toolkit/text.h"

namespace korvel::security {

namespace {

using session::Context;
using toolkit::Icon;

constexpr std::string_view kCaption = "Alteração de Password";

/// What keeps a change from being made, "" when nothing does.
std::string_view Fault(const Context& context, const PasswordChange& change) {
  const session::SessionRecord& session = context.session;
  if (change.newPassword != change.confirmation) return "A nova password não condiz com a confirmação!";
  if (toolkit::IsBlank(change.newPassword)) return "A password não pode ser vazia !";
  const bool opens =
      session::ValidateLogin(context, session.gServidor, "master", session.gLogin, change.oldPassword);
  return opens ? "" : "Password inválida!";
}

bool Confirmed(toolkit::Dialogs& dialogs) {
  constexpr std::array<std::string_view, 2> kButtons{"Não", "Sim"};
  dialogs.Message(
      Icon::Information,
      "N O T A   M U I T O   I M P O R T A N T E\n\nA alteração da password tem que ser repetida em "
      "todos os outros programas onde este utilizador esteja definido.",
      kCaption);
  return dialogs.Ask("Deseja continuar com a Alteração?", kButtons) == 1;
}

}  // namespace

bool AlteraPassword(const Context& context, const PasswordChange& change) {
  if (const std::string_view fault = Fault(context, change); !fault.empty()) {
    context.dialogs.Message(Icon::Warning, fault);
    return false;
  }
  if (!Confirmed(context.dialogs)) return false;
  if (!databases::ChangePassword(context, change.oldPassword, change.newPassword)) {
    session::ShowConnectionError(context);
    return false;
  }
  context.session.gPassword = change.newPassword;
  InsertLog(context, {module::kUtilities, action::kChange, context.session.gUtilizador, kCaption});
  context.dialogs.Message(Icon::Information, "A sua password foi mudada com sucesso.");
  return true;
}

bool DesbloqueiaPrograma(const Context& context, std::string_view password) {
  if (toolkit::Upper(password) == toolkit::Upper(context.session.gPassword)) return true;
  context.dialogs.Message(Icon::Warning, "Password Inválida !");
  context.dialogs.Focus("txtPassword");
  return false;
}

std::optional<toolkit::Credentials> RequestPassword(const Context& context, std::string_view login) {
  for (;;) {
    auto typed = context.dialogs.AskLogin("Introduza a Password:", login);
    if (!typed || !toolkit::IsBlank(typed->login)) return typed;
    context.dialogs.Message(Icon::Warning, "Tem Que Introduzir o Login!", "Atenção:");
  }
}

}  // namespace korvel::security
