#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

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

  std::string gListaEmpresas;  // "<code>:<code> - <description>;" for each company of the selection
  std::string gNomeEntidade;
  std::string gFtpServer;
  std::string gSmtpServer;

  std::string gAnoAberto;
  int gCasasDec = 2;
  bool gContinuaAdicionar = false;

  std::string gSepDecimal = ",";
  std::string gSepMilhar = ".";
  std::string gAgrupamento = "3";
  std::string gFormatoData = "dd-MM-yyyy";
  std::string gSepData = "-";
  std::string gSepHora = ":";

  std::int16_t gPapel = kPaperA4;  // of the default printer, as Windows numbers them
  std::int16_t gOrientacao = kPortrait;

  static constexpr std::int16_t kPaperA4 = 9;
  static constexpr std::int16_t kPortrait = 1;
  static constexpr std::string_view gTiposSistema =
      "I:Integrados - Facturação e Contabilidade;F:Facturação;C:Contabilidade;";
  static constexpr std::array<std::string_view, 12> gMeses = {
      "Janeiro", "Fevereiro", "Março",    "Abril",   "Maio",     "Junho",
      "Julho",   "Agosto",    "Setembro", "Outubro", "Novembro", "Dezembro"};

  toolkit::Marks Marks() const { return {gSepDecimal, gSepMilhar, gAgrupamento}; }
};

}  // namespace korvel::session
