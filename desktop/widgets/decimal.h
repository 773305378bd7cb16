#pragma once

#include <string>
#include <string_view>

#include "data/currency.h"
#include "toolkit/entry_rules.h"
#include "widgets/entry_box.h"

namespace korvel::desktop {

/// A number with decimals, exact. Keys that cannot belong to one are swallowed with a sound; what is too large is told
/// when the box is left, and refused: the number before stays.
class Decimal : public EntryBox {
 public:
  /// With the session's decimals and the number symbols of the user's settings.
  Decimal(Desk& desk, std::string_view name, QWidget* parent = nullptr);

  data::Currency Valor();
  void SetValor(data::Currency value);
  std::string Texto() const { return Shown(); }
  /// Reads the text as leaving the box does.
  void SetTexto(std::string_view text) { Write(text); }
  /// Most characters that can be typed.
  void SetComprimento(int characters) { entry_.characters = characters; }
  /// Decimals typed and shown, 0 to 4.
  void SetDecimais(int decimals);
  void SetSepMilhares(bool grouped);

 protected:
  Decimal(Desk& desk, std::string_view name, toolkit::Marks marks, QWidget* parent);

  /// The refusal of a number that is too large.
  virtual std::string_view LargestText() const { return toolkit::kDecimalTooLarge; }
  std::string Take(const std::string& text) override;
  std::string Shown() const override { return toolkit::ShowNumber(value_, entry_); }
  void keyPressEvent(QKeyEvent* event) override;

 private:
  bool Admits(const QString& typed) const;

  data::Currency value_;
  toolkit::NumberEntry entry_;
};

/// An amount of money, in the session's number symbols.
class Valor final : public Decimal {
 public:
  Valor(Desk& desk, std::string_view name, QWidget* parent = nullptr);

  /// Valor() of the base, a name that is the constructor's here.
  data::Currency Quantia() { return Decimal::Valor(); }

 protected:
  std::string_view LargestText() const override { return toolkit::kAmountTooLarge; }
};

/// Sets the decimals of all amounts, and of all other numbers, below a form.
void SetCasasDecimaisEmValores(const QWidget& form, int decimals);
void SetCasasDecimaisEmDecimais(const QWidget& form, int decimals);

}  // namespace korvel::desktop
