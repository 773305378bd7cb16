#include <fmt/format.h>

#include <algorithm>
#include <ostream>

#include "automation/automatic_sending.h"
#include "automation/sending_history.h"
#include "cli/basis_option.h"
#include "cli/commands.h"
#include "cli/failures.h"
#include "cli/journal_option.h"
#include "cli/option_lists.h"
#include "cli/period_options.h"
#include "cli/wizard_report.h"
#include "cli/written_files.h"
#include "toolkit/text.h"

namespace korvel::cli {

namespace {

class EnvioDefinir final : public Command {
 public:
  std::string_view Path() const override { return "envio definir"; }
  std::string_view Summary() const override {
    return "Define quando se exporta automaticamente, e que período";
  }
  NeededRight Needs() const override { return {"frmWizard", "cmdEnvioAuto", true}; }

  void Declare(CLI::App& app) override {
    app.add_option("--periodicidade", often_, "Todos os meses ou todos os anos; vazio: sem efeito")
        ->required()
        ->type_name("Mes|Ano");
    app.add_option("--periodo", which_, "O período anterior ou o actual; vazio: sem efeito")
        ->required()
        ->type_name("P-1|P");
  }

  bool Run(Workspace& workspace) override {
    const automation::SendingSettings settings{
        ChosenKey("--periodicidade", automation::kPeriodicidadeList, often_),
        ChosenKey("--periodo", automation::kPeriodoDadosList, which_)};
    workspace.EnterCompany();
    const auto company = workspace.OpenCompany();
    if (!automation::GravarEnvioAutomatico(*company, settings))
      throw Refusal("A empresa ainda não tem Parâmetros Gerais.");
    return true;
  }

 private:
  std::string often_;
  std::string which_;
};

class EnvioMostrar final : public Command {
 public:
  std::string_view Path() const override { return "envio mostrar"; }
  std::string_view Summary() const override { return "Mostra as definições da exportação automática"; }
  NeededRight Needs() const override { return {"frmWizard", {}}; }
  void Declare(CLI::App&) override {}

  bool Run(Workspace& workspace) override {
    workspace.EnterCompany();
    const auto company = workspace.OpenCompany();
    const auto settings = automation::ReadSendingSettings(*company);
    const auto dates = automation::DueDates(settings, workspace.Context().clock.Now());
    workspace.Out() << fmt::format("Periodicidade: {}\n",
                                   CaptionOf(automation::kPeriodicidadeList, settings.PeriodicidadeEnvio))
                    << fmt::format("Período: {}\n",
                                   CaptionOf(automation::kPeriodoDadosList, settings.PeriodoDados));
    if (dates) workspace.Out() << fmt::format("Hoje: {} até {}\n", dates->first, dates->last);
    return true;
  }
};

class EnvioExecutar final : public Command {
 public:
  std::string_view Path() const override { return "envio executar"; }
  std::string_view Summary() const override {
    return "Exporta o período que estiver em falta; próprio para correr todos os dias";
  }
  NeededRight Needs() const override { return {"frmWizard", "cmdGravar", true}; }

  void Declare(CLI::App& app) override {
    app.add_option("--hoje", today_, "O dia por que se calcula o período (o de hoje)")
        ->type_name("AAAA-MM-DD");
    basis_.Declare(app);
    app.add_option("--pasta", folder_, "Pasta para a exportação")->required()->type_name("PASTA");
    journals_.Declare(app);
  }

  bool Run(Workspace& workspace) override {
    automation::WizardInput input;
    input.eselTaxAccountingBasis = basis_.Get();
    RequireFolder(folder_, "Não definiu a Pasta para Exportação!");
    input.txtPastaExportacao = folder_;
    const data::DateTime today = Today(workspace);
    workspace.EnterCompany();
    input.contas = journals_.Choice(workspace);
    const auto run =
        automation::ExecutarEnvio(workspace.Context(), today, std::move(input), StepPrinter(workspace));
    return Tell(workspace, run);
  }

 private:
  data::DateTime Today(Workspace& workspace) const {
    if (today_.empty()) return workspace.Context().clock.Now();
    return *data::DateTime::FromText(DateArgument(today_));
  }

  /// A run that has nothing to do is a good one.
  static bool Tell(Workspace& workspace, const automation::SendingRun& run) {
    if (!run.dates && run.wizard.error.empty()) {
      workspace.Out() << "A exportação automática está sem efeito.\n";
      return true;
    }
    if (run.alreadySent) {
      workspace.Out() << fmt::format("O período de {} até {} já foi exportado.\n", run.dates->first,
                                     run.dates->last);
      return true;
    }
    TellOutcome(workspace, run.wizard);
    return run.wizard.ok;
  }

  std::string today_;
  BasisOption basis_;
  std::string folder_;
  JournalOption journals_;
};

class EnvioHistorico final : public Command {
 public:
  std::string_view Path() const override { return "envio historico"; }
  std::string_view Summary() const override { return "Mostra as exportações feitas, a última primeiro"; }
  NeededRight Needs() const override { return {"frmWizard", {}}; }
  void Declare(CLI::App&) override {}

  bool Run(Workspace& workspace) override {
    workspace.EnterCompany();
    const auto company = workspace.OpenCompany();
    workspace.Out() << "Data Envio\tHora Envio\tPeriodicidade\tObservações\tNome do Ficheiro\tEstado\n";
    for (const automation::SentRun& run : automation::ReadHistory(*company)) {
      workspace.Out() << fmt::format("{}\t{}\t{} / {}\t{}\t{}\t{}\n", run.dataEnvio, run.horaEnvio,
                                     run.dataInicial, run.dataFinal, run.observa, run.ficheiro,
                                     run.ok ? "OK" : "");
    }
    return true;
  }
};

class EnvioEliminar final : public Command {
 public:
  std::string_view Path() const override { return "envio eliminar"; }
  std::string_view Summary() const override { return "Elimina todo o histórico (pede --sim)"; }
  NeededRight Needs() const override { return {"frmWizard", "cmdEnvioAuto", true}; }
  void Declare(CLI::App&) override {}

  bool Run(Workspace& workspace) override {
    workspace.EnterCompany();
    const auto company = workspace.OpenCompany();
    return automation::EliminarHistorico(workspace.Context(), *company);
  }
};

}  // namespace

std::unique_ptr<Command> MakeEnvioDefinir() {
  return std::make_unique<EnvioDefinir>();
}
std::unique_ptr<Command> MakeEnvioMostrar() {
  return std::make_unique<EnvioMostrar>();
}
std::unique_ptr<Command> MakeEnvioExecutar() {
  return std::make_unique<EnvioExecutar>();
}
std::unique_ptr<Command> MakeEnvioHistorico() {
  return std::make_unique<EnvioHistorico>();
}
std::unique_ptr<Command> MakeEnvioEliminar() {
  return std::make_unique<EnvioEliminar>();
}

}  // namespace korvel::cli
