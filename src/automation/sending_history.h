#pragma once

#include <string_view>

#include "session/context.h"

namespace korvel::automation {

/// Adds a run to `HistoricoEnvio`, with today's date and the time. `Status` is "OK" or, when `ok` is false,
/// NULL. False when the company database cannot be opened, which has been shown then. Throws data::Error.
bool RegistaEnvio(const session::Context& context, std::string_view DataInicial, std::string_view DataFinal,
                  std::string_view Ficheiro, std::string_view Observa, bool ok);

}  // namespace korvel::automation
