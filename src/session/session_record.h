#pragma once

#include <cstdint>
#include <string>

#include "toolkit/numbers.h"

namespace korvel::session {

/// Who is logged in, where, and with which values: what every operation rebuilds its connections from.
/// One a process, owned by the program's start and handed down in the Context.
struct SessionRecord {
  std::string gServidor;
  std::string gLogin;
  std::string gPassword;  // clear, in memory only
  bool gAutenticacaoWindows = false;
  bool gSysAdmin = false;
  std::string gGrupoWindows;

  std::int32_t gErroNumero = 0;  // last connection failure, set by CreateDBConnection
  std::string gErroDescricao;

  std::string gBaseDados;  // "Korvel" + gCodEmpresa
  std::string gCodEmpresa;
  std::string gNomeEmpresa;
  std::string gDescEmpresa;
  std::string gUtilizador;

  std::string gCmdLogin;  // not empty: an unattended run
  std::string gCmdEmpresa;

  std::string gAnoAberto;
  int gCasasDec = 2;
  bool gContinuaAdicionar = false;

  std::string gSepDecimal = ",";
  std::string gSepMilhar = ".";
  std::string gAgrupamento = "3";
  std::string gFormatoData = "dd-MM-yyyy";
  std::string gSepData = "-";
  std::string gSepHora = ":";

  toolkit::Marks Marks() const { return {gSepDecimal, gSepMilhar, gAgrupamento}; }
};

}  // namespace korvel::session
