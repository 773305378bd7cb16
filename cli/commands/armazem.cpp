#include <fmt/format.h>

#include <algorithm>
#include <ostream>

#include "cli/assignments.h"
#include "cli/commands.h"
#include "cli/failures.h"
#include "data/collation.h"
#include "periods/parameters.h"
#include "periods/warehouses.h"
#include "toolkit/options.h"
#include "toolkit/text.h"

namespace korvel::cli {

namespace {

using periods::Warehouse;

/// One of the selection's keys, or blank, which the save then refuses.
std::string Classification(const Assignment& given) {
  const std::string key = toolkit::Upper(toolkit::Trim(given.value));
  if (!key.empty() && !toolkit::eselChave(periods::kClassificacaoList, key)) {
    throw Refusal(
        fmt::format("O armazém {} aceita PT, PT-AC ou PT-MA, não \"{}\".", given.name, given.value));
  }
  return key;
}

void Classify(std::vector<Warehouse>& warehouses, const Assignment& given) {
  const auto found = std::ranges::find_if(
      warehouses, [&](const Warehouse& known) { return data::SameText(known.armazem, given.name); });
  if (found == warehouses.end()) {
    warehouses.push_back({given.name, {}, Classification(given)});
  } else {
    found->classificacao = Classification(given);
  }
}

class ArmazemDefinir final : public Command {
 public:
  std::string_view Path() const override { return "armazem definir"; }
  std::string_view Summary() const override {
    return "Define a região de isenção de armazéns; os outros ficam";
  }
  NeededRight Needs() const override { return {"frmParamGeral", "cmdGravar", true}; }

  void Declare(CLI::App& app) override {
    values_.Declare(app, "ARMAZÉM=REGIÃO", "Códigos dos armazéns com PT, PT-AC ou PT-MA, como A1=PT");
  }

  bool Run(Workspace& workspace) override {
    const auto assignments = values_.Get();
    workspace.EnterCompany();
    auto company = workspace.OpenCompany();
    const auto parameters = periods::ReadParameters(*company).value_or(periods::Parameters{});
    auto warehouses = periods::StoredWarehouses(*company);
    company.reset();
    for (const Assignment& given : assignments) Classify(warehouses, given);
    return periods::GravarParametros(workspace.Context(), parameters, warehouses);
  }

 private:
  AssignmentArguments values_;
};

}  // namespace

std::unique_ptr<Command> MakeArmazemDefinir() {
  return std::make_unique<ArmazemDefinir>();
}

}  // namespace korvel::cli
