#pragma once

#include <string>
#include <string_view>

#include "widgets/choice_box.h"

namespace korvel::desktop {

/// Names that count from 1.
class NumberedNames : public ChoiceBox {
 protected:
  NumberedNames(std::string_view name, QWidget* parent) : ChoiceBox(name, parent) {}

  int Number() const { return currentIndex() + 1; }
  /// A number without a name chooses none.
  void SetNumber(int number);
  std::string ChosenName() const;
  /// In any case of letters; a name that is not there leaves the choice.
  void SetChosenName(std::string_view name);
};

/// A month, 1 to 12; 0 when none is chosen.
class ComboMes final : public NumberedNames {
 public:
  explicit ComboMes(std::string_view name, QWidget* parent = nullptr);
  int Mes() const { return Number(); }
  void SetMes(int month) { SetNumber(month); }
  /// The name of the month; writing finds it in any case of letters.
  std::string DMes() const { return ChosenName(); }
  void SetDMes(std::string_view name) { SetChosenName(name); }
};

/// A day of the week, 1 (Domingo) to 7; 0 when none is chosen.
class ComboSem final : public NumberedNames {
 public:
  explicit ComboSem(std::string_view name, QWidget* parent = nullptr);
  int Dia() const { return Number(); }
  void SetDia(int day) { SetNumber(day); }
  std::string dsemana() const { return ChosenName(); }
  void Setdsemana(std::string_view name) { SetChosenName(name); }
};

}  // namespace korvel::desktop
