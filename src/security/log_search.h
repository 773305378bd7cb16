#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "data/connection.h"
#include "data/currency.h"
#include "toolkit/ports.h"

/// The search of the activity log.
namespace korvel::security {

inline constexpr std::string_view kLogActionList =
    "T:Todas;N:Novo;E:Eliminar;A:Alterar;I:Log In;O:Log Off;P:Imprimir;";
inline constexpr std::string_view kLogModuleList =
    "T:Todos;TB:Tabelas;UT:Utilitários;I:Log In;O:Log Off;G:Geral;";
/// The keys of both lists that let every line pass.
inline constexpr std::string_view kEveryCode = "T";
inline constexpr std::string_view kEveryUser = "Todos";

/// What `frmLogGeral` asks for. Dates are YYYY-MM-DD, hours HH:MM; a blank value sets no bound.
struct LogFilter {
  std::string utilizador{kEveryUser};
  std::string modulo{kEveryCode};
  std::string accao{kEveryCode};
  std::string dataInicial = {};
  std::string dataFinal = {};
  std::string horaInicial = {};
  std::string horaFinal = {};
};
/// The form as it opens: all lines of today and the two days before.
LogFilter DefaultLogFilter(const toolkit::Clock& clock);

/// A row of `LogGeral`, members named after its columns.
struct LogEntry {
  std::string utilizador;
  std::string codEmpresa;
  std::string descEmpresa;
  std::string modulo;
  std::string accao;
  std::string formCaption;
  data::Currency valor;
  std::string data;     // YYYY-MM-DD: when the line was written
  std::string dataMov;  // YYYY-MM-DD: of the movement
  std::string hora;
  std::string conteudo;
};

/// `cmdProcurar`: the lines of a company, as they were written; `lblConta` is their number. `config` stands open on
/// `KorvelConfig`. Throws data::Error.
std::vector<LogEntry> SearchLog(data::Connection& config, std::string_view company, const LogFilter& filter);

}  // namespace korvel::security
