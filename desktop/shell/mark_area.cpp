#include "shell/mark_area.h"

#include <QPainter>

#include "resources/icons.h"

namespace korvel::desktop {

namespace {

constexpr int kMark = 160;
constexpr double kOpacity = 0.15;

}  // namespace

MarkArea::MarkArea(QWidget* parent) : QMdiArea(parent) {
  setBackground(palette().brush(QPalette::AlternateBase));
  setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
  setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
}

void MarkArea::paintEvent(QPaintEvent* event) {
  QMdiArea::paintEvent(event);
  QPainter painter(viewport());
  painter.setOpacity(kOpacity);
  QRect place(0, 0, kMark, kMark);
  place.moveCenter(viewport()->rect().center());
  Icon("korvel").paint(&painter, place);
}

}  // namespace korvel::desktop
