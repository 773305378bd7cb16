#include "data/embedded/batch_parser.h"

/// Statements over the server itself: logins, databases' states, processes.
namespace korvel::data::embedded {

std::string BatchParser::ExpectText() {
  if (Peek().kind != TokenKind::String) Fail();
  return Next().text;
}

/// "Create Login [x] With Password='..', Check_Policy=OFF" or "... From Windows".
CreateLogin BatchParser::ParseCreateLogin() {
  CreateLogin create;
  create.name = ExpectName();
  if (TakeWords({"from", "windows"})) {
    create.windows = true;
    if (!TakeWord("with")) return create;
  } else {
    ExpectWord("with");
    ExpectWord("password");
    ExpectSymbol("=");
    create.password = ExpectText();
    if (!TakeSymbol(",")) return create;
  }
  do {
    LoginOption(create);
  } while (TakeSymbol(","));
  return create;
}

/// Policies are the operating system's elsewhere; here there are none, so only "off" tells the truth.
void BatchParser::LoginOption(CreateLogin& create) {
  const bool policy = TakeWord("check_policy") || TakeWord("check_expiration");
  const bool database = !policy && TakeWord("default_database");
  if (!policy && !database) ExpectWord("default_language");
  ExpectSymbol("=");
  if (policy) {
    ExpectWord("off");
  } else {
    const std::string value = ExpectName();
    if (database) create.database = value;
  }
}

AlterLogin BatchParser::ParseAlterLogin() {
  AlterLogin alter;
  alter.name = ExpectName();
  ExpectWord("with");
  ExpectWord("password");
  ExpectSymbol("=");
  alter.password = ExpectText();
  if (TakeWord("old_password")) {
    ExpectSymbol("=");
    alter.oldPassword = ExpectText();
  }
  return alter;
}

SetDatabaseState BatchParser::ParseAlterDatabase() {
  SetDatabaseState change;
  change.database = ExpectName();
  ExpectWord("set");
  do {
    change.states.push_back(ExpectState());
  } while (TakeSymbol(","));
  if (!TakeWord("with")) return change;
  if (TakeWord("no_wait")) {
    change.wait = StateWait::None;
  } else {
    ExpectWord("rollback");
    ExpectWord("immediate");
    change.wait = StateWait::EndOthers;
  }
  return change;
}

DatabaseState BatchParser::ExpectState() {
  if (TakeWord("read_only")) return DatabaseState::ReadOnly;
  if (TakeWord("read_write")) return DatabaseState::ReadWrite;
  if (TakeWord("single_user")) return DatabaseState::SingleUser;
  ExpectWord("multi_user");
  return DatabaseState::MultiUser;
}

}  // namespace korvel::data::embedded
