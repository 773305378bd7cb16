#include <gtest/gtest.h>

#include <QApplication>
#include <QClipboard>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPalette>
#include <QScrollBar>
#include <QTimer>
#include <array>
#include <atomic>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "desktop/desktop_world.h"
#include "gateways/row_feed.h"
#include "gateways/text.h"
#include "gateways/work_box.h"
#include "widgets/grid_panel.h"
#include "widgets/wprocura.h"

namespace korvel::desktop {
namespace {

using Texts = std::vector<std::string>;

constexpr std::string_view kLayout = "Nº Registo,0/Nome,2000/Data,1000,C,Data/Valor,1000,D,Valor/";
constexpr std::size_t kName = 1, kDate = 2, kAmount = 3;

periods::GridRow Row(std::string key, std::string name, std::string date = {}, std::string amount = {}) {
  return {.cells = {std::move(key), std::move(name), std::move(date), std::move(amount)}};
}

periods::Grid Customers() {
  return {Row("1", "Silva", "31-12-2025", "1.000,00"), Row("2", "água", "01-02-2026", "9,5"),
          Row("3", "Costa", "", "-3")};
}

/// Takes no more, once it is told so.
class FullSettings final : public toolkit::Settings {
 public:
  std::optional<std::string> Read(std::string_view section, std::string_view key) const override {
    return kept.Read(section, key);
  }
  void Write(std::string_view section, std::string_view key, std::string_view value) override {
    if (full) throw std::runtime_error("disco cheio");
    kept.Write(section, key, value);
  }

  test::MemorySettings kept;
  bool full = false;
};

struct World {
  FullSettings settings;
  test::FixedClock clock;
  test::ScriptedDialogs dialogs;
  Desk desk{{}, {dialogs, settings, clock}};
};

class Grid : public testing::Test {
 protected:
  std::unique_ptr<GridPanel> MakePanel(bool withTicks = true) {
    auto columns = toolkit::ParseGridLayout(kLayout);
    auto made = std::make_unique<GridPanel>(world.desk, "frmTeste", "lvwTeste", columns, withTicks);
    made->Model().SetRows(Customers());
    made->resize(500, 300);
    made->show();
    return made;
  }
  GridModel& Model() { return panel->Model(); }
  GridView& View() { return panel->View(); }
  std::string Foot() { return FromQt(Find<QLabel>(*panel, "lblRodape_lvwTeste").text()); }
  std::string Heading(std::size_t column) {
    return FromQt(
        panel->Model().headerData(static_cast<int>(column), Qt::Horizontal, Qt::DisplayRole).toString());
  }
  Texts Keys() {
    Texts keys;
    for (const auto& row : panel->Model().Rows()) keys.push_back(row.cells[0]);
    return keys;
  }
  Texts Ticked() {
    Texts keys;
    for (const auto& row : panel->Model().Rows()) {
      if (row.ticked) keys.push_back(row.cells[0]);
    }
    return keys;
  }
  void ClickHeading(std::size_t column) {
    emit panel->View().horizontalHeader()->sectionClicked(static_cast<int>(column));
  }

  World world;
  std::unique_ptr<GridPanel> panel = MakePanel();
};

TEST_F(Grid, ShowsItsColumns) {
  EXPECT_TRUE(View().isColumnHidden(0));
  EXPECT_EQ(View().columnWidth(kName), 2000 * View().logicalDpiX() / 1440);
  EXPECT_EQ(Model().Cell(2, 0), "3");
  const auto role = [&](std::size_t column, int which) {
    return Model().data(Model().index(0, static_cast<int>(column)), which);
  };
  EXPECT_EQ(role(kName, Qt::DisplayRole).toString(), "Silva");
  EXPECT_EQ(role(kDate, Qt::TextAlignmentRole).toInt(), int{Qt::AlignHCenter | Qt::AlignVCenter});
  EXPECT_EQ(role(kAmount, Qt::TextAlignmentRole).toInt(), int{Qt::AlignRight | Qt::AlignVCenter});
  EXPECT_EQ(role(kName, Qt::CheckStateRole).toInt(), int{Qt::Checked});
  EXPECT_FALSE(role(kDate, Qt::CheckStateRole).isValid());
}

TEST_F(Grid, WithoutTicksHasNoBoxes) {
  panel = MakePanel(false);
  EXPECT_FALSE(Model().data(Model().index(0, kName), Qt::CheckStateRole).isValid());
  Model().InvertTicks();
  EXPECT_EQ(Ticked().size(), 3U);
  EXPECT_EQ(Foot(), "3 registos");
}

struct Sort {
  std::size_t column;
  Texts ascending;
};

TEST_F(Grid, AClickOnAHeadingSortsAndASecondReverses) {
  const Sort sorts[]{{kName, {"2", "3", "1"}}, {kDate, {"3", "1", "2"}}, {kAmount, {"3", "2", "1"}}};
  for (const Sort& sort : sorts) {
    Model().SetRows(Customers());
    ClickHeading(sort.column);
    EXPECT_EQ(Keys(), sort.ascending);
    ClickHeading(sort.column);
    EXPECT_EQ(Keys(), Texts(sort.ascending.rbegin(), sort.ascending.rend()));
  }
}

TEST_F(Grid, MarksTheHeadingSortedOnUntilAnotherIsClicked) {
  EXPECT_EQ(Heading(kName), "Nome");
  ClickHeading(kName);
  EXPECT_EQ(Heading(kName), "Nome (Asc.)");
  ClickHeading(kName);
  EXPECT_EQ(Heading(kName), "Nome (Des.)");
  ClickHeading(kAmount);
  EXPECT_EQ(Heading(kName), "Nome");
  EXPECT_EQ(Heading(kAmount), "Valor (Asc.)");
  Model().SetRows(Customers());
  EXPECT_EQ(Heading(kAmount), "Valor");
}

TEST_F(Grid, TheCursorStaysWithItsRowWhenSorted) {
  panel->SelectRow(0);
  ClickHeading(kAmount);
  EXPECT_EQ(panel->CurrentRow(), 2U);
  EXPECT_EQ(panel->SelectedRows(), std::vector<std::size_t>{2});
}

TEST_F(Grid, KeysTickAndInvert) {
  PressKey(View(), Qt::Key_Space);
  EXPECT_EQ(Ticked().size(), 3U) << "without a row";
  View().setCurrentIndex(Model().index(0, kName));
  View().selectionModel()->select(Model().index(2, kName),
                                  QItemSelectionModel::Select | QItemSelectionModel::Rows);
  PressKey(View(), Qt::Key_Space);
  EXPECT_EQ(Ticked(), Texts{"2"});
  EXPECT_EQ(Foot(), "3 registos  -  1 marcado");
  PressKey(View(), Qt::Key_Menu);
  EXPECT_EQ(Ticked(), (Texts{"1", "3"}));
  PressKey(View(), Qt::Key_F10, Qt::ShiftModifier);
  EXPECT_EQ(Ticked(), Texts{"2"});
  const QModelIndex box = Model().index(0, kName);
  EXPECT_TRUE(Model().setData(box, Qt::Checked, Qt::CheckStateRole));
  EXPECT_EQ(Model().TickedCount(), 2U);
}

TEST_F(Grid, EnterAndADoubleClickActivateARow) {
  int activated = 0;
  panel->onActivate = [&] { ++activated; };
  PressKey(View(), Qt::Key_Return);
  EXPECT_EQ(activated, 0) << "without a row";
  panel->SelectRow(1);
  PressKey(View(), Qt::Key_Return);
  emit View().doubleClicked(Model().index(1, kName));
  EXPECT_EQ(activated, 2);
}

TEST_F(Grid, CopiesTheSelectedRowsWithTheirHeadings) {
  periods::Grid rows = Customers();
  rows[1].cells[kName] = "água\te\r\nluz";
  Model().SetRows(rows);
  View().selectAll();
  PressKey(View(), Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(FromQt(QApplication::clipboard()->text()),
            "Nome\tData\tValor\nSilva\t31-12-2025\t1.000,00\nágua e luz\t01-02-2026\t9,5\nCosta\t\t-3\n");
}

TEST_F(Grid, TheFootSumsTheColumnWithTheCursor) {
  View().setCurrentIndex(Model().index(0, kName));
  EXPECT_EQ(Foot(), "3 registos  -  3 marcados");
  View().setCurrentIndex(Model().index(0, kAmount));
  EXPECT_EQ(Foot(), "3 registos  -  3 marcados  -  Valor: 1.006,50");
  Model().Edit([](periods::Grid& rows) { rows[2].cells[kAmount] = "0,01"; });
  EXPECT_EQ(Foot(), "3 registos  -  3 marcados  -  Valor: 1.009,51");
  Model().RemoveRow(0);
  EXPECT_EQ(Model().SumOf(kAmount), data::Currency::FromUnits(95100));
  Model().Edit([](periods::Grid& rows) {
    for (auto& row : rows) row.cells[kAmount] = "922337203685477,5807";
  });
  EXPECT_EQ(Model().SumOf(kAmount), std::nullopt) << "out of range";
  EXPECT_EQ(Model().SumOf(kName), std::nullopt);
}

TEST_F(Grid, StagedAmountsOfBothSidesAreAlwaysSummed) {
  const std::array columns{
      periods::Column{"Nº Registo", 0, periods::Alignment::Left, "NumRegisto"},
      periods::Column{"Débito", 1100, periods::Alignment::Right, "DebitAmount"},
      periods::Column{"Taxa", 800, periods::Alignment::Right, "TaxPercentage", periods::CellKind::Rate},
      periods::Column{"Fim", 800, periods::Alignment::Centre, "End", periods::CellKind::Date}};
  const auto made = GridColumnsOf(columns);
  using toolkit::ColumnKind;
  const std::vector<toolkit::GridColumn> expected{
      {"Nº Registo", 0},
      {"Débito", 1100, toolkit::Alignment::Right, ColumnKind::Amount, true},
      {"Taxa", 800, toolkit::Alignment::Right, ColumnKind::Amount},
      {"Fim", 800, toolkit::Alignment::Centre, ColumnKind::Date}};
  EXPECT_EQ(made, expected);
}

TEST_F(Grid, ColouredRowsStayLegibleOnADarkGround) {
  periods::Grid rows = Customers();
  rows[0].colour = 16711680;
  Model().SetRows(rows);
  const auto colour = [&](int row) {
    return Model().data(Model().index(row, kName), Qt::ForegroundRole).value<QColor>();
  };
  const QPalette before = QApplication::palette();
  QApplication::setPalette(QPalette(Qt::white));
  EXPECT_EQ(colour(0), QColor(Qt::blue));
  EXPECT_FALSE(colour(1).isValid());
  QPalette dark;
  dark.setColor(QPalette::Base, QColor(30, 30, 30));
  QApplication::setPalette(dark);
  EXPECT_GE(colour(0).lightnessF(), 0.7F);
  QApplication::setPalette(before);
}

TEST_F(Grid, RemembersTheWidthsOfItsColumns) {
  View().setColumnWidth(kName, 333);
  panel->hide();
  panel = MakePanel();
  EXPECT_EQ(View().columnWidth(kName), 333);
  EXPECT_TRUE(View().isColumnHidden(0));
  world.settings.kept.Write("frmTeste", "lvwTeste_Larguras", "1 2");
  panel = MakePanel();
  EXPECT_NE(View().columnWidth(kName), 2) << "kept for other columns";
}

TEST_F(Grid, AStoreOfWidthsThatFailsIsTold) {
  View().setColumnWidth(kName, 333);
  world.settings.full = true;
  panel->hide();
  QApplication::processEvents();
  EXPECT_EQ(world.dialogs.Texts(), Texts{"disco cheio"});
}

class Search : public Grid {
 protected:
  void Look(std::string_view text) {
    PressKey(View(), Qt::Key_F, Qt::ControlModifier);
    auto& window = Find(View(), "WProcura");
    Type(window, "txtProcura", text);
    Press(window, "cmdProcurar");
  }
};

TEST_F(Search, FindsFromTheFirstRowAndOnwards) {
  Model().SetRows({Row("1", "Ana"), Row("2", "Rui"), Row("3", "ANABELA"), Row("4", "Zé", "", "12")});
  panel->SelectRow(3);
  Look("ana");
  EXPECT_EQ(panel->CurrentRow(), 0U);
  PressKey(View(), Qt::Key_F3);
  EXPECT_EQ(panel->CurrentRow(), 2U);
  PressKey(View(), Qt::Key_F3);
  EXPECT_EQ(panel->CurrentRow(), 2U);
  EXPECT_EQ(world.dialogs.LastText(), "Não foi Encontrado mais nenhum item !");
  Look("12");
  EXPECT_EQ(panel->CurrentRow(), 3U);
  Look("4");
  EXPECT_EQ(world.dialogs.LastText(), "Não foi Encontrado nenhum item !")
      << "hidden columns are not looked at";
}

TEST_F(Search, ABlankTextFindsNothing) {
  PressKey(View(), Qt::Key_F3);
  Press(Find(View(), "WProcura"), "cmdProcurar");
  EXPECT_TRUE(Find(View(), "WProcura").isVisible());
  EXPECT_TRUE(world.dialogs.messages.empty());
}

class Feed : public Grid {
 protected:
  void TearDown() override { panel.reset(); }  // its reader counts in here

  /// Rows "1", "2" ... of an amount of 1 each; fails behind `failAt`.
  std::unique_ptr<RowFeed> Rows(std::size_t count, std::size_t failAt = SIZE_MAX) {
    return std::make_unique<RowFeed>([this, count, failAt](const RowFeed::Sink& sink) {
      for (std::size_t i = 1; i <= count; ++i) {
        if (i > failAt) throw std::runtime_error("ligação perdida");
        ++read;
        sink(Row(std::to_string(i), "Linha " + std::to_string(i), {}, "1"));
      }
    });
  }
  std::size_t Shown() { return Model().Rows().size(); }

  std::atomic<std::size_t> read = 0;
};

TEST_F(Feed, TheFirstScreenOfAMillionRowsReadsAFewOnly) {
  EXPECT_TRUE(Model().SetFeed(Rows(1000000)));
  EXPECT_GE(Shown(), 100U);
  EXPECT_LE(read, 5000U);
  EXPECT_TRUE(Model().HasMore());
  EXPECT_NE(Foot().find(" ... e mais"), std::string::npos);
}

TEST_F(Feed, ScrollingReadsOnAndTheEndReadsAll) {
  Model().SetFeed(Rows(5000));
  panel->SelectRow(0);
  QApplication::processEvents();
  const std::size_t first = Shown();
  View().verticalScrollBar()->setValue(View().verticalScrollBar()->maximum());
  EXPECT_GT(Shown(), first);
  EXPECT_LT(Shown(), 5000U);
  PressKey(View(), Qt::Key_End, Qt::ControlModifier);
  EXPECT_EQ(Shown(), 5000U);
  EXPECT_EQ(panel->CurrentRow(), 4999U);
  EXPECT_EQ(Foot(), "5.000 registos  -  5.000 marcados  -  Valor: 5.000,00");
}

TEST_F(Feed, WhatFitsOnAScreenHasNoMore) {
  Model().SetFeed(Rows(200));
  EXPECT_EQ(Foot(), "200 registos  -  200 marcados");
  EXPECT_FALSE(Model().SetFeed(Rows(0)));
  EXPECT_EQ(Shown(), 200U) << "a feed without rows changes nothing";
}

TEST_F(Feed, SumsAndInvertedTicksHoldForRowsThatCome) {
  Model().SetFeed(Rows(3000));
  View().setCurrentIndex(Model().index(0, kAmount));
  Model().Tick(0, false);
  Model().InvertTicks();
  EXPECT_TRUE(Model().ReadAll());
  EXPECT_EQ(Ticked(), Texts{"1"});
  EXPECT_EQ(Foot(), "3.000 registos  -  1 marcado  -  Valor: 3.000,00");
}

TEST_F(Feed, SortingAndSearchingReadToTheEnd) {
  Model().SetFeed(Rows(3000));
  ClickHeading(kAmount);
  EXPECT_EQ(Shown(), 3000U);
  Model().SetFeed(Rows(3000));
  PressKey(View(), Qt::Key_F, Qt::ControlModifier);
  auto& window = Find(View(), "WProcura");
  Type(window, "txtProcura", "linha 2999");
  Press(window, "cmdProcurar");
  EXPECT_EQ(panel->CurrentRow(), 2998U);
}

TEST_F(Feed, ALostConnectionIsToldAndTheRowsAreNotWhole) {
  Model().SetFeed(Rows(5000, 3000));
  EXPECT_FALSE(Model().ReadAll());
  EXPECT_EQ(world.dialogs.Texts(), Texts{"ligação perdida"});
  EXPECT_FALSE(Model().HasMore());
  EXPECT_GT(Shown(), 0U);
  EXPECT_FALSE(Model().ReadAll());
  EXPECT_EQ(world.dialogs.LastText(),
            "Os registos não foram lidos até ao fim!\nVolte a carregá-los antes de continuar.");
  Model().SetRows(Customers());
  EXPECT_TRUE(Model().ReadAll());
}

TEST_F(Feed, AFailureBeforeTheFirstRowChangesNothing) {
  EXPECT_FALSE(Model().SetFeed(Rows(5, 0)));
  EXPECT_EQ(world.dialogs.Texts(), Texts{"ligação perdida"});
  EXPECT_EQ(Shown(), 3U);
  EXPECT_TRUE(Model().ReadAll());
}

/// Presses the cancel button of the box that waits.
void CancelWork() {
  QTimer::singleShot(5, [] {
    auto* box = dynamic_cast<WorkBox*>(QApplication::activeModalWidget());
    if (box == nullptr) {
      CancelWork();
    } else {
      Press(*box, "cmdCancelar");
    }
  });
}

TEST_F(Feed, ReadingToTheEndCanBeCancelledAndGoneOnWith) {
  std::atomic<bool> slow = true;
  Model().SetFeed(std::make_unique<RowFeed>([&](const RowFeed::Sink& sink) {
    for (std::size_t i = 0; i < 9000; ++i) {
      if (slow && i > 3000 && i % 1000 == 0) std::this_thread::sleep_for(std::chrono::milliseconds(300));
      sink(Row(std::to_string(i), "Linha", {}, "1"));
    }
  }));
  EXPECT_GT(Model().SumOf(kAmount), data::Currency());
  CancelWork();
  ClickHeading(kName);
  EXPECT_TRUE(Model().HasMore());
  EXPECT_EQ(Heading(kName), "Nome") << "not sorted";
  EXPECT_EQ(world.dialogs.LastText(), "Operação cancelada: o que estava em curso foi desfeito.");
  slow = false;
  EXPECT_TRUE(Model().ReadAll());
  EXPECT_EQ(Shown(), 9000U);
  EXPECT_EQ(Model().SumOf(kAmount), data::Currency::FromWhole(9000));
}

}  // namespace
}  // namespace korvel::desktop
