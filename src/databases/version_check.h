#pragma once

#include <string>
#include <string_view>

#include "session/context.h"

namespace korvel::databases {

/// What VerificaVersao asks for.
struct VersionQuestion {
  std::string_view code;    // of a company; blank: the configuration database
  bool mainModule = false;  // the message names the main module
  bool silent = false;      // a failure to open is shown all the same
};

/// Compares the program's version with a database's. True when they are equal; otherwise the messages say what to do.
bool VerificaVersao(const session::Context& context, const VersionQuestion& question);

/// `Actualiza.Versao` of an open database, "" when it has none.
std::string DatabaseVersion(data::Connection& connection);

/// Twelve digits as "<major>.<minor>.<revision>" without leading zeros; "" for a blank text.
std::string ShownVersion(std::string_view digits);

}  // namespace korvel::databases
