#pragma once

#include <QWidget>
#include <functional>
#include <string>
#include <string_view>

#include "gateways/desk.h"
#include "toolkit/entry_rules.h"

namespace korvel::desktop {

/// A whole number between two bounds, with arrows. A value outside is told when the box is left, and refused: the number
/// before stays.
class Inteiro final : public QWidget {
 public:
  Inteiro(Desk& desk, std::string_view name, QWidget* parent = nullptr);
  ~Inteiro() override;

  int Valor();
  /// As written, also outside the bounds.
  void SetValor(int value);
  void SetMinimo(int least) { bounds_.least = least; }
  void SetMaximo(int most) { bounds_.most = most; }
  /// The number can be read and copied, not changed.
  void SetLocked(bool locked);

  /// Told when the box is left with another number than before, not when the program writes one.
  std::function<void()> onChange;

 private:
  class Spin;

  std::string TakeTyped();
  void Say(const std::string& refusal);
  void Leave();
  void TellChange();

  Desk& desk_;
  Spin* spin_;
  toolkit::IntegerBounds bounds_;
  int value_ = 0;
  int told_ = 0;  // the value when onChange was told last
};

/// Sets the bounds of all whole numbers below a form.
void SetMinMaxEmInteiros(const QWidget& form, const toolkit::IntegerBounds& bounds);

}  // namespace korvel::desktop
