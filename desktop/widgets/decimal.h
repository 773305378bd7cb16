#pragma once

#include <QLineEdit>
#include <functional>
#include <string_view>

#include "data/currency.h"
#include "gateways/desk.h"

namespace korvel::desktop {

/// A number with decimals, exact. Keys that cannot belong to one are swallowed with a sound; what is too large is told
/// when the box is left, and refused.
class Decimal : public QLineEdit {
 public:
  Decimal(Desk& desk, std::string_view name, QWidget* parent = nullptr);

  data::Currency Valor();
  void SetValor(data::Currency value);
  /// Most characters that can be typed, and decimals shown; the default is the session's decimals.
  void SetComprimento(int characters);
  void SetDecimais(int decimals);
  void SetSepMilhares(bool grouped);
  void SetLocked(bool locked);

  std::function<void()> onChange;

 protected:
  /// The refusal of a number that is too large.
  virtual std::string_view LargestText() const;
  void keyPressEvent(QKeyEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;

 private:
  void Accept();
  void Show();

  Desk& desk_;
  data::Currency value_;
  int decimals_ = 2;
  bool grouped_ = false;
};

/// An amount of money.
class Valor final : public Decimal {
 public:
  using Decimal::Decimal;

 protected:
  std::string_view LargestText() const override;
};

}  // namespace korvel::desktop
