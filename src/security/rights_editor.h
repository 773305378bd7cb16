#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "data/connection.h"
#include "session/context.h"

namespace korvel::security {

enum class NodeKind { Root, Form, Button };

/// A node of the tree of rights with its check mark.
struct RightNode {
  NodeKind kind = NodeKind::Root;
  std::string key;
  std::string parent;  // key of the node above
  std::string text;
  bool allowed = false;
};

/// `frmAcessos`: the rights of a user in a company as a tree, in memory until Gravar. Members that reach the server
/// open the configuration database for themselves; when it does not open they give false after the retry dialog. They
/// throw data::Error, and nothing has changed then.
class RightsEditor {
 public:
  RightsEditor(std::string user, std::string company);

  /// Fills the tree; a user without rights gets the base set first. Marks that were not saved are lost.
  bool Load(const session::Context& context);

  std::string Caption() const;  // "Actualização de Acessos (<user>)"
  /// The program, then each form followed by its buttons; empty before Load.
  std::span<const RightNode> Nodes() const { return nodes_; }
  void Set(std::size_t node, bool allowed) { nodes_.at(node).allowed = allowed; }

  /// "Actualizar Opções de Acesso": copies what is new in the base set and fills the tree.
  bool Actop(const session::Context& context);
  void Ligto();     // "Ligar Todos os Items"
  void Desligto();  // "Desligar todos os Items"
  /// "Ligar/Desligar Item e SubItems": turns a node's mark, and all below it take its new state.
  void LigaDesliga(std::size_t node);
  /// "Ligar/Desligar Todos os Items": turns every mark.
  void LigaDesligatodos();

  /// `cmdProcurar`: the next node whose text holds `text`, in any case, behind the one found before; from the start for
  /// another text. Nothing at the end, which is said.
  std::optional<std::size_t> Procurar(const session::Context& context, std::string_view text);

  /// `cmdGravar`: saves the marks that changed, but that of the program, which the tree does not keep, deliberately.
  /// Logs it when something changed.
  bool Gravar(const session::Context& context);

 private:
  void Fill(data::Connection& config);
  void SetAll(bool allowed);

  std::string user_;
  std::string company_;
  std::vector<RightNode> nodes_;
  std::vector<bool> saved_;  // the marks on the server
  std::string searched_;
  std::optional<std::size_t> found_;
};

}  // namespace korvel::security
