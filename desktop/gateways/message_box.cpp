#include "gateways/message_box.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QStyle>

#include "gateways/text.h"

namespace korvel::desktop {

namespace {

constexpr int kPicture = 40;
constexpr int kTextWidth = 520;

QPixmap Picture(const QStyle& style, toolkit::Icon icon) {
  switch (icon) {
    case toolkit::Icon::Information:
      return style.standardIcon(QStyle::SP_MessageBoxInformation).pixmap(kPicture);
    case toolkit::Icon::Warning:
      return style.standardIcon(QStyle::SP_MessageBoxWarning).pixmap(kPicture);
    case toolkit::Icon::Critical:
      return style.standardIcon(QStyle::SP_MessageBoxCritical).pixmap(kPicture);
    case toolkit::Icon::None:
      break;
  }
  return style.standardIcon(QStyle::SP_MessageBoxQuestion).pixmap(kPicture);
}

}  // namespace

MessageBox::MessageBox(const Content& content, QWidget* parent) : QDialog(parent), text_(ToQt(content.text)) {
  setObjectName(ToQt(content.name));
  setWindowTitle(content.title.empty() ? QString("Korvel") : ToQt(content.title));
  auto* picture = new QLabel(this);
  picture->setPixmap(Picture(*style(), content.icon));
  auto* text = new QLabel(text_, this);
  text->setObjectName("lblTexto");
  text->setTextFormat(Qt::PlainText);
  text->setWordWrap(true);
  text->setTextInteractionFlags(Qt::TextSelectableByMouse);
  text->setMinimumWidth(std::min(kTextWidth, text->fontMetrics().size(0, text_).width() + 8));
  auto* row = new QHBoxLayout;
  row->setSpacing(16);
  row->addWidget(picture, 0, Qt::AlignTop);
  row->addWidget(text, 1);
  auto* buttons = new QHBoxLayout;
  buttons->addStretch();
  AddButtons(content, buttons);
  auto* column = new QVBoxLayout(this);
  column->setSpacing(16);
  column->addLayout(row);
  column->addLayout(buttons);
  column->setSizeConstraint(QLayout::SetFixedSize);
}

void MessageBox::AddButtons(const Content& content, QBoxLayout* row) {
  for (std::size_t i = 0; i < content.buttons.size(); ++i) {
    auto* button = new QPushButton(ToQt(content.buttons[i]), this);
    if (i < content.buttonNames.size()) button->setObjectName(ToQt(content.buttonNames[i]));
    button->setDefault(i == content.first);
    if (i == content.first) button->setFocus();
    connect(button, &QPushButton::clicked, this, [this, i] {
      chosen_ = i;
      accept();
    });
    row->addWidget(button);
    buttons_.push_back(button);
  }
}

std::size_t MessageBox::Choose() {
  exec();
  return chosen_;
}

void MessageBox::reject() {
  chosen_ = buttons_.size() - 1;
  QDialog::reject();
}

void MessageBox::keyPressEvent(QKeyEvent* event) {
  if (event->matches(QKeySequence::Copy)) {
    QGuiApplication::clipboard()->setText(text_);
    return;
  }
  QDialog::keyPressEvent(event);
}

}  // namespace korvel::desktop
