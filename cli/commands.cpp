#include "cli/commands.h"

#include <iterator>

namespace korvel::cli {

CommandList MakeCommands() {
  constexpr std::unique_ptr<Command> (*kBeforeExtraction[])() = {
      MakeDemo,
      MakeEmpresaCriar,
      MakeEmpresaListar,
      MakeActualizar,
      MakeParametrosDefinir,
      MakeParametrosMostrar,
      MakeArmazemDefinir,
      MakePeriodoCriar,
      MakePeriodoListar,
      MakePeriodoEliminar,
  };
  constexpr std::unique_ptr<Command> (*kBehindExtraction[])() = {
      MakeExportar,       MakeAssistente,    MakeEnvioDefinir, MakeEnvioMostrar,  MakeEnvioExecutar,
      MakeEnvioHistorico, MakeEnvioEliminar, MakeCifraCifrar,  MakeCifraDecifrar, MakeSql,
  };
  CommandList all;
  for (const auto make : kBeforeExtraction) all.push_back(make());
  CommandList extraction = MakeExtrair();
  std::move(extraction.begin(), extraction.end(), std::back_inserter(all));
  for (const auto make : kBehindExtraction) all.push_back(make());
  return all;
}

std::string GroupSummary(std::string_view word) {
  if (word == "empresa") return "Empresas do servidor";
  if (word == "parametros") return "Parâmetros gerais da empresa";
  if (word == "armazem") return "Classificação dos armazéns";
  if (word == "periodo") return "Períodos do ficheiro de auditoria";
  if (word == "extrair") return "Carrega e grava uma secção do período";
  if (word == "envio") return "Exportação automática: definições, execução e histórico";
  if (word == "cifra") return "Cifra passwords e ficheiros";
  return {};
}

}  // namespace korvel::cli
