#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "periods/period_header.h"

/// What the list and the entry form of the periods do. Each function opens the company's connection and
/// closes it; a failure to open is shown. data::Error is thrown as it comes, and nothing has changed then.
namespace korvel::periods {

enum class HeaderMode : char { New = 'N', Change = 'A', View = 'V' };

/// The caption of the entry form.
std::string EntryCaption(HeaderMode mode);

/// An entry form as it opens.
struct OpenedHeader {
  PeriodHeader header;
  bool canSave =
      true;  // false for rows of an earlier version, which hold the kind as a long text, and for views
};

/// Opens the form on the row `numRegisto`, or on a new one. Nothing when the row has gone, which is said.
std::optional<OpenedHeader> OpenHeader(const session::Context& context, HeaderMode mode,
                                       std::int64_t numRegisto);

/// `cmdGravar` in the modes New and Change: checks and saves what was opened with `canSave`. False when a check failed or the row has gone,
/// both told through the dialogs; `header.numRegisto` is 0 when the row has gone. On success it is the row's key, and the
/// save is logged.
bool GravarHeader(const session::Context& context, HeaderMode mode, PeriodHeader& header);

/// How a period is told in the activity log.
std::string LogText(std::string_view fiscalYear, std::string_view companyName);

/// A row of the list of periods.
struct PeriodListItem {
  std::int64_t numRegisto = 0;
  PeriodKey period;
  std::string companyName;
  std::string basis;  // MTaxAccountingBasis: the first letter
  std::string auditFileVersion;
  std::string utilizador;
  std::string dataSys;  // regional date
  std::string cliente;
};

/// The periods by year and start; `filter` is empty or a condition beginning with " and ".
std::vector<PeriodListItem> ListPeriods(const session::Context& context, data::Connection& company,
                                        std::string_view filter = {});
/// What `cmdPesquisar` looks for; an empty text finds all.
struct PeriodSearch {
  std::string fiscalYear;
  std::string companyName;

  bool IsEmpty() const { return fiscalYear.empty() && companyName.empty(); }
};
/// The periods whose values begin with these texts, by year and start.
std::vector<PeriodListItem> SearchPeriods(const session::Context& context, data::Connection& company,
                                          const PeriodSearch& search);
/// Nothing when no such period is there.
std::optional<PeriodListItem> FindPeriod(const session::Context& context, data::Connection& company,
                                         std::int64_t numRegisto);
std::optional<PeriodListItem> FindPeriod(const session::Context& context, data::Connection& company,
                                         const PeriodKey& period);

/// `cmdEliminar`: warns, asks, and deletes a period with all that is staged for it, which is logged. False when it was
/// not done.
bool EliminarHeader(const session::Context& context, const std::vector<PeriodListItem>& selected);

}  // namespace korvel::periods
