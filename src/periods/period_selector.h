#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "data/connection.h"
#include "periods/period.h"
#include "session/session_record.h"
#include "toolkit/options.h"

/// `eselFiscalYear`: the choice of an audit period that most forms begin with.
namespace korvel::periods {

/// The periods by year and start, each with the key of its place: year (4 characters), start and end (10 each), then the
/// customer of a self-billing period. `filter` is empty or a condition beginning with " and ". Throws data::Error.
std::vector<toolkit::Option> PeriodOptions(const session::SessionRecord& session, data::Connection& company,
                                           std::string_view filter = {});

/// What a key of the selector stands for.
struct ChosenPeriod {
  PeriodKey period;
  std::string cliente;

  friend bool operator==(const ChosenPeriod&, const ChosenPeriod&) = default;
};
/// A key that is too short leaves the missing parts empty.
ChosenPeriod ChosenBy(std::string_view key);

}  // namespace korvel::periods
