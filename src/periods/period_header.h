#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "data/connection.h"
#include "periods/header_fields.h"
#include "periods/period.h"
#include "session/context.h"

namespace korvel::periods {

/// The values of a period's Header as the entry form holds them, all text.
class PeriodHeader {
 public:
  PeriodHeader();

  /// By column of HeaderFields(), in any case; throws std::out_of_range for another name.
  std::string& operator[](std::string_view column);
  const std::string& operator[](std::string_view column) const;

  PeriodKey Key() const;

  std::int64_t numRegisto = 0;  // 0: not saved yet

 private:
  std::vector<std::string> values_;  // as HeaderFields()
};

/// Change of the system kind: "Global" as establishment of a billing period, "Sede" of the others.
void ChangeKind(PeriodHeader& header, std::string_view kind);
/// The customer of a self-billing period is shown for billing periods alone.
bool ShowsCustomer(const PeriodHeader& header);
/// Leaving the year: its numeric value, and the first and last day of it in dates that are empty.
void LeaveFiscalYear(const toolkit::Clock& clock, PeriodHeader& header);
/// Leaving the tax number: says at the first character that is no digit, and returns false.
bool LeaveTaxRegistrationNumber(toolkit::Dialogs& dialogs, const PeriodHeader& header);

/// Fills a header from the latest period; nothing happens when there is none. The kind is set through
/// ChangeKind.
void CarregarTemplate(data::Connection& company, PeriodHeader& header);

/// The first fault that keeps a header from being saved: the column to go to and what is said, which may be
/// nothing.
struct HeaderFault {
  std::string_view column;
  std::string_view message = {};
};
std::optional<HeaderFault> CheckHeader(const PeriodHeader& header);

}  // namespace korvel::periods
