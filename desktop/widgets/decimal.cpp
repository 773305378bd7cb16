#include "widgets/decimal.h"

#include <QKeyEvent>
#include <QValidator>
#include <algorithm>
#include <functional>
#include <utility>

#include "gateways/text.h"
#include "toolkit/regional.h"
#include "toolkit/utf8.h"

namespace korvel::desktop {

namespace {

/// Lets a text stand or not, whether it was typed, pasted or dropped.
class Admission final : public QValidator {
 public:
  using Rule = std::function<bool(const QString& text)>;

  Admission(Rule rule, QObject* parent) : QValidator(parent), rule_(std::move(rule)) {}
  State validate(QString& text, int&) const override { return rule_(text) ? Acceptable : Invalid; }

 private:
  Rule rule_;
};

}  // namespace

Decimal::Decimal(Desk& desk, std::string_view name, QWidget* parent)
    : Decimal(desk, name, toolkit::NumberMarks(toolkit::ReadRegional(desk.Settings())), parent) {}

Decimal::Decimal(Desk& desk, std::string_view name, toolkit::Marks marks, QWidget* parent)
    : EntryBox(desk, name, parent) {
  entry_.marks = std::move(marks);
  entry_.decimals = desk.Session().gCasasDec;
  setAlignment(Qt::AlignRight);
  setValidator(new Admission([this](const QString& text) { return Admits(text); }, this));
  ShowWritten();
}

data::Currency Decimal::Valor() {
  Accept();
  return value_;
}

void Decimal::SetValor(data::Currency value) {
  value_ = value;
  ShowWritten();
}

void Decimal::SetDecimais(int decimals) {
  Accept();
  entry_.decimals = std::clamp(decimals, 0, 4);
  ShowWritten();
}

void Decimal::SetSepMilhares(bool grouped) {
  Accept();
  entry_.grouped = grouped;
  ShowWritten();
}

std::string Decimal::Take(const std::string& text) {
  const auto reading = toolkit::ReadNumber(text, entry_);
  if (!reading) return std::string(LargestText());
  value_ = reading->value;
  return {};
}

bool Decimal::Admits(const QString& typed) const {
  toolkit::NumberEntry entry = entry_;
  // A value that the program wrote may be longer than what can be typed.
  entry.characters = std::max(entry.characters, static_cast<int>(toolkit::CharacterCount(Shown())));
  return toolkit::AdmitsNumber(FromQt(typed), entry);
}

void Decimal::keyPressEvent(QKeyEvent* event) {
  const std::string typed = FromQt(event->text());
  const std::string_view written = toolkit::TypedSymbol(typed, entry_.marks);
  if (written == typed) {
    EntryBox::keyPressEvent(event);
    return;
  }
  QKeyEvent symbol(event->type(), event->key(), event->modifiers(), ToQt(written), event->isAutoRepeat());
  EntryBox::keyPressEvent(&symbol);
}

Valor::Valor(Desk& desk, std::string_view name, QWidget* parent)
    : Decimal(desk, name, desk.Session().Marks(), parent) {}

void SetCasasDecimaisEmValores(const QWidget& form, int decimals) {
  for (QWidget* child : form.findChildren<QWidget*>()) {
    if (auto* box = dynamic_cast<Valor*>(child)) box->SetDecimais(decimals);
  }
}

void SetCasasDecimaisEmDecimais(const QWidget& form, int decimals) {
  for (QWidget* child : form.findChildren<QWidget*>()) {
    if (dynamic_cast<Valor*>(child) != nullptr) continue;
    if (auto* box = dynamic_cast<Decimal*>(child)) box->SetDecimais(decimals);
  }
}

}  // namespace korvel::desktop
