#include <fmt/format.h>

#include <algorithm>
#include <ostream>

#include "auditfile/export_run.h"
#include "cli/commands.h"
#include "cli/failures.h"
#include "cli/option_lists.h"
#include "cli/period_options.h"
#include "cli/written_files.h"
#include "periods/period_editor.h"
#include "toolkit/text.h"

namespace korvel::cli {

namespace {

using auditfile::ExportOptions;

struct SectionBox {
  std::string_view name;
  bool ExportOptions::*box;
};

constexpr SectionBox kBoxes[] = {
    {"cabecalho", &ExportOptions::chkHeader},
    {"contas", &ExportOptions::chkPOCGeneralLedger},
    {"clientes", &ExportOptions::chkPOCCustomer},
    {"fornecedores", &ExportOptions::chkPOCSupplier},
    {"impostos", &ExportOptions::chkPOCTaxTable},
    {"movimentos", &ExportOptions::chkPOCGeneralLedgerEntries},
    {"clientes-gestao", &ExportOptions::chkGESTCustomer},
    {"produtos", &ExportOptions::chkGESTProduct},
    {"impostos-gestao", &ExportOptions::chkGESTTaxTable},
    {"documentos", &ExportOptions::chkGESTSourceDocuments},
};

std::string SectionNames() {
  std::string names;
  for (const SectionBox& known : kBoxes) names += (names.empty() ? "" : ", ") + std::string(known.name);
  return names;
}

void Tick(ExportOptions& options, const std::string& section, bool ticked) {
  const auto found = std::ranges::find(kBoxes, std::string_view(section), &SectionBox::name);
  if (found == std::end(kBoxes)) {
    throw UsageError(fmt::format("Secção desconhecida: {}. As secções são: {}.", section, SectionNames()));
  }
  options.*found->box = ticked;
}

/// A box of the form that a period may leave disabled.
struct Choice {
  bool wanted;
  bool offered;
  std::string_view option;
};

class Exportar final : public Command {
 public:
  std::string_view Path() const override { return "exportar"; }
  std::string_view Summary() const override {
    return "Escreve o ficheiro de auditoria de um período já gravado";
  }
  NeededRight Needs() const override { return {"frmExportaSAFT", "cmdProcessar"}; }

  void Declare(CLI::App& app) override {
    period_.Declare(app);
    app.add_option("--pasta", folder_, "Pasta para a exportação")->required()->type_name("PASTA");
    app.add_flag("--por-meses", monthly_, "Um ficheiro por mês");
    app.add_flag("--acumulativo-facturacao", billing_,
                 "Cada mês traz os documentos desde o início do período");
    app.add_flag("--acumulativo-contabilidade", accounting_,
                 "Cada mês traz os movimentos desde o início do período");
    app.add_option("--com", with_, "Secções a acrescentar às que o período traz, das mesmas que --sem")
        ->type_name("SECÇÃO,...");
    app.add_option("--sem", without_, "Secções que ficam de fora: " + SectionNames())
        ->type_name("SECÇÃO,...");
  }

  bool Run(Workspace& workspace) override {
    const periods::PeriodKey period = Period();
    RequireFolder(folder_, "Não definiu a Localização para a Exportação!");
    workspace.EnterCompany();
    const ExportOptions options = Options(workspace, period);
    const auto result = auditfile::ExportaSaft(workspace.Context(), options, period, {}, true);
    ListFiles(workspace.Out(), result.files, workspace.Context().session.Marks());
    if (!result.ok) workspace.Dialogs().SayReason(result.error);
    return result.ok;
  }

 private:
  periods::PeriodKey Period() const {
    const bool blank =
        toolkit::IsBlank(period_.ano) || toolkit::IsBlank(period_.inicio) || toolkit::IsBlank(period_.fim);
    if (blank) throw Refusal("Não definiu o Ano Fiscal!");
    return period_.Key();
  }

  /// The boxes as choosing the period ticks them, changed by the options.
  ExportOptions Options(Workspace& workspace, const periods::PeriodKey& period) const {
    const auto company = workspace.OpenCompany();
    const auto found = periods::FindPeriod(workspace.Context(), *company, period);
    if (!found || found->basis.empty()) throw Refusal("Não definiu a Identificação da Empresa - Header");
    const auto basis = static_cast<periods::Basis>(found->basis.front());
    RequireOffered(auditfile::ChoicesFor(basis, period));
    ExportOptions options = auditfile::OptionsFor(basis);
    options.chkPorMeses = monthly_;
    options.chkFacturacaoAcum = billing_;
    options.chkContabilAcum = accounting_;
    options.txtPastaExportacao = folder_;
    for (const std::string& section : CodeList(with_)) Tick(options, section, true);
    for (const std::string& section : CodeList(without_)) Tick(options, section, false);
    return options;
  }

  void RequireOffered(const auditfile::ExportChoices& choices) const {
    const Choice wanted[] = {
        {monthly_, choices.chkPorMeses, "--por-meses"},
        {billing_, choices.chkFacturacaoAcum, "--acumulativo-facturacao"},
        {accounting_, choices.chkContabilAcum, "--acumulativo-contabilidade"},
    };
    for (const Choice& choice : wanted) {
      if (choice.wanted && !choice.offered)
        throw Refusal(fmt::format("Este período não permite {}.", choice.option));
    }
  }

  PeriodOptions period_;
  std::string folder_;
  bool monthly_ = false;
  bool billing_ = false;
  bool accounting_ = false;
  std::string with_;
  std::string without_;
};

}  // namespace

std::unique_ptr<Command> MakeExportar() {
  return std::make_unique<Exportar>();
}

}  // namespace korvel::cli
