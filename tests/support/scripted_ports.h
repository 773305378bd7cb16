#pragma once

#include <cstdint>
#include <deque>
#include <map>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "toolkit/ports.h"

/// The ports as tests bring them: answers are queued beforehand, everything said is kept to be read back.
namespace korvel::test {

/// Records every box and takes its answers from queues. A question nobody queued an answer for throws
/// std::logic_error, so an unexpected question fails the test with its text.
class ScriptedDialogs final : public toolkit::Dialogs {
 public:
  struct Box {
    toolkit::Icon icon = toolkit::Icon::None;
    std::string title;
    std::string text;

    friend bool operator==(const Box&, const Box&) = default;
  };
  struct Question {
    std::string text;
    std::vector<std::string> buttons;
  };

  void Message(toolkit::Icon icon, std::string_view text, std::string_view title = {}) override {
    messages.push_back({icon, std::string(title), std::string(text)});
  }
  std::size_t Ask(std::string_view text, std::span<const std::string_view> buttons) override {
    questions.push_back({std::string(text), {buttons.begin(), buttons.end()}});
    return NextAnswer(answers, text);
  }
  std::size_t Alert(std::string_view caption, std::span<const std::string_view> buttons) override {
    alerts.push_back({std::string(caption), {buttons.begin(), buttons.end()}});
    return NextAnswer(answers, caption);
  }
  bool ConfirmDeletion(std::string_view title, std::string_view text) override {
    deletions.push_back({toolkit::Icon::None, std::string(title), std::string(text)});
    return NextAnswer(confirmations, text);
  }
  std::optional<toolkit::Credentials> AskLogin(std::string_view, std::string_view) override {
    return NextAnswer(logins, "login");
  }
  void Focus(std::string_view field) override { focuses.emplace_back(field); }

  /// The texts of all boxes, in the order shown.
  std::vector<std::string> Texts() const {
    std::vector<std::string> texts;
    for (const Box& box : messages) texts.push_back(box.text);
    return texts;
  }
  /// The text of the last box, "" before the first.
  std::string LastText() const { return messages.empty() ? std::string() : messages.back().text; }
  std::string LastTitle() const { return messages.empty() ? std::string() : messages.back().title; }
  std::string LastFocus() const { return focuses.empty() ? std::string() : focuses.back(); }
  /// Forgets what was said; queued answers stay.
  void Clear() {
    messages.clear();
    questions.clear();
    alerts.clear();
    deletions.clear();
    focuses.clear();
  }

  std::deque<std::size_t> answers;                         // of Ask and Alert: the index of the button
  std::deque<bool> confirmations;                          // of ConfirmDeletion
  std::deque<std::optional<toolkit::Credentials>> logins;  // of AskLogin
  std::vector<Box> messages;
  std::vector<Question> questions;
  std::vector<Question> alerts;
  std::vector<Box> deletions;
  std::vector<std::string> focuses;

 private:
  template <typename Answer>
  static Answer NextAnswer(std::deque<Answer>& queue, std::string_view text) {
    if (queue.empty()) throw std::logic_error("a question without a queued answer: " + std::string(text));
    const Answer answer = queue.front();
    queue.pop_front();
    return answer;
  }
};

/// Shows nothing, keeps the captions, and cancels once `cancelAfter` calls of Show were made.
class SilentProgress final : public toolkit::Progress {
 public:
  void Begin(std::string_view caption, std::int64_t total) override {
    captions.emplace_back(caption);
    totals.push_back(total);
    ++open;
  }
  bool Show(std::int64_t, std::string_view) override { return ++shown <= cancelAfter; }
  void End() override { --open; }

  std::vector<std::string> captions;
  std::vector<std::int64_t> totals;
  std::int64_t shown = 0;
  std::int64_t cancelAfter = INT64_MAX;
  int open = 0;  // stretches begun and not ended
};

class MemorySettings final : public toolkit::Settings {
 public:
  std::optional<std::string> Read(std::string_view section, std::string_view key) const override {
    const auto found = values.find({std::string(section), std::string(key)});
    if (found == values.end()) return std::nullopt;
    return found->second;
  }
  void Write(std::string_view section, std::string_view key, std::string_view value) override {
    values.insert_or_assign({std::string(section), std::string(key)}, std::string(value));
  }

  std::map<std::pair<std::string, std::string>, std::string> values;  // by section and key
};

/// Stands at one moment until it is moved.
class FixedClock final : public toolkit::Clock {
 public:
  explicit FixedClock(data::DateTime moment = {2026, 1, 15, 10, 30, 0, 0}) : now(moment) {}
  data::DateTime Now() const override { return now; }

  data::DateTime now;
};

}  // namespace korvel::test
