#include "periods/staging.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <iterator>

#include "periods/incomplete_rows.h"
#include "periods/staged_tables.h"
#include "session/lookups.h"
#include "toolkit/dates.h"
#include "toolkit/numbers.h"
#include "toolkit/progress_scope.h"
#include "toolkit/text.h"

namespace korvel::periods {

namespace {

using session::Context;

constexpr std::string_view kKey = "NumRegisto";
constexpr std::array<std::string_view, 3> kPeriodColumns{"FiscalYear", "StartDate", "EndDate"};
constexpr std::string_view kCustomerColumn = "Cliente";
constexpr std::array<std::string_view, 2> kWrittenColumns{"Utilizador", "DataSys"};
constexpr int kRateDecimals = 2;

toolkit::DateMarks DateMarksOf(const session::SessionRecord& session) {
  return {session.gFormatoData, session.gSepData};
}

/// The key is shown where a grid asks for it, but the server gives it.
bool IsSaved(const Column& column) {
  return !column.staged.empty() && column.staged != kKey;
}

std::string ReadCell(const session::SessionRecord& session, const data::Recordset& rows, std::size_t at,
                     CellKind kind) {
  if (rows.IsNull(at)) return {};
  const auto number = [&](int decimals) {
    return toolkit::FDNum(rows.Money(at), decimals, {}, {}, session.Marks());
  };
  switch (kind) {
    case CellKind::Money:
      return number(session.gCasasDec);
    case CellKind::Rate:
      return number(kRateDecimals);
    case CellKind::Date:
      return toolkit::GData(rows.Text(at), DateMarksOf(session));
    case CellKind::Text:
    case CellKind::UpperText:
      break;
  }
  return std::string(rows.Text(at));
}

/// Turns cells into the values of the staged columns.
class CellWriter {
 public:
  explicit CellWriter(const Context& context)
      : context_(context),
        marks_(context.session.Marks()),
        dateMarks_(DateMarksOf(context.session)),
        today_(context.clock.Now()) {}

  data::Value ValueOf(const Column& column, const std::string& cell) const {
    switch (column.kind) {
      case CellKind::Money:
      case CellKind::Rate:
        return toolkit::TextoParaValor(cell, marks_);
      case CellKind::Date:
        return toolkit::pData(cell, dateMarks_, today_, context_.dialogs).neutral;
      case CellKind::UpperText:
        return Cut(column, toolkit::IsBlank(cell) ? cell : toolkit::Upper(cell));
      case CellKind::Text:
        break;
    }
    return Cut(column, cell);
  }

 private:
  static data::Value Cut(const Column& column, std::string_view text) {
    return column.cut > 0 ? toolkit::CutTo(text, static_cast<std::size_t>(column.cut)) : text;
  }

  const Context& context_;
  toolkit::Marks marks_;
  toolkit::DateMarks dateMarks_;
  data::DateTime today_;
};

std::vector<std::string_view> SavedColumns(const StagedTable& table) {
  std::vector<std::string_view> columns(kPeriodColumns.begin(), kPeriodColumns.end());
  if (table.byCustomer) columns.push_back(kCustomerColumn);
  for (const Column& column : table.columns) {
    if (IsSaved(column)) columns.push_back(column.staged);
  }
  columns.insert(columns.end(), kWrittenColumns.begin(), kWrittenColumns.end());
  return columns;
}

/// The label of the row's first empty required column, "" when there is none or the row is not ticked.
std::string_view EmptyLabel(const StagedTable& table, const GridRow& row) {
  if (!row.ticked) return {};
  for (std::size_t i = 0; i < table.columns.size(); ++i) {
    const Column& column = table.columns[i];
    if (!column.emptyLabel.empty() && toolkit::IsBlank(row.cells[i])) return column.emptyLabel;
  }
  return {};
}

void AddRow(data::BatchInsert& batch, const std::vector<data::Value>& values) {
  const std::vector<data::Parameter> row(values.begin(), values.end());
  batch.Add(row);
}

/// What one save writes, and for whom.
struct Save {
  const Context& context;
  data::Connection& company;
  const StagedTable& table;
  const PeriodKey& period;
  std::string_view cliente;
};

void InsertTicked(const Save& save, std::span<const GridRow> rows, std::string_view progressCaption) {
  const std::span<const Column> columns = save.table.columns;
  const data::Value dataSys = session::Get_DataSysServer(save.company);
  const CellWriter cells(save.context);
  const auto batch = save.company.OpenBatch(save.table.table, SavedColumns(save.table));
  toolkit::ProgressScope progress(save.context.progress, progressCaption, std::ssize(rows));
  for (const GridRow& row : rows) {
    progress.Step();
    if (!row.ticked) continue;
    std::vector<data::Value> values{save.period.fiscalYear, save.period.startDate, save.period.endDate};
    if (save.table.byCustomer) values.emplace_back(save.cliente);
    for (std::size_t i = 0; i < columns.size(); ++i) {
      if (IsSaved(columns[i])) values.push_back(cells.ValueOf(columns[i], row.cells[i]));
    }
    values.emplace_back(save.context.session.gUtilizador);
    values.push_back(dataSys);
    AddRow(*batch, values);
  }
  batch->Finish();
}

std::string LoadStatement(const StagedTable& table, const PeriodKey& period) {
  const bool ordered = !table.loadOrder.empty();
  return fmt::format("Select * from {} where {}{}{}", table.table, period.Condition(), table.loadOrder,
                     ordered ? ",NumRegisto" : " order by NumRegisto");
}

/// Where the columns of a grid stand in a result; nothing for those that are not staged.
std::vector<std::optional<std::size_t>> PlacesOf(const StagedTable& table, const data::Recordset& rows) {
  std::vector<std::optional<std::size_t>> places;
  for (const Column& column : table.columns) {
    places.push_back(column.staged.empty() ? std::nullopt : std::optional(rows.IndexOf(column.staged)));
  }
  return places;
}

}  // namespace

Grid LoadStaged(const Context& context, data::Connection& company, const StagedTable& table,
                const PeriodKey& period) {
  const auto count = session::ContaRegistos_lng(company, table.table, " Where " + period.Condition());
  toolkit::ProgressScope progress(context.progress, "Carregando Dados...", count);
  auto rows = company.Query(LoadStatement(table, period));
  const auto places = PlacesOf(table, rows);
  Grid grid;
  grid.reserve(static_cast<std::size_t>(count));
  for (; !rows.Eof(); rows.MoveNext()) {
    progress.Step();
    GridRow& row = grid.emplace_back();
    row.cells.resize(places.size());
    for (std::size_t i = 0; i < places.size(); ++i) {
      if (places[i]) row.cells[i] = ReadCell(context.session, rows, *places[i], table.columns[i].kind);
    }
  }
  return grid;
}

std::optional<std::size_t> FirstIncomplete(const StagedTable& table, const Grid& rows) {
  const auto bad =
      std::ranges::find_if(rows, [&](const GridRow& row) { return !EmptyLabel(table, row).empty(); });
  if (bad == rows.end()) return std::nullopt;
  return static_cast<std::size_t>(bad - rows.begin());
}

bool SaveStaged(const Context& context, data::Connection& company, const StagedTable& table,
                const PeriodKey& period, const Grid& rows, std::string_view progressCaption,
                std::string_view cliente) {
  data::Transaction transaction(company);
  ClearStaged(company, {table.table, table.byCustomer}, period, cliente);
  const auto bad = FirstIncomplete(table, rows);
  if (!bad || table.atEmptyField == AtEmptyField::WriteRowsBefore)
    InsertTicked({context, company, table, period, cliente}, std::span(rows).first(bad.value_or(rows.size())),
                 progressCaption);
  transaction.Commit();
  if (bad) ShowEmptyField(context, EmptyLabel(table, rows[*bad]));
  return !bad;
}

void ShowEmptyField(const Context& context, std::string_view label, std::string_view detail) {
  context.dialogs.Message(toolkit::Icon::Warning,
                          fmt::format("O Campo [{}] está Vazio!\nNão pode Gravar{}", label, detail), "AVISO");
}

}  // namespace korvel::periods
