#include <fmt/format.h>

#include <ostream>
#include <vector>

#include "cli/commands.h"
#include "cli/failures.h"
#include "databases/companies.h"
#include "databases/company_upgrade.h"
#include "databases/sql_admin.h"
#include "databases/version.h"

namespace korvel::cli {

namespace {

std::vector<std::string> CompanyCodes(Workspace& workspace) {
  const auto master = workspace.Open("master");
  std::vector<std::string> codes;
  if (!databases::CheckDatabase(*master, session::kConfigDatabase)) return codes;
  const auto config = workspace.Open(session::kConfigDatabase);
  auto rows = config->Query("select codigo from Empresas order by codigo,NumRegisto");
  for (; !rows.Eof(); rows.MoveNext()) codes.emplace_back(rows.Text("codigo"));
  return codes;
}

bool Upgrade(Workspace& workspace) {
  const std::string database = workspace.Context().session.gBaseDados;
  if (!databases::ActDBaseExecuta(workspace.Context(), database).ran) return false;
  workspace.Out() << fmt::format("{}: actualizada para a versão {}.\n", database,
                                 databases::ProgramVersion());
  return true;
}

class Actualizar final : public Command {
 public:
  std::string_view Path() const override { return "actualizar"; }
  std::string_view Summary() const override {
    return "Actualiza a base de dados da empresa, ou de todas sem --empresa";
  }
  void Declare(CLI::App&) override {}

  bool Run(Workspace& workspace) override {
    workspace.Login();
    if (workspace.CompanyGiven()) {
      workspace.EnterCompany();
      return Upgrade(workspace);
    }
    const auto codes = CompanyCodes(workspace);
    if (codes.empty()) throw Refusal("O servidor não tem empresas.");
    bool all = true;
    for (const std::string& code : codes) {
      workspace.EnterCompany(code);
      all = Upgrade(workspace) && all;
    }
    return all;
  }
};

}  // namespace

std::unique_ptr<Command> MakeActualizar() {
  return std::make_unique<Actualizar>();
}

}  // namespace korvel::cli
