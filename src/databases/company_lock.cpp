#include "databases/company_lock.h"

#include <array>

#include "databases/attempts.h"
#include "databases/companies.h"
#include "databases/server_states.h"
#include "databases/sql_admin.h"

namespace korvel::databases {

namespace {

using toolkit::Icon;

bool Block(const session::Context& context, data::Connection& master, const std::string& database) {
  if (!TrySingleUserMode(master, database)) return false;
  SetReadOnly(master, database, true);
  context.dialogs.Message(Icon::Information, "Só poderá Efectuar Consultas aos Movimentos Já Efectuados!",
                          "Informação:");
  return true;
}

bool Change(const session::Context& context, data::Connection& master, const std::string& database,
            bool blocked) {
  bool done = true;
  const bool ran = Attempt(context, [&] {
    if (blocked) {
      done = Block(context, master, database);
    } else {
      SetReadOnly(master, database, false);
    }
  });
  if (ran && done) return true;
  context.dialogs.Message(Icon::Warning,
                          "Não é Possível Mudar o Estado da Base de Dados:\n"
                          "Existem Outros Utilizadores Ligados à Base de Dados!");
  return false;
}

/// Opens `master` and runs `change(master, database, whether it is blocked)`; what fails on the way is shown.
template <typename Work>
bool WithState(const session::Context& context, std::string_view code, Work&& work) {
  const std::string database = CompanyDatabase(code);
  session::ConnectionPtr master;
  bool blocked = false;
  if (!session::OpenSessionDatabase(context, master, "master") ||
      !Attempt(context, [&] { blocked = CheckForReadOnly(*master, database); })) {
    session::ShowConnectionError(context);
    return false;
  }
  return work(*master, database, blocked);
}

}  // namespace

bool SetCompanyBlocked(const session::Context& context, std::string_view code, bool blocked) {
  return WithState(context, code, [&](data::Connection& master, const std::string& database, bool already) {
    return already == blocked || Change(context, master, database, blocked);
  });
}

bool SwitchCompanyBlocked(const session::Context& context, std::string_view code) {
  constexpr std::array<std::string_view, 2> kButtons{"Sim", "Não"};
  if (context.dialogs.Ask("Confirma ?", kButtons) != 0) return false;
  return WithState(context, code, [&](data::Connection& master, const std::string& database, bool blocked) {
    return Change(context, master, database, !blocked);
  });
}

}  // namespace korvel::databases
