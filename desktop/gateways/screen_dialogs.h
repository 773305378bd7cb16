#pragma once

#include <QObject>
#include <QPointer>
#include <QWidget>
#include <functional>

#include "toolkit/ports.h"

namespace korvel::desktop {

/// The boxes of the system on a screen. May be called from any thread: the caller waits for the answer.
class ScreenDialogs final : public toolkit::Dialogs {
 public:
  /// Needs the QApplication.
  ScreenDialogs();

  void Message(toolkit::Icon icon, std::string_view text, std::string_view title = {}) override;
  std::size_t Ask(std::string_view text, std::span<const std::string_view> buttons) override;
  std::size_t Alert(std::string_view caption, std::span<const std::string_view> buttons) override;
  bool ConfirmDeletion(std::string_view title, std::string_view text) override;
  std::optional<toolkit::Credentials> AskLogin(std::string_view caption, std::string_view login) override;
  /// The control of that name, or the one that shows that column (property kColumnProperty), nearest to where the
  /// cursor was.
  void Focus(std::string_view field) override;

  /// The box that asks for another login; set by whoever has such a form. Without it nobody can answer.
  using LoginBox =
      std::function<std::optional<toolkit::Credentials>(std::string_view caption, std::string_view login)>;
  void SetLoginBox(LoginBox box) { loginBox_ = std::move(box); }

 private:
  QObject screen_;                 // lives on the screen's thread
  QPointer<QWidget> lastFocused_;  // outside of the boxes
  LoginBox loginBox_;
};

/// Name of the dynamic property that holds the column which a control shows.
inline constexpr const char* kColumnProperty = "coluna";

/// The control of that name or column below the nearest common parent; null when there is none.
QWidget* FindField(QWidget* start, const QString& field);

}  // namespace korvel::desktop
