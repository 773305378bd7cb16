#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "data/connection.h"
#include "periods/period.h"
#include "session/context.h"

namespace korvel::periods {

enum class Alignment { Left, Right, Centre };

/// How a cell's text meets its staged column.
enum class CellKind {
  Text,       // as it stands, cut to `cut` characters when that is above 0
  UpperText,  // as Text, upper-cased when not blank
  Money,      // number text with the session's marks in the cell, money in the table
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

/// A staged table with the grid that shows it.
struct StagedTable {
  std::string_view table;
  std::span<const Column> columns;
  std::string_view loadOrder = {};  // " order by ..." of the load, may be empty
};

struct GridRow {
  bool ticked = true;
  std::vector<std::string> cells;  // one a Column, in their order
};
using Grid = std::vector<GridRow>;

/// The staged rows of a period as a grid, all ticked, with progress "Carregando Dados...".
Grid LoadStaged(const session::Context& context, data::Connection& company, const StagedTable& table,
                const PeriodKey& period);

/// Replaces the period's staged rows by the ticked rows, in one transaction: deletes, tests every ticked row
/// for its first empty required column in the order of the columns, and writes. At the first empty one the
/// message is shown under "AVISO" and false returned; the old rows are gone then, as designed, and nothing is
/// written. On data::Error nothing has changed. `Utilizador` and `DataSys` take the session's user and the
/// server's time.
bool SaveStaged(const session::Context& context, data::Connection& company, const StagedTable& table,
                const PeriodKey& period, const Grid& rows, std::string_view progressCaption);

/// "O Campo [<label>] está Vazio!", a line break, "Não pode Gravar": shown under "AVISO" wherever a required
/// value is blank. `detail` is appended as it stands.
void ShowEmptyField(const session::Context& context, std::string_view label, std::string_view detail = {});

}  // namespace korvel::periods
