#pragma once

#include <QSpinBox>
#include <functional>
#include <string_view>

#include "gateways/desk.h"

namespace korvel::desktop {

/// A whole number between two bounds, with arrows. A value outside is told when the box is left, and refused.
class Inteiro : public QWidget {
 public:
  Inteiro(Desk& desk, std::string_view name, QWidget* parent = nullptr);

  int Valor();
  void SetValor(int value);
  void SetMinimo(int least);
  void SetMaximo(int most);
  void SetLocked(bool locked);

  std::function<void()> onChange;

 private:
  class Spin;
  Spin* spin_;
};

}  // namespace korvel::desktop
