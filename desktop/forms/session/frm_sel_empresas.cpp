#include "forms/session/frm_sel_empresas.h"

#include <fmt/format.h>

#include <array>

#include "databases/version.h"
#include "forms/common/field_grid.h"
#include "forms/session/frm_cria_empresa.h"
#include "forms/session/menus.h"
#include "gateways/text.h"
#include "security/base_rights.h"

namespace korvel::desktop {

using session::CompanySelection;

/// An entry of the menus: a task of the core on the chosen company, a window or a step of its own, or, with neither, one
/// whose window comes later.
struct frmSelEmpresas::Entry {
  std::string_view menu;
  std::string_view name;
  std::string_view caption;
  Task task = nullptr;
  void (frmSelEmpresas::*step)() = nullptr;
};

namespace {

QLabel* Label(const char* name) {
  auto* label = new QLabel;
  label->setObjectName(name);
  label->setTextFormat(Qt::PlainText);
  return label;
}

QMenu* Menu(QWidget& bar, std::string_view name, std::string_view caption) {
  auto* menu = new QMenu(ToQt(caption), &bar);
  menu->setObjectName(ToQt(name));
  menu->menuAction()->setObjectName(ToQt(name));
  return menu;
}

const char* EmptyText(bool mayCreate) {
  return mayCreate ? "Ainda não há empresas: crie a primeira no menu Empresas."
                   : "Não tem acesso a nenhuma empresa.";
}

/// What the marks of a company's line mean, in words.
std::string StateText(const session::CompanyLine& company) {
  std::string text;
  const auto add = [&](bool set, std::string_view words) {
    if (set) text += (text.empty() ? "" : ", ") + std::string(words);
  };
  add(company.main, "empresa principal");
  add(company.independent, "acessos independentes");
  add(company.readOnly, "só de consulta");
  add(company.version.empty(), "não abre");
  return text;
}

}  // namespace

frmSelEmpresas::frmSelEmpresas(Desk& desk, CompanySelection& selection, QWidget* parent)
    : Form(desk, "frmSelEmpresas", parent),
      selection_(selection),
      lvwEmpresas_(new CompanyGrid(desk, "frmSelEmpresas", this)),
      bar_(new QMenuBar(this)),
      lblCodEmpresa_(Label("lblCodEmpresa")),
      lblInfo1_(Label("lblInfo1")),
      lblMsg_(Label("lblMsg")),
      lblVersao_(Label("lblVersao")) {
  SetCaption("Korvel - Selecção de Empresas");
  resize(820, 480);
  auto* column = FormColumn(this);
  column->setMenuBar(bar_);
  column->addWidget(lvwEmpresas_, 1);
  column->addLayout(Foot());
  column->addLayout(
      ButtonRow({PlainButton("cmdProcurar", "&Procurar", [this] { lvwEmpresas_->View().ShowFind(); }),
                 PlainButton("cmdSelecionar", "&Seleccionar", [this] { Selecionar(); }),
                 PlainButton("cmdCancelar", "&Cancelar", [this] { reject(); })}));
  BuildMenus();
  lvwEmpresas_->onActivate = [this] { Selecionar(); };
  connect(lvwEmpresas_->View().selectionModel(), &QItemSelectionModel::currentRowChanged, this,
          [this] { ShowCompany(); });
}

QLayout* frmSelEmpresas::Foot() {
  // No component looks for newer versions: the label shows the program's own.
  lblVersao_->setText(ToQt(fmt::format("Versão Actual [{}]", databases::ProgramVersion())));
  auto* row = new QHBoxLayout;
  row->setSpacing(kMargin);
  for (QLabel* label : {lblCodEmpresa_, lblInfo1_, lblMsg_}) row->addWidget(label);
  row->addStretch();
  row->addWidget(lblVersao_);
  return row;
}

void frmSelEmpresas::BuildMenus() {
  using Self = frmSelEmpresas;
  using Core = CompanySelection;
  static constexpr std::string_view kCompanies = "mnuEmpresas";
  static constexpr std::string_view kTools = "mnuUtilitarios";
  static constexpr std::string_view kBackups = "mnuBackup";
  static constexpr Entry kEntries[] = {
      {kCompanies, "criar", "Criar Empresa", nullptr, &Self::CreateCompany},
      {kCompanies, "eli", "Eliminar Empresa", &Core::EliminarEmpresa},
      {kCompanies, "alterar", "Editar Empresa", nullptr, &Self::EditCompany},
      {kTools, "utiliz", "Manutenção de Utilizadores"},
      {kTools, "veremp", "Verificação da Empresa", &Core::VerificarEmpresa},
      {kBackups, "segdb", "Segurar Dados da Empresa"},
      {kBackups, "repdb", "Repor Dados da Empresa"},
      {kTools, "mnutransfemp", "Transferências de Empresas"},
      {kTools, "mnubloq", "Bloquear/Desbloquear Empresa", &Core::BloquearEmpresa},
      {kTools, "mnuImportOfi", "Importar Imagens Oficiais"},
      {kTools, "mnuCriaAcc", "Criação de Acessos Base", nullptr, &Self::CreateRights},
      {kTools, "mnuEliacessos", "Eliminação de Acessos Base", nullptr, &Self::DeleteRights},
      {kTools, "mnuRepoeSitInicial", "Repor Situação Inicial"},
      {kTools, "mnuacttodas", "ACTUALIZAR TODAS AS EMPRESAS", &Core::ActualizarEmpresas},
  };
  QMenu* companies = Menu(*bar_, kCompanies, "&Empresas");
  QMenu* tools = Menu(*bar_, kTools, "&Utilitários");
  QMenu* backups = Menu(*tools, kBackups, "Backups");
  for (const Entry& entry : kEntries) {
    // The submenu stands where its first entry does.
    if (entry.menu == kBackups && backups->isEmpty()) tools->addMenu(backups);
    AddEntry(*(entry.menu == kCompanies ? companies : entry.menu == kTools ? tools : backups), entry);
  }
  for (QMenu* menu : {companies, tools, backups}) GiveAccessKeys(*menu);
  bar_->addMenu(companies);
  bar_->addMenu(tools);
}

void frmSelEmpresas::AddEntry(QMenu& menu, const Entry& entry) {
  QAction* action = menu.addAction(ToQt(entry.caption), this, [this, entry] {
    if (desk_.IsBusy()) return;
    if (entry.task != nullptr) return RunTask(entry.task);
    if (entry.step != nullptr) return (this->*entry.step)();
    SayNoWindowYet(desk_);
  });
  action->setObjectName(ToQt(entry.name));
}

bool frmSelEmpresas::Load() {
  const auto loaded = desk_.Try([this](const session::Context& context) { return selection_.Load(context); });
  ShowSelection();
  if (selection_.Selected() == nullptr && !selection_.Companies().empty()) lvwEmpresas_->SelectRow(0);
  return loaded.value_or(false);
}

void frmSelEmpresas::ShowSelection() {
  SetCaption(selection_.Caption());
  const session::CompanyLine* selected = selection_.Selected();
  lvwEmpresas_->ShowCompanies(selection_.Companies(), selected == nullptr ? std::string() : selected->code);
  for (QAction* menu : bar_->actions()) menu->setEnabled(selection_.HasAdminMenus());
  lblMsg_->setText(selection_.Companies().empty() ? EmptyText(selection_.HasAdminMenus()) : "");
  ShowCompany();
}

void frmSelEmpresas::ShowCompany() {
  const std::string code = lvwEmpresas_->CurrentCode();
  lblCodEmpresa_->setText(ToQt(code));
  lblInfo1_->clear();
  for (const auto& company : selection_.Companies()) {
    if (company.code == code) lblInfo1_->setText(ToQt(StateText(company)));
  }
}

bool frmSelEmpresas::Choose() {
  const std::string code = lvwEmpresas_->CurrentCode();
  if (!code.empty()) return selection_.Select(code);
  selection_.SelectLine(std::nullopt);
  return false;
}

void frmSelEmpresas::RunTask(Task task) {
  Choose();
  desk_.Try([&](const session::Context& context) { return (selection_.*task)(context); });
  ShowSelection();
}

void frmSelEmpresas::Selecionar() {
  if (!Choose()) return;
  const auto entered =
      desk_.Try([this](const session::Context& context) { return selection_.Selecionar(context); });
  ShowSelection();  // an upgrade on the way has listed the companies anew
  if (!entered.value_or(false)) return;
  hide();
  if (onEnter) onEnter();
}

void frmSelEmpresas::CreateCompany() {
  frmCriaEmpresa form(desk_, {}, this);
  if (form.Ask()) Reload();
}

void frmSelEmpresas::EditCompany() {
  if (!Choose()) return;
  frmCriaEmpresa form(desk_, selection_.Selected()->code, this);
  if (form.Ask()) Reload();
}

void frmSelEmpresas::CreateRights() {
  desk_.Try([](const session::Context& context) { return security::CriaAcessosBase(context); });
}

void frmSelEmpresas::DeleteRights() {
  desk_.Try([](const session::Context& context) { return security::EliminaAcessos(context); });
}

void frmSelEmpresas::Reload() {
  RunTask(&CompanySelection::LoadEmpresas);
}

}  // namespace korvel::desktop
