#include <gtest/gtest.h>

#include <array>
#include <sstream>

#include "cli/terminal_dialogs.h"
#include "cli/terminal_progress.h"

namespace korvel::cli {
namespace {

using std::chrono::steady_clock;

class ProgressLine : public testing::Test {
 protected:
  TerminalProgress Make(bool isTerminal) {
    return TerminalProgress(
        err, isTerminal, [this] { return interrupted; }, [this] { return now; });
  }
  /// What is drawn last, without the codes that clear the line.
  std::string LastLine() const {
    const std::string all = err.str();
    return all.substr(all.rfind("\x1b[K") + 3);
  }

  std::ostringstream err;
  bool interrupted = false;
  steady_clock::time_point now{};
};

TEST_F(ProgressLine, ShowsCaptionCountRateAndTimeLeft) {
  auto progress = Make(true);
  progress.Begin("Gravando Contas", 20000);
  now += std::chrono::seconds(2);
  progress.Show(5000, "Conta : 11");
  EXPECT_EQ(LastLine(), "Gravando Contas 5000 de 20000 (25 %), 2500/s, faltam 6 s");
  now += std::chrono::seconds(18);
  progress.Show(10000, "");
  EXPECT_EQ(LastLine(), "Gravando Contas 10000 de 20000 (50 %), 500/s, faltam 20 s");
  progress.End();
  EXPECT_EQ(LastLine(), "");
}

TEST_F(ProgressLine, WritesLongTimesInLargerUnitsAndNoneWithoutATotal) {
  const struct {
    std::int64_t done, total;
    const char* line;
  } cases[] = {{1000, 1000000, "A ler 1000 de 1000000 (0 %), 1000/s, faltam 16 min 39 s"},
               {100, 1000000, "A ler 100 de 1000000 (0 %), 100/s, faltam 2 h 46 min"},
               {1000000, 1000000, "A ler 1000000 de 1000000 (100 %), 1000000/s"},
               {7, 0, "A ler 7"}};
  for (const auto& each : cases) {
    auto progress = Make(true);
    progress.Begin("A ler", each.total);
    if (each.total > 0) now += std::chrono::seconds(1);
    progress.Show(each.done, "");
    EXPECT_EQ(LastLine(), each.line);
  }
}

TEST_F(ProgressLine, DrawsNothingOffATerminalButSeesInterruptions) {
  auto progress = Make(false);
  progress.Begin("A ler", 10);
  EXPECT_TRUE(progress.Show(1, ""));
  interrupted = true;
  EXPECT_FALSE(progress.Show(2, ""));
  progress.End();
  EXPECT_EQ(err.str(), "");
}

TEST(TerminalDialogs, AnswersByTheAffirmativeButton) {
  std::ostringstream err;
  TerminalDialogs dialogs(err, false);
  const std::array<std::string_view, 2> noFirst{"&Não", "&Sim"};
  const std::array<std::string_view, 2> others{"Continuar a tentar", "Terminar o Programa"};
  EXPECT_EQ(dialogs.Ask("Confirma?", noFirst), 1U);
  EXPECT_EQ(dialogs.Alert("Falhou", others), 0U);
  EXPECT_EQ(err.str(), "Falhou\n");
}

TEST(TerminalDialogs, NamesTheFieldOfASilentRefusalOnly) {
  std::ostringstream silent;
  TerminalDialogs quiet(silent, false);
  quiet.Focus("txtHeader_City");
  quiet.ExplainSilence();
  EXPECT_EQ(silent.str(), "Preencha ou corrija o campo City (Localidade).\n");

  std::ostringstream told;
  TerminalDialogs speaking(told, false);
  speaking.Message(toolkit::Icon::Warning, "Período já Configurado !");
  speaking.Focus("StartDate");
  speaking.ExplainSilence();
  for (const char* reason : {"Período já Configurado !", ""}) speaking.SayReason(reason);
  EXPECT_EQ(told.str(), "Período já Configurado !\n");
}

}  // namespace
}  // namespace korvel::cli
