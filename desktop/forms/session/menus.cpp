#include "forms/session/menus.h"

#include <QAction>
#include <optional>
#include <set>

namespace korvel::desktop {

namespace {

/// The letter behind "&"; nothing when the caption has none.
std::optional<QChar> AccessKey(const QString& caption) {
  const qsizetype mark = caption.indexOf('&');
  if (mark < 0 || mark + 1 >= caption.size()) return std::nullopt;
  return caption[mark + 1].toLower();
}

/// Where a free letter stands, at the beginning of a word if there is one; -1 when all are taken.
qsizetype FreeLetter(const QString& caption, const std::set<QChar>& taken) {
  qsizetype inside = -1;
  for (qsizetype i = 0; i < caption.size(); ++i) {
    const QChar letter = caption[i].toLower();
    const bool free = letter.unicode() < 128 && letter.isLetterOrNumber() && !taken.contains(letter);
    if (free && (i == 0 || !caption[i - 1].isLetterOrNumber())) return i;
    if (free && inside < 0) inside = i;
  }
  return inside;
}

}  // namespace

void GiveAccessKeys(QWidget& menu) {
  std::set<QChar> taken;
  for (const QAction* entry : menu.actions()) {
    if (const auto key = AccessKey(entry->text())) taken.insert(*key);
  }
  for (QAction* entry : menu.actions()) {
    const QString caption = entry->text();
    const qsizetype place = AccessKey(caption) ? -1 : FreeLetter(caption, taken);
    if (place < 0) continue;
    taken.insert(caption[place].toLower());
    entry->setText(QString(caption).insert(place, '&'));
  }
}

void SayNoWindowYet(Desk& desk) {
  desk.Dialogs().Message(toolkit::Icon::Information, "Esta janela ainda não existe nesta versão.");
}

}  // namespace korvel::desktop
