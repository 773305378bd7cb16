#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QHeaderView>
#include <QVBoxLayout>
#include <functional>
#include <string>

#include "desktop/desktop_world.h"
#include "gateways/text.h"
#include "widgets/code_box.h"
#include "widgets/search_window.h"

namespace korvel::desktop {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr int kRows = 2100;
constexpr const char* kRefusal = "9 ( Tabela-> Cores)\nUse '\\' ou '/' no Campo para Pesquisar!";

periods::TableSearch Colours(std::string_view table = "Cores") {
  return {.table = std::string(table),
          .place = periods::SearchPlace::Company,
          .statement = "select * From " + std::string(table)};
}

/// Longer than the search waits for a further key.
constexpr int kPauseMilliseconds = 500;

/// Lets events through until `done`, for a while at the most.
bool Wait(const std::function<bool()>& done, int mostMilliseconds = 20000) {
  QElapsedTimer passed;
  passed.start();
  while (!done() && passed.elapsed() < mostMilliseconds)
    QApplication::processEvents(QEventLoop::AllEvents, 20);
  return done();
}

class CodeBoxTest : public testing::Test {
 protected:
  CodeBoxTest() {
    world.server.UseCompany("0001");
    world.server.Run("Korvel0001",
                     "create table Cores (Codigo varchar(4), Descricao varchar(50))\nGO\n"
                     "insert into Cores values ('1','Azul'),('2','Verde'),('12','Azul claro')");
    world.server.dialogs.Clear();
    world.desk.Session() = world.server.session;
    box = new CodeBox(world.desk, {"txtCor", "cmdCor", "lblCor", "Todas"}, Colours(), &window);
    box->onChange = [this] { ++changes; };
    auto* other = new QLineEdit(&window);
    other->setObjectName("txtOutro");
    auto* column = new QVBoxLayout(&window);
    column->addWidget(box);
    column->addWidget(other);
    window.show();
  }
  std::string Name() { return FromQt(Find<QLabel>(window, "lblCor").text()); }
  const test::ScriptedDialogs& Dialogs() { return world.server.dialogs; }

  DesktopWorld world;
  QWidget window;
  CodeBox* box;
  int changes = 0;
};

TEST_F(CodeBoxTest, LeavingTheBoxFillsTheName) {
  EXPECT_EQ(Name(), "Todas");
  Type(window, "txtCor", "2");
  EXPECT_EQ(Name(), "Verde");
  Type(window, "txtCor", "");
  EXPECT_EQ(Name(), "Todas");
  EXPECT_EQ(changes, 2);
  box->SetCodigo("1");
  EXPECT_EQ(Name(), "Azul");
  box->SetCodigo("9");
  EXPECT_EQ(Name(), "");
  box->SetCodigoSemNome("1");
  EXPECT_EQ(box->Codigo() + Name(), "1");
  EXPECT_EQ(changes, 2) << "the user's own changes alone are told";
  EXPECT_THAT(Dialogs().Texts(), IsEmpty());
}

TEST_F(CodeBoxTest, UnknownCodeIsToldOnceAndSelected) {
  Type(window, "txtCor", "9");
  EXPECT_EQ(Dialogs().LastTitle(), "Registo Inexistente:");
  EXPECT_THAT(Dialogs().Texts(), ElementsAre(kRefusal));
  EXPECT_EQ(Name(), "");
  ASSERT_TRUE(Wait([&] { return box->Box()->hasFocus(); }));
  EXPECT_EQ(box->Box()->selectedText(), "9");
  Find<QLineEdit>(window, "txtOutro").setFocus();
  QApplication::processEvents();
  EXPECT_EQ(Dialogs().messages.size(), 1U) << "one may go on with it";
  EXPECT_EQ(changes, 0);
}

TEST_F(CodeBoxTest, SignsOpenTheSearch) {
  WhenAsked([](QWidget& search) {
    EXPECT_EQ(search.objectName(), "frmWPesq");
    EXPECT_EQ(Find<QLineEdit>(search, "txtKey").text(), "2");
    EXPECT_EQ(Find<QLabel>(search, "lblContagem").text(), "Nº. de Registos: 2");
    PressKey(Find(search, "txtKey"), Qt::Key_Return);
  });
  Type(window, "txtCor", "/2");
  EXPECT_EQ(box->Codigo(), "12");
  EXPECT_EQ(Name(), "Azul claro");
  WhenAsked([](QWidget& search) { PressKey(search, Qt::Key_Escape); });
  Type(window, "txtCor", "\\");
  EXPECT_EQ(box->Codigo(), "12") << "left without a choice, the code before stays";
  EXPECT_EQ(changes, 1);
  EXPECT_THAT(Dialogs().Texts(), IsEmpty());
}

TEST_F(CodeBoxTest, ButtonOpensTheSearchOverAllRows) {
  WhenAsked([](QWidget& search) {
    EXPECT_EQ(Find<QLabel>(search, "lblContagem").text(), "Nº. de Registos: 3");
    Find<GridView>(search, "lvwPesquisa").SelectRow(2);
    Press(search, "cmdSeleccionar");
  });
  Press(window, "cmdCor");
  EXPECT_EQ(box->Codigo() + Name(), "2Verde");
}

TEST_F(CodeBoxTest, TableThatCannotBeReadIsToldAndOpensNothing) {
  box->SetSearch(Colours("Falta"));
  Press(window, "cmdCor");
  ASSERT_EQ(Dialogs().messages.size(), 1U);
  EXPECT_THAT(Dialogs().LastText(), testing::HasSubstr("Não existe a tabela [Falta]!"));
  Type(window, "txtCor", "1");
  EXPECT_EQ(Dialogs().messages.size(), 2U);
  EXPECT_TRUE(window.isEnabled());
}

class SearchWindowTest : public CodeBoxTest {
 protected:
  /// Opens the search over the colours and leaves it behind `visit`.
  void Visit(const std::function<void(QWidget& search)>& visit) {
    WhenAsked([&](QWidget& search) {
      visit(search);
      Press(search, "cmdFechar");
    });
    const periods::TableSearch search = Colours();
    EXPECT_FALSE(SearchWindow(world.desk, search, "", &window).Choose());
  }
  static std::string Shown(QWidget& search) {
    const auto& model = *Find<GridView>(search, "lvwPesquisa").model();
    std::string codes;
    for (int row = 0; row < model.rowCount(); ++row) {
      codes += FromQt(model.index(row, 0).data().toString()) + " ";
    }
    return codes;
  }
  static void Click(QWidget& search, int column) {
    emit Find<GridView>(search, "lvwPesquisa").horizontalHeader()->sectionClicked(column);
  }
};

TEST_F(SearchWindowTest, SearchesAtEachKeyOrAtEnter) {
  Visit([](QWidget& search) {
    Type(search, "txtKey", "2");
    EXPECT_TRUE(Wait([&] { return Shown(search) == "12 2 "; })) << Shown(search);
    Press(search, "chkSearchPrincipio");
    EXPECT_EQ(Shown(search), "2 ");
    Press(search, "chkSearchChange");
    Type(search, "txtKey", "1");
    EXPECT_FALSE(Wait([&] { return Shown(search) != "2 "; }, kPauseMilliseconds));
    PressKey(Find(search, "txtKey"), Qt::Key_Return);
    EXPECT_EQ(Shown(search), "1 12 ");
  });
  Visit([](QWidget& search) {
    EXPECT_FALSE(Find<QCheckBox>(search, "chkSearchChange").isChecked());
    EXPECT_TRUE(Find<QCheckBox>(search, "chkSearchPrincipio").isChecked());
  });
}

TEST_F(SearchWindowTest, HeadingChoosesTheFieldAndTheOrder) {
  Visit([](QWidget& search) {
    EXPECT_EQ(Shown(search), "1 12 2 ");
    Click(search, 1);
    Click(search, 1);
    EXPECT_EQ(Shown(search), "2 12 1 ");
    Type(search, "txtKey", "azul");
    PressKey(Find(search, "txtKey"), Qt::Key_Return);
    EXPECT_EQ(Shown(search), "12 1 ");
    const auto heading = [&](int column) {
      return Find<GridView>(search, "lvwPesquisa").model()->headerData(column, Qt::Horizontal).toString();
    };
    EXPECT_EQ(heading(1), "Descrição (Des.)");
    EXPECT_EQ(heading(0), "Código");
    EXPECT_EQ(Find<QLabel>(search, "lblContagem").text(), "Nº. de Registos: 2");
  });
}

TEST_F(SearchWindowTest, LongTablesAreCutAndCounted) {
  std::string rows;
  for (int row = 0; row < kRows; ++row) {
    rows += (row % 500 == 0 ? "\nGO\ninsert into Cores values " : ",");
    rows += "('" + std::to_string(3000 + row) + "','Tom')";
  }
  world.server.Run("Korvel0001", "delete from Cores" + rows);
  Visit([](QWidget& search) {
    EXPECT_EQ(Find<QLabel>(search, "lblContagem").text(), "Nº. de Registos: 2100");
    EXPECT_EQ(Find<QLabel>(search, "lblLimite").text(), "(os primeiros 2000)");
    EXPECT_EQ(Find<GridView>(search, "lvwPesquisa").model()->rowCount(), 2000);
    Click(search, 0);
    EXPECT_TRUE(Shown(search).starts_with("5099 ")) << "the last rows come from the server too";
  });
}

}  // namespace
}  // namespace korvel::desktop
