#include <gtest/gtest.h>

#include <QApplication>
#include <QClipboard>
#include <QDialog>
#include <QKeyEvent>
#include <QPushButton>
#include <QVBoxLayout>
#include <string>

#include "desktop/desktop_world.h"
#include "gateways/text.h"
#include "widgets/combo_list.h"
#include "widgets/decimal.h"
#include "widgets/edatas.h"
#include "widgets/inteiro.h"
#include "widgets/sel_opta.h"

namespace korvel::desktop {
namespace {

using data::Currency;

constexpr std::string_view kTooLarge = "Número demasiado Grande !\no Máximo é ";

/// A window with the controls of a test and a plain button to go to.
class EntryControls : public testing::Test {
 protected:
  EntryControls() {
    desk.Session().gFormatoData = "dd/MM/yyyy";
    desk.Session().gSepData = "/";
    new QVBoxLayout(&window);
    Add(*new QPushButton("&Outro", &window));
    window.show();
    QApplication::setActiveWindow(&window);
  }

  template <typename Control>
  Control& Add(Control& control) {
    window.layout()->addWidget(&control);
    control.show();
    return control;
  }
  template <typename Control>
  Control& Make(std::string_view name = "campo") {
    return Add(*new Control(desk, name, &window));
  }

  /// Types into "campo" without leaving it.
  void TypeAndStay(std::string_view text) {
    auto& field = Find(window, "campo");
    QApplication::setActiveWindow(&window);
    field.setFocus();
    for (const QChar letter : ToQt(text)) {
      QKeyEvent press(QEvent::KeyPress, 0, Qt::NoModifier, QString(letter));
      QApplication::sendEvent(&field, &press);
    }
  }
  /// The text of the last box, which is forgotten.
  std::string Said() {
    std::string text = dialogs.LastText();
    dialogs.Clear();
    return text;
  }

  test::ScriptedDialogs dialogs;
  test::MemorySettings settings;
  test::FixedClock clock;
  Desk desk{{}, {dialogs, settings, clock}};
  QDialog window;
};

TEST_F(EntryControls, ADateIsReadWhenItsBoxIsLeft) {
  const struct {
    const char *typed, *neutral, *regional, *said;
  } kRows[] = {{"2/3/2011", "2011-03-02", "02/03/2011", ""},
               {"29022012", "2012-02-29", "29/02/2012", ""},
               {"2/3", "2026-03-02", "02/03/2026", ""},
               {"31/02/2011", "", "", "Data Invalida\n-"},
               {"1/1/2011", "2011-01-01", "01/01/2011", ""},
               {"1/13/2011", "", "",
                "Data Inválida de Acordo com o formato de data existente no  Painel de Control (dd/MM/yyyy)"},
               {"", "", "", ""}};
  auto& box = Make<Edatas>();
  for (const auto& row : kRows) {
    Type(window, "campo", row.typed);
    EXPECT_EQ(Said(), row.said) << row.typed;
    EXPECT_EQ(box.ConteudoAMD(), row.neutral) << row.typed;
    EXPECT_EQ(FromQt(box.text()), row.regional) << row.typed;
  }
}

TEST_F(EntryControls, ADateIsReadUnderTheCursorByWhoeverAsksForIt) {
  auto& box = Make<Edatas>();
  int changes = 0;
  box.onChange = [&] { ++changes; };
  TypeAndStay("5/3/2011");
  EXPECT_EQ(box.ConteudoAMD(), "2011-03-05");
  EXPECT_EQ(box.Conteudo(), "05/03/2011");
  EXPECT_EQ(changes, 1);
  box.clear();
  TypeAndStay("31/02/2011");
  EXPECT_EQ(box.ConteudoAMD(), "");
  EXPECT_EQ(Said(), "Data Invalida\n-");
  EXPECT_EQ(changes, 2);
}

TEST_F(EntryControls, WritingADateChecksItAndTellsNobody) {
  auto& box = Make<Edatas>();
  int changes = 0;
  box.onChange = [&] { ++changes; };
  box.SetConteudoAMD("2011-03-05");
  EXPECT_EQ(FromQt(box.text()), "05/03/2011");
  Type(window, "campo", "5/3/2011");
  EXPECT_EQ(changes, 0);
  box.SetConteudo("31/02/2011");
  EXPECT_EQ(Said(), "Data Invalida\n-");
  EXPECT_EQ(box.ConteudoAMD(), "");
  box.SetConteudoAMD("nada");
  EXPECT_EQ(box.Conteudo(), "");
}

TEST_F(EntryControls, TheArrowsStepThroughTheDays) {
  auto& box = Make<Edatas>();
  PressKey(box, Qt::Key_Up);
  EXPECT_EQ(box.ConteudoAMD(), "2026-01-16");  // from today
  box.SetConteudoAMD("2012-03-01");
  PressKey(box, Qt::Key_Down);
  EXPECT_EQ(FromQt(box.text()), "29/02/2012");
  box.setText("31/02/2011");
  PressKey(box, Qt::Key_Down);
  EXPECT_EQ(box.ConteudoAMD(), "");
  EXPECT_EQ(Said(), "Data Invalida\n-");
}

TEST_F(EntryControls, EscapeGivesAnEntryUp) {
  auto& box = Make<Edatas>();
  box.SetConteudoAMD("2011-03-05");
  TypeAndStay("99");
  PressKey(box, Qt::Key_Escape);
  EXPECT_EQ(box.ConteudoAMD(), "2011-03-05");
  EXPECT_EQ(Said(), "");
}

TEST_F(EntryControls, ANumberTakesItsKeysAndNoOthers) {
  const struct {
    const char *typed, *text, *shown;
  } kRows[] = {{"12,50", "12,50", "12,50"},
               {"12.50", "12,50", "12,50"},
               {"1x2,505", "12,50", "12,50"},
               {"-1-2,,5", "-12,5", "-12,50"},
               {"", "", "0,00"},
               {"abc", "", "0,00"}};
  auto& box = Make<Valor>();
  for (const auto& row : kRows) {
    box.clear();
    TypeAndStay(row.typed);
    EXPECT_EQ(FromQt(box.text()), row.text) << row.typed;
    box.clearFocus();
    EXPECT_EQ(FromQt(box.text()), row.shown) << row.typed;
  }
}

TEST_F(EntryControls, APastedNumberIsReadWithItsThousands) {
  auto& box = Make<Valor>();
  box.SetSepMilhares(true);
  for (const char* text : {"1.234,50", "1 234,50", "12,345"}) {
    QApplication::clipboard()->setText(text);
    box.selectAll();
    box.paste();
  }
  EXPECT_EQ(box.Quantia(), Currency::FromUnits(12345000));  // the others were not let in
  EXPECT_EQ(FromQt(box.text()), "1.234,50");
}

TEST_F(EntryControls, ANumberThatIsTooLargeLeavesTheOneBefore) {
  auto& amount = Make<Valor>();
  amount.SetValor(Currency::FromWhole(7));
  Type(window, "campo", "922337203685478");
  EXPECT_EQ(Said(), std::string(kTooLarge) + "922,337,203,685,477.00");
  EXPECT_EQ(amount.Quantia(), Currency::FromWhole(7));
  EXPECT_EQ(FromQt(amount.text()), "7,00");
  auto& number = Make<Decimal>("outro");
  number.SetTexto("-99999999999999999999");
  EXPECT_EQ(Said(), std::string(kTooLarge) + "922,337,203,685,477");
  EXPECT_EQ(number.Valor(), Currency());
}

TEST_F(EntryControls, AValueWithMoreDecimalsThanShownSurvivesAVisit) {
  auto& box = Make<Decimal>();
  box.SetValor(Currency::FromUnits(12345));
  Type(window, "campo", "1,23");
  EXPECT_EQ(box.Valor(), Currency::FromUnits(12345));
}

TEST_F(EntryControls, LengthBindsWhatIsTypedNotWhatIsWritten) {
  auto& box = Make<Decimal>();
  box.SetComprimento(4);
  box.clear();
  TypeAndStay("12345");
  EXPECT_EQ(box.Valor(), Currency::FromWhole(1234));
  box.SetValor(Currency::FromWhole(123456));
  TypeAndStay("x");
  EXPECT_EQ(FromQt(box.text()), "123456,00");
}

TEST_F(EntryControls, AmountsFollowTheSessionAndOtherNumbersTheSettings) {
  desk.Session().gSepDecimal = ";";
  desk.Session().gCasasDec = 3;
  auto& amount = Make<Valor>();
  auto& number = Make<Decimal>("outro");
  EXPECT_EQ(FromQt(amount.text()), "0;000");
  EXPECT_EQ(FromQt(number.text()), "0,000");
  SetCasasDecimaisEmValores(window, 1);
  EXPECT_EQ(FromQt(amount.text()), "0;0");
  EXPECT_EQ(FromQt(number.text()), "0,000");
  SetCasasDecimaisEmDecimais(window, 4);
  EXPECT_EQ(FromQt(amount.text()), "0;0");
  EXPECT_EQ(FromQt(number.text()), "0,0000");
}

TEST_F(EntryControls, AWholeNumberKeepsToItsBounds) {
  auto& box = Make<Inteiro>();
  SetMinMaxEmInteiros(window, {1, 4});
  box.SetValor(3);
  int changes = 0;
  box.onChange = [&] { ++changes; };
  Type(window, "campo", "5");
  EXPECT_EQ(Said(), std::string(kTooLarge) + "4");
  EXPECT_EQ(box.Valor(), 3);
  Type(window, "campo", "0");
  EXPECT_EQ(Said(), "Número demasiado Pequeno !\no Mínimo é 1");
  EXPECT_EQ(changes, 0);
  Type(window, "campo", "2");
  EXPECT_EQ(box.Valor(), 2);
  EXPECT_EQ(changes, 1);
  for (int i = 0; i < 5; ++i) PressKey(*box.focusProxy(), Qt::Key_Up);
  EXPECT_EQ(box.Valor(), 4);
  EXPECT_EQ(changes, 2);
}

TEST_F(EntryControls, WhatIsLockedIsReadAndNotChanged) {
  auto& date = Make<Edatas>("data");
  date.SetConteudoAMD("2011-03-05");
  date.SetLocked(true);
  Type(window, "data", "1/1/2012");
  PressKey(date, Qt::Key_Up);
  EXPECT_EQ(date.ConteudoAMD(), "2011-03-05");
  auto& whole = Make<Inteiro>("inteiro");
  whole.SetValor(3);
  whole.SetLocked(true);
  Type(window, "inteiro", "4");
  PressKey(*whole.focusProxy(), Qt::Key_Up);
  EXPECT_EQ(whole.Valor(), 3);
  auto& option = Add(*new SelOpta("opcao", &window));
  option.SetLista(toolkit::kListaSimNao);
  option.SetChave("0");
  option.SetLocked(true);
  PressKey(option, Qt::Key_Down);
  option.showPopup();
  EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
  EXPECT_EQ(option.Chave(), "0");
  const auto ground = [](const QWidget& field) { return field.palette().color(QPalette::Base); };
  const QColor plain = option.palette().color(QPalette::Window);
  EXPECT_EQ(ground(date), plain);
  date.SetLocked(false);
  EXPECT_NE(ground(date), plain);
  EXPECT_TRUE(date.isEnabled() && whole.isEnabled() && option.isEnabled());
}

TEST_F(EntryControls, AnOptionIsFoundByItsKey) {
  auto& box = Add(*new SelOpta("campo", &window));
  int changes = 0;
  box.onChange = [&] { ++changes; };
  box.SetLista(":Sem Efeito;F:Facturação;C:Contabilidade;f:Segunda;");
  EXPECT_EQ(box.currentIndex(), -1);
  EXPECT_EQ(changes, 0);
  box.SetChave("f");
  EXPECT_TRUE(box.Found());
  EXPECT_EQ(box.Texto(), "Facturação");
  EXPECT_EQ(box.Chave(), "F");
  box.SetChave("x");
  EXPECT_FALSE(box.Found());
  EXPECT_EQ(box.Chave(), "F");
  box.SetChave("");
  EXPECT_EQ(box.Texto(), "Sem Efeito");
  PressKey(box, Qt::Key_Down);
  EXPECT_EQ(box.Chave(), "F");
  EXPECT_EQ(changes, 3);
  box.SetLista(toolkit::kListaSimNao);
  EXPECT_EQ(box.Chave(), "");
  EXPECT_EQ(changes, 3);
  box.setCurrentText("Sim");
  EXPECT_EQ(box.Chave(), "1");
}

TEST_F(EntryControls, MonthsAndDaysOfTheWeekCountFromOne) {
  auto& month = Add(*new ComboMes("mes", &window));
  EXPECT_EQ(month.Mes(), 0);
  month.SetMes(3);
  EXPECT_EQ(month.DMes(), "Março");
  month.SetDMes("DEZEMBRO");
  EXPECT_EQ(month.Mes(), 12);
  month.SetMes(13);
  EXPECT_EQ(month.DMes(), "");
  auto& day = Add(*new ComboSem("dia", &window));
  day.SetDia(7);
  EXPECT_EQ(day.dsemana(), "Sábado");
  day.Setdsemana("segunda-feira");
  EXPECT_EQ(day.Dia(), 2);
}

TEST_F(EntryControls, GoWithTheCursorInThem) {
  QWidget* const made[] = {&Make<Inteiro>(), &Make<Decimal>(), &Make<Valor>(), &Make<Edatas>()};
  for (QWidget* control : made) {
    QApplication::setActiveWindow(&window);
    control->setFocus();
    ASSERT_TRUE(control->hasFocus());
    delete control;
    EXPECT_EQ(Said(), "");
  }
}

}  // namespace
}  // namespace korvel::desktop
