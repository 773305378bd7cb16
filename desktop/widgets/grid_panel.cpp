#include "widgets/grid_panel.h"

#include <QHeaderView>
#include <QHideEvent>
#include <QVBoxLayout>
#include <algorithm>
#include <array>
#include <charconv>
#include <utility>

#include "gateways/text.h"
#include "toolkit/list_rows.h"
#include "toolkit/text.h"

namespace korvel::desktop {

namespace {

constexpr int kFootGap = 4;
constexpr std::string_view kWidthsKey = "_Larguras";

/// Staged columns whose sum says something: the two sides of a book.
constexpr std::array<std::string_view, 4> kSummed{"OpeningDebitBalance", "OpeningCreditBalance",
                                                  "DebitAmount", "CreditAmount"};

toolkit::ColumnKind KindOf(const periods::Column& column) {
  using periods::CellKind;
  if (column.kind == CellKind::Date) return toolkit::ColumnKind::Date;
  const bool amount = column.kind == CellKind::Money || column.kind == CellKind::Rate;
  return amount || column.alignment == toolkit::Alignment::Right ? toolkit::ColumnKind::Amount
                                                                 : toolkit::ColumnKind::Text;
}

}  // namespace

GridPanel::GridPanel(Desk& desk, std::string_view form, std::string_view name,
                     std::vector<toolkit::GridColumn> columns, bool withTicks, QWidget* parent)
    : QWidget(parent),
      desk_(desk),
      form_(form),
      name_(name),
      model_(desk, std::move(columns), withTicks),
      view_(new GridView(desk, model_, this)),
      lblRodape_(new QLabel(this)) {
  view_->setObjectName(ToQt(name));
  lblRodape_->setObjectName("lblRodape_" + ToQt(name));
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(kFootGap);
  column->addWidget(view_, 1);
  column->addWidget(lblRodape_);
  setFocusProxy(view_);
  RestoreWidths();
  Listen();
  RefreshFoot();
}

void GridPanel::Listen() {
  view_->onActivate = [this] {
    if (onActivate) onActivate();
    return onActivate != nullptr;
  };
  const auto refresh = [this] { RefreshFoot(); };
  connect(&model_, &QAbstractItemModel::modelReset, this, refresh);
  connect(&model_, &QAbstractItemModel::rowsInserted, this, refresh);
  connect(&model_, &QAbstractItemModel::rowsRemoved, this, refresh);
  connect(&model_, &QAbstractItemModel::dataChanged, this, refresh);
  connect(view_->selectionModel(), &QItemSelectionModel::currentColumnChanged, this, refresh);
  connect(view_->horizontalHeader(), &QHeaderView::sectionResized, this, [this] { widthsChanged_ = true; });
}

/// Those that are always summed, and the one with the cursor.
std::vector<std::size_t> GridPanel::SummedColumns() const {
  std::vector<std::size_t> places;
  const auto& columns = model_.Columns();
  const int current = view_->currentIndex().column();
  for (std::size_t i = 0; i < columns.size(); ++i) {
    if (columns[i].summed || static_cast<int>(i) == current) places.push_back(i);
  }
  return places;
}

void GridPanel::RefreshFoot() {
  std::vector<toolkit::FootSum> sums;
  for (const std::size_t column : SummedColumns()) {
    if (const auto sum = model_.SumOf(column)) sums.push_back({model_.Columns()[column].heading, *sum});
  }
  toolkit::FootCounts counts{.rows = model_.Rows().size(), .more = model_.HasMore(), .ticked = std::nullopt};
  if (model_.WithTicks()) counts.ticked = model_.TickedCount();
  const session::SessionRecord& session = desk_.Session();
  lblRodape_->setText(ToQt(toolkit::FootText(counts, sums, session.gCasasDec, session.Marks())));
}

/// Widths are kept in dots, apart by blanks; those of a grid with other columns are passed over.
void GridPanel::RestoreWidths() {
  const auto kept = desk_.Settings().Read(form_, name_ + std::string(kWidthsKey));
  if (!kept) return;
  const std::vector<std::string> widths = toolkit::StripString(*kept, " ");
  if (widths.size() != model_.Columns().size()) return;
  for (std::size_t i = 0; i < widths.size(); ++i) {
    int width = 0;
    std::from_chars(widths[i].data(), widths[i].data() + widths[i].size(), width);
    if (width > 0) view_->setColumnWidth(static_cast<int>(i), width);
  }
}

void GridPanel::KeepWidths() {
  std::string widths;
  for (int i = 0; i < model_.columnCount(); ++i) {
    widths += (i > 0 ? " " : "") + std::to_string(view_->columnWidth(i));
  }
  desk_.Remember(form_, name_ + std::string(kWidthsKey), widths);
}

void GridPanel::hideEvent(QHideEvent* event) {
  QWidget::hideEvent(event);
  if (!event->spontaneous() && std::exchange(widthsChanged_, false)) KeepWidths();
}

std::vector<toolkit::GridColumn> GridColumnsOf(std::span<const periods::Column> columns) {
  std::vector<toolkit::GridColumn> made;
  for (const periods::Column& column : columns) {
    const bool summed = std::ranges::find(kSummed, column.staged) != kSummed.end();
    made.push_back({std::string(column.heading), column.width, column.alignment, KindOf(column), summed});
  }
  return made;
}

}  // namespace korvel::desktop
