#include "widgets/combo_list.h"

#include "gateways/text.h"
#include "session/session_record.h"
#include "toolkit/dates.h"
#include "toolkit/text.h"

namespace korvel::desktop {

namespace {

constexpr int kDaysOfWeek = 7;

}  // namespace

void NumberedNames::SetNumber(int number) {
  setCurrentIndex(number >= 1 && number <= count() ? number - 1 : -1);
}

std::string NumberedNames::ChosenName() const {
  return FromQt(currentText());
}

void NumberedNames::SetChosenName(std::string_view name) {
  for (int row = 0; row < count(); ++row) {
    if (toolkit::SameIgnoringCase(FromQt(itemText(row)), name)) setCurrentIndex(row);
  }
}

ComboMes::ComboMes(std::string_view name, QWidget* parent) : NumberedNames(name, parent) {
  for (const std::string_view month : session::SessionRecord::gMeses) addItem(ToQt(month));
  setCurrentIndex(-1);
}

ComboSem::ComboSem(std::string_view name, QWidget* parent) : NumberedNames(name, parent) {
  for (int day = 1; day <= kDaysOfWeek; ++day) addItem(ToQt(toolkit::Dias(day)));
  setCurrentIndex(-1);
}

}  // namespace korvel::desktop
