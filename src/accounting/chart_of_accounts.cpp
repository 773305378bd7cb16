#include "accounting/chart_of_accounts.h"

#include <fmt/format.h>

#include <array>
#include <iterator>
#include <string>
#include <utility>

#include "accounting/journal_balances.h"
#include "data/collation.h"
#include "data/date_time.h"
#include "periods/company_tables.h"
#include "periods/parameters.h"
#include "session/connections.h"
#include "session/failures.h"
#include "toolkit/numbers.h"
#include "toolkit/progress_scope.h"
#include "toolkit/text.h"

namespace korvel::accounting {
namespace {

using data::Currency;
using periods::Alignment;
using periods::CellKind;
using periods::Column;
using periods::Grid;
using periods::GridRow;

namespace account {
enum : std::size_t { kNumRegisto, kCodigo, kDescricao, kDevedor, kCredor, kTipo, kColumnCount };
}

constexpr std::array<Column, account::kColumnCount> kAccountColumns{{
    {"Nº Registo", 330, Alignment::Left, "NumRegisto"},
    {"Código da Conta", 2000, Alignment::Left, "AccountID", CellKind::Text, 30, "Código da Conta"},
    // A title may have 60 characters in the file; the staged column holds 50 of them.
    {"Descrição da Conta", 4500, Alignment::Left, "AccountDescription", CellKind::Text, 50,
     "Descrição da Conta"},
    {"Saldo Devedor", 1500, Alignment::Right, "OpeningDebitBalance", CellKind::Money},
    {"Saldo Credor", 1500, Alignment::Right, "OpeningCreditBalance", CellKind::Money},
    {"Tipo", 1000, Alignment::Centre, "TipoConta"},
}};

struct Dates {
  std::string first;  // blank: no bound
  std::string last;
};

std::string DayBefore(const std::string& date) {
  const auto day = data::DateTime::FromText(date);
  if (!day) return date;
  return data::CivilFromDays(data::DaysFromCivil(day->year, day->month, day->day) - 1).DateText();
}

/// The days whose movements make a balance; nothing when the company database cannot be opened.
std::optional<Dates> BalanceDates(const session::Context& context, const periods::PeriodKey& period) {
  session::ConnectionPtr company;
  if (!session::AbreConnectionLOCAL_bln(context, company)) return std::nullopt;
  const auto parameters = periods::ReadParameters(*company);
  if (parameters && parameters->Header_SaldoDiaAnterior) return Dates{"", DayBefore(period.startDate)};
  return Dates{period.startDate, period.endDate};
}

/// The accounts in the order of their codes, balances still blank.
Grid ReadAccounts(data::Connection& lunder, const std::string& condition) {
  Grid grid;
  data::Recordset contas = lunder.Query("select NumRegisto,ContaSP,Titulo,Tipo from contas" + condition +
                                        " order by ContaSP,NumRegisto");
  for (; !contas.Eof(); contas.MoveNext()) {
    GridRow row;
    row.cells.resize(account::kColumnCount);
    row.cells[account::kNumRegisto] = contas.Text(0);
    row.cells[account::kCodigo] = toolkit::Trim(contas.Text(1));
    row.cells[account::kDescricao] = toolkit::Trim(contas.Text(2));
    row.cells[account::kTipo] = contas.Text(3);
    grid.push_back(std::move(row));
  }
  return grid;
}

/// Movement accounts show their net on one side; all others keep both totals.
DebitCredit Shown(const Balance& balance, std::string_view tipo) {
  if (!data::SameText(tipo, "M")) return {balance.debito, balance.credito};
  if (balance.debito > balance.credito) return {balance.saldo, {}};
  return {{}, -balance.saldo};
}

void FillBalances(const session::Context& context, const AccountBalances& balances, Grid& grid) {
  const toolkit::Marks marks = context.session.Marks();
  const auto text = [&](Currency amount) {
    return toolkit::FDNum(amount, context.session.gCasasDec, {}, {}, marks);
  };
  toolkit::ProgressScope progress(context.progress, "Carregando Contas...", std::ssize(grid));
  for (GridRow& row : grid) {
    auto& cells = row.cells;
    progress.Step(
        [&] { return fmt::format("Conta : {} - {}", cells[account::kCodigo], cells[account::kDescricao]); });
    const DebitCredit shown = Shown(balances.Of(cells[account::kCodigo]), cells[account::kTipo]);
    cells[account::kDevedor] = text(shown.debito);
    cells[account::kCredor] = text(shown.credito);
  }
}

std::optional<Grid> ReadChart(const session::Context& context, const periods::PeriodKey& period,
                              const periods::LunderFilter& filter) {
  session::ConnectionPtr lunder;
  if (!session::AbreConnection_bln(context, lunder, session::kLunder)) return std::nullopt;
  const std::optional<Dates> dates = BalanceDates(context, period);
  if (!dates) return std::nullopt;
  Grid grid = ReadAccounts(*lunder, " Where Tipo<>'C' " + filter.contas);
  const BalanceQuery query{.dataInicial = dates->first, .dataFinal = dates->last, .filtro1 = filter.diarios};
  FillBalances(context, AccountBalances(*lunder, query, context.session.gCasasDec), grid);
  return grid;
}

}  // namespace

const periods::StagedTable& ContasTable() {
  static constexpr periods::StagedTable kTable{"TabGeneralLedger", kAccountColumns};
  return kTable;
}

std::optional<Grid> CalcularContas(const session::Context& context, const periods::PeriodKey& period,
                                   const periods::LunderFilter& filter) {
  if (!periods::IsChosen(period)) return std::nullopt;
  // Every journal chosen and no account range gives two empty clauses as well and stops here; that is deliberate.
  if (filter.contas.empty() && filter.diarios.empty()) return std::nullopt;
  return session::Reported(context, std::optional<Grid>(),
                           [&] { return ReadChart(context, period, filter); });
}

bool GravarContas(const session::Context& context, const periods::PeriodKey& period, const Grid& contas) {
  return periods::SaveToCompany(context, ContasTable(), period, contas,
                                "Gravando Contas. Aguarde por favor...");
}

std::optional<Grid> CarregarContas(const session::Context& context, const periods::PeriodKey& period) {
  return periods::LoadFromCompany(context, ContasTable(), period);
}

}  // namespace korvel::accounting
