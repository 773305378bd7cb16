#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QLabel>
#include <QMainWindow>
#include <QPixmap>
#include <deque>
#include <iostream>

#include "automation/wizard.h"
#include "desktop/desktop_world.h"
#include "forms/automation/frm_wizard.h"
#include "forms/periods/frm_filtros_brevant.h"
#include "forms/periods/frm_filtros_lunder.h"
#include "forms/periods/frm_tab_header_ins.h"
#include "forms/session/frm_cria_empresa.h"
#include "forms/session/frm_login.h"
#include "forms/session/frm_sel_empresas.h"
#include "gateways/message_box.h"
#include "gateways/text.h"
#include "gateways/work_box.h"
#include "session/entry/login.h"
#include "shell/form_table.h"
#include "shell/looks.h"
#include "shell/wmenu.h"

/// A picture of every window: korvel_pictures <folder> <light or dark>. The scale comes with QT_SCALE_FACTOR. What is
/// cut or larger than the smallest screen is told on the output, and gives the exit status 1.
namespace korvel::desktop {
namespace {

constexpr QSize kScreen(1366, 768);
constexpr int kTaskBar = 40;
/// Buttons that fill a form with what is staged, once a period is chosen.
constexpr const char* kShowRows = "cmdVerRegistos";
/// Shown as the user's folder, whoever takes the pictures.
constexpr const char* kHome = "/home/ana";
constexpr const char* kYear = "2025";

/// A window apart from the table of forms.
struct Window {
  const char* name;
  std::function<QWidget*(DesktopWorld& world)> make;
};

template <typename Made, typename... Arguments>
Made* Loaded(Arguments&&... arguments) {
  auto* form = new Made(std::forward<Arguments>(arguments)...);
  if (!form->Load()) throw std::runtime_error(FromQt(form->objectName()) + " was not opened");
  return form;
}

void Settle() {
  for (int i = 0; i < 5; ++i) QApplication::processEvents(QEventLoop::AllEvents, 20);
}

/// As a user fills a form with what is there: a period is chosen, rows are asked for.
void Fill(QWidget& form, std::deque<std::size_t>& answers) {
  if (auto* periods = form.findChild<QComboBox*>("eselFiscalYear");
      periods != nullptr && periods->count() > 0)
    periods->setCurrentIndex(periods->count() - 1);
  Settle();
  auto* show = form.findChild<QAbstractButton*>(kShowRows);
  if (show == nullptr) return;
  answers = {0};  // shown they shall be, however many
  show->click();
}

QWidget* MakeSelection(DesktopWorld& world) {
  static session::CompanySelection selection;
  return Loaded<frmSelEmpresas>(world.desk, selection);
}

QWidget* MakeMainWindow(DesktopWorld& world) {
  auto* menu = new WMenu(world.desk);
  menu->Load();
  menu->show();
  for (const char* entry : {"mnuTabHeader", "mnuCustomerPOC"}) menu->findChild<QAction*>(entry)->trigger();
  menu->resize(kScreen.width(), kScreen.height() - kTaskBar);
  Fill(*menu, world.server.dialogs.answers);
  return menu;
}

QWidget* MakeHeader(DesktopWorld& world) {
  const auto latest = std::stoll(world.server.One("Korvel0001", "Select max(NumRegisto) from TabHeader"));
  return Loaded<frmTabHeaderIns>(world.desk, periods::HeaderMode::Change, latest);
}

/// After a run, with what one of its steps staged.
QWidget* MakeWizard(DesktopWorld& world) {
  auto* wizard = Loaded<frmWizard>(world.desk);
  wizard->show();
  Type(*wizard, "txtAno", kYear);
  Find<SelOpta>(*wizard, "eselMes").SetChave("365");
  Find<SelOpta>(*wizard, "eselTaxAccountingBasis").SetChave("I");
  Type(*wizard, "txtPastaExportacao", world.server.folder.Path().string());
  world.server.dialogs.answers = {0, 0, 0};
  Press(*wizard, "cmdGravar");
  Type(*wizard, "txtPastaExportacao", kHome);
  Find<GridView>(*wizard, "lvwTabelas").SelectRow(1);
  return wizard;
}

QWidget* MakeBox(toolkit::Icon icon) {
  static constexpr std::array<std::string_view, 2> kButtons{"&Sim", "&Não"};
  return new MessageBox(
      {.name = "frmMsgBox",
       .icon = icon,
       .title = {},
       .text = "Confirma a Alteração?\nOs dados anteriores deste período serão substituídos.",
       .buttons = kButtons,
       .buttonNames = {}},
      nullptr);
}

QWidget* MakeWorkBox(DesktopWorld&) {
  static WorkProgress progress;
  progress.Begin("A ler os documentos...", 100000);
  progress.Show(23456, "FT A/1234");
  return new WorkBox(progress, nullptr);
}

const std::vector<Window>& OtherWindows() {
  static const std::vector<Window> windows{
      {"frmLogin", [](DesktopWorld& world) { return Loaded<frmLogin>(world.desk); }},
      {"frmSelEmpresas", MakeSelection},
      {"frmCriaEmpresa", [](DesktopWorld& world) { return Loaded<frmCriaEmpresa>(world.desk, "0001"); }},
      {"WMenu", MakeMainWindow},
      {"frmTabHeaderIns", MakeHeader},
      {"frmWizard-corrido", MakeWizard},
      {"frmFiltrosLunder", [](DesktopWorld& world) { return Loaded<frmFiltrosLunder>(world.desk); }},
      {"frmFiltrosBrevant", [](DesktopWorld& world) { return Loaded<frmFiltrosBrevant>(world.desk); }},
      {"frmMsgBox", [](DesktopWorld&) { return MakeBox(toolkit::Icon::None); }},
      {"WEliminar", [](DesktopWorld&) { return MakeBox(toolkit::Icon::Warning); }},
      {"PRG_Progress", MakeWorkBox},
  };
  return windows;
}

/// A text that does not break has to have its room; how much is missing, or nothing.
bool IsCut(const QWidget& widget) {
  const auto* label = qobject_cast<const QLabel*>(&widget);
  const bool hasText = label ? !label->wordWrap() && !label->text().isEmpty()
                             : qobject_cast<const QAbstractButton*>(&widget) != nullptr &&
                                   !widget.property("text").toString().isEmpty();
  if (!hasText || !widget.isVisible()) return false;
  const QSize needed = label ? widget.minimumSizeHint() : widget.sizeHint();
  return widget.width() < needed.width() || widget.height() < needed.height() ||
         widget.visibleRegion().boundingRect() != widget.rect();
}

class Pictures {
 public:
  Pictures(QString folder) : folder_(std::move(folder)) { QDir().mkpath(folder_); }

  void Take(QWidget& window, const QString& name) {
    window.show();
    Settle();
    Look(window, name);
    const QString file = folder_ + "/" + name + ".png";
    if (!window.grab().save(file)) throw std::runtime_error("cannot write " + FromQt(file));
  }
  bool FoundFaults() const { return faults_ > 0; }

 private:
  void Look(QWidget& window, const QString& name) {
    if (window.width() > kScreen.width() || window.height() > kScreen.height() - kTaskBar)
      Tell(name, "is larger than the screen");
    if (qobject_cast<QMainWindow*>(&window) != nullptr) return;  // its forms lie over one another
    for (const QWidget* widget : window.findChildren<QWidget*>()) {
      if (IsCut(*widget)) Tell(name, "cuts " + FromQt(widget->objectName()) + " \"" + TextOf(*widget) + "\"");
    }
  }
  static std::string TextOf(const QWidget& widget) { return FromQt(widget.property("text").toString()); }
  void Tell(const QString& name, const std::string& fault) {
    ++faults_;
    std::cout << FromQt(name) << ' ' << fault << '\n';
  }

  QString folder_;
  int faults_ = 0;
};

void TakeForms(Pictures& pictures, DesktopWorld& world, bool full) {
  for (const std::string_view name : FormNames()) {
    const std::unique_ptr<Form> form(MakeForm(world.desk, name, nullptr));
    if (!form->Load()) throw std::runtime_error(std::string(name) + ": " + world.server.dialogs.LastText());
    form->show();
    if (full) Fill(*form, world.server.dialogs.answers);
    pictures.Take(*form, ToQt(name) + (full ? "-cheio" : "-vazio"));
  }
}

struct Period {
  const char* year;
  const char* first;
  const char* last;
  periods::Basis basis;
};
/// The last that each review form offers: a period with billing has the customers from there.
constexpr Period kPeriods[] = {{"2024", "2024-04-01", "2024-06-30", periods::Basis::Accounting},
                               {kYear, "2025-01-01", "2025-12-31", periods::Basis::Integrated}};

void Stage(DesktopWorld& world, const Period& period) {
  automation::WizardInput input{.txtAno = period.year,
                                .edatStartDate = period.first,
                                .edatEndDate = period.last,
                                .eselTaxAccountingBasis = period.basis,
                                .txtPastaExportacao = world.server.folder.Path().string(),
                                .automatico = true,
                                .contas = {}};
  const auto result = automation::Assistente(world.desk.Context(), input);
  if (!result.ok) throw std::runtime_error(std::string(period.year) + " was not staged: " + result.error);
}

int TakeAll(const QString& folder) {
  Pictures pictures(folder);
  DesktopWorld world;
  world.MakeCompany();
  session::Login(world.desk.Context(), {.server = world.server.Name(), .login = "sa"});
  session::LoadMainWindow(world.desk.Context());
  TakeForms(pictures, world, false);
  for (const Period& period : kPeriods) Stage(world, period);
  TakeForms(pictures, world, true);
  for (const Window& window : OtherWindows()) {
    const std::unique_ptr<QWidget> made(window.make(world));
    pictures.Take(*made, window.name);
  }
  for (const auto& text : world.server.dialogs.Texts()) std::cout << "box: " << text << '\n';
  return pictures.FoundFaults() ? 1 : 0;
}

}  // namespace
}  // namespace korvel::desktop

int main(int argc, char** argv) {
  using namespace korvel::desktop;
  qputenv("HOME", kHome);
  QApplication application(argc, argv);
  if (argc != 3) {
    std::cerr << "korvel_pictures <folder> <light|dark>\n";
    return 2;
  }
  ApplyLooks(application, std::string_view(argv[2]) == "dark" ? Theme::Dark : Theme::Light);
  try {
    return TakeAll(QString::fromLocal8Bit(argv[1]));
  } catch (const std::exception& failure) {
    std::cerr << failure.what() << '\n';
    return 2;
  }
}
