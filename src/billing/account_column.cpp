#include "billing/account_column.h"

#include <fmt/format.h>

#include "periods/parameters.h"
#include "session/lookups.h"
#include "toolkit/numbers.h"
#include "toolkit/text.h"

namespace korvel::billing {
namespace {

constexpr std::string_view kNoAccount = "''";
constexpr int kFirstSncYear = 2010;

/// The first year under the newer chart of accounts. Older installations do not tell it.
data::Currency FirstSncYear(data::Connection& brevant) {
  try {
    const data::Recordset row =
        brevant.Query("select AnoSNC from Configura With (NoLock) order by NumRegisto");
    if (!row.Eof()) return toolkit::NumericPrefix(row.Text(0));
  } catch (const data::Error& error) {
    if (error.Kind() != data::Failure::NoTable) throw;
  }
  return data::Currency::FromWhole(kFirstSncYear);
}

/// The parameter where it names an account, "" where it does not.
std::string EquivalentField(data::Connection& company, const periods::PeriodKey& period) {
  if (ReadBasis(company, period) != periods::Basis::Integrated) return {};
  const auto parameters = periods::ReadParameters(company).value_or(periods::Parameters());
  const std::string_view field = toolkit::Trim(parameters.EquivCliente);
  return toolkit::SameIgnoringCase(field, periods::kEquivCodigo) ? std::string() : std::string(field);
}

}  // namespace

std::optional<std::string> AccountColumn(const session::Context& context, data::Connection& company,
                                         data::Connection& brevant, const periods::PeriodKey& period) {
  std::string field = EquivalentField(company, period);
  if (field.empty()) return std::string(kNoAccount);
  if (toolkit::NumericPrefix(period.fiscalYear) >= FirstSncYear(brevant)) field += "SNC";
  // Whatever the parameter holds, only the name of a column that is there gets into a statement.
  if (session::HasColumn(brevant, "Clientes", field))
    return fmt::format("[{}]", toolkit::ReplaceAll(field, "]", "]]"));
  context.dialogs.Message(toolkit::Icon::Critical,
                          fmt::format("Não existe o campo [{}] na tabela [Clientes]!\n"
                                      "Verifique a conta do Cliente nos Parâmetros Gerais (EquivCliente).",
                                      field));
  return std::nullopt;
}

}  // namespace korvel::billing
