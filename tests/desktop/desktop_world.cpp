#include "desktop/desktop_world.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QTimer>
#include <filesystem>
#include <stdexcept>
#include <string>

#include "gateways/text.h"

namespace korvel::desktop {

DesktopWorld::DesktopWorld() : desk(server.servers, {server.dialogs, server.settings, server.clock}) {
  desk.Session() = server.session;
}

namespace {

void CopyFiles(const std::filesystem::path& from, const std::filesystem::path& to) {
  using Copy = std::filesystem::copy_options;
  std::filesystem::copy(from, to, Copy::recursive | Copy::overwrite_existing);
}

/// The server of a demonstration company, made once and then copied: that takes a hundredth of the time.
struct MadeCompany {
  MadeCompany() {
    test::TestServer server;
    if (!demo::MakeDemoCompany(server.Context(), {.year = 2025, .lines = 300})) {
      throw std::runtime_error("no demonstration company");
    }
    session = server.session;
    CopyFiles(server.folder.Path(), files.Path());
  }

  test::TempFolder files;
  session::SessionRecord session;
};

}  // namespace

void DesktopWorld::MakeCompany() {
  static const MadeCompany made;
  CopyFiles(made.files.Path(), server.folder.Path());
  server.session = made.session;
  desk.Session() = server.session;
}

namespace detail {

QWidget& FindWidget(QWidget& window, std::string_view name) {
  if (window.objectName() == ToQt(name)) return window;
  auto* found = window.findChild<QWidget*>(ToQt(name));
  if (found == nullptr) throw std::runtime_error("no widget " + std::string(name));
  return *found;
}

void FailKind(std::string_view name) {
  throw std::runtime_error(std::string(name) + " is of another kind");
}

}  // namespace detail

void Press(QWidget& window, std::string_view button) {
  auto& found = Find<QAbstractButton>(window, button);
  if (!found.isEnabled()) throw std::runtime_error(std::string(button) + " is disabled");
  found.click();
  QApplication::processEvents();
}

namespace {

/// Deletes what stands in a line, or in the line of a box with arrows.
void Empty(QWidget& widget) {
  auto* line = dynamic_cast<QLineEdit*>(&widget);
  if (line == nullptr) line = widget.findChild<QLineEdit*>();
  if (line == nullptr || line->isReadOnly()) return;
  line->selectAll();
  line->del();
}

}  // namespace

void Type(QWidget& window, std::string_view field, std::string_view text) {
  auto& named = detail::FindWidget(window, field);
  QWidget& widget = named.focusProxy() != nullptr ? *named.focusProxy() : named;
  QApplication::setActiveWindow(widget.window());
  widget.setFocus();
  Empty(widget);
  for (const QChar letter : ToQt(text)) {
    QKeyEvent press(QEvent::KeyPress, 0, Qt::NoModifier, QString(letter));
    QApplication::sendEvent(&widget, &press);
  }
  widget.clearFocus();
  QApplication::processEvents();
}

void PressKey(QWidget& widget, Qt::Key key, Qt::KeyboardModifiers modifiers) {
  QKeyEvent press(QEvent::KeyPress, key, modifiers);
  QApplication::sendEvent(&widget, &press);
  QKeyEvent release(QEvent::KeyRelease, key, modifiers);
  QApplication::sendEvent(&widget, &release);
  QApplication::processEvents();
}

namespace {

/// Looks again and again until the window on top is the one that is waited for.
void WhenOnTop(bool work, std::function<void(QWidget&)> visit) {
  QTimer::singleShot(5, [work, visit = std::move(visit)] {
    QWidget* window = QApplication::activeModalWidget();
    if (window != nullptr && window->isVisible() && (window->objectName() == "PRG_Progress") == work) {
      visit(*window);
    } else {
      WhenOnTop(work, visit);
    }
  });
}

}  // namespace

void WhenAsked(std::function<void(QWidget&)> visit) {
  WhenOnTop(false, std::move(visit));
}

void WhenWorking(std::function<void(QWidget&)> visit) {
  WhenOnTop(true, std::move(visit));
}

}  // namespace korvel::desktop
