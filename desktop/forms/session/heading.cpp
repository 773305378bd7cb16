#include "forms/session/heading.h"

#include <QGridLayout>
#include <QLabel>

#include "forms/common/field_grid.h"
#include "gateways/text.h"
#include "resources/icons.h"

namespace korvel::desktop {

namespace {

constexpr int kMark = 48;
constexpr double kNameSize = 1.6;  // of the text's size

QLabel* Name(QWidget* parent) {
  auto* name = new QLabel("Korvel", parent);
  QFont font = name->font();
  font.setPointSizeF(font.pointSizeF() * kNameSize);
  font.setWeight(QFont::DemiBold);
  name->setFont(font);
  return name;
}

}  // namespace

QWidget* Heading(std::string_view line, QWidget* parent) {
  auto* heading = new QWidget(parent);
  auto* mark = new QLabel(heading);
  mark->setPixmap(Icon("korvel").pixmap(QSize(kMark, kMark), heading->devicePixelRatioF()));
  auto* grid = new QGridLayout(heading);
  grid->setContentsMargins(0, 0, 0, kSpacing);
  grid->setHorizontalSpacing(kMargin);
  grid->setVerticalSpacing(0);
  grid->setColumnStretch(1, 1);
  grid->addWidget(mark, 0, 0, 2, 1, Qt::AlignTop);
  grid->addWidget(Name(heading), 0, 1, Qt::AlignBottom);
  grid->addWidget(new QLabel(ToQt(line), heading), 1, 1, Qt::AlignTop);
  return heading;
}

}  // namespace korvel::desktop
