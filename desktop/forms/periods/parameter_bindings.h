#pragma once

#include <QCheckBox>
#include <QLineEdit>
#include <QRadioButton>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "periods/parameters.h"
#include "widgets/code_box.h"
#include "widgets/inteiro.h"
#include "widgets/sel_opta.h"

namespace korvel::desktop {

/// Which control shows which value of the parameters. Controls stay with their window, which outlives this.
class ParameterBindings {
 public:
  using Text = std::string periods::Parameters::*;
  using Flag = bool periods::Parameters::*;
  using Number = int periods::Parameters::*;

  void Bind(QLineEdit* box, Text member);
  void Bind(CodeBox* box, Text member);
  void Bind(SelOpta* choice, Text member);
  void Bind(QCheckBox* tick, Flag member);
  void Bind(Inteiro* number, Number member);
  /// One of several buttons for one value: `value` is what it stands for.
  void Bind(QRadioButton* option, Text member, std::string_view value);

  /// Names behind codes are not looked up.
  void Show(const periods::Parameters& parameters) const;
  void Read(periods::Parameters& parameters) const;

 private:
  struct Binding {
    std::function<void(const periods::Parameters&)> show;
    std::function<void(periods::Parameters&)> read;
  };
  std::vector<Binding> bindings_;
};

}  // namespace korvel::desktop
