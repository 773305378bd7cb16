#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "data/connection.h"
#include "periods/period.h"
#include "session/context.h"
#include "toolkit/grid_layout.h"

namespace korvel::periods {

using toolkit::Alignment;

/// How a cell's text meets its staged column.
enum class CellKind {
  Text,       // as it stands, cut to `cut` characters when that is above 0
  UpperText,  // as Text, upper-cased when not blank
  Money,      // number text with the session's marks in the cell, money in the table
  Rate,       // as Money, always shown with two decimals
  Date,       // regional date in the cell, YYYY-MM-DD in the table; blank stays blank
};

/// One column of a review grid, a staged table and its listing.
struct Column {
  std::string_view heading;
  int width = 0;  // in twips; 0: hidden
  Alignment alignment = Alignment::Left;
  std::string_view staged = {};  // column of the staged table, empty when it is not saved
  CellKind kind = CellKind::Text;
  int cut = 0;
  std::string_view emptyLabel = {};  // label of "O Campo [<label>] está Vazio!", empty when it may be blank
};

/// What a save writes when a row lacks a required value.
enum class AtEmptyField { WriteNothing, WriteRowsBefore };

/// A staged table with the grid that shows it.
struct StagedTable {
  std::string_view table;
  std::span<const Column> columns;
  std::string_view loadOrder = {};  // " order by ..." of the load, may be empty
  bool byCustomer = false;          // rows belong to the period's `Cliente` too, and bear it
  AtEmptyField atEmptyField = AtEmptyField::WriteNothing;
};

struct GridRow {
  bool ticked = true;
  std::vector<std::string> cells;  // one a Column, in their order
  std::uint32_t colour = 0;        // of the text, as BGR: blue in the highest of the three bytes
};
using Grid = std::vector<GridRow>;

/// The staged rows of a period as a grid, all customers', all ticked, with progress "Carregando Dados...".
Grid LoadStaged(const session::Context& context, data::Connection& company, const StagedTable& table,
                const PeriodKey& period);

/// Replaces the staged rows of the period, and of `cliente` where the table is by customer, by the ticked rows, in one
/// transaction: deletes, tests the ticked rows for the first empty required column in the order of the columns, and
/// writes. At the first empty one the message is shown under "AVISO" and false returned; the old rows are gone then,
/// as designed, and what stands in their place is for the table to say. On data::Error and PeriodGone nothing has changed.
/// `Utilizador` and `DataSys` take the session's user and the server's time.
bool SaveStaged(const session::Context& context, data::Connection& company, const StagedTable& table,
                const PeriodKey& period, const Grid& rows, std::string_view progressCaption,
                std::string_view cliente = {});

/// "O Campo [<label>] está Vazio!", a line break, "Não pode Gravar": shown under "AVISO" wherever a required
/// value is blank. `detail` is appended as it stands.
void ShowEmptyField(const session::Context& context, std::string_view label, std::string_view detail = {});

}  // namespace korvel::periods
