#include "session/command_line.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "session/regional_values.h"
#include "support/fuzz.h"
#include "toolkit/scramble.h"

namespace korvel::session {
namespace {

struct Line {
  const char* text;
  CommandLine meaning;
};

TEST(CommandLine, HasThreeForms) {
  const Line kLines[] = {
      {"", InteractiveStart{}},
      {"   ", InteractiveStart{}},
      {"SRV LOGIN 0001 xx", UnattendedLogin{"SRV", "LOGIN", "0001", "xx"}},
      {" SRV LOGIN 0001 xx", UnattendedLogin{"SRV", "LOGIN", "0001", "xx"}},
      {"SRV", UnattendedLogin{"SRV", "", "", ""}},
      {"SRV  LOGIN", UnattendedLogin{"SRV", "", "LOGIN", ""}},
      {"  SRV", UnattendedLogin{"", "SRV", "", ""}},
      {"SRV LOGIN 0001 xx mais um", UnattendedLogin{"SRV", "LOGIN", "0001", "xx"}},
      {"SRV<@>1 LOGIN", UnattendedLogin{"SRV<@>1", "LOGIN", "", ""}},
      {"<@>ACT_CHK", AdminCommand{"ACT_CHK", "", false, "", "", ""}},
      {"  <@>act_db<@>SRV<@>1 ", AdminCommand{"ACT_DB", "SRV", true, "", "", ""}},
      {"<@>ACT_DB<@>SRV<@>0<@>sa<@>p w<@>Korvel0001<@>x",
       AdminCommand{"ACT_DB", "SRV", false, "sa", "p w", "Korvel0001"}},
      {"<@>ACT_DB<@><@>2<@>sa", AdminCommand{"ACT_DB", "", false, "sa", "", ""}},
      {"<@>", AdminCommand{}},
      {"<@>ACT_DB<@>SRV<@>99999999999999999999", AdminCommand{"ACT_DB", "SRV", false, "", "", ""}},
  };
  for (const Line& line : kLines) EXPECT_TRUE(ParseCommandLine(line.text) == line.meaning) << line.text;
}

TEST(CommandLine, EntersTheSession) {
  SessionRecord session;
  TakeLogin(UnattendedLogin{"SRV", "ana", "0001", toolkit::Encrypt("segredo ção")}, session);
  EXPECT_EQ(session.gServidor, "SRV");
  EXPECT_EQ(session.gLogin, "ana");
  EXPECT_EQ(session.gCmdLogin, "ana");
  EXPECT_EQ(session.gCodEmpresa, "0001");
  EXPECT_EQ(session.gCmdEmpresa, "0001");
  EXPECT_EQ(session.gPassword, "segredo ção");

  EXPECT_THROW(TakeLogin(UnattendedLogin{"OUTRO", "rui", "0002", "Ω"}, session), std::invalid_argument);
  EXPECT_EQ(session.gServidor, "SRV");
  EXPECT_EQ(session.gPassword, "segredo ção");

  TakeLogin(AdminCommand{"ACT_DB", "S2", true, "sa", "clara", ""}, session);
  EXPECT_TRUE(session.gAutenticacaoWindows);
  EXPECT_EQ(session.gPassword, "clara");
}

TEST(CommandLine, MakesSomethingOfAnyText) {
  test::Fuzz fuzz(1101, 2);  // korvelctl's has a test of its own
  constexpr std::string_view kSeeds[] = {"SRV LOGIN 0001 xx", "<@>ACT_DB<@>SRV<@>1<@>sa<@>p w<@>Korvel0001",
                                         "<@>", "   "};
  while (fuzz.Goes()) {
    const std::string text = fuzz.Mutated(std::string(fuzz.OneOf(kSeeds)), "<@> 1");
    const CommandLine line = ParseCommandLine(text);
    const auto* login = std::get_if<UnattendedLogin>(&line);
    if (login == nullptr) continue;
    EXPECT_TRUE(ParseCommandLine(" " + text) == line || text.starts_with(' ')) << text;
    EXPECT_EQ((login->server + login->login + login->company + login->encipheredPassword).find(' '),
              std::string::npos);
    SessionRecord session;
    try {
      TakeLogin(*login, session);
      EXPECT_EQ(session.gServidor, login->server);
    } catch (const std::invalid_argument&) {
      EXPECT_EQ(session.gServidor, "");
    }
  }
}

TEST(RegionalValues, EnterTheSession) {
  SessionRecord session;
  TakeRegional({".", ",", "3;0", "yyyy/MM/dd", "/", "."}, session);
  EXPECT_EQ(session.Marks().decimal, ".");
  EXPECT_EQ(session.Marks().thousands, ",");
  EXPECT_EQ(session.Marks().grouping, "3");
  EXPECT_EQ(DateMarks(session).format, "yyyy/MM/dd");
  EXPECT_EQ(DateMarks(session).separator, "/");
  EXPECT_EQ(session.gSepHora, ".");
}

}  // namespace
}  // namespace korvel::session
