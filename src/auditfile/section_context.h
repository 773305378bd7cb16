#pragma once

#include <string>
#include <string_view>

#include "auditfile/element_list.h"
#include "auditfile/export_run.h"
#include "auditfile/xml_writer.h"
#include "data/connection.h"
#include "periods/period.h"
#include "toolkit/ports.h"

namespace korvel::auditfile {

/// What the sections of one run need. References outlive the run.
struct SectionContext {
  data::Connection& company;
  toolkit::Progress& progress;
  const ExportOptions& options;
  const periods::PeriodKey& period;
  /// `TaxAccountingBasis` of the period. Neither side has a section for other texts than "C", "F" and "I".
  std::string basis;
  AmountFormat format;
  std::string Cliente;
  std::string today;  // YYYY-MM-DD

  bool HasAccounting() const { return basis == "C" || basis == "I"; }
  bool HasBilling() const { return basis == "F" || basis == "I"; }
  /// " And FiscalYear='..' and StartDate='..' and EndDate='..'"
  std::string PeriodFilter() const { return " And " + period.Condition(); }
};

}  // namespace korvel::auditfile
