#include "billing/documents.h"

#include <fmt/format.h>

#include <optional>

#include "billing/document_checks.h"
#include "billing/document_totals.h"
#include "billing/document_walk.h"
#include "billing/source_link.h"
#include "billing/source_repairs.h"
#include "periods/company_tables.h"
#include "periods/parameters.h"
#include "periods/staged_tables.h"
#include "session/connections.h"
#include "session/failures.h"
#include "session/lookups.h"
#include "toolkit/progress_scope.h"
#include "toolkit/text.h"

namespace korvel::billing {
namespace {

using toolkit::ProgressScope;

/// One run of `cmdCalcular`.
class Extraction {
 public:
  Extraction(const session::Context& context, const BillingPeriod& period, Caller caller)
      : context_(context), period_(period), caller_(caller), source_(context) {}

  bool Run() {
    if (!Open() || !ReadSource()) return false;
    {
      ProgressScope progress(context_.progress, "Verificando Movimentos sem o País definido", 0);
      RepairDocumentCountries(source_.Main(), period_, lookups_.customers);
    }
    ReadCompanyLookups(*company_, period_.key, lookups_);
    return ReadLedger() && Replace();
  }

 private:
  bool Open() { return session::AbreConnectionLOCAL_bln(context_, company_) && source_.Open(); }

  bool ReadSource() {
    parameters_ = periods::ReadParameters(*company_).value_or(periods::Parameters());
    basis_ = ReadBasis(*company_, period_.key);
    filters_ = ReadClassFilters(source_.Main());
    CountDocuments(source_.Main(), period_, filters_, totals_);
    const bool removed = parameters_.IncluirDocumentosAnulados;
    if (removed && !EnsureRemovalMoment(context_, source_.Main())) return false;
    ReadBrevantLookups(source_.Main(), period_, removed, lookups_);
    return true;
  }

  /// A ledger that does not open leaves documents without transaction, which the check of the rows then reports.
  bool ReadLedger() {
    if (basis_ != periods::Basis::Integrated || totals_.NumberOfEntries() == 0) return true;
    session::ConnectionPtr lunder;
    if (session::AbreConnection_bln(context_, lunder, session::kLunder))
      ReadTransactions(*lunder, period_.key, lookups_);
    return true;
  }

  /// All or nothing, but for documents that are refused: they leave the period without rows.
  bool Replace() {
    data::Transaction transaction(*company_);
    const std::optional<std::string> refusal = StageDocuments();
    transaction.Commit();
    if (refusal) context_.dialogs.Message(toolkit::Icon::Critical, *refusal, refusalTitle_);
    return !refusal;
  }

  std::optional<std::string> StageDocuments() {
    ProgressScope progress(context_.progress, periods::kProcessing, totals_.NumberOfEntries());
    periods::ClearStaged(*company_, kStagedDocuments, period_.key, period_.cliente);
    SumDocuments(source_.Main(), period_, filters_, context_.session.gCasasDec, totals_);
    if (auto fault = FindFault(context_, source_.Main(), period_, filters_, Rules())) return fault;
    return WriteDocuments(progress);
  }

  CheckRules Rules() {
    const bool checksCustomers = basis_ == periods::Basis::Billing;
    if (checksCustomers) customers_ = ReadStagedCustomers(*company_);
    return {checksCustomers ? &customers_ : nullptr, caller_ == Caller::Wizard};
  }

  /// At the first row that lacks a value the whole period goes, other customers' rows too: deliberately harsh, so
  /// that no file is made from half a period.
  std::optional<std::string> WriteDocuments(ProgressScope& progress) {
    const WalkChoice choice{{period_, parameters_.SourceDocuments_DescLinhaDoc, DateMarks()},
                            parameters_.IncluirDocumentosAnulados};
    std::optional<std::string> refusal;
    {
      DocumentRowWriter writer(*company_, period_, context_.session.gUtilizador,
                               session::Get_DataSysServer(*company_));
      DocumentMapper mapper(lookups_, Constants());
      const auto sink = [&](StagedRow& row) {
        if (const auto empty = CompleteRow(row, basis_)) refusal = EmptyColumnText(*empty, row);
        if (!refusal) writer.Add(row);
        return !refusal;
      };
      DocumentWalk(source_, choice, lookups_, mapper, progress).Run(filters_, totals_, sink);
      if (!refusal) writer.Finish();
    }
    if (!refusal) return std::nullopt;
    refusalTitle_ = "AVISO";
    company_->Execute(fmt::format("Delete from {} where {}", kDocumentsTable, period_.key.Condition()));
    return refusal;
  }

  MappingConstants Constants() const {
    const session::SessionRecord& session = context_.session;
    const auto total = [&](data::Currency value) {
      const std::string text =
          toolkit::FDNum(value, session.gCasasDec, toolkit::kNoGrouping, {}, session.Marks());
      return std::string(toolkit::Trim(text));
    };
    return {basis_,
            session.gCasasDec,
            session.gSepDecimal,
            totals_.NumberOfEntries(),
            total(totals_.debit),
            total(totals_.credit),
            parameters_.ProductDescriptionDefault};
  }

  toolkit::DateMarks DateMarks() const { return {context_.session.gFormatoData, context_.session.gSepData}; }

  const session::Context& context_;
  const BillingPeriod& period_;
  const Caller caller_;
  SourceLink source_;
  session::ConnectionPtr company_;
  periods::Parameters parameters_;
  std::optional<periods::Basis> basis_;
  ClassFilters filters_;
  SectionTotals totals_;
  DocumentLookups lookups_;
  CustomerSet customers_;
  std::string refusalTitle_;
};

}  // namespace

bool CalcularDocumentos(const session::Context& context, const BillingPeriod& period, Caller caller) {
  if (!periods::IsChosen(period.key)) return false;
  if (caller == Caller::Form && !periods::Confirmed(context, "Confirma o Processamento?")) return false;
  const bool staged =
      session::Reported(context, false, [&] { return Extraction(context, period, caller).Run(); });
  context.dialogs.Focus("lvwDocumentos");
  return staged;
}

}  // namespace korvel::billing
