#include "gateways/message_box.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <algorithm>

#include "gateways/text.h"
#include "resources/icons.h"

namespace korvel::desktop {

namespace {

constexpr int kPicture = 40;
constexpr int kTextWidth = 520;
constexpr int kTextHeight = 420;  // a longer text is scrolled

std::string_view PictureName(toolkit::Icon icon) {
  switch (icon) {
    case toolkit::Icon::Information:
      return "informacao";
    case toolkit::Icon::Warning:
      return "aviso";
    case toolkit::Icon::Critical:
      return "erro";
    case toolkit::Icon::None:
      break;
  }
  return "pergunta";
}

QLabel* TextLabel(const QString& text) {
  auto* label = new QLabel(text);
  label->setObjectName("lblTexto");
  label->setTextFormat(Qt::PlainText);
  label->setWordWrap(true);
  label->setTextInteractionFlags(Qt::TextSelectableByMouse);
  label->setMinimumWidth(std::min(kTextWidth, label->fontMetrics().size(0, text).width() + 8));
  return label;
}

/// The text itself, or what it is scrolled in, so that the buttons stay on the screen.
QWidget* Readable(QLabel* text) {
  if (text->heightForWidth(text->minimumWidth()) <= kTextHeight) return text;
  auto* area = new QScrollArea;
  area->setWidgetResizable(true);
  area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  area->setMinimumSize(text->minimumWidth() + 32, kTextHeight);
  area->setWidget(text);
  return area;
}

}  // namespace

MessageBox::MessageBox(const Content& content, QWidget* parent) : QDialog(parent), text_(ToQt(content.text)) {
  setObjectName(ToQt(content.name));
  setWindowTitle(content.title.empty() ? QString("Korvel") : ToQt(content.title));
  auto* picture = new QLabel(this);
  picture->setPixmap(Icon(PictureName(content.icon)).pixmap(QSize(kPicture, kPicture), devicePixelRatioF()));
  auto* row = new QHBoxLayout;
  row->setSpacing(16);
  row->addWidget(picture, 0, Qt::AlignTop);
  row->addWidget(Readable(TextLabel(text_)), 1);
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
