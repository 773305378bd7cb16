#include "forms/periods/frm_tab_header.h"

#include <QLineEdit>
#include <array>
#include <utility>

#include "forms/common/field_grid.h"
#include "forms/periods/frm_tab_header_ins.h"
#include "gateways/text.h"
#include "periods/company_connection.h"

namespace korvel::desktop {

using periods::HeaderMode;
using periods::PeriodListItem;
using periods::PeriodSearch;

namespace {

/// In twips, of the columns of HeaderListColumns().
constexpr std::array<int, 9> kWidths{800, 1400, 1400, 4000, 2300, 1200, 1500, 1500, 2300};
constexpr std::size_t kNumRegisto = 0;
constexpr int kFormWidth = 1120, kFormHeight = 520;
constexpr int kNameCharacters = 36;  // shown of a company's name

std::vector<toolkit::GridColumn> Columns() {
  std::vector<toolkit::GridColumn> columns(1);  // the key of the row, unseen
  for (std::size_t i = 0; i < kWidths.size(); ++i) {
    const periods::HeaderListColumn& shown = periods::HeaderListColumns()[i];
    toolkit::GridColumn& column = columns.emplace_back();
    column.heading = shown.heading;
    column.width = kWidths[i];
    if (shown.field == "datasys") column.kind = toolkit::ColumnKind::Date;
  }
  return columns;
}

periods::GridRow RowOf(const PeriodListItem& item) {
  return {.cells = {std::to_string(item.numRegisto), item.period.fiscalYear, item.period.startDate,
                    item.period.endDate, item.companyName, item.basis, item.auditFileVersion, item.utilizador,
                    item.dataSys, item.cliente}};
}

}  // namespace

frmTabHeader::frmTabHeader(Desk& desk, QWidget* parent)
    : Form(desk, "frmTabHeader", parent),
      lvwTabela_(new GridPanel(desk, "frmTabHeader", "lvwTabela", Columns(), false, this)) {
  auto* column = FormColumn(this);
  column->addWidget(lvwTabela_, 1);
  column->addLayout(MakeButtons());
  lvwTabela_->onActivate = [this] { cmdAlterar_->click(); };
  resize(kFormWidth, kFormHeight);
}

QLayout* frmTabHeader::MakeButtons() {
  const auto entry = [this](HeaderMode mode) { return [this, mode] { OpenEntry(mode); }; };
  auto* cmdAdicionar = CatalogueButton("cmdAdicionar", entry(HeaderMode::New), Writes::Yes);
  cmdAlterar_ = CatalogueButton("cmdAlterar", entry(HeaderMode::Change), Writes::Yes);
  auto* cmdVer = CatalogueButton("cmdVer", entry(HeaderMode::View));
  auto* cmdEliminar = CatalogueButton(
      "cmdEliminar", [this] { Eliminar(); }, Writes::Yes);
  auto* cmdPesquisar = CatalogueButton("cmdPesquisar", [this] { Pesquisar(); });
  auto* cmdRefresh = CatalogueButton("cmdRefresh", [this] { Read({}); });
  auto* cmdFechar = CatalogueButton("cmdFechar", [this] { reject(); });
  return ButtonRow({cmdAdicionar, cmdAlterar_, cmdVer, cmdEliminar, cmdPesquisar, cmdRefresh, cmdFechar});
}

bool frmTabHeader::Load() {
  return Read({});
}

/// The list stays as it was when it cannot be read, which is shown.
bool frmTabHeader::Read(const PeriodSearch& search) {
  using Items = std::vector<PeriodListItem>;
  const auto read = desk_.Try([&](const session::Context& context) -> std::optional<Items> {
    const auto company = periods::OpenCompany(context);
    if (!company) return std::nullopt;
    return periods::SearchPeriods(context, *company, search);
  });
  if (!read || !*read) return false;
  periods::Grid rows;
  items_.clear();
  for (const PeriodListItem& item : **read) {
    rows.push_back(RowOf(item));
    items_.emplace(rows.back().cells[kNumRegisto], item);
  }
  lvwTabela_->Model().SetRows(std::move(rows));
  if (!items_.empty()) lvwTabela_->SelectRow(0);
  search_ = search;
  SetCaptionDetail(search.IsEmpty() ? "" : "Pesquisa");
  return true;
}

void frmTabHeader::OpenEntry(HeaderMode mode) {
  std::int64_t numRegisto = 0;
  if (mode != HeaderMode::New) {
    const auto row = lvwTabela_->CurrentRow();
    if (!row) {
      lvwTabela_->View().setFocus();
      return;
    }
    numRegisto = items_.at(lvwTabela_->Model().Cell(*row, kNumRegisto)).numRegisto;
  }
  frmTabHeaderIns form(desk_, mode, numRegisto, this);
  if (form.Ask()) ShowSaved(form.NumRegisto());
  lvwTabela_->View().setFocus();
}

/// Adds or refreshes one row, whatever the list was narrowed to.
void frmTabHeader::ShowSaved(std::int64_t numRegisto) {
  const auto read = desk_.Try([&](const session::Context& context) -> std::optional<PeriodListItem> {
    const auto company = periods::OpenCompany(context);
    if (!company) return std::nullopt;
    return periods::FindPeriod(context, *company, numRegisto);
  });
  if (!read || !*read) return;
  const periods::GridRow row = RowOf(**read);
  const std::string& key = row.cells[kNumRegisto];
  periods::Grid rows = lvwTabela_->Model().Rows();
  const bool added = items_.insert_or_assign(key, **read).second;
  if (added) rows.push_back(row);
  for (periods::GridRow& shown : rows) {
    if (shown.cells[kNumRegisto] == key) shown = row;
  }
  lvwTabela_->Model().SetRows(std::move(rows));
  SelectPeriod(key);
}

void frmTabHeader::SelectPeriod(const std::string& numRegisto) {
  const periods::Grid& rows = lvwTabela_->Model().Rows();
  for (std::size_t row = 0; row < rows.size(); ++row) {
    if (rows[row].cells[kNumRegisto] == numRegisto) lvwTabela_->SelectRow(row);
  }
}

std::vector<PeriodListItem> frmTabHeader::Selected() const {
  std::vector<PeriodListItem> selected;
  for (const std::size_t row : lvwTabela_->SelectedRows()) {
    selected.push_back(items_.at(lvwTabela_->Model().Cell(row, kNumRegisto)));
  }
  return selected;
}

void frmTabHeader::Eliminar() {
  const auto selected = Selected();
  if (!items_.empty() &&
      desk_.Try([&](const session::Context& context) { return periods::EliminarHeader(context, selected); })
          .value_or(false)) {
    items_.erase(std::to_string(selected.front().numRegisto));
    lvwTabela_->Model().RemoveRow(lvwTabela_->SelectedRows().front());
  }
  lvwTabela_->View().setFocus();
}

void frmTabHeader::Pesquisar() {
  PeriodSearchWindow window(desk_, search_, this);
  if (window.Ask()) Read(window.Search());
  lvwTabela_->View().setFocus();
}

PeriodSearchWindow::PeriodSearchWindow(Desk& desk, const PeriodSearch& search, QWidget* parent)
    : Form(desk, "cPesquisa", parent),
      txtFiscalYear_(TextBox("txtFiscalYear", periods::HeaderWidth("FiscalYear"))),
      txtCompanyName_(TextBox("txtCompanyName", periods::HeaderWidth("CompanyName"))) {
  SetCaption("Pesquisa");
  auto* column = FormColumn(this);
  FieldGrid fields;
  column->addLayout(fields.Layout());
  fields.Add("&Ano", txtFiscalYear_);
  fields.NewRow();
  fields.Add("&Empresa", txtCompanyName_);
  MakeRoom(txtCompanyName_, kNameCharacters);
  txtFiscalYear_->setText(ToQt(search.fiscalYear));
  txtCompanyName_->setText(ToQt(search.companyName));
  column->addStretch();
  auto* cmdOK = PlainButton("cmdOK", "&OK", [this] { accept(); });
  auto* cmdCancelar = PlainButton("cmdCancelar", "&Cancelar", [this] { reject(); });
  column->addLayout(ButtonRow({cmdOK, cmdCancelar}));
}

PeriodSearch PeriodSearchWindow::Search() const {
  return {FromQt(txtFiscalYear_->text()), FromQt(txtCompanyName_->text())};
}

}  // namespace korvel::desktop
