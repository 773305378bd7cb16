#pragma once

#include <QComboBox>
#include <string>
#include <string_view>

namespace korvel::desktop {

/// A month, 1 to 12; 0 when none is chosen.
class ComboMes : public QComboBox {
 public:
  explicit ComboMes(std::string_view name, QWidget* parent = nullptr);
  int Mes() const;
  void SetMes(int month);
  /// The name of the month; writing finds it in any case of letters.
  std::string DMes() const;
  void SetDMes(std::string_view name);
};

/// A day of the week, 1 (Domingo) to 7; 0 when none is chosen.
class ComboSem : public QComboBox {
 public:
  explicit ComboSem(std::string_view name, QWidget* parent = nullptr);
  int Dia() const;
  void SetDia(int day);
  std::string dsemana() const;
  void Setdsemana(std::string_view name);
};

}  // namespace korvel::desktop
