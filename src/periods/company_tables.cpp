#include "periods/company_tables.h"

#include <array>

#include "session/connections.h"
#include "session/failures.h"

namespace korvel::periods {

std::optional<Grid> LoadFromCompany(const session::Context& context, const StagedTable& table,
                                    const PeriodKey& period) {
  if (!IsChosen(period)) return std::nullopt;
  return session::Reported(context, std::optional<Grid>(), [&]() -> std::optional<Grid> {
    session::ConnectionPtr company;
    if (!session::AbreConnectionLOCAL_bln(context, company)) return std::nullopt;
    return LoadStaged(context, *company, table, period);
  });
}

bool SaveToCompany(const session::Context& context, const StagedTable& table, const PeriodKey& period,
                   const Grid& rows, std::string_view caption, std::string_view cliente) {
  if (!IsChosen(period)) return false;
  return session::Reported(context, false, [&] {
    session::ConnectionPtr company;
    return session::AbreConnectionLOCAL_bln(context, company) &&
           SaveStaged(context, *company, table, period, rows, caption, cliente);
  });
}

bool Confirmed(const session::Context& context, std::string_view question) {
  static constexpr std::array<std::string_view, 2> kYesNo{"&Sim", "&Não"};
  return context.dialogs.Ask(question, kYesNo) == 0;
}

}  // namespace korvel::periods
