#include "widgets/sel_opta.h"

#include <QSignalBlocker>
#include <cstddef>
#include <utility>

#include "gateways/text.h"

namespace korvel::desktop {

SelOpta::SelOpta(std::string_view name, QWidget* parent) : ChoiceBox(name, parent) {
  connect(this, &QComboBox::currentIndexChanged, this, [this] {
    if (onChange) onChange();
  });
}

void SelOpta::SetLista(std::string_view lista) {
  SetOptions(toolkit::eselToArray(lista));
}

void SelOpta::SetOptions(std::vector<toolkit::Option> options) {
  const QSignalBlocker quiet(this);
  options_ = std::move(options);
  found_ = false;
  clear();
  for (const auto& option : options_) addItem(ToQt(option.caption));
  setCurrentIndex(-1);
}

std::string SelOpta::Chave() const {
  const int row = currentIndex();
  return row < 0 ? std::string() : options_[static_cast<std::size_t>(row)].key;
}

void SelOpta::SetChave(std::string_view chave) {
  const auto row = toolkit::FindOption(options_, chave);
  found_ = row.has_value();
  if (row) setCurrentIndex(static_cast<int>(*row));
}

std::string SelOpta::Texto() const {
  return FromQt(currentText());
}

}  // namespace korvel::desktop
