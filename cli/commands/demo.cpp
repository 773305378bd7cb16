#include "demo/demo_company.h"

#include <fmt/format.h>

#include <charconv>
#include <ostream>

#include "cli/commands.h"
#include "cli/failures.h"
#include "toolkit/numbers.h"

namespace korvel::cli {

namespace {

std::int64_t WholeNumber(std::string_view option, const std::string& text, std::int64_t low,
                         std::int64_t high) {
  std::int64_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size() || number < low || number > high) {
    throw UsageError(fmt::format("A opção {} pede um número inteiro de {} a {}.", option, low, high));
  }
  return number;
}

class Demo final : public Command {
 public:
  std::string_view Path() const override { return "demo"; }
  std::string_view Summary() const override {
    return "Cria a empresa de demonstração 0001, com a sua contabilidade e facturação";
  }
  bool MakesServer() const override { return true; }

  void Declare(CLI::App& app) override {
    app.add_option("--linhas", lines_, "Cerca de quantas linhas de movimentos e de documentos no ano (2000)")
        ->type_name("N");
    app.add_option("--ano", year_, "Ano do negócio; o anterior também é criado (2025)")->type_name("ANO");
  }

  bool Run(Workspace& workspace) override {
    demo::BooksOptions options;
    if (!lines_.empty()) options.lines = WholeNumber("--linhas", lines_, 1, 100'000'000);
    if (!year_.empty()) options.year = static_cast<int>(WholeNumber("--ano", year_, 2000, 2078));
    workspace.LoginAsAdministrator();
    const auto made = demo::MakeDemoCompany(workspace.Context(), options);
    if (!made) return false;
    workspace.EnsureBaseRights();
    Report(workspace, *made, options.year);
    return true;
  }

 private:
  static void Report(Workspace& workspace, const demo::BooksSummary& made, int year) {
    const session::SessionRecord& session = workspace.Context().session;
    workspace.Out() << fmt::format("Empresa {} - {}\n", session.gCodEmpresa, session.gNomeEmpresa)
                    << fmt::format("Contabilidade {} em {}, anos {} e {}:\n", demo::kLunderDatabase,
                                   session.gServidor, year - 1, year)
                    << fmt::format("  {:>9} contas, com {} clientes e {} fornecedores\n", made.accounts,
                                   made.customers, made.suppliers)
                    << fmt::format("  {:>9} lançamentos com {} linhas em {}\n", made.entries, made.lines,
                                   year)
                    << fmt::format("  {} EUR a débito e a crédito\n",
                                   toolkit::FDNum(made.totalDebit, 2, "", "", session.Marks()))
                    << fmt::format("Facturação {}:\n", demo::kBrevantDatabase)
                    << fmt::format("  {:>9} produtos\n", made.products)
                    << fmt::format("  {:>9} documentos de venda com {} linhas em {}\n", made.documents,
                                   made.documentLines, year);
  }

  std::string lines_;
  std::string year_;
};

}  // namespace

std::unique_ptr<Command> MakeDemo() {
  return std::make_unique<Demo>();
}

}  // namespace korvel::cli
