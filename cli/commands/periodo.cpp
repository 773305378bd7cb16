#include <fmt/format.h>

#include <algorithm>
#include <ostream>

#include "cli/assignments.h"
#include "cli/commands.h"
#include "cli/failures.h"
#include "cli/period_options.h"
#include "periods/header_fields.h"
#include "periods/period_editor.h"
#include "toolkit/text.h"

namespace korvel::cli {

namespace {

using periods::PeriodHeader;

constexpr std::string_view kKind = "TaxAccountingBasis";

bool IsColumn(std::string_view name, std::string_view column) {
  return toolkit::SameIgnoringCase(name, column);
}

/// As the selection of the form: only its three kinds can be chosen.
std::string KindOf(const std::string& value) {
  const std::string kind = toolkit::Upper(toolkit::Trim(value));
  if (kind != "C" && kind != "F" && kind != "I") {
    throw UsageError(fmt::format("{} aceita C, F ou I, não \"{}\".", kKind, value));
  }
  return kind;
}

void RequireKnown(const std::vector<Assignment>& assignments) {
  for (const Assignment& given : assignments) {
    const bool known = std::ranges::any_of(periods::HeaderFields(), [&](const periods::HeaderField& field) {
      return IsColumn(given.name, field.column);
    });
    if (!known) throw UsageError(fmt::format("TabHeader não tem a coluna {}.", given.name));
    if (IsColumn(given.name, kKind)) KindOf(given.value);
  }
}

/// Types the values into the form: the kind first, since choosing it sets the establishment, then the rest.
bool FillForm(const session::Context& context, PeriodHeader& header,
              const std::vector<Assignment>& assignments) {
  for (const Assignment& given : assignments) {
    if (IsColumn(given.name, kKind)) periods::ChangeKind(header, KindOf(given.value));
  }
  for (const Assignment& given : assignments) {
    if (IsColumn(given.name, kKind)) continue;
    const bool isDate = IsColumn(given.name, "StartDate") || IsColumn(given.name, "EndDate");
    header[given.name] = isDate && !toolkit::IsBlank(given.value) ? DateArgument(given.value) : given.value;
  }
  periods::LeaveFiscalYear(context.clock, header);
  return periods::LeaveTaxRegistrationNumber(context.dialogs, header);
}

class PeriodoCriar final : public Command {
 public:
  std::string_view Path() const override { return "periodo criar"; }
  std::string_view Summary() const override {
    return "Cria um período; o que não for dado vem do período mais recente";
  }
  NeededRight Needs() const override { return {"frmTabHeader", "cmdAdicionar", true}; }

  void Declare(CLI::App& app) override {
    values_.Declare(app, "COLUNA=VALOR", "Colunas do Header, como FiscalYear=2025 ou TaxAccountingBasis=C");
  }

  bool Run(Workspace& workspace) override {
    const auto assignments = values_.Get();
    RequireKnown(assignments);
    workspace.EnterCompany();
    const session::Context context = workspace.Context();
    auto form = periods::OpenHeader(context, periods::HeaderMode::New, 0);
    if (!form || !FillForm(context, form->header, assignments)) return false;
    if (!periods::GravarHeader(context, periods::HeaderMode::New, form->header)) return false;
    const periods::PeriodKey key = form->header.Key();
    workspace.Out() << fmt::format("Período {} ({} até {}) criado.\n", key.fiscalYear, key.startDate,
                                   key.endDate);
    return true;
  }

 private:
  AssignmentArguments values_;
};

class PeriodoListar final : public Command {
 public:
  std::string_view Path() const override { return "periodo listar"; }
  std::string_view Summary() const override { return "Mostra os períodos da empresa"; }
  NeededRight Needs() const override { return {"frmTabHeader", {}}; }
  void Declare(CLI::App&) override {}

  bool Run(Workspace& workspace) override {
    workspace.EnterCompany();
    std::ostream& out = workspace.Out();
    std::string_view separator;
    for (const periods::HeaderListColumn& column : periods::HeaderListColumns()) {
      out << separator << column.heading;
      separator = "\t";
    }
    out << '\n';
    const auto company = workspace.OpenCompany();
    for (const periods::PeriodListItem& row : periods::ListPeriods(workspace.Context(), *company)) {
      out << fmt::format("{}\t{}\t{}\t{}\t{}\t{}\t{}\t{}\t{}\n", row.period.fiscalYear, row.period.startDate,
                         row.period.endDate, row.companyName, row.basis, row.auditFileVersion, row.utilizador,
                         row.dataSys, row.cliente);
    }
    return true;
  }
};

class PeriodoEliminar final : public Command {
 public:
  std::string_view Path() const override { return "periodo eliminar"; }
  std::string_view Summary() const override {
    return "Elimina um período com tudo o que foi gravado para ele";
  }
  NeededRight Needs() const override { return {"frmTabHeader", "cmdEliminar", true}; }
  void Declare(CLI::App& app) override { period_.Declare(app); }

  bool Run(Workspace& workspace) override {
    const periods::PeriodKey key = period_.Key();
    workspace.EnterCompany();
    auto company = workspace.OpenCompany();
    const auto found = periods::FindPeriod(workspace.Context(), *company, key);
    company.reset();
    if (!found) throw Refusal("Não definiu a Identificação da Empresa - Header");
    if (!periods::EliminarHeader(workspace.Context(), {*found})) return false;
    workspace.Out() << fmt::format("Período {} ({} até {}) eliminado.\n", key.fiscalYear, key.startDate,
                                   key.endDate);
    return true;
  }

 private:
  PeriodOptions period_;
};

}  // namespace

std::unique_ptr<Command> MakePeriodoCriar() {
  return std::make_unique<PeriodoCriar>();
}
std::unique_ptr<Command> MakePeriodoListar() {
  return std::make_unique<PeriodoListar>();
}
std::unique_ptr<Command> MakePeriodoEliminar() {
  return std::make_unique<PeriodoEliminar>();
}

}  // namespace korvel::cli
