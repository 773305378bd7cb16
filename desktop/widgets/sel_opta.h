#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "toolkit/options.h"
#include "widgets/choice_box.h"

namespace korvel::desktop {

/// A choice from a list, each with a key. An empty key is a choice too.
class SelOpta : public ChoiceBox {
 public:
  explicit SelOpta(std::string_view name, QWidget* parent = nullptr);

  /// An option list text, "0:Não;1:Sim;". Nothing is chosen afterwards; onChange is not told.
  void SetLista(std::string_view lista);
  void SetOptions(std::vector<toolkit::Option> options);

  /// The key of the choice; "" too when nothing is chosen.
  std::string Chave() const;
  /// Chooses the first key that equals `chave` upper-cased. Without one Found() is false and the choice stays.
  void SetChave(std::string_view chave);
  bool Found() const { return found_; }
  /// The caption shown.
  std::string Texto() const;

  /// Told when another row is chosen, by the user or by SetChave.
  std::function<void()> onChange;

 private:
  std::vector<toolkit::Option> options_;
  bool found_ = false;
};

}  // namespace korvel::desktop
