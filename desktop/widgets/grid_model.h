#pragma once

#include <QAbstractTableModel>
#include <cstddef>
#include <functional>
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
  /// The first rows are there when this returns; throws what the reader threw.
  void SetFeed(std::unique_ptr<RowFeed> feed);
  /// Reads what is left of a feed.
  void ReadAll();
  /// Whether a feed has more rows.
  bool HasMore() const;

  const std::string& Cell(std::size_t row, std::size_t column) const;
  /// Changes rows in place, then shows them: for corrections by hand.
  void Edit(const std::function<void(periods::Grid&)>& change);
  void RemoveRow(std::size_t row);
  void Tick(std::size_t row, bool ticked);
  void InvertTicks();
  std::size_t TickedCount() const;
  /// The exact sum of a number column over the rows read until now; nothing for other columns and out of range.
  std::optional<data::Currency> SumOf(std::size_t column) const;

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
  void Append(std::vector<periods::GridRow> rows);
  void Changed();

  Desk& desk_;
  std::vector<toolkit::GridColumn> columns_;
  bool withTicks_;
  periods::Grid rows_;
  std::unique_ptr<RowFeed> feed_;
  std::optional<std::size_t> sortColumn_;
  bool descending_ = false;
};

}  // namespace korvel::desktop
