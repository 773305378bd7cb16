#pragma once

#include <QLineEdit>
#include <functional>
#include <string>
#include <string_view>

#include "gateways/desk.h"

namespace korvel::desktop {

/// A date. It never holds one that was not checked: a bad date is told when the box is left, and the box is empty then.
/// The up and down arrows add and take away a day, from today in an empty box.
class Edatas : public QLineEdit {
 public:
  Edatas(Desk& desk, std::string_view name, QWidget* parent = nullptr);

  /// In the regional form; writing reads the text as leaving the box does.
  std::string Conteudo();
  void SetConteudo(std::string_view text);
  /// YYYY-MM-DD, "" without a date.
  std::string ConteudoAMD();
  void SetConteudoAMD(std::string_view neutral);
  /// The text can be read and copied, not changed.
  void SetLocked(bool locked);

  /// Told when the box is left with another date than before.
  std::function<void()> onChange;

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;

 private:
  void Accept();
  void AddDays(int days);

  Desk& desk_;
  std::string neutral_;
  QString accepted_;  // the text that neutral_ was read from
};

}  // namespace korvel::desktop
