#include "widgets/grid_view.h"

#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMenu>
#include <QRegularExpression>
#include <algorithm>

#include "gateways/text.h"
#include "widgets/wprocura.h"

namespace korvel::desktop {

namespace {

constexpr int kTwipsPerInch = 1440;
/// Above and below the text of a row, together.
constexpr int kRowAir = 8;

}  // namespace

GridView::GridView(Desk& desk, GridModel& model, QWidget* parent)
    : QTableView(parent), desk_(desk), model_(model) {
  setModel(&model);
  SetUp();
  SetUpColumns();
  connect(this, &QTableView::doubleClicked, this, [this] { Activate(); });
  connect(horizontalHeader(), &QHeaderView::sectionClicked, this, [this](int column) { SortOn(column); });
}

GridView::~GridView() = default;

void GridView::SetUp() {
  setSelectionBehavior(SelectRows);
  setSelectionMode(ExtendedSelection);
  setEditTriggers(NoEditTriggers);
  setAlternatingRowColors(true);
  setShowGrid(false);
  setWordWrap(false);
  setTabKeyNavigation(false);
  setHorizontalScrollMode(ScrollPerPixel);
  // One height for all rows: nothing is measured when a million of them come.
  verticalHeader()->hide();
  verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  verticalHeader()->setDefaultSectionSize(fontMetrics().height() + kRowAir);
}

void GridView::SetUpColumns() {
  QHeaderView* header = horizontalHeader();
  header->setSectionsClickable(true);
  header->setHighlightSections(false);
  header->setStretchLastSection(true);
  header->setMinimumSectionSize(fontMetrics().averageCharWidth());
  const auto& columns = model_.Columns();
  for (std::size_t i = 0; i < columns.size(); ++i) {
    const int column = static_cast<int>(i);
    setColumnHidden(column, columns[i].width == 0);
    if (columns[i].width > 0) setColumnWidth(column, FirstWidth(column, columns[i].width));
  }
}

/// As wide as the layout has it, and never narrower than the heading.
int GridView::FirstWidth(int column, int twips) const {
  return std::max(twips * logicalDpiX() / kTwipsPerInch, horizontalHeader()->sectionSizeHint(column));
}

void GridView::WidenToTexts(std::size_t column) {
  const int shown = static_cast<int>(column);
  setColumnWidth(shown, std::max(columnWidth(shown), sizeHintForColumn(shown)));
}

void GridView::SortOn(int column) {
  model_.SortOn(static_cast<std::size_t>(column));
  if (currentIndex().isValid()) scrollTo(currentIndex());
}

std::optional<std::size_t> GridView::CurrentRow() const {
  if (!currentIndex().isValid()) return std::nullopt;
  return static_cast<std::size_t>(currentIndex().row());
}

std::vector<std::size_t> GridView::SelectedRows() const {
  std::vector<std::size_t> rows;
  for (const QModelIndex& index : selectionModel()->selectedRows(static_cast<int>(model_.FirstVisible()))) {
    rows.push_back(static_cast<std::size_t>(index.row()));
  }
  std::ranges::sort(rows);
  return rows;
}

void GridView::SelectRow(std::size_t row) {
  const int column =
      currentIndex().isValid() ? currentIndex().column() : static_cast<int>(model_.FirstVisible());
  const QModelIndex index = model_.index(static_cast<int>(row), column);
  setCurrentIndex(index);
  scrollTo(index);
}

void GridView::CopyRows() {
  const auto& columns = model_.Columns();
  QString text;
  const auto addLine = [&](const auto& cellOf) {
    QStringList cells;
    for (std::size_t i = 0; i < columns.size(); ++i) {
      if (columns[i].width > 0) cells << ToQt(cellOf(i)).replace(QRegularExpression("[\t\r\n]+"), " ");
    }
    text += cells.join('\t') + '\n';
  };
  addLine([&](std::size_t i) -> const std::string& { return columns[i].heading; });
  for (const std::size_t row : SelectedRows()) {
    addLine([&](std::size_t i) -> const std::string& { return model_.Cell(row, i); });
  }
  QApplication::clipboard()->setText(text);
}

void GridView::ShowFind() {
  if (!find_) find_ = std::make_unique<WProcura>(desk_, *this);
  find_->Open();
}

/// F3: the text of before again, or the question for one.
void GridView::Find() {
  if (find_ && find_->HasText()) {
    find_->FindNext();
  } else {
    ShowFind();
  }
}

/// All selected rows become as the one with the cursor would.
void GridView::TickSelected() {
  const auto current = CurrentRow();
  if (!current) return;
  const bool ticked = !model_.IsTicked(*current);
  for (const std::size_t row : SelectedRows()) model_.Tick(row, ticked);
}

bool GridView::Activate() {
  return onActivate && CurrentRow() && onActivate();
}

void GridView::keyPressEvent(QKeyEvent* event) {
  // Where the last row is meant, those that wait in a feed are meant too.
  const bool toEnd =
      event->matches(QKeySequence::MoveToEndOfDocument) || event->matches(QKeySequence::SelectAll);
  if (toEnd && model_.HasMore()) model_.ReadAll();
  if (ActOn(*event)) {
    event->accept();
  } else {
    QTableView::keyPressEvent(event);
  }
}

bool GridView::ActOn(const QKeyEvent& event) {
  const int key = event.key();
  const bool enter = key == Qt::Key_Return || key == Qt::Key_Enter;
  const bool menu = key == Qt::Key_Menu || (key == Qt::Key_F10 && event.modifiers() == Qt::ShiftModifier);
  if (event.matches(QKeySequence::Copy)) {
    CopyRows();
  } else if (event.matches(QKeySequence::Find)) {
    ShowFind();
  } else if (key == Qt::Key_F3) {
    Find();
  } else if (menu) {
    model_.InvertTicks();
  } else if (key == Qt::Key_Space) {
    TickSelected();
  } else {
    return enter && Activate();
  }
  return true;
}

void GridView::contextMenuEvent(QContextMenuEvent* event) {
  event->accept();
  // The menu key itself has inverted the ticks.
  if (event->reason() == QContextMenuEvent::Keyboard) return;
  auto* menu = new QMenu(this);
  menu->setAttribute(Qt::WA_DeleteOnClose);
  if (model_.WithTicks()) menu->addAction("&Inverter marcas", [this] { model_.InvertTicks(); });
  menu->addAction("&Procurar...\tCtrl+F", [this] { ShowFind(); });
  menu->addAction("&Copiar linhas\tCtrl+C", [this] { CopyRows(); });
  menu->popup(event->globalPos());
}

}  // namespace korvel::desktop
