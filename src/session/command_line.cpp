#include "session/command_line.h"

#include <algorithm>
#include <array>

#include "toolkit/numbers.h"
#include "toolkit/scramble.h"
#include "toolkit/text.h"

namespace korvel::session {
namespace {

constexpr std::string_view kSeparator = "<@>";

UnattendedLogin ParseLogin(std::string_view line) {
  if (line.starts_with(' ')) line.remove_prefix(1);
  std::array<std::string, 4> values;
  std::size_t current = 0;
  for (const char c : line) {
    if (c == ' ') {
      ++current;
    } else if (current < values.size()) {
      values[current] += c;
    }
  }
  return {values[0], values[1], values[2], values[3]};
}

/// The next value off the front of a command, the separator behind it dropped.
std::string TakeValue(std::string_view& rest) {
  const std::string_view value = rest.substr(0, rest.find(kSeparator));
  rest.remove_prefix(std::min(value.size() + kSeparator.size(), rest.size()));
  return std::string(value);
}

AdminCommand ParseCommand(std::string_view values) {
  AdminCommand command;
  command.command = toolkit::Upper(TakeValue(values));
  command.server = TakeValue(values);
  command.windowsAuthentication = toolkit::NumericPrefix(toolkit::CutTo(TakeValue(values), 9)).Whole() == 1;
  command.login = TakeValue(values);
  command.password = TakeValue(values);
  command.database = TakeValue(values);
  return command;
}

}  // namespace

CommandLine ParseCommandLine(std::string_view line) {
  const std::string_view trimmed = toolkit::Trim(line);
  if (trimmed.empty()) return InteractiveStart{};
  if (trimmed.starts_with(kSeparator)) return ParseCommand(trimmed.substr(kSeparator.size()));
  return ParseLogin(line);
}

void TakeLogin(const UnattendedLogin& login, SessionRecord& session) {
  session.gPassword = toolkit::Decrypt(login.encipheredPassword);
  session.gServidor = login.server;
  session.gLogin = session.gCmdLogin = login.login;
  session.gCodEmpresa = session.gCmdEmpresa = login.company;
}

void TakeLogin(const AdminCommand& command, SessionRecord& session) {
  session.gServidor = command.server;
  session.gAutenticacaoWindows = command.windowsAuthentication;
  session.gLogin = command.login;
  session.gPassword = command.password;
}

}  // namespace korvel::session
