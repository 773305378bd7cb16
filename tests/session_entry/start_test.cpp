#include "session/entry/start.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "databases/admin_command.h"
#include "session_entry/entry_world.h"
#include "support/in_process.h"
#include "toolkit/file_sink.h"
#include "toolkit/scramble.h"

namespace korvel::session {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class ProgramStart : public testing::Test {
 protected:
  Started Run(std::string_view line) { return Start(context, line, setting, selection); }
  std::string Unattended(std::string_view company) const {
    return "(LOCALDB)\\TESTE sa " + std::string(company) + " ";
  }

  test::EntryWorld world;
  test::TestServer& server = world.server;
  Context context = server.Context();
  test::TempFolder folder;
  StartSetting setting{folder / "korvel", folder / "run" / "korvel.lock", {}};
  CompanySelection selection;
};

TEST_F(ProgramStart, BlankLineShowsTheLogin) {
  server.settings.Write("Regional", "sDecimal", "-");
  server.settings.Write("Regional", "sShortDate", "d/M/yyyy");
  const Started started = Run("  ");
  EXPECT_EQ(started.form, FirstForm::Login);
  EXPECT_TRUE(started.lock);
  EXPECT_EQ(server.session.gSepDecimal, ".");
  EXPECT_EQ(server.session.gSepMilhar, ",");
  EXPECT_EQ(server.session.gFormatoData, "dd-MM-yyyy");
  EXPECT_EQ(server.settings.Read("Regional", "sShortDate"), "dd-MM-yyyy");
  EXPECT_THAT(server.dialogs.Texts(), IsEmpty());
}

TEST_F(ProgramStart, OneInstanceAtATime) {
  {
    const Started first = Run("");
    ASSERT_TRUE(first.lock);
    EXPECT_EQ(Run("").form, FirstForm::None);
    EXPECT_THAT(server.dialogs.Texts(),
                ElementsAre("Só pode iniciar uma instância da aplicação de cada vez!"));
    EXPECT_EQ(server.dialogs.messages[0].icon, toolkit::Icon::Critical);
  }
  EXPECT_EQ(Run("").form, FirstForm::Login) << "the first one has ended";
}

TEST_F(ProgramStart, ACrashFreesTheLock) {
  const auto file = folder / "korvel.lock";
  test::InProcess holder([&](const std::function<void()>& ready) {
    const auto lock = InstanceLock::Take(file);
    if (!lock) return 1;
    ready();
    ::pause();
    return 0;
  });
  ASSERT_TRUE(holder.WaitUntilReady());
  EXPECT_FALSE(InstanceLock::Take(file));
  holder.Kill();
  EXPECT_TRUE(InstanceLock::Take(file));
  test::WriteFile(folder / "plain", "");
  EXPECT_THROW(InstanceLock::Take(folder / "plain" / "korvel.lock"), toolkit::FileError);
}

TEST_F(ProgramStart, PrinterGivesPaperOrA4) {
  setting.printer = [] { return std::optional(PrinterPaper{8, 2}); };
  Run("");
  EXPECT_EQ(server.session.gPapel, 8);
  EXPECT_EQ(server.session.gOrientacao, 2);
  EXPECT_THAT(server.dialogs.Texts(), IsEmpty());
  setting.printer = [] { return std::optional<PrinterPaper>(); };
  EXPECT_EQ(Run("").form, FirstForm::Login);
  EXPECT_EQ(server.session.gPapel, SessionRecord::kPaperA4);
  EXPECT_EQ(server.session.gOrientacao, SessionRecord::kPortrait);
  EXPECT_THAT(server.dialogs.Texts(), ElementsAre("Não foi possivel detectar o papel definido na impressora\n"
                                                  "Vai ser utilizado o formato A4 por defeito"));
}

TEST_F(ProgramStart, AdministrationCommandsEndTheProcess) {
  server.servers.makesEmbedded = false;
  for (const char* line : {"<@>ACT_CHK", "<@>nada", "<@>ACT_DB<@>(LOCALDB)\\NENHUM<@>0<@>sa", "<@>"}) {
    const Started started = Run(line);
    EXPECT_EQ(started.form, FirstForm::None) << line;
    EXPECT_FALSE(started.lock) << line;
  }
  EXPECT_TRUE(std::filesystem::exists(databases::ActChkFile(setting.programFile)));
  EXPECT_THAT(server.dialogs.Texts(), IsEmpty());
  const Started other = Run("");
  EXPECT_EQ(Run("<@>ACT_CHK").form, FirstForm::None) << "another instance is no matter";
  EXPECT_THAT(server.dialogs.Texts(), IsEmpty());
}

TEST_F(ProgramStart, UnattendedRunEntersItsCompanyAndWaitsForOneThatIsNotThere) {
  world.Prepare();
  world.AddCompany("0001", "Padaria");
  server.session = {};
  EXPECT_EQ(Run(Unattended("0009")).form, FirstForm::CompanySelection);
  EXPECT_EQ(selection.Companies().size(), 1u);
  EXPECT_EQ(selection.Selected(), nullptr);
  EXPECT_THAT(server.dialogs.Texts(), IsEmpty());
  server.session = {};
  EXPECT_EQ(Run(Unattended("0001")).form, FirstForm::MainWindow) << server.dialogs.LastText();
  EXPECT_EQ(server.session.gCmdLogin, "sa");
  EXPECT_EQ(server.session.gCmdEmpresa, "0001");
  EXPECT_EQ(server.session.gNomeEmpresa, "Padaria");
  EXPECT_EQ(server.session.gUtilizador, "sa");
  EXPECT_TRUE(server.session.gSysAdmin);
}

TEST_F(ProgramStart, UnattendedRunNeedsAServerAndAPasswordThatCanBe) {
  EXPECT_EQ(Run("  sa 0001 x").form, FirstForm::None);
  EXPECT_EQ(server.dialogs.LastText(), "Não definiu o Servidor");
  EXPECT_EQ(Run(server.Name() + " sa 0001 Ω").form, FirstForm::None);
  EXPECT_EQ(server.dialogs.messages.size(), 2u);
  server.dialogs.answers = {0, 0};
  EXPECT_EQ(Run(server.Name() + " sa 0001 " + toolkit::Encrypt("errada")).form, FirstForm::CompanySelection);
  EXPECT_EQ(selection.Companies().size(), 0u);
  EXPECT_FALSE(server.dialogs.alerts.empty());
}

}  // namespace
}  // namespace korvel::session
