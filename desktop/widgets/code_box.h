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
  std::string_view box;             // "txtCliente"
  std::string_view button;          // "cmdCliente"
  std::string_view label = {};      // "lblCliente"; empty: no name is shown
  std::string_view whenEmpty = {};  // what the label shows behind an empty box, "Todas"
};

/// A box for a code with the name behind it, and a button that opens the search window over its table, as F4 does.
/// Leaving the box fills the name; an unknown code is told, and the box selected for retyping; "\" or "/" in the text
/// opens the search.
class CodeBox : public QWidget {
 public:
  CodeBox(Desk& desk, const CodeBoxNames& names, periods::TableSearch search, QWidget* parent = nullptr);
  ~CodeBox() override;

  std::string Codigo() const;
  /// Writes the code and looks its name up, without a word when it is not there.
  void SetCodigo(std::string_view code);
  /// Writes the code and leaves the name as for an unknown one: nothing is read.
  void SetCodigoSemNome(std::string_view code);
  /// From now on codes are looked up there.
  void SetSearch(periods::TableSearch search);
  QLineEdit* Box() { return box_; }
  QPushButton* Button() { return button_; }

  /// Told when the user's code was found, or the box cleared.
  std::function<void()> onChange;

 private:
  void Arrange();
  void Leave();
  void Look(bool showRefusal);
  void OpenSearch(const std::string& typed);
  void Take(const periods::FoundRow& row);
  void ShowName(std::string_view name);
  void TellChange();
  void Retype();

  Desk& desk_;
  periods::TableSearch search_;
  std::string whenEmpty_;
  std::string looked_;    // the text that was looked up last
  std::string accepted_;  // the code that stood there before a search is asked for
  QLineEdit* box_;
  QPushButton* button_;
  QLabel* label_;  // null without a name
};

}  // namespace korvel::desktop
