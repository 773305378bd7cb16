#include <gtest/gtest.h>

#include <QApplication>
#include <QClipboard>
#include <QDialog>
#include <QElapsedTimer>
#include <QEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTabWidget>
#include <QThread>
#include <QTimer>
#include <QVBoxLayout>
#include <array>
#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "desktop/desktop_world.h"
#include "gateways/guarded_application.h"
#include "gateways/message_box.h"
#include "gateways/row_feed.h"
#include "gateways/screen_dialogs.h"
#include "gateways/text.h"
#include "gateways/work_box.h"
#include "session/connections.h"
#include "toolkit/progress_scope.h"

namespace korvel::desktop {
namespace {

using std::chrono::milliseconds;
using test::ScriptedDialogs;

/// A desk with scripted boxes or with those of the screen.
struct DeskWorld {
  test::MemorySettings settings;
  test::FixedClock clock;
  ScriptedDialogs scripted;
  ScreenDialogs screen;
  Desk desk{{}, {scripted, settings, clock}};
  Desk onScreen{{}, {screen, settings, clock}};
};

/// Calls `visit` with the box of the work as soon as it stands.
void WhenWorking(std::function<void(WorkBox& box)> visit) {
  QTimer::singleShot(5, [visit = std::move(visit)] {
    auto* box = dynamic_cast<WorkBox*>(QApplication::activeModalWidget());
    if (box == nullptr) {
      WhenWorking(visit);
    } else {
      visit(*box);
    }
  });
}

/// Steps without end, until it is cancelled.
void StepOn(const session::Context& context) {
  toolkit::ProgressScope scope(context.progress, "A ler", 100000);
  for (;;) {
    scope.Step([] { return std::string("um registo"); });
    std::this_thread::sleep_for(milliseconds(1));
  }
}

TEST(Desk, BringsTheResultOfTheWorkAndWhatItThrows) {
  DeskWorld world;
  const auto* screen = QThread::currentThread();
  EXPECT_TRUE(world.desk.Run([&](const session::Context&) { return QThread::currentThread() != screen; }));
  EXPECT_EQ(world.desk.Try([](const session::Context&) { return 7; }), 7);
  EXPECT_TRUE(world.desk.Try([&](const session::Context&) { EXPECT_TRUE(world.desk.IsBusy()); }));
  const auto fails = [](const session::Context&) -> int { throw std::runtime_error("O disco está cheio"); };
  EXPECT_THROW(world.desk.Run(fails), std::runtime_error);
  EXPECT_TRUE(world.scripted.messages.empty());
  EXPECT_EQ(world.desk.Try(fails), std::nullopt);
  EXPECT_EQ(world.scripted.LastText(), "O disco está cheio");
  EXPECT_FALSE(world.desk.IsBusy());
}

TEST(Desk, EndsTheProgramWhereTheCoreAsksForIt) {
  DeskWorld world;
  bool ended = false;
  world.desk.onEndProgram = [&] { ended = true; };
  EXPECT_FALSE(world.desk.Try([](const session::Context&) { throw session::EndProgram(); }));
  EXPECT_TRUE(ended);
  EXPECT_TRUE(world.scripted.messages.empty());
}

/// Handles no event without a fault.
class Faulty : public QObject {
 public:
  bool event(QEvent*) override { throw std::runtime_error("uma falha"); }
};

TEST(Desk, GuardsTheProgramAgainstAFaultInTheHandlingOfAnEvent) {
  DeskWorld world;
  auto& application = dynamic_cast<GuardedApplication&>(*QApplication::instance());
  Faulty faulty;
  QEvent event(QEvent::User);
  EXPECT_THROW(QApplication::sendEvent(&faulty, &event), std::runtime_error);
  application.guard = [&](const std::function<void()>& handling) { world.desk.Shown(handling); };
  QApplication::sendEvent(&faulty, &event);
  application.guard = nullptr;
  EXPECT_EQ(world.scripted.Texts(), std::vector<std::string>{"uma falha"});
}

TEST(Desk, CancelledWorkIsToldAndTheNextOneRuns) {
  DeskWorld world;
  WhenWorking([](WorkBox& box) {
    EXPECT_EQ(Find<QLabel>(box, "lblTitulo").text(), "A ler");
    EXPECT_EQ(Find<QLabel>(box, "lblRegisto").text(), "um registo");
    Press(box, "cmdCancelar");
    EXPECT_EQ(Find<QLabel>(box, "lblTitulo").text(), "A cancelar...");
    EXPECT_FALSE(Find(box, "cmdCancelar").isEnabled());
  });
  EXPECT_FALSE(world.desk.Try(StepOn));
  EXPECT_EQ(world.scripted.Texts(),
            std::vector<std::string>{"Operação cancelada: o que estava em curso foi desfeito."});
  world.scripted.Clear();
  EXPECT_TRUE(world.desk.Try([](const session::Context& context) {
    toolkit::ProgressScope scope(context.progress, "A ler", 1);
    scope.Step();
  }));
  EXPECT_TRUE(world.scripted.messages.empty());
}

TEST(Desk, EscapeCancelsTooAndWorkThatWasThroughKeepsItsResult) {
  DeskWorld world;
  WhenWorking([](WorkBox& box) {
    for (const auto key : {Qt::Key_Return, Qt::Key_Space, Qt::Key_Escape}) {
      QWidget* cursor = QApplication::focusWidget();
      EXPECT_TRUE(Find(box, "cmdCancelar").isEnabled());
      PressKey(cursor != nullptr ? *cursor : box, key);
    }
  });
  EXPECT_FALSE(world.desk.Try(StepOn));
  world.scripted.Clear();
  std::atomic<bool> cancelled = false;
  WhenWorking([&](WorkBox& box) {
    PressKey(box, Qt::Key_Escape);
    cancelled = true;
  });
  EXPECT_TRUE(world.desk.Try([&](const session::Context&) {
    while (!cancelled) std::this_thread::sleep_for(milliseconds(1));
  }));
  EXPECT_TRUE(world.scripted.messages.empty());
}

/// The longest time between two ticks of a timer while work sleeps behind its box.
qint64 LongestGap(Desk& desk) {
  QElapsedTimer since;
  qint64 longest = 0;
  QTimer ticks;
  QObject::connect(&ticks, &QTimer::timeout, [&] { longest = std::max(longest, since.restart()); });
  ticks.start(10);
  since.start();
  desk.Run([](const session::Context&) { std::this_thread::sleep_for(milliseconds(800)); });
  return std::max(longest, since.elapsed());
}

TEST(Desk, TheScreenStaysAliveWhileWorkGoesOn) {
  DeskWorld world;
  // The machine may be busy with others; never three times over.
  qint64 gap = LongestGap(world.desk);
  for (int again = 0; again < 2 && gap > 100; ++again) gap = LongestGap(world.desk);
  EXPECT_LE(gap, 100);
}

TEST(ScreenDialogs, AnswerTheThreadOfTheWork) {
  DeskWorld world;
  constexpr std::array<std::string_view, 3> kButtons{"&Um", "&Dois", "&Três"};
  WhenAsked([](QWidget& box) {
    EXPECT_EQ(box.objectName(), "frmMsgBox");
    EXPECT_EQ(Find<QLabel>(box, "lblTexto").text(), "Qual?");
    box.findChildren<QPushButton*>().at(1)->click();
  });
  EXPECT_EQ(world.onScreen.Run(
                [&](const session::Context& context) { return context.dialogs.Ask("Qual?", kButtons); }),
            1U);
  const auto confirm = [](const session::Context& context) {
    return context.dialogs.ConfirmDeletion("Título", "Eliminar?");
  };
  WhenAsked([](QWidget& box) {
    EXPECT_EQ(box.objectName(), "WEliminar");
    EXPECT_EQ(box.windowTitle(), "Título");
    Press(box, "cmdSim");
  });
  EXPECT_TRUE(world.onScreen.Run(confirm));
  WhenAsked([](QWidget& box) { PressKey(box, Qt::Key_Return); });  // no deletion by mistake
  EXPECT_FALSE(world.onScreen.Run(confirm));
}

TEST(ScreenDialogs, AskForALoginOnTheScreensThread) {
  DeskWorld world;
  const auto ask = [](const session::Context& context) {
    return context.dialogs.AskLogin("Outro utilizador", "sa").has_value();
  };
  EXPECT_FALSE(world.onScreen.Run(ask));
  const auto* screen = QThread::currentThread();
  world.screen.SetLoginBox([&](std::string_view, std::string_view login) {
    EXPECT_EQ(QThread::currentThread(), screen);
    return toolkit::Credentials{std::string(login), "segredo"};
  });
  EXPECT_TRUE(world.onScreen.Run(ask));
}

/// A window with the same field on two pages, and one that shows a column.
struct TwoPages {
  TwoPages() {
    auto* column = new QVBoxLayout(&window);
    column->addWidget(&tabs);
    for (QWidget* page : {&first, &second}) {
      auto* fields = new QVBoxLayout(page);
      fields->addWidget(NewBox("txtNome"));
      tabs.addTab(page, "Página");
    }
    auto* nif = NewBox("txtNumero");
    nif->setProperty(kColumnProperty, "CustomerTaxID");
    second.layout()->addWidget(nif);
    window.show();
    QApplication::setActiveWindow(&window);
  }
  static QLineEdit* NewBox(const char* name) {
    auto* box = new QLineEdit("texto");
    box->setObjectName(name);
    return box;
  }

  QDialog window;
  QTabWidget tabs;
  QWidget first;
  QWidget second;
};

TEST(FindField, TakesTheNearestOfThatNameOrColumn) {
  TwoPages pages;
  auto& number = Find(pages.second, "txtNumero");
  auto& firstName = Find(pages.first, "txtNome");
  auto& secondName = Find(pages.second, "txtNome");
  EXPECT_EQ(FindField(&number, "TXTNOME"), &secondName);
  EXPECT_EQ(FindField(&firstName, "customertaxid"), &number);
  EXPECT_EQ(FindField(&firstName, "txtNumero"), &number);
  EXPECT_EQ(FindField(&pages.window, "nada"), nullptr);
  EXPECT_EQ(FindField(&number, ""), nullptr);
  EXPECT_EQ(FindField(nullptr, "txtNome"), nullptr);
}

TEST(ScreenDialogs, PutTheCursorInAFieldAndTurnToItsPage) {
  DeskWorld world;
  TwoPages pages;
  Find(pages.first, "txtNome").setFocus();
  WhenAsked([](QWidget& box) { PressKey(box, Qt::Key_Return); });
  world.onScreen.Run([](const session::Context& context) {
    context.dialogs.Message(toolkit::Icon::Critical, "Falta o número");
    context.dialogs.Focus("CustomerTaxID");
  });
  auto& number = Find<QLineEdit>(pages.second, "txtNumero");
  EXPECT_EQ(pages.tabs.currentWidget(), &pages.second);
  EXPECT_EQ(pages.window.focusWidget(), &number);
  EXPECT_EQ(number.selectedText(), "texto");
}

TEST(MessageBox, KeysChooseItsButtons) {
  constexpr std::array<std::string_view, 3> kButtons{"&Sim", "&Não", "&Cancelar"};
  constexpr std::array<std::string_view, 3> kNames{"cmdSim", "cmdNao", "cmdCancelar"};
  const MessageBox::Content content{.name = "frmMsgBox",
                                    .icon = toolkit::Icon::Warning,
                                    .title = {},
                                    .text = "Duas\nlinhas <b>",
                                    .buttons = kButtons,
                                    .buttonNames = kNames,
                                    .first = 1};
  const std::pair<std::function<void(QWidget&)>, std::size_t> kRows[] = {
      {[](QWidget& box) { PressKey(box, Qt::Key_Escape); }, 2},
      {[](QWidget& box) { box.close(); }, 2},
      {[](QWidget& box) { PressKey(box, Qt::Key_Return); }, 1},
      {[](QWidget& box) { Press(box, "cmdSim"); }, 0}};
  for (const auto& [act, chosen] : kRows) {
    MessageBox box(content, nullptr);
    WhenAsked(act);
    EXPECT_EQ(box.Choose(), chosen);
  }
  MessageBox box(content, nullptr);
  PressKey(box, Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(QApplication::clipboard()->text(), "Duas\nlinhas <b>");
  EXPECT_EQ(box.windowTitle(), "Korvel");
}

TEST(MessageBox, ALongTextLeavesItsButtonsOnTheScreen) {
  constexpr std::array<std::string_view, 1> kOk{"&OK"};
  std::string text;
  for (int line = 0; line < 300; ++line) text += "Linha " + std::to_string(line) + "\n";
  for (const std::string_view shown : {std::string_view(text), std::string_view("Uma linha")}) {
    MessageBox box({.name = "frmMensagem", .title = {}, .text = shown, .buttons = kOk, .buttonNames = {}},
                   nullptr);
    WhenAsked([](QWidget& window) {
      auto& ok = *window.findChild<QPushButton*>();
      EXPECT_LT(ok.mapTo(&window, ok.rect().bottomRight()).y(), 700);
      EXPECT_LT(window.width(), 800);
      ok.click();
    });
    box.Choose();
    EXPECT_EQ(FromQt(Find<QLabel>(box, "lblTexto").text()), shown);
  }
}

periods::GridRow Row(int number) {
  return {.ticked = true, .cells = {std::to_string(number)}, .colour = 0};
}

RowFeed::Reader CountTo(int last, std::atomic<int>& read) {
  return [last, &read](const RowFeed::Sink& sink) {
    while (read < last) {
      sink(Row(read));
      ++read;
    }
  };
}

TEST(RowFeed, HandsAllRowsOverInTheirOrder) {
  std::atomic<int> read = 0;
  RowFeed feed(CountTo(5050, read));
  std::vector<std::string> taken;
  while (!feed.AtEnd()) {
    for (const auto& row : feed.Take(100)) taken.push_back(row.cells.front());
  }
  ASSERT_EQ(taken.size(), 5050U);
  for (std::size_t i = 0; i < taken.size(); ++i) EXPECT_EQ(taken[i], std::to_string(i));
  EXPECT_TRUE(feed.Take(100).empty());
}

TEST(RowFeed, ReadsNotFarAheadButAsFarAsAskedFor) {
  std::atomic<int> read = 0;
  RowFeed feed(CountTo(1000000, read));
  EXPECT_EQ(feed.Take(10).size(), 10U);
  std::this_thread::sleep_for(milliseconds(50));
  EXPECT_LE(read, 2100);
  EXPECT_EQ(feed.Take(9000).size(), 9000U);
  EXPECT_FALSE(feed.AtEnd());
}

TEST(RowFeed, StopsItsReaderInTheMiddle) {
  std::atomic<int> read = 0;
  std::atomic<bool> unwound = false;
  const auto reader = [&](const RowFeed::Sink& sink) {
    const auto mark = std::shared_ptr<void>(nullptr, [&](void*) { unwound = true; });
    CountTo(1000000, read)(sink);
  };
  {
    RowFeed feed(reader);
    feed.Take(10);
  }
  EXPECT_TRUE(unwound);
  EXPECT_LT(read, 1000000);
}

TEST(ProgressText, LeavesOutWhatIsNotKnown) {
  const auto begun = std::chrono::steady_clock::time_point(std::chrono::hours(1));
  const struct {
    std::int64_t done, total;
    milliseconds passed;
    const char* text;
  } kRows[] = {
      {0, 0, milliseconds(5000), ""},
      {0, 12345, milliseconds(5000), "12 345"},
      {500, 0, milliseconds(500), "500"},
      {500, 1000000, milliseconds(500), "500 de 1 000 000"},
      {5000, 0, milliseconds(2000), "5 000  -  2 500 por segundo"},
      {5000, 10000, milliseconds(2000), "5 000 de 10 000  -  2 500 por segundo  -  faltam 3 s"},
      {1000, 121000, milliseconds(1000), "1 000 de 121 000  -  1 000 por segundo  -  faltam 2 min 01 s"},
      {10000, 10000, milliseconds(4000), "10 000 de 10 000  -  2 500 por segundo"}};
  for (const auto& row : kRows) {
    const WorkProgress::State state{"A ler", "", row.done, row.total, begun};
    EXPECT_EQ(ProgressText(state, begun + row.passed), row.text);
  }
}

}  // namespace
}  // namespace korvel::desktop
