#pragma once

#include <QLineEdit>
#include <functional>
#include <string>
#include <string_view>

#include "gateways/desk.h"

namespace korvel::desktop {

/// A line whose text becomes a checked value when it is left: what date and number boxes have in common. Enter ends the
/// entry, Escape gives it up.
class EntryBox : public QLineEdit {
 public:
  /// The text can be read and copied, not changed.
  void SetLocked(bool locked);

  /// Told when the box is left with another value than before, not when the program writes one.
  std::function<void()> onChange;

 protected:
  EntryBox(Desk& desk, std::string_view name, QWidget* parent);

  /// Takes a typed text as the value. Gives back why it is refused, "" when it is not.
  virtual std::string Take(const std::string& text) = 0;
  /// The value as it is shown.
  virtual std::string Shown() const = 0;
  virtual toolkit::Icon RefusalIcon() const { return toolkit::Icon::Warning; }

  /// Takes what was typed since, as leaving the box does. For whoever reads the value.
  void Accept();
  /// Takes a text that the program writes.
  void Write(std::string_view text);
  /// Shows a value that the program has set.
  void ShowWritten();
  /// Shows a value that the user has changed without typing.
  void ShowChanged();

  void keyPressEvent(QKeyEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;

  Desk& desk_;

 private:
  /// The refusal of what was typed, after the value is shown.
  std::string TakeTyped();
  void Say(const std::string& refusal);
  void SayLater(const std::string& refusal);
  void TellChange();

  QString shown_;  // what stands for the value
  QString told_;   // the same when onChange was told last
};

}  // namespace korvel::desktop
