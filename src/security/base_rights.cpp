#include "security/base_rights.h"

#include <array>
#include <iterator>
#include <string>
#include <vector>

#include "security/right_rows.h"
#include "session/connections.h"
#include "toolkit/progress_scope.h"
#include "toolkit/text.h"

namespace korvel::security {

namespace {

using session::Context;

std::vector<RightRow> RowsOf(const CatalogueForm& form, std::string_view parentKey, bool value) {
  const std::string parent(toolkit::IsBlank(parentKey) ? kProgramFile : parentKey);
  const std::string key = parent + std::string(form.name);
  const std::string name(form.name), caption(form.caption);
  std::vector<RightRow> rows{{key, parent, name, "", caption, "", value}};
  for (const FormButton& button : form.buttons) {
    if (!IsGuardable(button.name, button.caption)) continue;
    const std::string control(button.name);
    rows.push_back({key + control, key, name, control, caption, WithoutAccessKey(button.caption), true});
  }
  return rows;
}

bool Confirmed(const Context& context, std::string_view question) {
  constexpr std::array<std::string_view, 2> kButtons{"Sim", "Não"};
  return context.dialogs.Ask(question, kButtons) == 0;
}

}  // namespace

void AccCreateAPP(data::Connection& config, std::string_view key, std::string_view user,
                  std::string_view company) {
  const RightRow root{std::string(key), "", "", "", std::string(kProgramCaption), "", false};
  MergeRights(config, {user, company}, {&root, 1});
}

void AccGetBotoes(data::Connection& config, std::string_view user, std::string_view company,
                  const CatalogueForm& form, std::string_view parentKey, bool value) {
  MergeRights(config, {user, company}, RowsOf(form, parentKey, value));
}

bool AccCopiaAcessosBase(const Context& context, data::Connection& config, std::string_view user,
                         std::string_view company) {
  std::vector<RightRow> rights = ReadRights(config, kBaseSet);
  if (rights.empty()) {
    context.dialogs.Message(toolkit::Icon::Warning,
                            "Não Há Acessos Base Definidos !\nOs Acessos base tem que ser criados pelo "
                            "Administrador do sistema, no Menu de utilitários");
    return false;
  }
  for (RightRow& right : rights) right.allowed = true;
  MergeRights(config, {user, company}, rights);
  return true;
}

bool CriaAcessosBase(const Context& context) {
  if (!Confirmed(context, "Confirma a Criação ?")) return false;
  session::ConnectionPtr config;
  if (!session::AbreConfig(context, config)) return false;
  CreateBaseRights(context, *config);
  return true;
}

void CreateBaseRights(const Context& context, data::Connection& config) {
  AccCreateAPP(config, kProgramFile, kBaseSet.user, kBaseSet.company);
  const auto forms = RightsCatalogue();
  toolkit::ProgressScope progress(context.progress, "Criação de Acessos Base", std::ssize(forms));
  for (const CatalogueForm& form : forms) {
    AccGetBotoes(config, kBaseSet.user, kBaseSet.company, form, "", true);
    progress.Step([&] { return form.caption; });
  }
}

bool EliminaAcessos(const Context& context) {
  if (!Confirmed(context, "Confirma a Eliminação dos Acessos?")) return false;
  session::ConnectionPtr config;
  if (!session::AbreConfig(context, config)) return false;
  config->Execute("Truncate Table acessos");
  return true;
}

}  // namespace korvel::security
