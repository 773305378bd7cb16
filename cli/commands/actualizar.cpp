#include <fmt/format.h>

#include <ostream>
#include <vector>

#include "cli/commands.h"
#include "cli/failures.h"
#include "databases/companies.h"
#include "databases/upgrade_all.h"
#include "databases/version.h"

namespace korvel::cli {

namespace {

class Actualizar final : public Command {
 public:
  std::string_view Path() const override { return "actualizar"; }
  std::string_view Summary() const override {
    return "Actualiza a configuração e a empresa de --empresa, ou todas sem ela";
  }

  void Declare(CLI::App& app) override { app.add_flag("--todas", all_, "Todas as empresas do servidor"); }

  bool Run(Workspace& workspace) override {
    if (all_ && workspace.CompanyGiven()) throw UsageError("A opção --todas não se usa com --empresa.");
    workspace.LoginAsAdministrator();
    const std::vector<std::string> codes = Codes(workspace);
    if (codes.empty()) throw Refusal("O servidor não tem empresas.");
    if (!databases::UpgradeCompanies(workspace.Context(), codes)) return false;
    for (const std::string& code : codes) {
      workspace.Out() << fmt::format("{}: actualizada para a versão {}.\n", databases::CompanyDatabase(code),
                                     databases::ProgramVersion());
    }
    return true;
  }

 private:
  static std::vector<std::string> Codes(Workspace& workspace) {
    if (workspace.CompanyGiven()) return {workspace.ListedCompany()};
    std::vector<std::string> codes;
    for (const session::CompanyLine& company : workspace.Companies()) codes.push_back(company.code);
    return codes;
  }

  bool all_ = false;
};

}  // namespace

std::unique_ptr<Command> MakeActualizar() {
  return std::make_unique<Actualizar>();
}

}  // namespace korvel::cli
