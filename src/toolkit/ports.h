#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "data/date_time.h"

/// The world as the logic sees it. The desktop, the command line and the tests each bring their own.
namespace korvel::toolkit {

enum class Icon { None, Information, Warning, Critical };

/// A login as a user typed it.
struct Credentials {
  std::string login;
  std::string password;
};

/// Every box that the system shows goes through here. Texts are UTF-8, lines apart by "\n".
class Dialogs {
 public:
  virtual ~Dialogs() = default;

  /// A box with one button. An empty title stands for the program's name.
  virtual void Message(Icon icon, std::string_view text, std::string_view title = {}) = 0;
  /// A question with buttons of its own (captions may hold "&" for the key); returns the index of the one chosen.
  virtual std::size_t Ask(std::string_view text, std::span<const std::string_view> buttons) = 0;
  /// `eFun.Alert`: a caption and buttons; returns the index of the one chosen.
  virtual std::size_t Alert(std::string_view caption, std::span<const std::string_view> buttons) = 0;
  /// `WEliminar`: the confirmation before a deletion.
  virtual bool ConfirmDeletion(std::string_view title, std::string_view text) = 0;
  /// Asks for a login and its password, with `login` proposed; nothing when the user gave up.
  virtual std::optional<Credentials> AskLogin(std::string_view caption, std::string_view login) = 0;
  /// Puts the cursor in a field, named as the system names its control or column.
  virtual void Focus(std::string_view field) = 0;
};

/// What long work shows: a caption, how many rows there are, which one it is at.
class Progress {
 public:
  virtual ~Progress() = default;

  /// `total` is 0 when it is not known.
  virtual void Begin(std::string_view caption, std::int64_t total) = 0;
  /// Called often: at most every few hundred rows or some tenths of a second. Returns false when the user cancelled.
  virtual bool Show(std::int64_t done, std::string_view detail) = 0;
  virtual void End() = 0;
};

/// The per-user settings store.
class Settings {
 public:
  virtual ~Settings() = default;

  virtual std::optional<std::string> Read(std::string_view section, std::string_view key) const = 0;
  /// Kept at once; throws std::runtime_error when the store cannot be written.
  virtual void Write(std::string_view section, std::string_view key, std::string_view value) = 0;
};

class Clock {
 public:
  virtual ~Clock() = default;
  /// Local date and time.
  virtual data::DateTime Now() const = 0;
};

/// The user's regional values.
struct Regional {
  std::string decimalSeparator = ",";
  std::string thousandsSeparator = ".";
  std::string grouping = "3";
  std::string shortDate = "dd-MM-yyyy";
  std::string dateSeparator = "-";
  std::string timeSeparator = ":";
};

}  // namespace korvel::toolkit
