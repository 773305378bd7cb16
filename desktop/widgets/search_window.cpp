#include "widgets/search_window.h"

#include <fmt/format.h>

#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QPushButton>
#include <QVBoxLayout>
#include <charconv>
#include <utility>

#include "gateways/text.h"
#include "toolkit/grid_layout.h"

namespace korvel::desktop {

namespace {

/// More rows than that nobody looks through.
constexpr std::int64_t kMostRows = 2000;
constexpr int kPauseMilliseconds = 200;
constexpr int kWidth = 620;
constexpr int kHeight = 460;

/// One column a field, and a hidden one that tells each row's place among those found.
std::vector<toolkit::GridColumn> Columns(const periods::TableSearch& search) {
  constexpr int kCodeWidth = 1800;
  constexpr int kTextWidth = 5600;
  std::string layout;
  for (const periods::SearchColumn& column : search.columns) {
    const bool code = layout.empty() && search.columns.size() > 1;
    layout += fmt::format("{},{}/", column.heading, code ? kCodeWidth : kTextWidth);
  }
  return toolkit::ParseGridLayout(layout + "Lugar,0/");
}

QCheckBox* Tick(std::string_view name, const char* caption, bool ticked, QWidget* parent) {
  auto* box = new QCheckBox(caption, parent);
  box->setObjectName(ToQt(name));
  box->setChecked(ticked);
  return box;
}

QLabel* Named(std::string_view name, QWidget* parent) {
  auto* label = new QLabel(parent);
  label->setObjectName(ToQt(name));
  return label;
}

QPushButton* Button(std::string_view name, const char* caption, QWidget* parent) {
  auto* button = new QPushButton(caption, parent);
  button->setObjectName(ToQt(name));
  button->setAutoDefault(false);
  return button;
}

}  // namespace

SearchWindow::SearchWindow(Desk& desk, const periods::TableSearch& search, std::string_view typed,
                           QWidget* parent)
    : QDialog(parent), desk_(desk), search_(search) {
  setObjectName("frmWPesq");
  setWindowTitle(ToQt("Pesquisa - " + search.table));
  const auto habits = periods::ReadSearchHabits(desk.Settings(), search.table);
  txtKey_ = new QLineEdit(ToQt(typed), this);
  txtKey_->setObjectName("txtKey");
  chkSearchChange_ = Tick("chkSearchChange", "Pesquisar a cada &tecla", habits.atEachKey, this);
  chkSearchPrincipio_ = Tick("chkSearchPrincipio", "A partir do &início do campo", habits.fromStart, this);
  lvwPesquisa_ = new GridPanel(desk, "frmWPesq_" + search.table, "lvwPesquisa", Columns(search), false, this);
  lvwPesquisa_->View().horizontalHeader()->setStretchLastSection(true);
  // The grid counts what was read, the window all that match.
  lvwPesquisa_->findChild<QLabel*>()->hide();
  lblContagem_ = Named("lblContagem", this);
  lblLimite_ = Named("lblLimite", this);
  Arrange();
  Listen();
  resize(kWidth, kHeight);
}

void SearchWindow::Arrange() {
  auto* key = new QHBoxLayout;
  auto* caption = new QLabel("&Pesquisar:", this);
  caption->setBuddy(txtKey_);
  key->addWidget(caption);
  key->addWidget(txtKey_, 1);
  auto* habits = new QHBoxLayout;
  habits->addWidget(chkSearchChange_);
  habits->addWidget(chkSearchPrincipio_);
  habits->addStretch();
  auto* choose = Button("cmdSeleccionar", "&Seleccionar", this);
  auto* leave = Button("cmdFechar", "&Fechar", this);
  connect(choose, &QPushButton::clicked, this, [this] { TakeCurrent(); });
  connect(leave, &QPushButton::clicked, this, [this] { reject(); });
  auto* foot = new QHBoxLayout;
  for (QLabel* label : {lblContagem_, lblLimite_}) foot->addWidget(label);
  foot->addStretch();
  for (QPushButton* button : {choose, leave}) foot->addWidget(button);
  auto* column = new QVBoxLayout(this);
  column->addLayout(key);
  column->addLayout(habits);
  column->addWidget(lvwPesquisa_, 1);
  column->addLayout(foot);
}

void SearchWindow::Listen() {
  pause_.setSingleShot(true);
  pause_.setInterval(kPauseMilliseconds);
  connect(&pause_, &QTimer::timeout, this, [this] {
    if (desk_.IsBusy()) {
      pause_.start();
    } else {
      Load();
    }
  });
  connect(txtKey_, &QLineEdit::textEdited, this, [this] {
    if (chkSearchChange_->isChecked()) pause_.start();
  });
  connect(chkSearchChange_, &QCheckBox::toggled, this, [this] { KeepHabits(); });
  connect(chkSearchPrincipio_, &QCheckBox::toggled, this, [this] {
    KeepHabits();
    Load();
  });
  connect(lvwPesquisa_->View().horizontalHeader(), &QHeaderView::sectionClicked, this,
          [this](int column) { SearchColumn(column); });
  lvwPesquisa_->onActivate = [this] { TakeCurrent(); };
}

std::optional<periods::FoundRow> SearchWindow::Choose() {
  if (!Load()) return std::nullopt;
  txtKey_->setFocus();
  exec();
  return std::move(chosen_);
}

bool SearchWindow::Load() {
  pause_.stop();
  request_.typed = FromQt(txtKey_->text());
  request_.fromStart = chkSearchPrincipio_->isChecked();
  request_.most = kMostRows;
  auto result = desk_.Try(
      [&](const session::Context& context) { return periods::SearchTable(context, search_, request_); });
  if (!result || !*result) return false;
  found_ = std::move((*result)->rows);
  ShowRows();
  ShowCount((*result)->count);
  return true;
}

void SearchWindow::ShowRows() {
  periods::Grid rows;
  for (const periods::FoundRow& found : found_) {
    rows.push_back({.ticked = false, .cells = found.values});
    rows.back().cells.push_back(std::to_string(rows.size() - 1));
  }
  lvwPesquisa_->Model().SetRows(std::move(rows));
  RestoreOrder();
  if (!found_.empty()) lvwPesquisa_->SelectRow(0);
}

/// New rows may come without the mark of the column that they are ordered by.
void SearchWindow::RestoreOrder() {
  GridModel& model = lvwPesquisa_->Model();
  if (model.SortColumn() != request_.column) model.SortOn(request_.column);
  if (model.IsDescending() != request_.descending) model.SortOn(request_.column);
}

void SearchWindow::ShowCount(std::int64_t count) {
  lblContagem_->setText(ToQt(fmt::format("Nº. de Registos: {}", count)));
  const bool cut = count > static_cast<std::int64_t>(found_.size());
  lblLimite_->setText(cut ? ToQt(fmt::format("(os primeiros {})", found_.size())) : QString());
}

void SearchWindow::SearchColumn(int column) {
  if (desk_.IsBusy()) return;
  const GridModel& model = lvwPesquisa_->Model();
  request_.column = model.SortColumn().value_or(static_cast<std::size_t>(column));
  request_.descending = model.IsDescending();
  Load();
}

void SearchWindow::KeepHabits() {
  const periods::SearchHabits habits{chkSearchChange_->isChecked(), chkSearchPrincipio_->isChecked()};
  desk_.Try([&](const session::Context& context) {
    periods::KeepSearchHabits(context.settings, search_.table, habits);
  });
}

void SearchWindow::keyPressEvent(QKeyEvent* event) {
  const int key = event->key();
  if (key == Qt::Key_Return || key == Qt::Key_Enter) {
    Confirm();
  } else if (key == Qt::Key_Down && txtKey_->hasFocus()) {
    lvwPesquisa_->View().setFocus();
  } else {
    QDialog::keyPressEvent(event);
  }
}

/// Enter presses the button with the cursor, else searches what was typed since, else chooses.
void SearchWindow::Confirm() {
  if (desk_.IsBusy()) return;
  if (auto* button = qobject_cast<QPushButton*>(focusWidget())) {
    button->click();
  } else if (FromQt(txtKey_->text()) != request_.typed) {
    Load();
  } else {
    TakeCurrent();
  }
}

void SearchWindow::TakeCurrent() {
  const auto row = lvwPesquisa_->CurrentRow();
  if (!row || desk_.IsBusy()) return;
  const std::string& place = lvwPesquisa_->Model().Rows().at(*row).cells.back();
  std::size_t index = 0;
  std::from_chars(place.data(), place.data() + place.size(), index);
  chosen_ = found_.at(index);
  accept();
}

void SearchWindow::done(int result) {
  if (desk_.IsBusy()) return;
  pause_.stop();
  QDialog::done(result);
}

}  // namespace korvel::desktop
