#include <fmt/format.h>

#include <ostream>

#include "cli/commands.h"
#include "cli/option_lists.h"
#include "cli/period_options.h"
#include "security/log_listing.h"
#include "security/log_search.h"

namespace korvel::cli {

namespace {

using security::LogEntry;
using security::LogFilter;

void PrintLines(std::ostream& out, const std::vector<LogEntry>& entries) {
  out << "Data\tHora\tUtilizador\tMódulo\tAcção\tDescrição\tRegistos\n";
  for (const LogEntry& entry : entries) {
    out << fmt::format("{}\t{}\t{}\t{}\t{}\t{}\t{}\n", entry.data, entry.hora, entry.utilizador, entry.modulo,
                       entry.accao, entry.formCaption, entry.conteudo);
  }
  out << fmt::format("N.º de Ocorrências : {}\n", entries.size());
}

void PrintListing(std::ostream& out, const security::LogListing& listing) {
  for (const auto& [label, value] : listing.head) out << label << value << '\n';
  for (const auto& user : listing.users) {
    out << '\n' << user.title << '\n';
    for (const auto& company : user.companies) {
      out << company.title << '\n';
      for (const auto& cells : company.lines) out << fmt::format("{}\n", fmt::join(cells, "\t"));
    }
  }
}

class LogProcurar final : public Command {
 public:
  std::string_view Path() const override { return "log procurar"; }
  std::string_view Summary() const override {
    return "Mostra o histórico de trabalho da empresa: hoje e os dois dias anteriores, se nada for dito";
  }
  NeededRight Needs() const override { return {"frmLogGeral", "cmdProcurar"}; }

  void Declare(CLI::App& app) override {
    app.add_option("--utilizador", given_.utilizador, "Só as linhas deste login")->type_name("LOGIN");
    app.add_option("--modulo", given_.modulo, "T todos, TB tabelas, UT utilitários, I, O, G")
        ->type_name("MÓDULO");
    app.add_option("--accao", given_.accao, "T todas, N novo, E eliminar, A alterar, I, O, P")
        ->type_name("ACÇÃO");
    app.add_option("--inicio", given_.dataInicial, "Primeiro dia")->type_name("AAAA-MM-DD");
    app.add_option("--fim", given_.dataFinal, "Último dia")->type_name("AAAA-MM-DD");
    app.add_option("--hora-inicial", given_.horaInicial, "Primeira hora")->type_name("HH:MM");
    app.add_option("--hora-final", given_.horaFinal, "Última hora")->type_name("HH:MM");
    app.add_flag("--listagem", listing_, "Agrupado por utilizador e empresa, como se imprime");
  }

  bool Run(Workspace& workspace) override {
    const LogFilter filter = Filter(workspace);
    workspace.EnterCompany();
    const auto context = workspace.Context();
    const auto config = workspace.Open(session::kConfigDatabase);
    const auto entries = security::SearchLog(*config, context.session.gCodEmpresa, filter);
    if (!listing_) {
      PrintLines(workspace.Out(), entries);
      return true;
    }
    const auto listing = security::MakeLogListing(context, filter, entries);
    if (listing) PrintListing(workspace.Out(), *listing);
    return listing.has_value();
  }

 private:
  LogFilter Filter(Workspace& workspace) const {
    const LogFilter usual = security::DefaultLogFilter(workspace.Context().clock);
    LogFilter filter = given_;
    filter.modulo = ChosenKey("--modulo", security::kLogModuleList, given_.modulo);
    filter.accao = ChosenKey("--accao", security::kLogActionList, given_.accao);
    filter.dataInicial = given_.dataInicial.empty() ? usual.dataInicial : DateArgument(given_.dataInicial);
    filter.dataFinal = given_.dataFinal.empty() ? usual.dataFinal : DateArgument(given_.dataFinal);
    return filter;
  }

  LogFilter given_;
  bool listing_ = false;
};

}  // namespace

std::unique_ptr<Command> MakeLogProcurar() {
  return std::make_unique<LogProcurar>();
}

}  // namespace korvel::cli
