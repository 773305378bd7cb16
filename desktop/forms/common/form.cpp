#include "forms/common/form.h"

#include <QAbstractButton>
#include <QCloseEvent>
#include <QKeyEvent>
#include <QMdiSubWindow>
#include <QScreen>
#include <charconv>

#include "gateways/text.h"
#include "security/rights.h"
#include "security/rights_catalogue.h"

namespace korvel::desktop {

namespace {

constexpr std::string_view kWidthKey = "Largura";
constexpr std::string_view kHeightKey = "Altura";

int ReadSize(const toolkit::Settings& settings, std::string_view form, std::string_view key) {
  const std::string text = settings.Read(form, key).value_or(std::string());
  int size = 0;
  std::from_chars(text.data(), text.data() + text.size(), size);
  return size;
}

const security::FormButton* FindButton(const security::CatalogueForm* form, std::string_view name) {
  if (form == nullptr) return nullptr;
  for (const auto& button : form->buttons) {
    if (button.name == name) return &button;
  }
  return nullptr;
}

}  // namespace

Form::Form(Desk& desk, std::string_view name, QWidget* parent)
    : QDialog(parent), desk_(desk), name_(name), caption_(security::FormCaption(name)) {
  setObjectName(ToQt(name));
  setWindowTitle(ToQt(caption_));
  setWindowFlag(Qt::WindowContextHelpButtonHint, false);
  setWindowFlag(Qt::WindowMaximizeButtonHint, true);
}

Form::~Form() = default;

bool Form::Ask() {
  if (!Load()) return false;
  return exec() == QDialog::Accepted;
}

void Form::done(int result) {
  if (desk_.IsBusy()) return;
  KeepSize();
  QDialog::done(result);
  if (auto* window = qobject_cast<QMdiSubWindow*>(parentWidget())) window->close();
}

QPushButton* Form::CatalogueButton(std::string_view name, Action action, Writes writes) {
  const security::FormButton* entry = FindButton(security::FindForm(name_), name);
  Q_ASSERT(entry != nullptr);
  if (!security::IsGuardable(entry->name, entry->caption)) return PlainButton(name, entry->caption, action);
  return PlainButton(name, entry->caption,
                     [this, button = std::string(name), action = std::move(action), writes] {
                       if (Allows(button, writes)) action();
                     });
}

QPushButton* Form::PlainButton(std::string_view name, std::string_view caption, Action action) {
  auto* button = new QPushButton(ToQt(caption), this);
  button->setObjectName(ToQt(name));
  button->setAutoDefault(false);
  connect(button, &QPushButton::clicked, this, [this, action = std::move(action)] {
    // A second click of a double one meets the first one's work.
    if (!desk_.IsBusy()) desk_.Shown(action);
  });
  return button;
}

bool Form::Allows(const std::string& button, Writes writes) {
  return desk_
      .Try([&](const session::Context& context) {
        return security::Acessos_bln(context, name_, button, writes == Writes::Yes);
      })
      .value_or(false);
}

void Form::SetCaption(std::string_view caption) {
  caption_ = caption;
  setWindowTitle(ToQt(caption_));
}

void Form::SetCaptionDetail(std::string_view detail) {
  setWindowTitle(ToQt(detail.empty() ? caption_ : caption_ + "  -  " + std::string(detail)));
}

void Form::keyPressEvent(QKeyEvent* event) {
  const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  if (!enter) {
    QDialog::keyPressEvent(event);
    return;
  }
  if (auto* button = qobject_cast<QAbstractButton*>(focusWidget());
      button != nullptr && !button->isCheckable()) {
    button->click();
  } else {
    focusNextChild();
  }
}

void Form::closeEvent(QCloseEvent* event) {
  if (desk_.IsBusy()) {
    event->ignore();
    return;
  }
  KeepSize();
  QDialog::closeEvent(event);
}

void Form::showEvent(QShowEvent* event) {
  const int width = ReadSize(desk_.Settings(), name_, kWidthKey);
  const int height = ReadSize(desk_.Settings(), name_, kHeightKey);
  if (!event->spontaneous() && width > 0 && height > 0) {
    QWidget* frame =
        parentWidget() != nullptr && qobject_cast<QMdiSubWindow*>(parentWidget()) ? parentWidget() : this;
    frame->resize(QSize(width, height).boundedTo(screen()->availableSize()));
  }
  QDialog::showEvent(event);
}

void Form::KeepSize() {
  const QWidget* frame = qobject_cast<QMdiSubWindow*>(parentWidget()) ? parentWidget() : this;
  if (frame->isMaximized()) return;
  desk_.Remember(name_, kWidthKey, std::to_string(frame->width()));
  desk_.Remember(name_, kHeightKey, std::to_string(frame->height()));
}

}  // namespace korvel::desktop
