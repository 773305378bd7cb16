#include "cli/terminal_dialogs.h"

#include <fmt/format.h>

#include <algorithm>
#include <ostream>

#include "auditfile/export_run.h"
#include "periods/header_fields.h"
#include "security/rights_catalogue.h"
#include "toolkit/text.h"

namespace korvel::cli {

namespace {

constexpr std::string_view kHintTitle = "INFORMAÇÃO";  // how to use a form, which a terminal has not

/// "City (Localidade)" for a control or column of the period's form, the name alone for others.
std::string FieldName(std::string_view field) {
  for (const periods::HeaderField& known : periods::HeaderFields()) {
    const bool named =
        toolkit::SameIgnoringCase(field, known.column) || toolkit::SameIgnoringCase(field, known.control);
    if (named) return fmt::format("{} ({})", known.column, security::WithoutAccessKey(known.label));
  }
  return std::string(field);
}

/// The index of "&Sim" among buttons of any captions; the first button where none says so.
std::size_t Affirmative(std::span<const std::string_view> buttons) {
  const auto yes = std::ranges::find_if(
      buttons, [](std::string_view caption) { return caption == "&Sim" || caption == "Sim"; });
  return yes == buttons.end() ? 0 : static_cast<std::size_t>(yes - buttons.begin());
}

}  // namespace

void TerminalDialogs::Say(std::string_view text) {
  err_ << text << '\n';
  err_.flush();
  lastSaid_ = text;
}

void TerminalDialogs::Message(toolkit::Icon, std::string_view text, std::string_view title) {
  // The files of a monthly run are listed by the commands themselves, with their sizes.
  if (title != kHintTitle && title != auditfile::kFilesTitle) Say(text);
}

std::size_t TerminalDialogs::Ask(std::string_view, std::span<const std::string_view> buttons) {
  return Affirmative(buttons);
}

std::size_t TerminalDialogs::Alert(std::string_view caption, std::span<const std::string_view> buttons) {
  Say(caption);
  return Affirmative(buttons);
}

bool TerminalDialogs::ConfirmDeletion(std::string_view, std::string_view text) {
  if (deletionsConfirmed_) return true;
  Say(text);
  Say("Acrescente --sim para confirmar.");
  return false;
}

std::optional<toolkit::Credentials> TerminalDialogs::AskLogin(std::string_view, std::string_view) {
  return login_;
}

void TerminalDialogs::SayReason(std::string_view text) {
  if (!text.empty() && text != lastSaid_) Say(text);
}

void TerminalDialogs::ExplainSilence() {
  if (!lastSaid_.empty()) return;
  if (focused_.empty()) return Say("A operação não foi concluída.");
  Say("Preencha ou corrija o campo " + FieldName(focused_) + ".");
}

}  // namespace korvel::cli
