#include "auditfile/export_run.h"

#include <memory>
#include <optional>
#include <utility>

#include "auditfile/audit_file.h"
#include "auditfile/documents_section.h"
#include "auditfile/file_plan.h"
#include "auditfile/header_section.h"
#include "auditfile/section_context.h"
#include "auditfile/sections.h"
#include "session/connections.h"
#include "toolkit/progress_scope.h"
#include "toolkit/replacing_file.h"

namespace korvel::auditfile {
namespace {

/// Hands progress on, and tells which section a caption stands for.
class SectionProgress final : public toolkit::Progress {
 public:
  SectionProgress(toolkit::Progress& progress, const std::function<void(std::string_view)>& onSection)
      : progress_(progress), onSection_(onSection) {}

  void Begin(std::string_view caption, std::int64_t total) override {
    progress_.Begin(caption, total);
    if (!onSection_) return;
    for (const Section& section : kSections) {
      if (section.caption == caption) onSection_(section.box);
    }
  }
  bool Show(std::int64_t done, std::string_view detail) override { return progress_.Show(done, detail); }
  void End() override { progress_.End(); }

 private:
  toolkit::Progress& progress_;
  const std::function<void(std::string_view)>& onSection_;
};

/// The road from the first month's file to the last. One file is whole before the next is begun.
class ExportRun {
 public:
  ExportRun(const SectionContext& context, FileNaming naming, std::vector<std::string>& files)
      : context_(context), naming_(std::move(naming)), files_(files), stem_(NameStem(context.period)) {}

  void WriteFiles() {
    const int last = MonthOf(context_.period.endDate);
    int month = firstMonth_;
    do {
      WriteFile(month);
    } while (month != 0 && ++month <= last);
  }

 private:
  void WriteFile(int month) {
    // Only the Header makes the name's stem anew. Without it a month's stem is the path of the month before
    // and the names grow, which is deliberate.
    if (context_.options.chkHeader) stem_ = NameStem(context_.period);
    stem_ = FilePath(naming_, stem_, month);
    WriteSections(stem_, month);
    files_.push_back(stem_);
    if (context_.options.chkHeader) StoreDateCreated(context_);
  }

  void WriteSections(const std::string& path, int month) {
    auto file = std::make_unique<toolkit::ReplacingFile>(toolkit::PathOf(path));
    FileContent content;
    const std::string ledger = MonthFilter(month, firstMonth_, context_.options.chkContabilAcum);
    const std::string billing = MonthFilter(month, firstMonth_, context_.options.chkFacturacaoAcum);
    content.ledgerFilter = ledger;
    content.documents = {billing, scattered_};
    if (firstFile_) content.masterFiles = [this](toolkit::FileSink& to) { CopyMasterFiles(to); };
    const toolkit::ByteRange masterFiles = WriteAuditFile(*file, context_, content);
    file->Finish();
    if (firstFile_) return;
    firstFile_ = std::move(file);
    masterFiles_ = masterFiles;
  }

  /// Every month's file has the master data of the whole period, byte for byte.
  void CopyMasterFiles(toolkit::FileSink& to) const {
    firstFile_->CopyTo(to, masterFiles_.begin, masterFiles_.end);
  }

  const SectionContext& context_;
  const FileNaming naming_;
  std::vector<std::string>& files_;
  std::string stem_;
  const int firstMonth_ = context_.options.chkPorMeses ? MonthOf(context_.period.startDate) : 0;
  const bool scattered_ = WantsDocuments(context_) && DocumentsAreScattered(context_);
  std::unique_ptr<const toolkit::ReplacingFile> firstFile_;
  toolkit::ByteRange masterFiles_;
};

/// What the run must know of the period before it begins.
struct PeriodRow {
  std::string basis;
  std::string taxNumber;
};

std::optional<PeriodRow> ReadPeriod(data::Connection& company, const periods::PeriodKey& period) {
  const data::Recordset row =
      company.Query("Select * from TabHeader where NumRegisto>0  And " + period.Condition());
  if (row.Eof()) return std::nullopt;
  return PeriodRow{std::string(row.Text("TaxAccountingBasis")),
                   std::string(row.Text("TaxRegistrationNumber"))};
}

session::ConnectionPtr OpenCompany(const session::Context& context, bool silent, ExportResult& result) {
  session::ConnectionPtr company;
  if (session::OpenSessionDatabase(context, company, context.session.gBaseDados)) return company;
  if (!silent) session::ShowConnectionError(context);
  result.error = context.session.gErroDescricao;
  return nullptr;
}

void Run(const session::Context& context, const ExportOptions& options, const periods::PeriodKey& period,
         std::string_view Cliente, bool silent, const ExportScreen& screen, ExportResult& result) {
  const session::ConnectionPtr company = OpenCompany(context, silent, result);
  if (!company) return;
  const auto row = ReadPeriod(*company, period);
  if (!row) {
    result.error = kNoHeader;
    if (!silent) context.dialogs.Message(toolkit::Icon::Critical, result.error);
    return;
  }
  SectionProgress progress(context.progress, screen.onSection);
  const SectionContext sections{*company,
                                progress,
                                options,
                                period,
                                row->basis,
                                {context.session.gCasasDec, context.session.Marks()},
                                std::string(Cliente),
                                context.clock.Now().DateText()};
  ExportRun(sections, {options.txtPastaExportacao, row->taxNumber, row->basis}, result.files).WriteFiles();
  result.ok = true;
}

std::string Lines(const std::vector<std::string>& files) {
  std::string text;
  for (const std::string& file : files) text += (text.empty() ? "" : "\n") + file;
  return text;
}

/// The list of a monthly run is shown in any case.
void ShowFiles(const session::Context& context, const ExportOptions& options, bool silent,
               const std::vector<std::string>& files) {
  if (options.chkPorMeses) {
    context.dialogs.Message(toolkit::Icon::None, "Foram gerados os seguintes ficheiros:\n" + Lines(files),
                            kFilesTitle);
  } else if (!silent) {
    context.dialogs.Message(toolkit::Icon::Information,
                            "Foram Gerados os Seguintes Ficheiros:\n\n" + Lines(files));
  }
}

}  // namespace

ExportResult ExportaSaft(const session::Context& context, const ExportOptions& options,
                         const periods::PeriodKey& period, std::string_view Cliente, bool silent,
                         const ExportScreen& screen) {
  ExportResult result;
  try {
    Run(context, options, period, Cliente, silent, screen, result);
  } catch (const std::exception& failure) {
    // A run that fails shows no box, by design; its caller finds the reason in the result.
    result.ok = false;
    result.error = failure.what();
    result.cancelled = dynamic_cast<const toolkit::Cancelled*>(&failure) != nullptr;
  }
  if (result.ok && !screen.showsFiles) ShowFiles(context, options, silent, result.files);
  return result;
}

}  // namespace korvel::auditfile
