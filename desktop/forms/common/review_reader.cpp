#include "forms/common/review_reader.h"

#include <stdexcept>
#include <utility>

namespace korvel::desktop {

/// Behind, nobody answers: a question is taken as declined.
class ReviewReader::Boxes final : public toolkit::Dialogs {
 public:
  explicit Boxes(ReviewReader& reader) : reader_(reader), dialogs_(reader.desk_.Dialogs()) {}

  void Message(toolkit::Icon icon, std::string_view text, std::string_view title) override {
    if (!reader_.behind_) return dialogs_.Message(icon, text, title);
    if (!reader_.unsaid_) reader_.unsaid_ = text;
  }
  std::size_t Ask(std::string_view text, std::span<const std::string_view> buttons) override {
    return reader_.behind_ ? buttons.size() - 1 : dialogs_.Ask(text, buttons);
  }
  std::size_t Alert(std::string_view caption, std::span<const std::string_view> buttons) override {
    return reader_.behind_ ? buttons.size() - 1 : dialogs_.Alert(caption, buttons);
  }
  bool ConfirmDeletion(std::string_view title, std::string_view text) override {
    return !reader_.behind_ && dialogs_.ConfirmDeletion(title, text);
  }
  std::optional<toolkit::Credentials> AskLogin(std::string_view caption, std::string_view login) override {
    return reader_.behind_ ? std::nullopt : dialogs_.AskLogin(caption, login);
  }
  void Focus(std::string_view field) override {
    if (!reader_.behind_) dialogs_.Focus(field);
  }

 private:
  ReviewReader& reader_;
  toolkit::Dialogs& dialogs_;
};

/// A feed that stops ends the reading at its next row, so that nothing is to be cancelled here.
class ReviewReader::Counter final : public toolkit::Progress {
 public:
  Counter(ReviewReader& reader, toolkit::Progress& progress) : reader_(reader), progress_(progress) {}

  void Begin(std::string_view caption, std::int64_t total) override {
    if (reader_.behind_) return;
    reader_.count_ = total;
    progress_.Begin(caption, total);
  }
  bool Show(std::int64_t done, std::string_view detail) override {
    return reader_.behind_ || progress_.Show(done, detail);
  }
  void End() override {
    if (!reader_.behind_) progress_.End();
  }

 private:
  ReviewReader& reader_;
  toolkit::Progress& progress_;
};

ReviewReader::ReviewReader(Desk& desk, Review review)
    : desk_(desk), review_(std::move(review)), session_(desk.Session()) {}

void ReviewReader::Read(const RowFeed::Sink& sink) {
  const session::Context outer = desk_.Context();
  Boxes boxes(*this);
  Counter counter(*this, outer.progress);
  const session::Context context{session_, outer.servers, boxes, counter, outer.settings, outer.clock};
  accepted_ = review_(context, [&](const periods::GridRow& row) {
    behind_ = true;
    sink(row);
  });
  if (unsaid_) throw std::runtime_error(*unsaid_);
}

}  // namespace korvel::desktop
