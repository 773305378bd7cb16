#include "accounting/ledger_entries.h"

#include <fmt/format.h>

#include <optional>

#include "accounting/document_codes.h"
#include "accounting/ledger_mapper.h"
#include "accounting/ledger_sources.h"
#include "accounting/ledger_writer.h"
#include "periods/company_tables.h"
#include "periods/staged_tables.h"
#include "session/connections.h"
#include "session/failures.h"
#include "session/lookups.h"
#include "toolkit/progress_scope.h"

namespace korvel::accounting {
namespace {

using data::Currency;
using toolkit::ProgressScope;

/// The columns of the main statement.
namespace movement {
enum : std::size_t {
  kContribuinte,
  kCliFor,
  kRcrf,
  kValRecap,
  kNumRegisto,
  kIntegracao,
  kDiario,
  kData,
  kNumero,
  kContaSp,
  kAfecta,
  kUtilizador,
  kDataSys,
  kDescricao,
  kValor,
  kTipoMovSaft
};
}  // namespace movement

constexpr std::string_view kMainStatement =
    "select isnull(MovDiario.Contribuinte,'') as Contribuinte,isnull(Contas.Clifor,'') as CliFor,"
    "Isnull(Contas.RCRF,'') as RCRF,isnull(MovDiario.ValRecap,0) as ValRecap,MovDiario.NumRegisto,"
    "MovDiario.Integracao,MovDiario.Diario,MovDiario.Data,MovDiario.Numero,MovDiario.ContaSP,MovDiario."
    "Afecta,"
    "MovDiario.Utilizador,MovDiario.DataSys,MovDiario.Descricao,MovDiario.Valor,MovDiario.TipoMovSAFT  "
    "from MovDiario  left outer join contas on movdiario.contasp=contas.contasp  "
    "Where MovDiario.NumRegisto>0 {} "
    "order by MovDiario.Diario,MovDiario.Data,MovDiario.Numero,MovDiario.NumRegisto";

JournalLine LineOf(const data::Recordset& row) {
  JournalLine line;
  line.numRegisto = row.Integer(movement::kNumRegisto);
  line.contaSp = row.Text(movement::kContaSp);
  line.afecta = row.Text(movement::kAfecta);
  line.diario = row.Text(movement::kDiario);
  line.data = row.Text(movement::kData);
  line.numero = row.Text(movement::kNumero);
  line.descricao = row.Text(movement::kDescricao);
  line.utilizador = row.Text(movement::kUtilizador);
  line.contribuinte = row.Text(movement::kContribuinte);
  line.cliFor = row.Text(movement::kCliFor);
  line.rcrf = row.Text(movement::kRcrf);
  line.tipoMovSaft = row.Text(movement::kTipoMovSaft);
  line.integracao = row.Integer(movement::kIntegracao);
  line.valor = row.Money(movement::kValor);
  line.valRecap = row.Money(movement::kValRecap);
  line.hasDataSys = !row.IsNull(movement::kDataSys);
  if (line.hasDataSys) line.dataSys = row.Date(movement::kDataSys);
  return line;
}

/// A required value that a line lacks, and the box that says so.
struct EmptyValue {
  std::string_view label;
  std::string detail;
};

EmptyValue Describe(const RequiredValue& empty, const LedgerLine& line) {
  return {empty.label, fmt::format("\n\n[ Data: {}  Diário: {}  Conta: {} ]", line[ledger::kTransactionDate],
                                   line[ledger::kJournalId], line[ledger::kAccountId])};
}

/// One run of `cmdCalcular`.
class Staging {
 public:
  Staging(const session::Context& context, const periods::PeriodKey& period)
      : context_(context), period_(period) {}

  bool Run() {
    if (!Open()) return false;
    clause_ = JournalClause(*lunder_, *company_, period_);
    accounts_ = ReadStagedAccounts(*company_, period_);
    lines_ = session::ContaRegistos_lng(*lunder_, "MovDiario", " Where MovDiario.NumRegisto>0 " + clause_);
    const std::optional<LedgerTotals> totals = Verify();
    if (!totals) return false;
    const std::optional<EmptyValue> empty = Replace(*totals);
    if (empty) Abandon(*empty);
    return !empty;
  }

 private:
  bool Open() {
    return session::AbreConnectionLOCAL_bln(context_, company_) &&
           session::AbreConnection_bln(context_, lunder_, session::kLunder);
  }

  /// Counts and adds up the lines of staged accounts; nothing when a code is bad, which is said.
  std::optional<LedgerTotals> Verify() {
    ProgressScope progress(context_.progress, "Em Contagem / Verificação...", lines_);
    data::Recordset rows = lunder_->Query(fmt::format(
        "select "
        "MovDiario.ContaSP,MovDiario.Afecta,MovDiario.Valor,MovDiario.Numero,MovDiario.Data,MovDiario.Diario "
        "from MovDiario Where MovDiario.NumRegisto>0 {} order by MovDiario.NumRegisto",
        clause_));
    LedgerTotals totals;
    for (std::int64_t at = 1; !rows.Eof(); rows.MoveNext(), ++at) {
      progress.Step([&] { return fmt::format("Registo : {}", at); });
      if (!accounts_.Find(rows.Text(0))) continue;
      ++totals.entries;
      if (!CodesAreValid(rows.Text(5), rows.Text(3), rows.Text(4))) return std::nullopt;
      const Currency valor = toolkit::ArredondaVal(rows.Money(2), context_.session.gCasasDec);
      if (rows.Text(1) == "D") totals.debit += valor;
      if (rows.Text(1) == "C") totals.credit += valor;
    }
    return totals;
  }

  bool CodesAreValid(std::string_view diario, std::string_view numero, std::string_view data) {
    if (!IsValidCode(diario)) return Refuse(fmt::format("O Diário {} contém caracteres inválidos.", diario));
    if (IsValidCode(numero)) return true;
    return Refuse(fmt::format("O número do documento  {} de {}  contém caracteres inválidos.", numero, data));
  }

  bool Refuse(const std::string& reason) {
    context_.dialogs.Message(toolkit::Icon::Warning,
                             reason + "\nApenas pode conter algarismos de 0 a 9 e letras de A a Z");
    return false;
  }

  /// Puts the journal in the place of the staged lines; at a line that lacks a value nothing has changed.
  std::optional<EmptyValue> Replace(const LedgerTotals& totals) {
    const StagingStamp stamp{context_.session.gUtilizador, session::Get_DataSysServer(*company_)};
    const Journals journals = ReadJournals(*lunder_);
    LedgerMapper mapper({.integrated = IsIntegrated(*company_, period_),
                         .casas = context_.session.gCasasDec,
                         .marks = context_.session.Marks(),
                         .totals = totals},
                        journals);
    data::Transaction transaction(*company_);
    DeleteStaged();
    LedgerWriter writer(*company_, period_, stamp);
    if (auto empty = Write(mapper, writer)) return empty;
    writer.Finish();
    transaction.Commit();
    return std::nullopt;
  }

  std::optional<EmptyValue> Write(LedgerMapper& mapper, LedgerWriter& writer) {
    ProgressScope progress(context_.progress, periods::kProcessing, lines_);
    data::Recordset rows = lunder_->Query(fmt::format(kMainStatement, clause_));
    for (; !rows.Eof(); rows.MoveNext()) {
      progress.Step([&] {
        return fmt::format("Diário / Data / Número : {} / {} / {}", rows.Text(movement::kDiario),
                           rows.Text(movement::kData), rows.Text(movement::kNumero));
      });
      if (!accounts_.Find(rows.Text(movement::kContaSp)) || rows.Money(movement::kValor).IsZero()) continue;
      const LedgerLine& line = mapper.Map(LineOf(rows));
      if (const RequiredValue* empty = FirstEmpty(line)) return Describe(*empty, line);
      writer.Add(line);
    }
    return std::nullopt;
  }

  void DeleteStaged() {
    ProgressScope progress(context_.progress, "Eliminando Registos Anteriores...", 0);
    periods::ClearStaged(*company_, {MovimentosTable().table}, period_);
  }

  /// A line without a required value leaves the period without lines, the earlier ones included.
  void Abandon(const EmptyValue& empty) {
    DeleteStaged();
    periods::ShowEmptyField(context_, empty.label, empty.detail);
  }

  const session::Context& context_;
  const periods::PeriodKey& period_;
  session::ConnectionPtr company_;
  session::ConnectionPtr lunder_;
  std::string clause_;
  AccountSet accounts_;
  std::int64_t lines_ = 0;
};

}  // namespace

bool CalcularMovimentos(const session::Context& context, const periods::PeriodKey& period,
                        Confirmation confirmation) {
  if (!periods::IsChosen(period)) return false;
  if (confirmation == Confirmation::Ask && !periods::Confirmed(context, "Confirma o Processamento?"))
    return false;
  const bool staged = session::Reported(context, false, [&] { return Staging(context, period).Run(); });
  context.dialogs.Focus("lvwDocumentos");
  return staged;
}

}  // namespace korvel::accounting
