#include "periods/period.h"

#include <fmt/format.h>

#include "data/sql_text.h"

namespace korvel::periods {

std::string PeriodKey::Condition() const {
  return fmt::format("FiscalYear={} and StartDate={} and EndDate={}", data::Quoted(fiscalYear),
                     data::Quoted(startDate), data::Quoted(endDate));
}

}  // namespace korvel::periods
