#include "security/rights_editor.h"

#include <fmt/format.h>

#include <utility>

#include "security/activity_log.h"
#include "security/base_rights.h"
#include "security/right_rows.h"
#include "session/connections.h"
#include "toolkit/text.h"

namespace korvel::security {

namespace {

using session::Context;

RightNode NodeOf(RightRow& row) {
  const NodeKind kind = row.control.empty() ? NodeKind::Form : NodeKind::Button;
  std::string& text = kind == NodeKind::Form ? row.caption : row.buttonCaption;
  return {kind, std::move(row.key), std::move(row.parent), std::move(text), row.allowed};
}

bool IsBelow(const RightNode& node, const RightNode& above) {
  return above.kind == NodeKind::Root ? node.kind != NodeKind::Root : node.parent == above.key;
}

}  // namespace

RightsEditor::RightsEditor(std::string user, std::string company)
    : user_(std::move(user)), company_(std::move(company)) {}

std::string RightsEditor::Caption() const {
  return fmt::format("Actualização de Acessos ({})", user_);
}

bool RightsEditor::Load(const Context& context) {
  session::ConnectionPtr config;
  if (!session::AbreConfig(context, config)) return false;
  if (ReadRights(*config, {user_, company_}).empty()) AccCopiaAcessosBase(context, *config, user_, company_);
  Fill(*config);
  return true;
}

bool RightsEditor::Actop(const Context& context) {
  session::ConnectionPtr config;
  if (!session::AbreConfig(context, config)) return false;
  AccCopiaAcessosBase(context, *config, user_, company_);
  Fill(*config);
  return true;
}

void RightsEditor::Fill(data::Connection& config) {
  nodes_.assign(1, {NodeKind::Root, std::string(kProgramFile), "", std::string(kProgramCaption), false});
  for (RightRow& row : ReadRights(config, {user_, company_})) {
    if (row.form.empty()) {
      nodes_.front().allowed = row.allowed;
    } else if (row.control.empty() || IsGuardableCaption(row.buttonCaption)) {
      nodes_.push_back(NodeOf(row));
    }
  }
  saved_.clear();
  for (const RightNode& node : nodes_) saved_.push_back(node.allowed);
  found_.reset();
}

void RightsEditor::SetAll(bool allowed) {
  for (RightNode& node : nodes_) node.allowed = allowed;
}

void RightsEditor::Ligto() {
  SetAll(true);
}

void RightsEditor::Desligto() {
  SetAll(false);
}

void RightsEditor::LigaDesliga(std::size_t node) {
  RightNode& turned = nodes_.at(node);
  turned.allowed = !turned.allowed;
  for (RightNode& other : nodes_) {
    if (IsBelow(other, turned)) other.allowed = turned.allowed;
  }
}

void RightsEditor::LigaDesligatodos() {
  for (RightNode& node : nodes_) node.allowed = !node.allowed;
}

std::optional<std::size_t> RightsEditor::Procurar(const Context& context, std::string_view text) {
  const std::string wanted = toolkit::Upper(text);
  if (std::exchange(searched_, wanted) != wanted) found_.reset();
  for (std::size_t i = found_ ? *found_ + 1 : 0; i < nodes_.size(); ++i) {
    if (toolkit::Upper(nodes_[i].text).find(wanted) != std::string::npos) return found_ = i;
  }
  context.dialogs.Message(toolkit::Icon::Information, found_ ? "Não foi Encontrado mais nenhum item !"
                                                             : "Não foi Encontrado nenhum item !");
  found_.reset();
  return std::nullopt;
}

bool RightsEditor::Gravar(const Context& context) {
  session::ConnectionPtr config;
  if (!session::AbreConfig(context, config)) return false;
  data::Transaction transaction(*config);
  bool changed = false;
  for (std::size_t i = 0; i < nodes_.size(); ++i) {
    const RightNode& node = nodes_[i];
    if (node.kind == NodeKind::Root || node.allowed == saved_[i]) continue;
    config->Execute("update acessos set value=? where chave=? and  utilizador=? and empresa=?",
                    {node.allowed, node.key, user_, company_});
    changed = true;
  }
  transaction.Commit();
  for (std::size_t i = 0; i < nodes_.size(); ++i) saved_[i] = nodes_[i].allowed;
  if (!changed) return true;
  const std::string caption = Caption();
  InsertLog(context, *config, {module::kUtilities, action::kChange, caption, caption, {}, company_});
  return true;
}

}  // namespace korvel::security
