#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QLabel>
#include <QListWidget>
#include <QRadioButton>
#include <QTimer>
#include <filesystem>

#include "desktop/desktop_world.h"
#include "forms/session/frm_about.h"
#include "forms/session/frm_cria_empresa.h"
#include "forms/session/frm_login.h"
#include "forms/session/frm_sel_empresas.h"
#include "forms/session/login_box.h"
#include "forms/session/menus.h"
#include "gateways/text.h"
#include "session_entry/entry_world.h"

namespace korvel::desktop {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr const char* kNotYet = "Esta janela ainda não existe nesta versão.";

void Trigger(QWidget& window, const char* entry) {
  auto* action = window.findChild<QAction*>(entry);
  ASSERT_NE(action, nullptr) << entry;
  ASSERT_TRUE(action->isEnabled()) << entry;
  action->trigger();
}

std::string Focused(const QWidget& window) {
  return window.focusWidget() == nullptr ? std::string() : FromQt(window.focusWidget()->objectName());
}

class LoginForm : public testing::Test {
 protected:
  LoginForm() { world.desk.Session() = {}; }

  void Keep(const char* section, const char* key, const std::string& value) {
    world.server.settings.Write(section, key, value);
  }
  void Show() {
    ASSERT_TRUE(form.Load());
    form.show();
  }
  void TypeLogin(const std::string& server, const char* login, const char* password) {
    Type(form, "txtServer", server);
    Type(form, "txtLogin", login);
    Type(form, "txtPassword", password);
  }
  std::string Text(const char* field) { return FromQt(Find<QLineEdit>(form, field).text()); }

  DesktopWorld world;
  test::ScriptedDialogs& dialogs = world.server.dialogs;
  frmLogin form{world.desk};
};

TEST_F(LoginForm, OpensEmpty) {
  Show();
  EXPECT_EQ(Text("txtServer") + Text("txtLogin") + Text("txtPassword"), "");
  EXPECT_FALSE(Text("txtMachine").empty()) << "this machine's name";
  EXPECT_TRUE(Find(form, "fraLogin").isEnabled());
  EXPECT_FALSE(Find(form, "fraConfigura").isVisible());
}

TEST_F(LoginForm, OpensWithWhatWasKept) {
  Keep("Servers", "Name", "srv\\um");
  Keep("Servers", "Login", "ana");
  Keep("MachineName", "Name", "CAIXA 3");
  Show();
  EXPECT_EQ(Text("txtServer"), "srv\\um");
  EXPECT_EQ(Text("txtLogin"), "ana");
  EXPECT_EQ(Text("txtMachine"), "CAIXA 3");
  EXPECT_EQ(Focused(form), "txtLogin");
  Type(form, "txtMachine", "CAIXA 4");
  EXPECT_EQ(world.server.settings.Read("MachineName", "Name"), "CAIXA 4") << "kept when the box is left";
}

TEST_F(LoginForm, RefusesWithTheCursorInTheFieldToCorrect) {
  struct Refused {
    std::string server;
    const char *login, *password, *text, *field;
  };
  const Refused kCases[] = {
      {"", "sa", "", "O Servidor Indicado Não Existe ou o Acesso Foi Negado!", "txtServer"},
      {world.server.Name(), "sa", "errada", "Login ou Password Incorrectos", "txtPassword"},
      {world.server.Name(), "", "", "Login ou Password Incorrectos", "txtPassword"},
  };
  bool entered = false;
  form.onLogin = [&] { return entered = true; };
  Show();
  for (const Refused& refused : kCases) {
    dialogs.Clear();
    TypeLogin(refused.server, refused.login, refused.password);
    Press(form, "cmdOK");
    EXPECT_THAT(dialogs.Texts(), ElementsAre(refused.text));
    EXPECT_EQ(dialogs.messages.back().icon, toolkit::Icon::Critical);
    EXPECT_EQ(dialogs.LastFocus(), refused.field) << refused.text;
    EXPECT_TRUE(form.isVisible());
  }
  EXPECT_FALSE(entered);
}

TEST_F(LoginForm, MakesAnEmbeddedServerThatIsNotThereWhenAsked) {
  world.desk.Session() = {};
  form.onLogin = [] { return true; };
  Show();
  TypeLogin("(localdb)\\nova", "sa", "");
  dialogs.answers = {1};
  Press(form, "cmdOK");
  EXPECT_EQ(dialogs.questions.back().text,
            "O servidor (LOCALDB)\\NOVA ainda não existe.\nDeseja criá-lo, com o administrador \"sa\" e a "
            "password em "
            "branco?");
  EXPECT_EQ(dialogs.LastFocus(), "txtServer");
  EXPECT_FALSE(std::filesystem::exists(world.server.folder / "NOVA")) << "a typing error makes nothing";
  dialogs.answers = {0};
  Press(form, "cmdOK");
  EXPECT_EQ(form.result(), QDialog::Accepted);
  EXPECT_TRUE(std::filesystem::exists(world.server.folder / "NOVA"));
  EXPECT_THAT(dialogs.Texts(), IsEmpty());
}

TEST_F(LoginForm, StaysUntilTheCompaniesAreShown) {
  int asked = 0;
  form.onLogin = [&] { return ++asked == 2; };
  Show();
  TypeLogin(world.server.Name(), "Sa", "");
  Press(form, "cmdOK");
  EXPECT_TRUE(form.isVisible()) << "the companies could not be listed";
  Press(form, "cmdOK");
  EXPECT_FALSE(form.isVisible());
  EXPECT_EQ(form.result(), QDialog::Accepted);
  EXPECT_EQ(world.desk.Session().gLogin, "SA");
  EXPECT_EQ(world.server.settings.Read("Servers", "Login"), "Sa") << "as typed";
  EXPECT_THAT(dialogs.Texts(), IsEmpty());
  EXPECT_EQ(world.server.One("KorvelConfig", "select AdminTasks from UserManagement where LoginName='sa'"),
            "1");
}

TEST_F(LoginForm, SwitchesTheWayOfAuthentication) {
  Show();
  Trigger(form, "mnuConfigurar");
  EXPECT_TRUE(Find(form, "fraConfigura").isVisible());
  EXPECT_FALSE(Find(form, "fraLogin").isVisible() || Find(form, "fraBotoes").isVisible());
  Find<QRadioButton>(form, "optWindowsAthentication").setChecked(true);
  Press(form, "cmdFecharConfig");
  EXPECT_TRUE(Find(form, "fraLogin").isVisible() && Find(form, "fraBotoes").isVisible());
  EXPECT_FALSE(Find(form, "txtPassword").isEnabled());
  EXPECT_TRUE(world.desk.Session().gAutenticacaoWindows);
  EXPECT_EQ(world.server.settings.Read("Servers", "WinAuthetication"), "1");
  EXPECT_EQ(dialogs.LastFocus(), "txtServer");
  frmLogin again(world.desk);
  ASSERT_TRUE(again.Load());
  EXPECT_TRUE(Find<QRadioButton>(again, "optWindowsAthentication").isChecked());
  EXPECT_FALSE(Find(again, "fraLogin").isEnabled());
}

TEST_F(LoginForm, EscapeLeavesButInTheServersBox) {
  Show();
  Trigger(form, "mnuConfigurar");
  PressKey(form, Qt::Key_Escape);
  EXPECT_FALSE(Find(form, "fraConfigura").isVisible()) << "it closes what stands open first";
  Find(form, "txtServer").setFocus();
  PressKey(Find(form, "txtServer"), Qt::Key_Escape);
  EXPECT_TRUE(form.isVisible());
  PressKey(Find(form, "txtServer"), Qt::Key_Return);
  EXPECT_EQ(Focused(form), "txtLogin") << "Enter moves on";
  PressKey(Find(form, "txtLogin"), Qt::Key_Escape);
  EXPECT_FALSE(form.isVisible());
  EXPECT_EQ(form.result(), QDialog::Rejected);
}

TEST(LoginBox, GivesWhatWasTypedOrNothing) {
  WhenAsked([](QWidget& box) {
    EXPECT_EQ(FromQt(Find<QLineEdit>(box, "txtLogin").text()), "SA");
    Type(box, "txtLogin", "chefe");
    Type(box, "txtPassword", "senha");
    Press(box, "cmdOK");
  });
  const auto typed = AskCredentials("Login", "SA", nullptr);
  ASSERT_TRUE(typed.has_value());
  EXPECT_EQ(typed->login + "/" + typed->password, "chefe/senha");
  WhenAsked([](QWidget& box) { PressKey(box, Qt::Key_Escape); });
  EXPECT_FALSE(AskCredentials("Login", "", nullptr).has_value());
}

/// A server with two companies: 0001, and 0002, the main one.
class Companies : public testing::Test {
 protected:
  Companies() {
    const auto& made = TwoCompanies().server;
    std::filesystem::copy(
        made.folder.Path(), world.server.folder.Path(),
        std::filesystem::copy_options::recursive | std::filesystem::copy_options::overwrite_existing);
    world.desk.Session() = made.session;
  }

  static const test::EntryWorld& TwoCompanies() {
    static const auto made = [] {
      auto prepared = std::make_unique<test::EntryWorld>();
      prepared->Prepare();
      prepared->AddCompany("0001", "Padaria");
      prepared->AddCompany("0002", "Talho", true);
      prepared->AddLogin("ana");
      return prepared;
    }();
    return *made;
  }
  /// `lvwEmpresas`, a text a row.
  static std::vector<std::string> Lines(QWidget& form) {
    const auto* model = Find<QAbstractItemView>(form, "lvwEmpresas").model();
    std::vector<std::string> lines;
    for (int row = 0; row < model->rowCount(); ++row) {
      std::string line;
      for (int column = 0; column < model->columnCount(); ++column) {
        line += FromQt(model->index(row, column).data().toString()) + "|";
      }
      lines.push_back(line);
    }
    return lines;
  }
  std::string Config(const char* query) { return world.server.One("KorvelConfig", query); }

  DesktopWorld world;
  test::ScriptedDialogs& dialogs = world.server.dialogs;
};

class SelectionForm : public Companies {
 protected:
  void Show() {
    ASSERT_TRUE(form.Load()) << dialogs.LastText();
    form.onEnter = [this] { ++entered; };
    form.show();
  }
  void GoTo(int row) {
    auto& list = Find<QAbstractItemView>(form, "lvwEmpresas");
    list.setCurrentIndex(list.model()->index(row, 0));
  }
  std::string Label(const char* name) { return FromQt(Find<QLabel>(form, name).text()); }

  session::CompanySelection selection;
  frmSelEmpresas form{world.desk, selection};
  int entered = 0;
};

TEST_F(SelectionForm, ShowsTheCompaniesWithTheirStates) {
  Show();
  EXPECT_THAT(FromQt(form.windowTitle()), HasSubstr("Empresas permitidas ao utilizador (SA) no Server ("));
  EXPECT_THAT(Lines(form),
              ElementsAre("0001|Padaria|1|0|0|1.0.0|empresa|", "0002|Talho|2|1|0|1.0.0|empresa-principal|"));
  EXPECT_EQ(Label("lblCodEmpresa"), "0001");
  EXPECT_EQ(Label("lblMsg"), "");
  EXPECT_EQ(Label("lblVersao"), "Versão Actual [1.0.0]");
  GoTo(1);
  EXPECT_EQ(Label("lblCodEmpresa"), "0002");
  EXPECT_EQ(Label("lblInfo1"), "empresa principal");
}

TEST_F(SelectionForm, EntersOnceHoweverOftenItIsPressed) {
  Show();
  GoTo(1);
  auto& button = Find<QPushButton>(form, "cmdSelecionar");
  QTimer::singleShot(0, &form, [&] { button.click(); });  // while the first click's work goes on
  Press(form, "cmdSelecionar");
  EXPECT_EQ(entered, 1) << dialogs.LastText();
  EXPECT_FALSE(form.isVisible());
  EXPECT_EQ(world.desk.Session().gBaseDados, "Korvel0002");
  EXPECT_EQ(world.desk.Session().gNomeEmpresa, "Talho");
}

TEST_F(SelectionForm, StaysWhenACompanyCannotBeEntered) {
  Show();
  world.server.Run("master", "drop database Korvel0001");
  Press(form, "cmdSelecionar");
  EXPECT_THAT(dialogs.LastText(), HasSubstr("Não foi possivel abrir a Empresa seleccionada!"));
  EXPECT_EQ(entered, 0);
  EXPECT_TRUE(form.isVisible());
}

TEST_F(SelectionForm, HasNothingToEnterOrAdministerForAStranger) {
  world.server.Run("KorvelConfig",
                   "insert into UserManagement (LoginName,AdminTasks,AllDatabases) values ('ana',0,0)");
  world.desk.Session().gLogin = "ANA";
  world.desk.Session().gPassword = "segredo";
  Show();
  EXPECT_THAT(Lines(form), IsEmpty());
  EXPECT_EQ(Label("lblMsg"), "Não tem acesso a nenhuma empresa.");
  Press(form, "cmdSelecionar");
  EXPECT_EQ(entered, 0);
  EXPECT_THAT(dialogs.Texts(), IsEmpty());
  for (const char* menu : {"mnuEmpresas", "mnuUtilitarios"}) {
    EXPECT_FALSE(form.findChild<QMenu*>(menu)->menuAction()->isEnabled()) << menu;
  }
}

TEST_F(SelectionForm, SaysOfWindowsThatComeLater) {
  Show();
  for (const char* entry :
       {"utiliz", "segdb", "repdb", "mnutransfemp", "mnuImportOfi", "mnuRepoeSitInicial"}) {
    dialogs.Clear();
    Trigger(form, entry);
    EXPECT_THAT(dialogs.Texts(), ElementsAre(kNotYet)) << entry;
  }
}

TEST_F(SelectionForm, AdministersTheChosenCompanyAndTheBaseRights) {
  Show();
  GoTo(1);
  dialogs.answers = {0};
  Trigger(form, "mnubloq");
  EXPECT_EQ(Lines(form)[1], "0002|Talho|2|1|0|1.0.0|empresa-principal-bloqueada|");
  EXPECT_EQ(Label("lblInfo1"), "empresa principal, só de consulta") << "the cursor stays where it was";
  dialogs.answers = {1};
  Trigger(form, "veremp");
  EXPECT_EQ(dialogs.questions.back().text, "Confirma a Verificação?");
  dialogs.answers = {0};
  Trigger(form, "mnuacttodas");
  EXPECT_EQ(dialogs.questions.back().text, "Confirma?");
  dialogs.logins = {toolkit::Credentials{"sa", ""}};
  dialogs.confirmations = {true};
  Trigger(form, "eli");
  EXPECT_EQ(dialogs.deletions.back().text, "Eliminar a Empresa 0002 - Talho");
  EXPECT_THAT(Lines(form), ElementsAre("0001|Padaria|1|0|0|1.0.0|empresa|"));
  for (const auto& [entry, none] : {std::pair("mnuEliacessos", true), std::pair("mnuCriaAcc", false)}) {
    dialogs.answers = {0};
    Trigger(form, entry);
    EXPECT_EQ(Config("select count(*) from Acessos") == "0", none) << entry << ": " << dialogs.LastText();
  }
}

TEST_F(SelectionForm, CreatesAndEditsCompanies) {
  Show();
  dialogs.answers = {0};
  WhenAsked([](QWidget& card) {
    Type(card, "txtDescricao", "Café");
    Press(card, "cmdOK");
  });
  Trigger(form, "criar");
  EXPECT_EQ(Lines(form).at(2), "0003|Café|3|0|0|1.0.0|empresa|") << dialogs.LastText();
  GoTo(2);
  dialogs.answers = {0};
  WhenAsked([](QWidget& card) {
    EXPECT_FALSE(Find(card, "txtCodigo").isEnabled());
    Type(card, "txtDescricao", "Café Central");
    Press(card, "chkAcessoPrincipal");
    Press(card, "cmdOK");
  });
  Trigger(form, "alterar");
  EXPECT_THAT(Lines(form), ElementsAre("0001|Padaria|1|0|0|1.0.0|empresa|", "0002|Talho|2|0|0|1.0.0|empresa|",
                                       "0003|Café Central|3|1|0|1.0.0|empresa-principal|"));
}

TEST_F(Companies, CardProposesRefusesAndTicks) {
  ASSERT_TRUE(session::CompanySelection().Load(world.desk.Context())) << "the card opens over that form";
  frmCriaEmpresa card(world.desk, {});
  ASSERT_TRUE(card.Load());
  card.show();
  EXPECT_EQ(FromQt(Find<QLineEdit>(card, "txtCodigo").text()), "0003");
  auto& users = Find<QListWidget>(card, "lvwUtilizadores");
  ASSERT_GT(users.count(), 0);
  for (const auto& [button, state] :
       {std::pair("cmdTodos", Qt::Checked), std::pair("cmdAnula", Qt::Unchecked)}) {
    Press(card, button);
    for (int row = 0; row < users.count(); ++row) EXPECT_EQ(users.item(row)->checkState(), state) << button;
  }
  Type(card, "txtCodigo", "12a");
  Press(card, "cmdOK");
  EXPECT_EQ(dialogs.LastText(), "O Codigo da Empresa tem que ser numérico !");
  EXPECT_EQ(dialogs.LastFocus(), "txtCodigo");
  EXPECT_TRUE(card.isVisible());
  Press(card, "cmdAcessos");
  EXPECT_EQ(dialogs.LastText(), kNotYet);
  Press(card, "cmdInstal");
  EXPECT_EQ(dialogs.LastText(), "Verificação Concluida");
  EXPECT_EQ(Config("select SetForms from Entidade"), "99");
  Press(card, "cmdCancelar");
  EXPECT_FALSE(card.isVisible());
  EXPECT_FALSE(frmCriaEmpresa(world.desk, "0009").Load()) << "a company that has gone";
}

TEST_F(Companies, AboutTellsWhereTheProgramStands) {
  world.desk.Session().gCodEmpresa = "0001";
  world.desk.Session().gNomeEmpresa = "Pão & Cª";
  frmAbout about(world.desk);
  about.show();
  EXPECT_EQ(FromQt(Find<QLabel>(about, "lblEmpresa").text()), "0001 - Pão & Cª");
  Press(about, "cmdOK");
  EXPECT_FALSE(about.isVisible());
}

TEST(AccessKeys, AreGivenOncePerMenu) {
  QMenu menu;
  for (const char* caption : {"Log &Off", "Listagens", "Outra", "Lista", "L"}) menu.addAction(caption);
  GiveAccessKeys(menu);
  std::vector<std::string> captions;
  for (const QAction* action : menu.actions()) captions.push_back(FromQt(action->text()));
  EXPECT_THAT(captions, ElementsAre("Log &Off", "&Listagens", "O&utra", "L&ista", "L"));
}

}  // namespace
}  // namespace korvel::desktop
