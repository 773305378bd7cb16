#include <fmt/format.h>

#include <array>
#include <optional>
#include <utility>
#include <vector>

#include "accounting/ledger_entries.h"
#include "accounting/ledger_mapper.h"
#include "periods/company_tables.h"
#include "session/connections.h"
#include "session/failures.h"
#include "session/lookups.h"
#include "toolkit/numbers.h"
#include "toolkit/progress_scope.h"

namespace korvel::accounting {
namespace {

using periods::Alignment;
using periods::Column;

/// No label of an empty value here: saving from the grid tests nothing, which is deliberate.
constexpr std::array<Column, ledger::kColumnCount> kMovimentosColumns{{
    {"Nº Registo", 0, Alignment::Left, "NumRegisto"},
    {"Total de Registos", 1200, Alignment::Right, "NumberOfEntries"},
    {"Total a Débito", 1500, Alignment::Right, "TotalDebit"},
    {"Total a Crédito", 1500, Alignment::Right, "TotalCredit"},
    {"Diários", 0, Alignment::Left, "Journal"},
    {"Diário", 1000, Alignment::Left, "JournalID"},
    {"Descrição do Diário", 2000, Alignment::Left, "JournalDescription"},
    {"Transacções", 1000, Alignment::Left, "Transaction"},
    {"Chave Únida do Movimento", 1000, Alignment::Left, "TransactionID"},
    {"Período", 1000, Alignment::Centre, "Period"},
    {"Data do Movimento", 1000, Alignment::Left, "TransactionDate"},
    {"Utilizador", 1000, Alignment::Left, "SourceID"},
    {"Descrição do Movimento", 2000, Alignment::Left, "Description"},
    {"Nº do Arquivo", 2000, Alignment::Left, "DocArchivalNumber"},
    {"Tipificação do Movimentos", 1000, Alignment::Centre, "TransactionType"},
    {"Data de Gravação do Movimento", 2000, Alignment::Left, "GLPostingDate"},
    {"Código do Cliente", 1200, Alignment::Left, "CustomerID"},
    {"Código do Fornecedor", 1200, Alignment::Left, "SupplierID"},
    {"Linhas", 1000, Alignment::Left, "Line"},
    {"Chave Únida da Linha", 1000, Alignment::Left, "RecordID"},
    {"Conta POC", 1200, Alignment::Left, "AccountID"},
    {"Tipo e Número Doc. Comercial", 1000, Alignment::Left, "SourceDocumentID"},
    {"Data de Gravação", 2000, Alignment::Left, "SystemEntryDate"},
    {"Descrição da Linha do Documento", 2000, Alignment::Left, "LineDescription"},
    {"Valor a Débito", 1100, Alignment::Right, "DebitAmount"},
    {"Valor a Crédito", 1100, Alignment::Right, "CreditAmount"},
}};

/// Owns the connection that it reads from.
class StagedReview final : public LedgerReview {
 public:
  StagedReview(const session::Context& context, session::ConnectionPtr company, std::string_view statement,
               std::int64_t count)
      : company_(std::move(company)),
        rows_(company_->Query(statement)),
        count_(count),
        marks_(context.session.Marks()),
        progress_(context.progress, "Carregando Dados...", count) {
    for (const Column& column : kMovimentosColumns) places_.push_back(rows_.IndexOf(column.staged));
  }

  std::string Caption() const override {
    return "Movimentos Contabilísticos - " +
           toolkit::FDNum(data::Currency::FromWhole(count_), 0, {}, {}, marks_);
  }
  std::int64_t Count() const override { return count_; }

  bool Next(periods::GridRow& row) override {
    if (started_ && !rows_.Eof()) rows_.MoveNext();
    started_ = true;
    if (rows_.Eof()) return false;
    progress_.Step();
    row.ticked = true;
    row.cells.resize(places_.size());
    for (std::size_t i = 0; i < places_.size(); ++i) row.cells[i] = rows_.Text(places_[i]);
    return true;
  }

 private:
  session::ConnectionPtr company_;
  data::Recordset rows_;
  std::int64_t count_;
  toolkit::Marks marks_;
  toolkit::ProgressScope progress_;
  std::vector<std::size_t> places_;
  bool started_ = false;
};

std::unique_ptr<LedgerReview> OpenReview(const session::Context& context, const periods::PeriodKey& period,
                                         Confirmation confirmation) {
  session::ConnectionPtr company;
  if (!session::AbreConnectionLOCAL_bln(context, company)) return nullptr;
  const std::string_view table = MovimentosTable().table;
  const std::string where = " Where " + period.Condition();
  const std::int64_t count = session::ContaRegistos_lng(*company, table, where);
  if (count == 0) {
    context.dialogs.Message(toolkit::Icon::Information, "Não tem registos para Visualizar.");
    return nullptr;
  }
  if (confirmation == Confirmation::Ask &&
      !periods::Confirmed(context, fmt::format("Confirma a visualização de {} Registos?", count))) {
    return nullptr;
  }
  const std::string statement =
      fmt::format("Select * from {}{} order by JournalID,TransactionID,TransactionDate,RecordID,NumRegisto",
                  table, where);
  return std::make_unique<StagedReview>(context, std::move(company), statement, count);
}

}  // namespace

const periods::StagedTable& MovimentosTable() {
  static constexpr periods::StagedTable kTable{"TabGeneralLedgerEntriesPOC", kMovimentosColumns,
                                               " order by JournalID,TransactionID,TransactionDate,RecordID"};
  return kTable;
}

std::unique_ptr<LedgerReview> VerRegistos(const session::Context& context, const periods::PeriodKey& period,
                                          Confirmation confirmation) {
  if (!periods::IsChosen(period)) return nullptr;
  return session::Reported(context, std::unique_ptr<LedgerReview>(),
                           [&] { return OpenReview(context, period, confirmation); });
}

bool GravarMovimentos(const session::Context& context, const periods::PeriodKey& period,
                      const periods::Grid& linhas) {
  return periods::SaveToCompany(context, MovimentosTable(), period, linhas, periods::kSaving);
}

}  // namespace korvel::accounting
