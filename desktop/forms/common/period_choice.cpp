#include "forms/common/period_choice.h"

#include "periods/company_connection.h"

namespace korvel::desktop {

PeriodChoice::PeriodChoice(Desk& desk, std::string_view filter, QWidget* parent)
    : SelOpta("eselFiscalYear", parent), desk_(desk), filter_(filter) {}

bool PeriodChoice::LoadPeriods() {
  using Options = std::vector<toolkit::Option>;
  auto options = desk_.Try([&](const session::Context& context) -> std::optional<Options> {
    const auto company = periods::OpenCompany(context);
    if (!company) return std::nullopt;
    return periods::PeriodOptions(context.session, *company, filter_);
  });
  if (!options || !*options) return false;
  const std::string chosen = Chave();
  SetOptions(std::move(**options));
  if (!chosen.empty()) SetChave(chosen);
  return true;
}

}  // namespace korvel::desktop
