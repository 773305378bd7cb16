#include "forms/periods/frm_tab_header_ins.h"

#include <QGroupBox>
#include <algorithm>
#include <span>

#include "forms/common/leaving.h"
#include "gateways/screen_dialogs.h"
#include "gateways/text.h"
#include "widgets/edatas.h"

namespace korvel::desktop {

using periods::HeaderField;
using periods::HeaderMode;

namespace {

/// Characters that a box shows at least.
constexpr int kFewest = 12, kMost = 20;

/// A place in a group; two pairs wide where the field is to have a row of its own.
struct Place {
  std::string_view column;
  int span = 1;
};

constexpr Place kPeriod[] = {{"FiscalYear"}, {"TaxAccountingBasis"}, {"StartDate"}, {"EndDate"}};
constexpr Place kCompany[] = {
    {"CompanyID"}, {"TaxRegistrationNumber"}, {"CompanyName", 2}, {"BusinessName", 2},
    {"TaxEntity"}, {"CurrencyCode"},          {"Cliente", 2}};
constexpr Place kAddress[] = {{"AddressDetail", 2}, {"StreetName", 2}, {"BuildingNumber"}, {"City"},
                              {"PostalCode"},       {"Region"},        {"Country"}};
constexpr Place kContacts[] = {{"Telephone"}, {"Fax"}, {"Email"}, {"WebSite"}};
constexpr Place kFile[] = {{"AuditFileVersion"}, {"DateCreated"},         {"ProductID"},
                           {"ProductVersion"},   {"ProductCompanyTaxId"}, {"SoftwareCertificateNumber"},
                           {"HeaderComment", 2}};

}  // namespace

/// What belongs together on the form; `column` 0 is on the left, 1 on the right, 2 below both.
struct frmTabHeaderIns::Group {
  int column;
  const char* title;
  std::span<const Place> places;
};

frmTabHeaderIns::frmTabHeaderIns(Desk& desk, HeaderMode mode, std::int64_t numRegisto, QWidget* parent)
    : Form(desk, "frmTabHeaderIns", parent), mode_(mode) {
  SetCaption(periods::EntryCaption(mode));
  header_.numRegisto = numRegisto;
  auto* column = FormColumn(this);
  auto* sides = new QHBoxLayout;
  sides->setSpacing(kSpacing);
  column->addLayout(sides);
  sides->addLayout(MakeGroups(0), 1);
  sides->addLayout(MakeGroups(1), 1);
  column->addLayout(MakeGroups(2));
  column->addStretch();
  cmdGravar_ = PlainButton("cmdGravar", "&Gravar", [this] { Gravar(); });
  cmdCancelar_ = PlainButton("cmdCancelar", "&Cancelar", [this] { reject(); });
  column->addLayout(ButtonRow({cmdGravar_, cmdCancelar_}));
  ListenToFields();
}

QLayout* frmTabHeaderIns::MakeGroups(int column) {
  static constexpr Group kGroups[] = {{0, "Período", kPeriod},
                                      {0, "Empresa", kCompany},
                                      {1, "Morada", kAddress},
                                      {1, "Contactos", kContacts},
                                      {2, "Ficheiro", kFile}};
  auto* groups = new QVBoxLayout;
  for (const Group& group : kGroups) {
    if (group.column == column) groups->addWidget(MakeGroup(group));
  }
  if (column < 2) groups->addStretch();
  return groups;
}

QWidget* frmTabHeaderIns::MakeGroup(const Group& group) {
  auto* box = new QGroupBox(group.title, this);
  FieldGrid fields(2);
  for (const Place& place : group.places) {
    const auto known = periods::HeaderFields();
    const auto field = std::ranges::find(known, place.column, &HeaderField::column);
    Q_ASSERT(field != known.end());
    AddField(fields, *field, place.span);
  }
  box->setLayout(fields.Layout());
  return box;
}

void frmTabHeaderIns::AddField(FieldGrid& fields, const HeaderField& field, int span) {
  fields_.push_back(Bind(field));
  QWidget* widget = fields_.back().widget;
  QLabel* caption = fields.Add(field.label, widget, span);
  if (widget == txtCliente_) lblClienteCaption_ = caption;
  // The box inside a code box is what takes the cursor.
  QWidget* entry = widget->focusProxy() != nullptr ? widget->focusProxy() : widget;
  entry->setProperty(kColumnProperty, ToQt(field.column));
  entry->setToolTip(ToQt(field.tip));
}

frmTabHeaderIns::Binding frmTabHeaderIns::Bind(const HeaderField& field) {
  if (field.column == "TaxAccountingBasis") return BindKind(field);
  if (field.column == "Cliente") return BindCustomer(field);
  if (field.column == "StartDate" || field.column == "EndDate") return BindDate(field);
  return BindText(field);
}

frmTabHeaderIns::Binding frmTabHeaderIns::BindText(const HeaderField& field) {
  const int width = periods::HeaderWidth(field.column);
  QLineEdit* box = TextBox(field.control, width);
  MakeRoom(box, std::clamp(width, kFewest, kMost));
  const auto write = [box](const std::string& text) {
    box->setText(ToQt(text));
    box->setCursorPosition(0);
  };
  return {field.column, box, [box] { return FromQt(box->text()); }, write};
}

frmTabHeaderIns::Binding frmTabHeaderIns::BindDate(const HeaderField& field) {
  auto* date = new Edatas(desk_, field.control);
  MakeRoom(date, kFewest);
  return {field.column, date, [date] { return date->ConteudoAMD(); },
          [date](const std::string& text) { date->SetConteudoAMD(text); }};
}

frmTabHeaderIns::Binding frmTabHeaderIns::BindKind(const HeaderField& field) {
  auto* kinds = eselHeader_TaxAccountingBasis_ = new SelOpta(field.control);
  kinds->SetLista(periods::kBasisList);
  return {field.column, kinds, [kinds] { return kinds->Chave(); },
          [kinds](const std::string& key) { kinds->SetChave(key); }};
}

frmTabHeaderIns::Binding frmTabHeaderIns::BindCustomer(const HeaderField& field) {
  const CodeBoxNames names{.box = field.control, .button = "cmdCliente", .label = "lblCliente"};
  auto* customer = txtCliente_ = new CodeBox(desk_, names, periods::Clientes_Brevant());
  customer->Box()->setMaxLength(periods::HeaderWidth(field.column));
  return {field.column, customer, [customer] { return customer->Codigo(); },
          [customer](const std::string& code) { customer->SetCodigo(code); }};
}

frmTabHeaderIns::Binding& frmTabHeaderIns::Of(std::string_view column) {
  const auto found = std::ranges::find(fields_, column, &Binding::column);
  Q_ASSERT(found != fields_.end());
  return *found;
}

void frmTabHeaderIns::ListenToFields() {
  OnLeaving(Of("FiscalYear").widget, [this] { LeaveYear(); });
  OnLeaving(Of("TaxRegistrationNumber").widget, [this] { LeaveTaxNumber(); });
  eselHeader_TaxAccountingBasis_->onChange = [this] { ChangeKind(); };
}

bool frmTabHeaderIns::Load() {
  const auto opened = desk_.Try([&](const session::Context& context) {
    return periods::OpenHeader(context, mode_, header_.numRegisto);
  });
  if (!opened || !*opened) return false;
  header_ = (*opened)->header;
  Show();
  cmdGravar_->setEnabled((*opened)->canSave);
  if (mode_ == HeaderMode::View) Lock();
  return true;
}

void frmTabHeaderIns::Show() {
  showing_ = true;
  for (const Binding& field : fields_) {
    // Without a customer its table is not asked for a name.
    if (field.widget != txtCliente_ || !header_[field.column].empty()) field.write(header_[field.column]);
  }
  showing_ = false;
  ShowCustomer();
  for (const std::string_view column : {"FiscalYear", "StartDate", "EndDate"}) {
    Of(column).widget->setEnabled(mode_ == HeaderMode::New);
  }
}

void frmTabHeaderIns::ShowCustomer() {
  const bool shown = periods::ShowsCustomer(header_);
  txtCliente_->setVisible(shown);
  lblClienteCaption_->setVisible(shown);
}

void frmTabHeaderIns::Lock() {
  for (auto* box : findChildren<QLineEdit*>()) box->setReadOnly(true);
  eselHeader_TaxAccountingBasis_->SetLocked(true);
  txtCliente_->setEnabled(false);
  cmdGravar_->hide();
  cmdCancelar_->setFocus();
}

periods::PeriodHeader frmTabHeaderIns::Collect() {
  periods::PeriodHeader header;
  header.numRegisto = header_.numRegisto;
  for (const Binding& field : fields_) header[field.column] = field.read();
  return header;
}

void frmTabHeaderIns::LeaveYear() {
  if (mode_ != HeaderMode::New) return;
  header_ = Collect();
  periods::LeaveFiscalYear(desk_.Clock(), header_);
  for (const std::string_view column : {"FiscalYear", "StartDate", "EndDate"}) {
    Of(column).write(header_[column]);
  }
}

void frmTabHeaderIns::LeaveTaxNumber() {
  if (mode_ == HeaderMode::View || cmdCancelar_->hasFocus()) return;
  periods::LeaveTaxRegistrationNumber(desk_.Dialogs(), Collect());
}

void frmTabHeaderIns::ChangeKind() {
  if (showing_) return;
  header_ = Collect();
  periods::ChangeKind(header_, header_["TaxAccountingBasis"]);
  Of("TaxEntity").write(header_["TaxEntity"]);
  ShowCustomer();
}

void frmTabHeaderIns::Gravar() {
  header_ = Collect();
  const bool wasThere = header_.numRegisto != 0;
  const bool saved = desk_
                         .Try([&](const session::Context& context) {
                           return periods::GravarHeader(context, mode_, header_);
                         })
                         .value_or(false);
  const bool gone = wasThere && header_.numRegisto == 0;
  if (saved) {
    accept();
  } else if (gone) {
    reject();
  }
}

}  // namespace korvel::desktop
