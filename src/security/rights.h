#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "data/connection.h"
#include "session/context.h"

/// Who may do what: the tests of rights. `config` stands open on `KorvelConfig`; data::Error is thrown as it comes.
namespace korvel::security {

/// "sa" and the service login, in any case of letters, pass every test without a row.
bool IsServiceLogin(std::string_view user);

/// Whether the user has the right whose key is the three parts joined: the program's file name, the form, the control
/// (empty for a form's own right). A right that is missing is denied.
bool AccCheckAcesso(data::Connection& config, std::string_view user, std::string_view company,
                    std::string_view program, std::string_view form, std::string_view control = {});
/// Whether the user may use the company: the test of the program's own row.
bool AccCheckUtilizApp(data::Connection& config, std::string_view user, std::string_view company,
                       std::string_view key);

/// Deletes the rights of a user in a company; "TODOS" as user those of all users there, and as company too all.
void AccApagaTodososAcessos(data::Connection& config, std::string_view user, std::string_view company);

/// The company whose rights are the main set, "" when there is none.
std::string GetAcessoPrincipal(data::Connection& config);
/// 1 when the company keeps rights of its own.
std::int64_t GetAcessoIndependente(data::Connection& config, std::string_view company);
/// The company whose rights count in `company`: the main one, unless there is none or `company` is independent.
std::string RightsCompany(data::Connection& config, std::string_view company);

/// The rights at the entry into a company: the session's user gets what is new in the base set, then "Acesso negado à
/// Empresa !" unless the program is open to him.
bool EnterWithRights(const session::Context& context, data::Connection& config, std::string_view company);

/// Whether the session's user may open a form from the main window; "Acesso Negado!" when not, the connection's
/// failure, after the retry dialog, when the configuration does not open.
bool MayOpenForm(const session::Context& context, std::string_view form);

/// The guard of a button: the right, told as "Acesso Negado !", and `forWriting` that the session's company is not
/// read-only, told as well. False too when a database does not open, after the retry dialog.
bool Acessos_bln(const session::Context& context, std::string_view form, std::string_view control,
                 bool forWriting);

}  // namespace korvel::security
