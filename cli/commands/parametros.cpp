#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <ostream>

#include "cli/assignments.h"
#include "cli/commands.h"
#include "cli/failures.h"
#include "periods/parameter_columns.h"
#include "periods/parameters.h"
#include "periods/warehouses.h"
#include "toolkit/text.h"

namespace korvel::cli {

namespace {

using periods::ParameterColumn;
using periods::Parameters;

std::vector<ParameterColumn> AllColumns() {
  std::vector<ParameterColumn> all;
  for (const auto columns : {periods::LocationColumns(), periods::BehaviourColumns()}) {
    all.insert(all.end(), columns.begin(), columns.end());
  }
  return all;
}

const ParameterColumn& FindColumn(const std::vector<ParameterColumn>& columns, std::string_view name) {
  const auto found = std::ranges::find_if(
      columns, [&](const ParameterColumn& column) { return toolkit::SameIgnoringCase(column.name, name); });
  if (found == columns.end()) throw UsageError(fmt::format("ParamGeral não tem a coluna {}.", name));
  return *found;
}

/// Puts a typed text where its column's form wants it; a check box takes S or N, 1 or 0.
class Typing {
 public:
  Typing(Parameters& parameters, const Assignment& given) : parameters_(parameters), given_(given) {}

  void operator()(periods::TextColumn column) const { parameters_.*column.member = given_.value; }
  void operator()(periods::LocationColumn column) const {
    parameters_.*column.side.*column.member = given_.value;
  }
  void operator()(periods::LetterColumn column) const { parameters_.*column.member = Ticked(); }
  void operator()(periods::FlagColumn column) const { parameters_.*column.member = Ticked(); }
  void operator()(periods::NumberColumn column) const {
    const char* const end = given_.value.data() + given_.value.size();
    const auto [read, error] = std::from_chars(given_.value.data(), end, parameters_.*column.member);
    if (error != std::errc() || read != end) Refuse("um número inteiro");
  }

 private:
  bool Ticked() const {
    const std::string letter = toolkit::Upper(toolkit::Trim(given_.value));
    if (letter != "S" && letter != "1" && letter != "N" && letter != "0") Refuse("S ou N");
    return letter == "S" || letter == "1";
  }
  [[noreturn]] void Refuse(std::string_view wanted) const {
    throw Refusal(fmt::format("{} aceita {}, não \"{}\".", given_.name, wanted, given_.value));
  }

  Parameters& parameters_;
  const Assignment& given_;
};

class ParametrosDefinir final : public Command {
 public:
  std::string_view Path() const override { return "parametros definir"; }
  std::string_view Summary() const override { return "Altera os parâmetros gerais da empresa"; }
  NeededRight Needs() const override { return {"frmParamGeral", "cmdGravar", true}; }

  void Declare(CLI::App& app) override {
    values_.Declare(app, "COLUNA=VALOR",
                    "Colunas de ParamGeral, como DBase_Lunder=LunderEmpresa ou CasasDec=2");
  }

  bool Run(Workspace& workspace) override {
    const auto assignments = values_.Get();
    const auto columns = AllColumns();
    for (const Assignment& given : assignments) FindColumn(columns, given.name);
    workspace.EnterCompany();
    auto company = workspace.OpenCompany();
    Parameters parameters = periods::ReadParameters(*company).value_or(Parameters{});
    const auto warehouses = periods::StoredWarehouses(*company);
    company.reset();
    for (const Assignment& given : assignments) {
      std::visit(Typing(parameters, given), FindColumn(columns, given.name).form);
    }
    return periods::GravarParametros(workspace.Context(), parameters, warehouses);
  }

 private:
  AssignmentArguments values_;
};

class ParametrosMostrar final : public Command {
 public:
  std::string_view Path() const override { return "parametros mostrar"; }
  std::string_view Summary() const override { return "Mostra os parâmetros gerais da empresa"; }
  NeededRight Needs() const override { return {"frmParamGeral", {}}; }
  void Declare(CLI::App&) override {}

  bool Run(Workspace& workspace) override {
    workspace.EnterCompany();
    const auto company = workspace.OpenCompany();
    const auto parameters = periods::ReadParameters(*company);
    if (!parameters) throw Refusal("A empresa ainda não tem Parâmetros Gerais.");
    for (const ParameterColumn& column : AllColumns()) {
      workspace.Out() << column.name << '=' << Shown(column, *parameters) << '\n';
    }
    return true;
  }

 private:
  /// Passwords are told apart from empty ones, no more: the list ends up in logs and on screens.
  static std::string Shown(const ParameterColumn& column, const Parameters& parameters) {
    std::string value = data::ToText(periods::ValueOf(column, parameters));
    const bool hidden = column.name.starts_with("Password") && !value.empty();
    return hidden ? "********" : value;
  }
};

}  // namespace

std::unique_ptr<Command> MakeParametrosDefinir() {
  return std::make_unique<ParametrosDefinir>();
}
std::unique_ptr<Command> MakeParametrosMostrar() {
  return std::make_unique<ParametrosMostrar>();
}

}  // namespace korvel::cli
