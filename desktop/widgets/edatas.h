#pragma once

#include <string>
#include <string_view>

#include "toolkit/dates.h"
#include "widgets/entry_box.h"

namespace korvel::desktop {

/// A date. It never holds one that was not checked: a bad date is told when the box is left, and the box is empty then.
/// The up and down arrows add and take away a day, from today in an empty box.
class Edatas final : public EntryBox {
 public:
  Edatas(Desk& desk, std::string_view name, QWidget* parent = nullptr);

  /// In the regional form; writing reads the text as leaving the box does.
  std::string Conteudo();
  void SetConteudo(std::string_view text) { Write(text); }
  /// YYYY-MM-DD, "" without a date; writing a text that is no date empties the box.
  std::string ConteudoAMD();
  void SetConteudoAMD(std::string_view neutral);

 protected:
  std::string Take(const std::string& text) override;
  std::string Shown() const override { return date_.regional; }
  toolkit::Icon RefusalIcon() const override { return toolkit::Icon::Critical; }
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void AddDays(int days);

  toolkit::DateTexts date_;
};

}  // namespace korvel::desktop
