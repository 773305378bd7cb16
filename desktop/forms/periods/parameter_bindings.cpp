#include "forms/periods/parameter_bindings.h"

#include "gateways/text.h"

namespace korvel::desktop {

using periods::Parameters;

void ParameterBindings::Bind(QLineEdit* box, Text member) {
  bindings_.push_back({[=](const Parameters& from) { box->setText(ToQt(from.*member)); },
                       [=](Parameters& to) { to.*member = FromQt(box->text()); }});
}

void ParameterBindings::Bind(CodeBox* box, Text member) {
  bindings_.push_back({[=](const Parameters& from) { box->SetCodigoSemNome(from.*member); },
                       [=](Parameters& to) { to.*member = box->Codigo(); }});
}

void ParameterBindings::Bind(SelOpta* choice, Text member) {
  bindings_.push_back({[=](const Parameters& from) { choice->SetChave(from.*member); },
                       [=](Parameters& to) { to.*member = choice->Chave(); }});
}

void ParameterBindings::Bind(QCheckBox* tick, Flag member) {
  bindings_.push_back({[=](const Parameters& from) { tick->setChecked(from.*member); },
                       [=](Parameters& to) { to.*member = tick->isChecked(); }});
}

void ParameterBindings::Bind(Inteiro* number, Number member) {
  bindings_.push_back({[=](const Parameters& from) { number->SetValor(from.*member); },
                       [=](Parameters& to) { to.*member = number->Valor(); }});
}

void ParameterBindings::Bind(QRadioButton* option, Text member, std::string_view value) {
  const std::string kept(value);
  bindings_.push_back({[=](const Parameters& from) {
                         if (from.*member == kept) option->setChecked(true);
                       },
                       [=](Parameters& to) {
                         if (option->isChecked()) to.*member = kept;
                       }});
}

void ParameterBindings::Show(const Parameters& parameters) const {
  for (const Binding& binding : bindings_) binding.show(parameters);
}

void ParameterBindings::Read(Parameters& parameters) const {
  for (const Binding& binding : bindings_) binding.read(parameters);
}

}  // namespace korvel::desktop
