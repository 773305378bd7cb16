#include <fmt/format.h>

#include <ostream>

#include "cli/commands.h"
#include "databases/companies.h"
#include "databases/sql_admin.h"

namespace korvel::cli {

namespace {

class EmpresaCriar final : public Command {
 public:
  std::string_view Path() const override { return "empresa criar"; }
  std::string_view Summary() const override { return "Cria uma empresa com a sua base de dados"; }
  bool MakesServer() const override { return true; }

  void Declare(CLI::App& app) override {
    app.add_option("--codigo", company_.code, "Código, até quatro algarismos")
        ->required()
        ->type_name("CÓDIGO");
    app.add_option("--descricao", company_.description, "Nome da empresa")->required()->type_name("TEXTO");
  }

  bool Run(Workspace& workspace) override {
    workspace.Login();
    const auto master = workspace.Open("master");
    databases::EnsureConfigDatabase(*master);
    if (!databases::CreateCompany(workspace.Context(), company_)) return false;
    const std::string code = fmt::format("{:0>4}", company_.code);
    workspace.Out() << fmt::format("Empresa {} criada na base de dados {}.\n", code,
                                   databases::CompanyDatabase(code));
    return true;
  }

 private:
  databases::NewCompany company_;
};

class EmpresaListar final : public Command {
 public:
  std::string_view Path() const override { return "empresa listar"; }
  std::string_view Summary() const override { return "Mostra as empresas do servidor"; }
  void Declare(CLI::App&) override {}

  bool Run(Workspace& workspace) override {
    workspace.Login();
    const auto master = workspace.Open("master");
    workspace.Out() << "Código\tDescrição\tBase de dados\n";
    if (!databases::CheckDatabase(*master, session::kConfigDatabase)) return true;
    const auto config = workspace.Open(session::kConfigDatabase);
    auto rows = config->Query("select codigo,descricao from Empresas order by codigo,NumRegisto");
    for (; !rows.Eof(); rows.MoveNext()) {
      const std::string code(rows.Text("codigo"));
      workspace.Out() << fmt::format("{}\t{}\t{}\n", code, rows.Text("descricao"),
                                     databases::CompanyDatabase(code));
    }
    return true;
  }
};

}  // namespace

std::unique_ptr<Command> MakeEmpresaCriar() {
  return std::make_unique<EmpresaCriar>();
}
std::unique_ptr<Command> MakeEmpresaListar() {
  return std::make_unique<EmpresaListar>();
}

}  // namespace korvel::cli
