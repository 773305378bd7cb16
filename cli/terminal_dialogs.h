#pragma once

#include <iosfwd>
#include <string>

#include "toolkit/ports.h"

namespace korvel::cli {

/// The boxes of the system on a terminal: texts go to standard error, questions are answered by the
/// affirmative button, deletions need to have been confirmed on the command line.
class TerminalDialogs final : public toolkit::Dialogs {
 public:
  TerminalDialogs(std::ostream& err, bool deletionsConfirmed)
      : err_(err), deletionsConfirmed_(deletionsConfirmed) {}

  void Message(toolkit::Icon icon, std::string_view text, std::string_view title = {}) override;
  std::size_t Ask(std::string_view text, std::span<const std::string_view> buttons) override;
  std::size_t Alert(std::string_view caption, std::span<const std::string_view> buttons) override;
  bool ConfirmDeletion(std::string_view title, std::string_view text) override;
  /// Answers with the command line's own login: nobody sits at the terminal to type another.
  std::optional<toolkit::Credentials> AskLogin(std::string_view caption, std::string_view login) override;
  void Focus(std::string_view field) override { focused_ = field; }

  void AnswerLogins(toolkit::Credentials credentials) { login_ = std::move(credentials); }
  /// Says why a run failed, unless that was the last thing said.
  void SayReason(std::string_view text);
  /// For a refusal that said nothing: names the field that the form would have put its cursor in.
  void ExplainSilence();

 private:
  void Say(std::string_view text);

  std::ostream& err_;
  bool deletionsConfirmed_;
  toolkit::Credentials login_;
  std::string lastSaid_;
  std::string focused_;
};

}  // namespace korvel::cli
