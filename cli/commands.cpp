#include "cli/commands.h"

#include <iterator>
#include <utility>
#include <variant>

namespace korvel::cli {

namespace {

/// Makes one command, or those of one first word.
using Maker = std::variant<std::unique_ptr<Command> (*)(), CommandList (*)()>;

void Append(CommandList& all, std::unique_ptr<Command> made) {
  all.push_back(std::move(made));
}
void Append(CommandList& all, CommandList made) {
  std::move(made.begin(), made.end(), std::back_inserter(all));
}

/// In the order of the help.
constexpr Maker kMakers[] = {
    MakeDemo,
    MakeEmpresa,
    MakeUtilizador,
    MakeAcessos,
    MakeActualizar,
    MakeParametrosDefinir,
    MakeParametrosMostrar,
    MakeArmazemDefinir,
    MakePeriodoCriar,
    MakePeriodoListar,
    MakePeriodoEliminar,
    MakeExtrair,
    MakeExportar,
    MakeAssistente,
    MakeEnvioDefinir,
    MakeEnvioMostrar,
    MakeEnvioExecutar,
    MakeEnvioHistorico,
    MakeEnvioEliminar,
    MakeLogProcurar,
    MakeCifraCifrar,
    MakeCifraDecifrar,
    MakeSql,
};

}  // namespace

CommandList MakeCommands() {
  CommandList all;
  for (const Maker& maker : kMakers) std::visit([&](const auto make) { Append(all, make()); }, maker);
  return all;
}

std::string GroupSummary(std::string_view word) {
  if (word == "empresa") return "Empresas do servidor";
  if (word == "utilizador") return "Logins do servidor e as suas empresas";
  if (word == "acessos") return "O que cada utilizador pode fazer numa empresa";
  if (word == "log") return "Histórico de trabalho";
  if (word == "parametros") return "Parâmetros gerais da empresa";
  if (word == "armazem") return "Classificação dos armazéns";
  if (word == "periodo") return "Períodos do ficheiro de auditoria";
  if (word == "extrair") return "Carrega e grava uma secção do período";
  if (word == "envio") return "Exportação automática: definições, execução e histórico";
  if (word == "cifra") return "Cifra passwords e ficheiros";
  return {};
}

}  // namespace korvel::cli
