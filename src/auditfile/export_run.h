#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "periods/period.h"
#include "session/context.h"

namespace korvel::auditfile {

/// What a run is asked for, under the names of the export form's controls. A section is written when its box
/// is ticked and the period's basis has it.
struct ExportOptions {
  bool chkHeader = true;
  bool chkPOCGeneralLedger = false;
  bool chkPOCCustomer = false;
  bool chkPOCSupplier = false;
  bool chkPOCTaxTable = false;
  bool chkPOCGeneralLedgerEntries = false;
  bool chkGESTCustomer = false;
  bool chkGESTProduct = false;
  bool chkGESTTaxTable = false;
  bool chkGESTSourceDocuments = false;
  /// One file a month of the period.
  bool chkPorMeses = false;
  /// A month's file holds the documents, or the ledger entries, from the period's first month on.
  bool chkFacturacaoAcum = false;
  bool chkContabilAcum = false;
  /// UTF-8; a missing separator at its end is added. Blank: the current folder.
  std::string txtPastaExportacao;
};

struct ExportResult {
  bool ok = false;
  /// Paths of the files written, UTF-8, in the order of their making; those finished before a failure too.
  std::vector<std::string> files;
  /// Why the run failed, empty when it did not. A run tells most of its failures only here.
  std::string error;
  /// It failed because the user cancelled it.
  bool cancelled = false;
};

/// What a caller with a screen does in a run.
struct ExportScreen {
  /// Told the box of a section, such as "chkPOCCustomer", as the run reaches it; on the run's thread.
  std::function<void(std::string_view box)> onSection = {};
  /// The caller shows which files were written; the run does not.
  bool showsFiles = false;
};

/// Said of a period that is not defined.
inline constexpr std::string_view kNoHeader = "Não definiu a Identificação da Empresa - Header";
/// Title of the box that lists the files of a monthly run.
inline constexpr std::string_view kFilesTitle = "Exportação de Ficheiros Saft";

/// Writes the audit file of a period from the staged rows of the company, or one file a month. `Cliente` is
/// not blank for a self-billing file. `silent` keeps the run from showing boxes, but for the list of files of
/// a monthly run. A file of an earlier run is replaced only once the new one is whole;
/// `TabHeader.DateCreated` is set for every file written with its header, and a blank `TaxPayable` of a document
/// becomes 0 in its staged row. Throws nothing: what fails ends the
/// run and is told in the result.
ExportResult ExportaSaft(const session::Context& context, const ExportOptions& options,
                         const periods::PeriodKey& period, std::string_view Cliente = {}, bool silent = false,
                         const ExportScreen& screen = {});

/// Which periods are offered for export, as a condition to append to the choice of periods: rows of an earlier version
/// hold their kind as a long text.
inline constexpr std::string_view kExportPeriods = " and Len(TaxAccountingBasis)=1  ";

/// The boxes as the choice of a period of that basis ticks them. The folder and the monthly boxes are left as
/// they are made; `chkHeader` is ticked.
ExportOptions OptionsFor(periods::Basis basis);

/// Which of the boxes a user may change for a period.
struct ExportChoices {
  bool chkPorMeses = false;
  bool chkFacturacaoAcum = false;
  bool chkContabilAcum = false;
};
/// The monthly division is offered when the period ends in a later month than it starts in. The cumulative
/// boxes go by the basis.
ExportChoices ChoicesFor(periods::Basis basis, const periods::PeriodKey& period);

/// How many staged rows each section has in a period.
struct SectionCount {
  std::string_view section;  // name of its box, such as "chkPOCCustomer"
  std::string_view caption;
  std::int64_t rows = 0;
};
/// All nine sections in the order of the form. Throws data::Error.
std::vector<SectionCount> CountSections(data::Connection& company, const periods::PeriodKey& period);

/// What the choice of a period shows.
struct ExportOffer {
  std::vector<SectionCount> counts;
  ExportOptions options;
  ExportChoices choices;
};
/// Nothing, and deliberately not a word, when the company's database does not open; nothing when the period is not
/// there any more, which is said.
std::optional<ExportOffer> OfferFor(const session::Context& context, const periods::PeriodKey& period);

/// The kind of system of a period as the extraction forms know it: "I", "C", and deliberately "G" for
/// billing; "" when there is no such period. A connection failure is shown and gives "".
std::string TipoSistemaPeriodo(const session::Context& context, const periods::PeriodKey& period);
/// The same for a selector's key: year in characters 1 to 4, start from 5 for 10, end from 15 for 10.
std::string TipoSistemaPeriodo(const session::Context& context, std::string_view eselFiscalYear);

}  // namespace korvel::auditfile
