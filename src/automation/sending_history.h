#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "data/connection.h"
#include "session/context.h"
#include "toolkit/dates.h"

/// `HistoricoEnvio`: a row for every wizard run that came to its steps.
namespace korvel::automation {

/// Adds a run, with today's date and the time. `Status` is "OK" or, when `ok` is false, NULL. False when the company
/// database cannot be opened, which has been shown then. Throws data::Error.
bool RegistaEnvio(const session::Context& context, std::string_view DataInicial, std::string_view DataFinal,
                  std::string_view Ficheiro, std::string_view Observa, bool ok);

struct SentRun {
  std::string dataEnvio;    // YYYY-MM-DD
  std::string horaEnvio;    // hh:mm
  std::string dataInicial;  // YYYY-MM-DD
  std::string dataFinal;    // YYYY-MM-DD
  std::string observa;
  std::string ficheiro;
  bool ok = false;
};

/// All runs, the newest first. Throws data::Error.
std::vector<SentRun> ReadHistory(data::Connection& company);
/// Whether a run for these dates went well. Throws data::Error.
bool WasSent(data::Connection& company, const toolkit::DateSpan& dates);
/// Asks, and takes the whole history away. False when the user keeps it. Throws data::Error.
bool EliminarHistorico(const session::Context& context, data::Connection& company);

}  // namespace korvel::automation
