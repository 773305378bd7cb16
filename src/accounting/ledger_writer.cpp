#include "accounting/ledger_writer.h"

#include <algorithm>
#include <array>

#include "accounting/ledger_entries.h"
#include "toolkit/text.h"

namespace korvel::accounting {
namespace {

using namespace ledger;  // the columns

constexpr std::array<RequiredValue, 13> kRequired{{
    {kNumberOfEntries, "Total de Registos"},
    {kJournalId, "Diário"},
    {kJournalDescription, "Descrição do Diário"},
    {kTransactionId, "Chave Única do Movimento"},
    {kPeriod, "Período"},
    {kTransactionDate, "Data do Movimento"},
    {kSourceId, "Utilizador"},
    {kDescription, "Descrição do Movimento"},
    {kGLPostingDate, "Data de Gravação do Movimento"},
    {kRecordId, "Chave Únida da Linha"},
    {kAccountId, "Conta POC"},
    {kSystemEntryDate, "Data de Gravação"},
    // The words behind the label stand in the text that users see; they stay.
    {kLineDescription, "Descrição da Linha do Documento: GoTo SaidaForcada"},
}};

constexpr std::array<std::string_view, 5> kStampColumns{"FiscalYear", "StartDate", "EndDate", "Utilizador",
                                                        "DataSys"};

/// What a row starts with, then the values of a line but for the first, which the server gives.
std::vector<std::string_view> StagedColumns() {
  std::vector<std::string_view> names(kStampColumns.begin(), kStampColumns.end());
  for (const periods::Column& column : MovimentosTable().columns.subspan(kNumRegisto + 1)) {
    names.push_back(column.staged);
  }
  return names;
}

}  // namespace

const RequiredValue* FirstEmpty(const LedgerLine& line) {
  const auto empty = std::find_if(kRequired.begin(), kRequired.end(), [&](const RequiredValue& required) {
    return toolkit::IsBlank(line[required.column]);
  });
  return empty == kRequired.end() ? nullptr : &*empty;
}

LedgerWriter::LedgerWriter(data::Connection& company, const periods::PeriodKey& period,
                           const StagingStamp& stamp)
    : batch_(company.OpenBatch(MovimentosTable().table, StagedColumns())),
      row_{period.fiscalYear, period.startDate, period.endDate, stamp.utilizador, stamp.dataSys} {
  row_.resize(kStampColumns.size() + kColumnCount - 1);
}

void LedgerWriter::Add(const LedgerLine& line) {
  std::copy(line.begin() + kNumRegisto + 1, line.end(), row_.begin() + kStampColumns.size());
  batch_->Add(row_);
}

}  // namespace korvel::accounting
