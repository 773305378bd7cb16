#pragma once

#include <QDialog>
#include <cstddef>
#include <span>
#include <string_view>
#include <vector>

#include "toolkit/ports.h"

class QBoxLayout;
class QPushButton;

namespace korvel::desktop {

/// `frmMsgBox`, `frmMensagem`, `WEliminar`: a picture, a text and buttons, of which one is chosen. Escape chooses the
/// last one, Ctrl+C copies the text.
class MessageBox : public QDialog {
 public:
  struct Content {
    std::string_view name;  // of the form
    toolkit::Icon icon = toolkit::Icon::None;
    std::string_view title;  // empty: the program's name
    std::string_view text;
    std::span<const std::string_view> buttons;      // captions; "&" stands before the access key
    std::span<const std::string_view> buttonNames;  // as many, or none
    std::size_t first = 0;                          // the button that Enter presses
  };

  MessageBox(const Content& content, QWidget* parent);

  /// Shows it until a button is pressed; the index of the one chosen.
  std::size_t Choose();

  void reject() override;

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void AddButtons(const Content& content, QBoxLayout* row);

  std::vector<QPushButton*> buttons_;
  std::size_t chosen_ = 0;
  QString text_;
};

}  // namespace korvel::desktop
