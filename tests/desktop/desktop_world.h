#pragma once

#include <QPushButton>
#include <QWidget>
#include <functional>
#include <string_view>

#include "demo/demo_company.h"
#include "gateways/desk.h"
#include "support/scripted_world.h"

namespace korvel::desktop {

/// A server of its own with a desk over it, whose boxes are scripted: `server.dialogs`.
class DesktopWorld {
 public:
  DesktopWorld();

  /// The demonstration company with a year of books and sales, nothing staged, and the session in it.
  void MakeCompany();

  test::TestServer server;
  Desk desk;
};

/// The widget of that name below `window`; fails the test and throws when there is none or it is of another kind.
template <typename Widget = QWidget>
Widget& Find(QWidget& window, std::string_view name);

/// Clicks the button of that name, and lets the work that it starts end.
void Press(QWidget& window, std::string_view button);
/// Types into a field as a user: goes there, writes over what stands there, and leaves it.
void Type(QWidget& window, std::string_view field, std::string_view text);
void PressKey(QWidget& widget, Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);

/// Calls `visit` with the next window that opens over the others and waits for an answer, as soon as it stands. To be
/// called before what opens it.
void WhenAsked(std::function<void(QWidget& window)> visit);
/// The same with the box of long work, `PRG_Progress`.
void WhenWorking(std::function<void(QWidget& box)> visit);

// -----

namespace detail {
QWidget& FindWidget(QWidget& window, std::string_view name);
[[noreturn]] void FailKind(std::string_view name);
}  // namespace detail

template <typename Widget>
Widget& Find(QWidget& window, std::string_view name) {
  auto* found = dynamic_cast<Widget*>(&detail::FindWidget(window, name));
  if (found == nullptr) detail::FailKind(name);
  return *found;
}

}  // namespace korvel::desktop
