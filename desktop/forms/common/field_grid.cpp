#include "forms/common/field_grid.h"

#include "gateways/text.h"

namespace korvel::desktop {

FieldGrid::FieldGrid(int pairs) : grid_(new QGridLayout), pairs_(pairs) {
  grid_->setHorizontalSpacing(kSpacing);
  grid_->setVerticalSpacing(kSpacing);
  for (int pair = 0; pair < pairs; ++pair) grid_->setColumnStretch(2 * pair + 1, 1);
}

QLabel* FieldGrid::Add(std::string_view label, QWidget* field, int span) {
  if (pair_ + span > pairs_) NewRow();
  auto* caption = new QLabel(ToQt(label), field->parentWidget());
  caption->setBuddy(field);
  grid_->addWidget(caption, row_, 2 * pair_, Qt::AlignRight | Qt::AlignVCenter);
  grid_->addWidget(field, row_, 2 * pair_ + 1, 1, 2 * span - 1);
  pair_ += span;
  return caption;
}

void FieldGrid::NewRow() {
  ++row_;
  pair_ = 0;
}

QLineEdit* TextBox(std::string_view name, int characters) {
  auto* box = new QLineEdit;
  box->setObjectName(ToQt(name));
  if (characters > 0) box->setMaxLength(characters);
  return box;
}

void MakeRoom(QLineEdit* box, int characters) {
  constexpr int kFrame = 12;
  box->setMinimumWidth(box->fontMetrics().averageCharWidth() * characters + kFrame);
}

QHBoxLayout* ButtonRow(std::initializer_list<QWidget*> buttons) {
  auto* row = new QHBoxLayout;
  row->setSpacing(kSpacing);
  row->addStretch();
  for (QWidget* button : buttons) row->addWidget(button);
  return row;
}

QVBoxLayout* FormColumn(QWidget* parent) {
  auto* column = new QVBoxLayout(parent);
  column->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
  column->setSpacing(kSpacing);
  return column;
}

}  // namespace korvel::desktop
