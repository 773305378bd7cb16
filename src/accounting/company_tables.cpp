#include "accounting/company_tables.h"

#include <array>

#include "accounting/failures.h"
#include "session/connections.h"

namespace korvel::accounting {

std::optional<periods::Grid> LoadFromCompany(const session::Context& context,
                                             const periods::StagedTable& table,
                                             const periods::PeriodKey& period) {
  if (!IsChosen(period)) return std::nullopt;
  return Reported(context, std::optional<periods::Grid>(), [&]() -> std::optional<periods::Grid> {
    session::ConnectionPtr company;
    if (!session::AbreConnectionLOCAL_bln(context, company)) return std::nullopt;
    return periods::LoadStaged(context, *company, table, period);
  });
}

bool SaveToCompany(const session::Context& context, const periods::StagedTable& table,
                   const periods::PeriodKey& period, const periods::Grid& rows, std::string_view caption) {
  if (!IsChosen(period)) return false;
  return Reported(context, false, [&] {
    session::ConnectionPtr company;
    return session::AbreConnectionLOCAL_bln(context, company) &&
           periods::SaveStaged(context, *company, table, period, rows, caption);
  });
}

bool Confirmed(const session::Context& context, std::string_view question) {
  static constexpr std::array<std::string_view, 2> kYesNo{"&Sim", "&Não"};
  return context.dialogs.Ask(question, kYesNo) == 0;
}

}  // namespace korvel::accounting
