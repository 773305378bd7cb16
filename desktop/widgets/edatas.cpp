#include "widgets/edatas.h"

#include <QKeyEvent>
#include <utility>

#include "session/regional_values.h"
#include "toolkit/entry_rules.h"

namespace korvel::desktop {

Edatas::Edatas(Desk& desk, std::string_view name, QWidget* parent) : EntryBox(desk, name, parent) {}

std::string Edatas::Conteudo() {
  Accept();
  return date_.regional;
}

std::string Edatas::ConteudoAMD() {
  Accept();
  return date_.neutral;
}

void Edatas::SetConteudoAMD(std::string_view neutral) {
  date_ = toolkit::TextsOfDate(neutral, session::DateMarks(desk_.Session()));
  ShowWritten();
}

std::string Edatas::Take(const std::string& text) {
  auto reading = toolkit::ReadTypedDate(text, session::DateMarks(desk_.Session()), desk_.Clock().Now());
  date_ = std::move(reading.texts);
  return std::move(reading.refusal);
}

void Edatas::keyPressEvent(QKeyEvent* event) {
  const bool up = event->key() == Qt::Key_Up;
  const bool down = event->key() == Qt::Key_Down;
  if ((!up && !down) || event->modifiers() != Qt::NoModifier) {
    EntryBox::keyPressEvent(event);
  } else if (!isReadOnly()) {
    AddDays(up ? 1 : -1);
  }
}

void Edatas::AddDays(int days) {
  const bool typed = !text().isEmpty();
  Accept();
  if (typed && date_.neutral.empty()) return;  // what stood there was refused
  auto stepped = toolkit::StepDate(date_.neutral, days, session::DateMarks(desk_.Session()),
                                   desk_.Clock().Now(), desk_.Dialogs());
  if (stepped.neutral.empty()) return;
  date_ = std::move(stepped);
  ShowChanged();
}

}  // namespace korvel::desktop
