#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "desktop/desktop_world.h"
#include "forms/common/extraction_form.h"
#include "forms/common/journal_form.h"
#include "gateways/text.h"
#include "periods/company_tables.h"
#include "session/failures.h"
#include "toolkit/progress_scope.h"

namespace korvel::desktop {
namespace {

using periods::ChosenPeriod;
using periods::Grid;
using session::Context;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

constexpr periods::Column kColumns[]{
    {"Nº Registo", 0, periods::Alignment::Left, "NumRegisto"},
    {"Nome", 2000, periods::Alignment::Left, "Name", periods::CellKind::Text, 0, "Nome"}};
constexpr periods::StagedTable kTable{"TabTeste", kColumns};

/// The forms over sources that the test holds; the periods are those of the demonstration company.
class GridForms : public testing::Test {
 protected:
  GridForms() { dialogs = {}; }

  /// One company for all cases: none of them writes to it.
  static DesktopWorld& Company() {
    static DesktopWorld made;
    static const bool filled = [] {
      made.MakeCompany();
      return true;
    }();
    EXPECT_TRUE(filled);
    return made;
  }

  template <typename Window>
  Window& Open(std::unique_ptr<Window>& window) {
    EXPECT_TRUE(window->Load());
    window->show();
    return *window;
  }
  /// Nothing chosen: -1.
  static void ChoosePeriod(QWidget& window, int place) {
    Find<QComboBox>(window, "eselFiscalYear").setCurrentIndex(place);
    QApplication::processEvents();
  }
  static QAbstractItemView& View(QWidget& window) { return Find<QAbstractItemView>(window, "lvwTeste"); }
  static GridModel& Model(QWidget& window) { return dynamic_cast<GridModel&>(*View(window).model()); }
  static std::vector<std::string> Names(const Grid& rows) {
    std::vector<std::string> names;
    for (const auto& row : rows) names.push_back(row.cells[1]);
    return names;
  }
  static std::string Title(const QWidget& window) { return FromQt(window.windowTitle()); }
  static std::string PeriodText(QWidget& window) {
    return FromQt(Find<QComboBox>(window, "eselFiscalYear").currentText());
  }

  DesktopWorld& world = Company();
  test::ScriptedDialogs& dialogs = world.server.dialogs;
};

class Extractions : public GridForms {
 protected:
  ExtractionKind Kind() {
    return {.form = "frmCustomerLunder",
            .grid = "lvwTeste",
            .periods = "",
            .table = &kTable,
            .load = [this](const Context&, const ChosenPeriod&) { return staged; },
            .calculate = [this](const Context&, const ChosenPeriod&) { return source; },
            .save =
                [this](const Context& context, const ChosenPeriod& chosen, const Grid& rows) {
                  saved = Names(rows);
                  savedPeriod = chosen;
                  if (!refuse.empty()) context.dialogs.Message(toolkit::Icon::Warning, refuse);
                  return refuse.empty();
                },
            .ask =
                [this](QWidget*) {
                  ++asked;
                  return !giveUp;
                },
            .correct =
                [](QWidget*, GridModel& grid, std::size_t row) {
                  grid.Edit([row](Grid& rows) { rows[row].cells[1] += " corrigido"; });
                }};
  }
  ExtractionForm& Open() { return GridForms::Open(form); }
  ExtractionForm& OpenWithPeriod(int place = 0) {
    auto& window = Open();
    ChoosePeriod(window, place);
    return window;
  }

  std::optional<Grid> staged = Grid{{true, {"1", "Ana"}}};
  std::optional<Grid> source = Grid{{true, {"1", "Ana"}}, {true, {"2", "Rui"}}};
  std::string refuse;
  bool giveUp = false;
  int asked = 0;
  std::vector<std::string> saved;
  ChosenPeriod savedPeriod;
  std::unique_ptr<ExtractionForm> form = std::make_unique<ExtractionForm>(world.desk, Kind());
};

TEST_F(Extractions, WithoutAPeriodNothingHappens) {
  auto& window = Open();
  for (const auto* button : {"cmdCalcular", "cmdGravar"}) Press(window, button);
  EXPECT_EQ(asked, 0);
  EXPECT_THAT(saved, IsEmpty());
  EXPECT_EQ(Title(window), "Clientes da Contabilidade  -  Customer");
  Press(window, "cmdAlterar");
  EXPECT_EQ(dialogs.LastText(), "O Ítem Seleccionado não Foi Encontrado!");
}

TEST_F(Extractions, APeriodShowsWhatIsStagedAndTheTitleSaysSo) {
  auto& window = OpenWithPeriod();
  EXPECT_THAT(Names(Model(window).Rows()), ElementsAre("Ana"));
  EXPECT_EQ(Title(window), "Clientes da Contabilidade  -  Customer  -  " + PeriodText(window));
  staged = std::nullopt;
  ChoosePeriod(window, 1);
  EXPECT_THAT(Model(window).Rows(), IsEmpty()) << "rows of the period before";
  EXPECT_EQ(Title(window), "Clientes da Contabilidade  -  Customer");
}

TEST_F(Extractions, CalculateShowsTheSourceAndSaveTakesTheGrid) {
  auto& window = OpenWithPeriod(1);
  Press(window, "cmdCalcular");
  EXPECT_THAT(Names(Model(window).Rows()), ElementsAre("Ana", "Rui"));
  Press(window, "cmdGravar");
  EXPECT_THAT(saved, ElementsAre("Ana", "Rui"));
  EXPECT_EQ(savedPeriod, dynamic_cast<PeriodChoice&>(Find(window, "eselFiscalYear")).Chosen());
}

TEST_F(Extractions, ASourceThatGivesNothingLeavesTheGrid) {
  auto& window = OpenWithPeriod();
  giveUp = true;
  Press(window, "cmdCalcular");
  EXPECT_THAT(Names(Model(window).Rows()), ElementsAre("Ana"));
  giveUp = false;
  source = std::nullopt;
  Press(window, "cmdCalcular");
  EXPECT_THAT(Names(Model(window).Rows()), ElementsAre("Ana"));
  EXPECT_EQ(asked, 2);
}

TEST_F(Extractions, ARefusedSaveGoesToTheRow) {
  source = Grid{{true, {"1", "Ana"}}, {false, {"2", ""}}, {true, {"3", " "}}};
  auto& window = OpenWithPeriod();
  Press(window, "cmdCalcular");
  refuse = "O Campo [Nome] está Vazio!";
  Press(window, "cmdGravar");
  EXPECT_EQ(dialogs.LastText(), refuse);
  EXPECT_EQ(View(window).currentIndex().row(), 2) << "a row that is not ticked is not saved";
}

TEST_F(Extractions, TheButtonEnterAndADoubleClickCorrectTheRow) {
  auto& window = OpenWithPeriod();
  View(window).setCurrentIndex(Model(window).index(0, 1));
  Press(window, "cmdAlterar");
  PressKey(View(window), Qt::Key_Return);
  emit View(window).doubleClicked(Model(window).index(0, 1));
  EXPECT_EQ(Model(window).Cell(0, 1), "Ana corrigido corrigido corrigido");
}

class Journals : public GridForms {
 protected:
  JournalKind Kind() {
    return {.form = "frmGeneralLedgerEntriesLunder",
            .grid = "lvwTeste",
            .periods = "",
            .table = &kTable,
            .process =
                [this](const Context&, const ChosenPeriod&) {
                  ++processed;
                  return true;
                },
            .review = [this](const Context& context, const ChosenPeriod&,
                             const RowFeed::Sink& sink) { return Review(context, sink); },
            .save =
                [this](const Context&, const ChosenPeriod&, const Grid& rows) {
                  saved = rows.size();
                  return true;
                }};
  }
  /// As the core does: asks, counts, hands over, and shows its own failures.
  bool Review(const Context& context, const RowFeed::Sink& sink) {
    return session::Reported(context, false, [&] {
      if (!periods::Confirmed(context, "Confirma?")) return false;
      toolkit::ProgressScope progress(context.progress, "Carregando Dados...", count);
      for (int i = 1; i <= count; ++i) {
        if (i == failAt) throw std::runtime_error("ligação perdida");
        progress.Step();
        sink({true, {std::to_string(i), "Linha"}});
      }
      return true;
    });
  }
  JournalForm& OpenWithPeriod() {
    auto& window = Open(form);
    ChoosePeriod(window, 0);
    return window;
  }
  /// Asks to see the rows and consents.
  void PressReview() {
    dialogs.answers.push_back(0);
    Press(*form, "cmdVerRegistos");
  }
  std::size_t Shown() { return Model(*form).Rows().size(); }

  int count = 3000;
  int failAt = 0;
  int processed = 0;
  std::optional<std::size_t> saved;
  std::unique_ptr<JournalForm> form = std::make_unique<JournalForm>(world.desk, Kind());
};

TEST_F(Journals, WithoutAPeriodNothingHappens) {
  auto& window = Open(form);
  for (const auto* button : {"cmdCalcular", "cmdVerRegistos", "cmdGravar", "cmdLimpaLVW"})
    Press(window, button);
  EXPECT_EQ(processed, 0);
  EXPECT_EQ(saved, std::nullopt);
  EXPECT_THAT(dialogs.questions, IsEmpty());
}

TEST_F(Journals, AReviewAsksThenShowsAScreenAndTheCount) {
  auto& window = OpenWithPeriod();
  PressReview();
  EXPECT_EQ(dialogs.questions.size(), 1U);
  EXPECT_GT(Shown(), 0U);
  EXPECT_TRUE(Model(window).HasMore());
  EXPECT_EQ(Title(window), "Movimentos Contabilísticos - 3.000  -  " + PeriodText(window));
  Press(window, "cmdLimpaLVW");
  EXPECT_EQ(Shown(), 0U);
  EXPECT_EQ(Title(window), "Movimentos Contabilísticos");
}

TEST_F(Journals, ADeclinedReviewLeavesTheGridAndAnEmptyOneClearsIt) {
  auto& window = OpenWithPeriod();
  PressReview();
  const std::size_t before = Shown();
  dialogs.answers.push_back(1);
  Press(window, "cmdVerRegistos");
  EXPECT_EQ(Shown(), before);
  count = 0;
  PressReview();
  EXPECT_EQ(Shown(), 0U);
}

TEST_F(Journals, ASaveTakesTheRowsThatWaitToo) {
  auto& window = OpenWithPeriod();
  PressReview();
  EXPECT_LT(Shown(), 3000U);
  Press(window, "cmdGravar");
  EXPECT_EQ(saved, 3000U);
}

TEST_F(Journals, AConnectionLostInTheMiddleIsToldAndNothingIsSaved) {
  failAt = 2800;
  auto& window = OpenWithPeriod();
  PressReview();
  EXPECT_THAT(dialogs.Texts(), IsEmpty()) << "nobody has asked for those rows";
  Press(window, "cmdGravar");
  EXPECT_THAT(dialogs.Texts(), ElementsAre("ligação perdida"));
  Press(window, "cmdGravar");
  EXPECT_THAT(dialogs.LastText(), StartsWith("Os registos não foram lidos até ao fim!"));
  EXPECT_EQ(saved, std::nullopt);
  failAt = 0;
  PressReview();
  Press(window, "cmdGravar");
  EXPECT_EQ(saved, 3000U);
}

TEST_F(Journals, AFailureBeforeTheFirstRowIsTheCoresToTell) {
  failAt = 1;
  OpenWithPeriod();
  PressReview();
  EXPECT_THAT(dialogs.Texts(), ElementsAre("ligação perdida"));
  EXPECT_EQ(Shown(), 0U);
}

TEST_F(Journals, AReviewInTheMiddleStopsForWhatComesNext) {
  auto& window = OpenWithPeriod();
  PressReview();
  Press(window, "cmdCalcular");
  EXPECT_EQ(processed, 1);
  EXPECT_FALSE(Model(window).HasMore());
  PressReview();
  ChoosePeriod(window, 1);
  EXPECT_EQ(Shown(), 0U) << "rows of the period before";
  PressReview();
  Press(window, "cmdFechar");
  EXPECT_FALSE(window.isVisible());
  form.reset();  // while rows wait
  EXPECT_THAT(dialogs.Texts(), IsEmpty());
}

}  // namespace
}  // namespace korvel::desktop
