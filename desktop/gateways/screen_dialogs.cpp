#include "gateways/screen_dialogs.h"

#include <QApplication>
#include <QLineEdit>
#include <QTabWidget>
#include <QThread>
#include <array>

#include "gateways/message_box.h"
#include "gateways/text.h"
#include "gateways/work_box.h"

namespace korvel::desktop {

namespace {

/// Calls on the thread of `screen` and waits for the result.
template <typename Call>
auto OnScreen(QObject& screen, const Call& call) {
  decltype(call()) result{};
  if (QThread::currentThread() == screen.thread()) return call();
  QMetaObject::invokeMethod(
      &screen, [&] { result = call(); }, Qt::BlockingQueuedConnection);
  return result;
}

std::size_t Choose(QObject& screen, const MessageBox::Content& content) {
  return OnScreen(screen, [&] {
    MessageBox box(content, QApplication::activeWindow());
    return box.Choose();
  });
}

/// Turns to the tabs on which a widget lies.
void Reveal(QWidget& widget) {
  for (QWidget* page = &widget; page->parentWidget() != nullptr; page = page->parentWidget()) {
    if (auto* tabs = qobject_cast<QTabWidget*>(page->parentWidget()->parentWidget())) {
      if (tabs->indexOf(page) >= 0) tabs->setCurrentWidget(page);
    }
  }
}

bool IsBox(const QWidget* widget) {
  const QWidget* window = widget->window();
  return dynamic_cast<const MessageBox*>(window) != nullptr ||
         dynamic_cast<const WorkBox*>(window) != nullptr;
}

}  // namespace

ScreenDialogs::ScreenDialogs() {
  QObject::connect(qApp, &QApplication::focusChanged, &screen_, [this](QWidget*, QWidget* now) {
    if (now != nullptr && !IsBox(now)) lastFocused_ = now;
  });
}

void ScreenDialogs::Message(toolkit::Icon icon, std::string_view text, std::string_view title) {
  constexpr std::array<std::string_view, 1> kOk{"&OK"};
  Choose(screen_, {.name = "frmMensagem",
                   .icon = icon == toolkit::Icon::None ? toolkit::Icon::Information : icon,
                   .title = title,
                   .text = text,
                   .buttons = kOk,
                   .buttonNames = {}});
}

std::size_t ScreenDialogs::Ask(std::string_view text, std::span<const std::string_view> buttons) {
  return Choose(screen_,
                {.name = "frmMsgBox", .title = {}, .text = text, .buttons = buttons, .buttonNames = {}});
}

std::size_t ScreenDialogs::Alert(std::string_view caption, std::span<const std::string_view> buttons) {
  return Ask(caption, buttons);
}

bool ScreenDialogs::ConfirmDeletion(std::string_view title, std::string_view text) {
  constexpr std::array<std::string_view, 2> kButtons{"&Sim", "&Não"};
  constexpr std::array<std::string_view, 2> kNames{"cmdSim", "cmdNao"};
  return Choose(screen_, {.name = "WEliminar",
                          .icon = toolkit::Icon::Warning,
                          .title = title,
                          .text = text,
                          .buttons = kButtons,
                          .buttonNames = kNames,
                          .first = 1}) == 0;
}

std::optional<toolkit::Credentials> ScreenDialogs::AskLogin(std::string_view caption,
                                                            std::string_view login) {
  if (!loginBox_) return std::nullopt;
  return OnScreen(screen_, [&] { return loginBox_(caption, login); });
}

void ScreenDialogs::Focus(std::string_view field) {
  OnScreen(screen_, [&] {
    QWidget* start = lastFocused_ != nullptr ? lastFocused_.data() : QApplication::activeWindow();
    if (QWidget* widget = FindField(start, ToQt(field))) {
      Reveal(*widget);
      widget->setFocus(Qt::OtherFocusReason);
      if (auto* line = qobject_cast<QLineEdit*>(widget)) line->selectAll();
    }
    return true;
  });
}

QWidget* FindField(QWidget* start, const QString& field) {
  if (field.isEmpty()) return nullptr;
  for (QWidget* parent = start; parent != nullptr; parent = parent->parentWidget()) {
    for (QWidget* child : parent->findChildren<QWidget*>()) {
      const bool shows = child->property(kColumnProperty).toString().compare(field, Qt::CaseInsensitive) == 0;
      if (shows || child->objectName().compare(field, Qt::CaseInsensitive) == 0) return child;
    }
  }
  return nullptr;
}

}  // namespace korvel::desktop
