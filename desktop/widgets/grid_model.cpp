#include "widgets/grid_model.h"

#include <algorithm>
#include <exception>
#include <iterator>
#include <limits>
#include <stdexcept>

#include "toolkit/list_rows.h"
#include "toolkit/progress_scope.h"

namespace korvel::desktop {

namespace {

using toolkit::ColumnKind;

/// More than a screen holds.
constexpr std::size_t kFirstRows = 200;
constexpr std::size_t kMoreRows = 500;
/// Between two looks at whether the reading is cancelled.
constexpr std::size_t kPiece = 1000;
constexpr std::size_t kAll = std::numeric_limits<std::size_t>::max();

constexpr std::string_view kNotWhole =
    "Os registos não foram lidos até ao fim!\nVolte a carregá-los antes de continuar.";

int Count(std::size_t count) {
  return static_cast<int>(count);
}

toolkit::CellMarks MarksOf(const session::SessionRecord& session) {
  return {session.Marks(), {session.gFormatoData, session.gSepData}};
}

std::vector<std::size_t> OrderOf(const periods::Grid& rows, std::size_t column, ColumnKind kind,
                                 const toolkit::CellMarks& marks, bool descending) {
  std::vector<toolkit::SortKey> keys;
  keys.reserve(rows.size());
  for (const periods::GridRow& row : rows) {
    keys.push_back(toolkit::SortKey::Of(row.cells[column], kind, marks));
  }
  return toolkit::SortedOrder(keys, descending);
}

struct Sorted {
  periods::Grid rows;
  std::vector<std::size_t> order;
};

/// Moves the rows out of `rows`, which keeps its size.
periods::Grid InOrder(periods::Grid& rows, const std::vector<std::size_t>& order) {
  periods::Grid sorted;
  sorted.reserve(order.size());
  for (const std::size_t row : order) sorted.push_back(std::move(rows[row]));
  return sorted;
}

/// The sum; nothing out of range.
std::optional<data::Currency> Added(std::optional<data::Currency> a, data::Currency b) {
  try {
    if (a) *a += b;
    return a;
  } catch (const std::overflow_error&) {
    return std::nullopt;
  }
}

}  // namespace

GridModel::GridModel(Desk& desk, std::vector<toolkit::GridColumn> columns, bool withTicks, QObject* parent)
    : QAbstractTableModel(parent), desk_(desk), columns_(std::move(columns)), withTicks_(withTicks) {}

void GridModel::SetRows(periods::Grid rows) {
  feed_.reset();
  broken_ = false;
  Replace(std::move(rows));
}

bool GridModel::SetFeed(std::unique_ptr<RowFeed> feed) {
  Piece first = Fetch(*feed, kFirstRows);
  if (first.rows.empty()) return false;
  feed_ = std::move(feed);
  inverted_ = false;
  broken_ = first.then == Piece::Then::Broken;
  if (first.then != Piece::Then::More) feed_.reset();
  Replace(std::move(first.rows));
  return true;
}

bool GridModel::ReadAll() {
  if (feed_) {
    Append(Fetch(*feed_, kAll));
    return !feed_ && !broken_;
  }
  if (broken_) desk_.Dialogs().Message(toolkit::Icon::Warning, kNotWhole);
  return !broken_;
}

/// What was read before a failure or a cancellation is kept.
GridModel::Piece GridModel::Fetch(RowFeed& feed, std::size_t most) {
  Piece piece;
  for (const auto& [column, sum] : sums_) piece.sums[column] = data::Currency();
  desk_.Try([&](const session::Context& context) {
    std::exception_ptr failure;
    try {
      Read(feed, most, context.progress, piece);
    } catch (...) {
      failure = std::current_exception();
    }
    Prepare(piece);
    if (failure) std::rethrow_exception(failure);
  });
  return piece;
}

/// What takes time with a million rows is done before the screen has them.
void GridModel::Prepare(Piece& piece) const {
  for (periods::GridRow& row : piece.rows) {
    row.ticked = row.ticked != inverted_;
    piece.ticked += row.ticked ? 1U : 0U;
  }
  AddTo(piece.sums, piece.rows);
}

void GridModel::Read(RowFeed& feed, std::size_t most, toolkit::Progress& progress, Piece& piece) {
  if (most == kAll) progress.Begin("Carregando Dados...", 0);
  while (piece.rows.size() < most) {
    std::vector<periods::GridRow> rows = feed.Take(std::min(kPiece, most - piece.rows.size()));
    if (rows.empty()) break;
    piece.rows.insert(piece.rows.end(), std::move_iterator(rows.begin()), std::move_iterator(rows.end()));
    if (most == kAll && !progress.Show(std::ssize(piece.rows), {})) {
      piece.then = Piece::Then::More;
      throw toolkit::Cancelled();
    }
  }
  piece.then = feed.AtEnd() ? Piece::Then::AtEnd : Piece::Then::More;
}

void GridModel::AddTo(Sums& sums, std::span<const periods::GridRow> rows) const {
  const toolkit::Marks marks = desk_.Session().Marks();
  for (auto& [column, sum] : sums) {
    for (const periods::GridRow& row : rows) {
      sum = Added(sum, toolkit::TextToCurrency(row.cells[column], marks).value_or(data::Currency()));
    }
  }
}

void GridModel::Append(Piece piece) {
  if (piece.then != Piece::Then::More) feed_.reset();
  broken_ = piece.then == Piece::Then::Broken;
  if (!piece.rows.empty()) {
    beginInsertRows({}, Count(rows_.size()), Count(rows_.size() + piece.rows.size()) - 1);
    rows_.insert(rows_.end(), std::move_iterator(piece.rows.begin()), std::move_iterator(piece.rows.end()));
    tickedCount_ += piece.ticked;
    for (auto& [column, sum] : sums_) {
      sum = piece.sums[column] ? Added(sum, *piece.sums[column]) : std::nullopt;
    }
    endInsertRows();
  }
  Changed();
}

void GridModel::Replace(periods::Grid rows) {
  beginResetModel();
  rows_ = std::move(rows);
  sortColumn_.reset();
  descending_ = false;
  CountAnew();
  endResetModel();
  Changed();
}

void GridModel::CountAnew() {
  sums_.clear();
  tickedCount_ = static_cast<std::size_t>(std::ranges::count_if(rows_, &periods::GridRow::ticked));
}

void GridModel::Changed() {
  if (onChange) onChange();
}

const std::string& GridModel::Cell(std::size_t row, std::size_t column) const {
  return rows_[row].cells[column];
}

void GridModel::Edit(const std::function<void(periods::Grid&)>& change) {
  const std::size_t before = rows_.size();
  change(rows_);
  CountAnew();
  if (rows_.size() != before) {
    beginResetModel();
    endResetModel();
  } else if (before > 0) {
    emit dataChanged(index(0, 0), index(Count(before) - 1, Count(columns_.size()) - 1));
  }
  Changed();
}

void GridModel::RemoveRow(std::size_t row) {
  beginRemoveRows({}, Count(row), Count(row));
  rows_.erase(rows_.begin() + Count(row));
  CountAnew();
  endRemoveRows();
  Changed();
}

void GridModel::Tick(std::size_t row, bool ticked) {
  if (!withTicks_ || rows_[row].ticked == ticked) return;
  rows_[row].ticked = ticked;
  tickedCount_ += ticked ? std::size_t{1} : std::size_t(-1);
  const QModelIndex box = index(Count(row), Count(FirstVisible()));
  emit dataChanged(box, box, {Qt::CheckStateRole});
  Changed();
}

void GridModel::InvertTicks() {
  if (!withTicks_ || rows_.empty()) return;
  for (periods::GridRow& row : rows_) row.ticked = !row.ticked;
  tickedCount_ = rows_.size() - tickedCount_;
  inverted_ = !inverted_;
  const int column = Count(FirstVisible());
  emit dataChanged(index(0, column), index(Count(rows_.size()) - 1, column), {Qt::CheckStateRole});
  Changed();
}

std::optional<data::Currency> GridModel::SumOf(std::size_t column) const {
  if (column >= columns_.size() || columns_[column].kind != ColumnKind::Amount) return std::nullopt;
  if (!sums_.contains(column)) {
    Sums sum{{column, data::Currency()}};
    AddTo(sum, rows_);
    sums_.merge(sum);
  }
  return sums_.at(column);
}

std::size_t GridModel::FirstVisible() const {
  const auto found = std::ranges::find_if(columns_, [](const auto& column) { return column.width > 0; });
  return found == columns_.end() ? 0 : static_cast<std::size_t>(found - columns_.begin());
}

void GridModel::SortOn(std::size_t column) {
  if (HasMore() && !ReadAll()) return;
  const bool descending = sortColumn_ == column && !descending_;
  const toolkit::CellMarks marks = MarksOf(desk_.Session());
  emit layoutAboutToBeChanged({}, VerticalSortHint);
  moving_ = true;
  auto sorted = desk_.Try([&](const session::Context&) {
    auto order = OrderOf(rows_, column, columns_[column].kind, marks, descending);
    return Sorted{InOrder(rows_, order), std::move(order)};
  });
  moving_ = false;
  if (sorted) {
    rows_ = std::move(sorted->rows);
    MoveIndexes(sorted->order);
    sortColumn_ = column;
    descending_ = descending;
  }
  emit layoutChanged({}, VerticalSortHint);
  emit headerDataChanged(Qt::Horizontal, 0, Count(columns_.size()) - 1);
}

/// The cursor and the selection stay with their rows.
void GridModel::MoveIndexes(const std::vector<std::size_t>& order) {
  const QModelIndexList before = persistentIndexList();
  if (before.isEmpty()) return;
  std::vector<int> placeOf(order.size());
  for (std::size_t place = 0; place < order.size(); ++place) placeOf[order[place]] = Count(place);
  QModelIndexList after;
  for (const QModelIndex& old : before) {
    after << index(placeOf[static_cast<std::size_t>(old.row())], old.column());
  }
  changePersistentIndexList(before, after);
}

bool GridModel::canFetchMore(const QModelIndex& parent) const {
  return !parent.isValid() && HasMore() && !desk_.IsBusy();
}

void GridModel::fetchMore(const QModelIndex& parent) {
  if (canFetchMore(parent)) Append(Fetch(*feed_, kMoreRows));
}

}  // namespace korvel::desktop
