#include <fmt/format.h>

#include <algorithm>
#include <ostream>

#include "cli/assignments.h"
#include "cli/commands.h"
#include "cli/failures.h"
#include "cli/option_lists.h"
#include "security/base_rights.h"
#include "security/rights_catalogue.h"
#include "security/rights_editor.h"
#include "session/connections.h"
#include "toolkit/text.h"

namespace korvel::cli {

namespace {

using security::NodeKind;
using security::RightNode;
using security::RightsEditor;

/// "frmWizard" or "frmWizard.cmdGravar", the key without the program's name.
std::string ShownKey(const RightNode& node) {
  if (node.kind != NodeKind::Button) return node.key.substr(security::kProgramFile.size());
  return node.parent.substr(security::kProgramFile.size()) + '.' + node.key.substr(node.parent.size());
}

class AcessosBase final : public Command {
 public:
  std::string_view Path() const override { return "acessos base"; }
  std::string_view Summary() const override { return "Cria ou actualiza os acessos base"; }

  void Declare(CLI::App& app) override {
    app.add_flag("--eliminar", deletes_, "Elimina todos os acessos, os dos utilizadores também (pede --sim)");
  }

  bool Run(Workspace& workspace) override {
    workspace.LoginAsAdministrator();
    if (!deletes_) return security::CriaAcessosBase(workspace.Context());
    if (!workspace.Confirmed()) throw Refusal("Acrescente --sim para confirmar.");
    return security::EliminaAcessos(workspace.Context());
  }

 private:
  bool deletes_ = false;
};

/// A command on the rights of one user in the company of `--empresa`.
class UserRights : public Command {
 public:
  void Declare(CLI::App& app) override {
    app.add_option("--utilizador", user_, "De quem são os acessos")->required()->type_name("LOGIN");
  }

 protected:
  RightsEditor Editor(Workspace& workspace) const {
    workspace.LoginAsAdministrator();
    return {toolkit::Upper(toolkit::Trim(user_)), workspace.ListedCompany()};
  }
  RightsEditor Loaded(Workspace& workspace) const {
    RightsEditor editor = Editor(workspace);
    if (!editor.Load(workspace.Context()) || editor.Nodes().empty()) {
      throw Refusal(fmt::format("O utilizador {} não tem acessos na empresa.", user_));
    }
    return editor;
  }

 private:
  std::string user_;
};

class AcessosCopiar final : public UserRights {
 public:
  std::string_view Path() const override { return "acessos copiar"; }
  std::string_view Summary() const override { return "Dá a um utilizador o que há de novo nos acessos base"; }
  bool Run(Workspace& workspace) override { return Editor(workspace).Actop(workspace.Context()); }
};

class AcessosMostrar final : public UserRights {
 public:
  std::string_view Path() const override { return "acessos mostrar"; }
  std::string_view Summary() const override { return "Mostra os acessos de um utilizador na empresa"; }

  bool Run(Workspace& workspace) override {
    const RightsEditor editor = Loaded(workspace);
    workspace.Out() << "Acesso\tS/N\tDescrição\n";
    for (const RightNode& node : editor.Nodes()) {
      if (node.kind == NodeKind::Root) continue;
      workspace.Out() << fmt::format("{}\t{}\t{}\n", ShownKey(node), node.allowed ? "S" : "N", node.text);
    }
    return true;
  }
};

class AcessosDefinir final : public UserRights {
 public:
  std::string_view Path() const override { return "acessos definir"; }
  std::string_view Summary() const override { return "Liga e desliga acessos de um utilizador na empresa"; }

  void Declare(CLI::App& app) override {
    UserRights::Declare(app);
    app.add_option("--todos", all_, "Primeiro liga ou desliga todos")->type_name("S|N");
    values_.Declare(app, "ACESSO=S|N",
                    "Acessos como os dá \"acessos mostrar\"; um formulário leva os seus botões");
  }

  bool Run(Workspace& workspace) override {
    const auto assignments = all_.empty() || values_.Given() ? values_.Get() : std::vector<Assignment>();
    RightsEditor editor = Loaded(workspace);
    if (!all_.empty()) YesOrNo("--todos", all_) ? editor.Ligto() : editor.Desligto();
    for (const Assignment& given : assignments) Switch(editor, given);
    return editor.Gravar(workspace.Context());
  }

 private:
  static void Switch(RightsEditor& editor, const Assignment& given) {
    const bool allowed = YesOrNo(given.name, given.value);
    const auto nodes = editor.Nodes();
    const auto found = std::ranges::find_if(nodes, [&](const RightNode& node) {
      return node.kind != NodeKind::Root && toolkit::SameIgnoringCase(ShownKey(node), given.name);
    });
    if (found == nodes.end()) throw Refusal(fmt::format("O acesso {} não existe.", given.name));
    const std::string key = found->key;
    for (std::size_t i = 0; i < nodes.size(); ++i) {
      if (nodes[i].key == key || nodes[i].parent == key) editor.Set(i, allowed);
    }
  }

  std::string all_;
  AssignmentArguments values_;
};

}  // namespace

CommandList MakeAcessos() {
  CommandList made;
  made.push_back(std::make_unique<AcessosBase>());
  made.push_back(std::make_unique<AcessosCopiar>());
  made.push_back(std::make_unique<AcessosMostrar>());
  made.push_back(std::make_unique<AcessosDefinir>());
  return made;
}

}  // namespace korvel::cli
