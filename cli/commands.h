#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "cli/command.h"

namespace korvel::cli {

// One function a command; each is made in the file of commands/ that is named after it.
std::unique_ptr<Command> MakeSql();
std::unique_ptr<Command> MakeActualizar();
std::unique_ptr<Command> MakeParametrosDefinir();
std::unique_ptr<Command> MakeParametrosMostrar();
std::unique_ptr<Command> MakeArmazemDefinir();
std::unique_ptr<Command> MakePeriodoCriar();
std::unique_ptr<Command> MakePeriodoListar();
std::unique_ptr<Command> MakePeriodoEliminar();
std::unique_ptr<Command> MakeAssistente();
std::unique_ptr<Command> MakeExportar();
std::unique_ptr<Command> MakeDemo();
std::unique_ptr<Command> MakeEnvioDefinir();
std::unique_ptr<Command> MakeEnvioMostrar();
std::unique_ptr<Command> MakeEnvioExecutar();
std::unique_ptr<Command> MakeEnvioHistorico();
std::unique_ptr<Command> MakeEnvioEliminar();
std::unique_ptr<Command> MakeCifraCifrar();
std::unique_ptr<Command> MakeCifraDecifrar();
std::unique_ptr<Command> MakeLogProcurar();
/// The commands of one first word.
CommandList MakeEmpresa();
CommandList MakeUtilizador();
CommandList MakeAcessos();
CommandList MakeExtrair();

/// All commands, in the order of the help.
CommandList MakeCommands();
/// What the first word of a two-word command stands for.
std::string GroupSummary(std::string_view word);

}  // namespace korvel::cli
