#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "session/context.h"

namespace korvel::periods {

/// Where the database of a source product lies. The password is kept as typed, in plain text.
struct SourceLocation {
  std::string server;
  std::string login;
  std::string password;
  std::string database;
};

/// Which source servers could be reached.
struct Links {
  bool brevant = false;
  bool lunder = false;
};
Links VerLigacoes(const session::Context& context, const SourceLocation& brevant,
                  const SourceLocation& lunder);

/// The databases of a source product's server whose names begin with `base`, by name. `base` begins with the
/// product's name, in any case, which decides the server. Empty for other names and when the server does not
/// open. Throws data::Error.
std::vector<std::string> Carrega_Empresas(const session::Context& context, const SourceLocation& brevant,
                                          const SourceLocation& lunder, std::string_view base);

}  // namespace korvel::periods
