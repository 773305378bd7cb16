#pragma once

#include <optional>
#include <string>

#include "databases/default_hosts.h"
#include "session/context.h"

namespace korvel::periods {

/// The row of `Entidade`: the organisation that does the processing, with its mail and FTP accounts. Members are named
/// after their columns, with what a new row starts with. Passwords are kept as typed, in plain text.
struct Entity {
  std::string NomeEntidade;
  std::string Morada;
  std::string Local;
  std::string CodigoPostal;
  std::string Telefones;
  std::string Contribuinte;
  std::string SMTPServer{databases::kDefaultSmtpHost};
  std::string SMTPLogin;
  std::string SMTPPassword;
  std::string EmailOrigem;
  std::string FtpServer{databases::kDefaultFtpHost};
  std::string FtpUser;
  std::string FtpPWD;
  std::string FTPPath;
};

/// The first row; columns that are NULL, or a missing row, leave what a new one starts with. Nothing when the
/// configuration does not open or refuses, which is shown.
std::optional<Entity> CarregarEntidade(const session::Context& context);

/// Writes the first row, adding it when there is none, and logs it; the session takes the new name. False on a failure, which is
/// shown; nothing has changed then.
bool GravarEntidade(const session::Context& context, const Entity& entity);

}  // namespace korvel::periods
