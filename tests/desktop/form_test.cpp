#include "forms/common/form.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QKeyEvent>
#include <QPushButton>
#include <QTimer>
#include <chrono>
#include <functional>
#include <optional>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "desktop/desktop_world.h"
#include "forms/common/field_grid.h"
#include "gateways/text.h"
#include "widgets/combo_list.h"
#include "widgets/decimal.h"
#include "widgets/edatas.h"
#include "widgets/grid_panel.h"
#include "widgets/inteiro.h"

namespace korvel::desktop {
namespace {

/// A store on a full disk.
class FullStore final : public toolkit::Settings {
 public:
  std::optional<std::string> Read(std::string_view, std::string_view) const override { return {}; }
  void Write(std::string_view, std::string_view, std::string_view) override {
    throw std::runtime_error("O disco está cheio");
  }
};

/// A form with one control of each kind.
class EveryControl : public Form {
 public:
  explicit EveryControl(Desk& desk) : Form(desk, "frmTeste") {
    auto* column = FormColumn(this);
    column->addWidget(TextBox("txtNome"));
    column->addWidget(new ComboMes("cmbMes", this));
    column->addWidget(new Edatas(desk, "datInicio", this));
    column->addWidget(new Valor(desk, "valTotal", this));
    column->addWidget(new Inteiro(desk, "intDias", this));
    auto* check = new QCheckBox("&Activo", this);
    check->setObjectName("chkActivo");
    column->addWidget(check);
    column->addWidget(PlainButton("cmdGravar", "&Gravar", [this] {
      ++saved;
      onSave();
    }));
  }

  bool Load() override { return loads; }
  using Form::SetCaption;
  using Form::SetCaptionDetail;

  bool loads = true;
  int saved = 0;
  std::function<void()> onSave = [] {};
};

class FormTest : public testing::Test {
 protected:
  void Show() {
    form.show();
    QApplication::setActiveWindow(&form);
  }

  test::ScriptedDialogs dialogs;
  test::MemorySettings settings;
  test::FixedClock clock;
  Desk desk{{}, {dialogs, settings, clock}};
  EveryControl form{desk};
};

/// The name of the control with the cursor, that of the box with arrows for its line.
std::string Cursor(const QWidget& form) {
  const QWidget* widget = form.focusWidget();
  while (widget != nullptr && widget != &form && widget->objectName().isEmpty())
    widget = widget->parentWidget();
  return widget == nullptr ? std::string() : FromQt(widget->objectName());
}

TEST_F(FormTest, EnterMovesOnThroughEveryKindOfControlAndPressesAButton) {
  Show();
  Find(form, "txtNome").setFocus();
  std::vector<std::string> visited;
  for (int i = 0; i < 6; ++i) {
    PressKey(*form.focusWidget(), i % 2 == 0 ? Qt::Key_Return : Qt::Key_Enter);
    visited.push_back(Cursor(form));
  }
  EXPECT_EQ(visited, (std::vector<std::string>{"cmbMes", "datInicio", "valTotal", "intDias", "chkActivo",
                                               "cmdGravar"}));
  EXPECT_EQ(form.saved, 0);
  PressKey(*form.focusWidget(), Qt::Key_Return);
  EXPECT_EQ(form.saved, 1);
  EXPECT_TRUE(form.isVisible());
  EXPECT_FALSE(Find<QCheckBox>(form, "chkActivo").isChecked());
}

TEST_F(FormTest, EnterEndsAnEntryBeforeItMovesOn) {
  Show();
  auto& date = Find<Edatas>(form, "datInicio");
  date.setFocus();
  date.setText("99");
  PressKey(date, Qt::Key_Return);
  EXPECT_EQ(date.text(), "");
  EXPECT_EQ(dialogs.messages.size(), 1U);
  EXPECT_EQ(Cursor(form), "valTotal");
}

TEST_F(FormTest, EscapeLeavesFromEveryControlWithoutAWord) {
  for (const char* field : {"txtNome", "cmbMes", "datInicio", "valTotal", "intDias", "cmdGravar"}) {
    WhenAsked([&](QWidget& window) {
      auto& control = Find(window, field);
      control.setFocus();
      QWidget& target = *window.focusWidget();
      QKeyEvent typed(QEvent::KeyPress, 0, Qt::NoModifier, "9");
      QApplication::sendEvent(&target, &typed);
      PressKey(target, Qt::Key_Escape);
    });
    EXPECT_FALSE(form.Ask()) << field;
    EXPECT_TRUE(dialogs.messages.empty()) << field;
  }
}

TEST_F(FormTest, AsksOnlyWhenItCouldLoad) {
  form.loads = false;
  EXPECT_FALSE(form.Ask());
  form.loads = true;
  form.onSave = [&] { form.accept(); };
  WhenAsked([](QWidget& window) { Press(window, "cmdGravar"); });
  EXPECT_TRUE(form.Ask());
}

TEST_F(FormTest, NeitherClosesNorStartsMoreWhileWorkGoesOn) {
  form.show();
  bool tried = false;
  QTimer::singleShot(10, [&] {
    form.close();
    form.reject();
    Find<QPushButton>(form, "cmdGravar").click();  // the second click of a double one
    tried = true;
  });
  desk.Run([](const session::Context&) { std::this_thread::sleep_for(std::chrono::milliseconds(100)); });
  EXPECT_TRUE(tried);
  EXPECT_TRUE(form.isVisible());
  EXPECT_EQ(form.saved, 0);
  form.close();
  EXPECT_FALSE(form.isVisible());
}

TEST_F(FormTest, WhatAButtonThrowsIsShownAndTheFormGoesOn) {
  form.onSave = [] { throw std::runtime_error("A ligação caiu"); };
  form.show();
  Press(form, "cmdGravar");
  EXPECT_EQ(dialogs.LastText(), "A ligação caiu");
  EXPECT_TRUE(form.isVisible());
}

TEST_F(FormTest, RemembersItsSize) {
  form.show();
  form.resize(433, 377);
  form.close();
  EveryControl again(desk);
  again.show();
  EXPECT_EQ(again.size(), QSize(433, 377));
}

TEST(FormOnAFullDisk, AStoreThatCannotBeWrittenIsToldOnce) {
  test::ScriptedDialogs dialogs;
  FullStore settings;
  const test::FixedClock clock;
  Desk desk({}, {dialogs, settings, clock});
  for (int i = 0; i < 2; ++i) {
    EveryControl form(desk);
    form.show();
    form.close();
    EXPECT_FALSE(form.isVisible());
  }
  EXPECT_EQ(dialogs.Texts(), std::vector<std::string>{"O disco está cheio"});
}

TEST_F(FormTest, ShowsWhatIsLoadedBehindItsCaption) {
  form.SetCaption("Clientes");
  form.SetCaptionDetail("2025");
  EXPECT_EQ(form.windowTitle(), "Clientes  -  2025");
  form.SetCaptionDetail("");
  EXPECT_EQ(form.windowTitle(), "Clientes");
}

TEST_F(FormTest, EnterInAGridActivatesItsRowAndStays) {
  const std::vector<toolkit::GridColumn> columns{
      {.heading = "Código", .width = 1500, .alignment = {}, .kind = {}, .summed = false}};
  auto* grid = new GridPanel(desk, "frmTeste", "lvwLista", columns, false, &form);
  form.layout()->addWidget(grid);
  int activated = 0;
  grid->onActivate = [&] { ++activated; };
  Show();
  grid->View().setFocus();
  PressKey(grid->View(), Qt::Key_Return);
  EXPECT_EQ(activated, 0);
  EXPECT_NE(Cursor(form), "lvwLista");  // without a row Enter moves on
  grid->Model().SetRows({{.ticked = false, .cells = {"C1"}, .colour = 0}});
  grid->SelectRow(0);
  grid->View().setFocus();
  PressKey(grid->View(), Qt::Key_Return);
  EXPECT_EQ(activated, 1);
  EXPECT_EQ(Cursor(form), "lvwLista");
}

}  // namespace
}  // namespace korvel::desktop
