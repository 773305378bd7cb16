#pragma once

#include <QAbstractTableModel>
#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "gateways/desk.h"
#include "gateways/row_feed.h"
#include "periods/staging.h"
#include "toolkit/grid_layout.h"

namespace korvel::desktop {

/// The rows of a grid with their columns. Rows come whole, or from a feed as one scrolls.
class GridModel : public QAbstractTableModel {
 public:
  GridModel(Desk& desk, std::vector<toolkit::GridColumn> columns, bool withTicks, QObject* parent = nullptr);

  const std::vector<toolkit::GridColumn>& Columns() const { return columns_; }
  bool WithTicks() const { return withTicks_; }
  /// The rows read until now, in the order shown.
  const periods::Grid& Rows() const { return rows_; }
  void SetRows(periods::Grid rows);
  /// Replaces the rows by the first ones of the feed. False when it brings none, or fails, which is shown: nothing has
  /// changed then.
  bool SetFeed(std::unique_ptr<RowFeed> feed);
  /// Reads what is left of a feed, with the box that waits. False when that is cancelled, and when the feed fails or has
  /// failed before, which is shown: the rows are not whole then.
  bool ReadAll();
  /// Whether a feed has more rows.
  bool HasMore() const { return feed_ != nullptr; }

  const std::string& Cell(std::size_t row, std::size_t column) const;
  bool IsTicked(std::size_t row) const { return rows_[row].ticked; }
  /// Changes rows in place, then shows them: for corrections by hand.
  void Edit(const std::function<void(periods::Grid&)>& change);
  void RemoveRow(std::size_t row);
  void Tick(std::size_t row, bool ticked);
  /// Of all rows, those that wait in a feed too.
  void InvertTicks();
  /// Of the rows read until now.
  std::size_t TickedCount() const { return tickedCount_; }
  /// The exact sum of a number column over the rows read until now; nothing for other columns and out of range.
  std::optional<data::Currency> SumOf(std::size_t column) const;

  /// The first column that is not hidden, where the ticks stand.
  std::size_t FirstVisible() const;

  /// Sorts on a column, the other way round when it is sorted on it already; a feed is read to its end first.
  void SortOn(std::size_t column);
  std::optional<std::size_t> SortColumn() const { return sortColumn_; }
  bool IsDescending() const { return descending_; }

  /// Told when rows, ticks or values change.
  std::function<void()> onChange;

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  bool setData(const QModelIndex& index, const QVariant& value, int role) override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
  bool canFetchMore(const QModelIndex& parent) const override;
  void fetchMore(const QModelIndex& parent) override;

 private:
  using Sums = std::map<std::size_t, std::optional<data::Currency>>;
  /// What one reading brings.
  struct Piece {
    periods::Grid rows;
    Sums sums;
    std::size_t ticked = 0;
    enum class Then { Broken, More, AtEnd } then = Then::Broken;
  };

  Piece Fetch(RowFeed& feed, std::size_t most);
  static void Read(RowFeed& feed, std::size_t most, toolkit::Progress& progress, Piece& piece);
  void Prepare(Piece& piece) const;
  void AddTo(Sums& sums, std::span<const periods::GridRow> rows) const;
  void Append(Piece piece);
  void Replace(periods::Grid rows);
  void MoveIndexes(const std::vector<std::size_t>& order);
  void CountAnew();
  void Changed();

  Desk& desk_;
  std::vector<toolkit::GridColumn> columns_;
  bool withTicks_;
  periods::Grid rows_;
  std::unique_ptr<RowFeed> feed_;
  bool broken_ = false;    // the feed has failed: rows are missing
  bool inverted_ = false;  // ticks were inverted an odd number of times while rows waited in the feed
  bool moving_ = false;    // the rows are on their way into another order, by another thread
  std::size_t tickedCount_ = 0;
  mutable Sums sums_;  // of the columns asked for until now; nothing out of range
  std::optional<std::size_t> sortColumn_;
  bool descending_ = false;
};

}  // namespace korvel::desktop
