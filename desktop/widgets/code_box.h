#pragma once

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QWidget>
#include <functional>
#include <string>
#include <string_view>

#include "gateways/desk.h"
#include "periods/table_search.h"

namespace korvel::desktop {

/// Names of the three controls of a code box.
struct CodeBoxNames {
  std::string_view box;     // "txtCliente"
  std::string_view button;  // "cmdCliente"
  std::string_view label;   // "lblCliente"
};

/// A box for a code with the name behind it, and a button that opens the search window over its table. Leaving the box
/// fills the name; an unknown code is told, and the box selected for retyping; "\" or "/" in the text opens the search.
class CodeBox : public QWidget {
 public:
  CodeBox(Desk& desk, const CodeBoxNames& names, periods::TableSearch search, QWidget* parent = nullptr);

  std::string Codigo() const;
  /// Writes the code and looks its name up, without a word when it is not there.
  void SetCodigo(std::string_view code);
  QLineEdit* Box() { return box_; }
  QPushButton* Button() { return button_; }

  /// Told when a row was found, or the box cleared.
  std::function<void()> onChange;

 private:
  void Look(bool showRefusal);
  void OpenSearch(std::string_view typed);

  Desk& desk_;
  periods::TableSearch search_;
  QLineEdit* box_;
  QPushButton* button_;
  QLabel* label_;
};

}  // namespace korvel::desktop
