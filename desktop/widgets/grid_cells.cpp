#include <QColor>
#include <QGuiApplication>
#include <QPalette>
#include <algorithm>
#include <array>

#include "gateways/text.h"
#include "toolkit/list_rows.h"
#include "widgets/grid_model.h"

/// How the rows of a GridModel look.
namespace korvel::desktop {

namespace {

QVariant AlignmentOf(const toolkit::GridColumn& column) {
  constexpr std::array kSides{Qt::AlignLeft, Qt::AlignRight, Qt::AlignHCenter};
  return QVariant(kSides[static_cast<std::size_t>(column.alignment)] | Qt::AlignVCenter);
}

/// A colour given as BGR for a light background, made lighter for a dark one.
QVariant TextColour(std::uint32_t bgr) {
  if (bgr == 0) return {};
  const auto part = [&](unsigned shift) { return static_cast<int>((bgr >> shift) & 0xFFU); };
  const QColor colour(part(0), part(8), part(16));
  constexpr double kMiddle = 0.5, kLegible = 0.75;
  if (QGuiApplication::palette().color(QPalette::Base).lightnessF() > kMiddle) return colour;
  const double lightness = std::max<double>(colour.lightnessF(), kLegible);
  return QColor::fromHslF(colour.hslHueF(), colour.hslSaturationF(), static_cast<float>(lightness));
}

}  // namespace

int GridModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

int GridModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(columns_.size());
}

QVariant GridModel::data(const QModelIndex& index, int role) const {
  if (moving_) return {};
  const auto row = static_cast<std::size_t>(index.row());
  const auto column = static_cast<std::size_t>(index.column());
  switch (role) {
    case Qt::DisplayRole:
      return ToQt(Cell(row, column));
    case Qt::TextAlignmentRole:
      return AlignmentOf(columns_[column]);
    case Qt::ForegroundRole:
      return TextColour(rows_[row].colour);
    case Qt::CheckStateRole:
      if (!withTicks_ || column != FirstVisible()) return {};
      return rows_[row].ticked ? Qt::Checked : Qt::Unchecked;
    default:
      return {};
  }
}

bool GridModel::setData(const QModelIndex& index, const QVariant& value, int role) {
  if (role != Qt::CheckStateRole || !(flags(index) & Qt::ItemIsUserCheckable)) return false;
  Tick(static_cast<std::size_t>(index.row()), value.toInt() == Qt::Checked);
  return true;
}

Qt::ItemFlags GridModel::flags(const QModelIndex& index) const {
  const Qt::ItemFlags flags = QAbstractTableModel::flags(index);
  const bool box = withTicks_ && static_cast<std::size_t>(index.column()) == FirstVisible();
  return box ? flags | Qt::ItemIsUserCheckable : flags;
}

QVariant GridModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation == Qt::Vertical) return {};
  const auto column = static_cast<std::size_t>(section);
  if (role == Qt::TextAlignmentRole) return AlignmentOf(columns_[column]);
  if (role != Qt::DisplayRole) return {};
  const std::string& heading = columns_[column].heading;
  return ToQt(sortColumn_ == column ? toolkit::MarkedHeading(heading, descending_) : heading);
}

}  // namespace korvel::desktop
