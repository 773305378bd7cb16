#include "billing/source_repairs.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <map>
#include <span>
#include <string_view>
#include <vector>

#include "toolkit/text.h"

namespace korvel::billing {
namespace {

constexpr std::size_t kCustomersAStatement = 500;

constexpr std::array<std::string_view, 2> kAddRemovalMoment{
    "alter table LOG_MovTerceiro add DataSys varchar(50)",
    "Update LOG_MovTerceiro set DataSys='' where DataSys is null"};

/// Codes of the customers to repair, by their country.
std::map<std::string, std::vector<std::string>> CustomersByCountry(
    data::Connection& brevant, const BillingPeriod& period,
    const data::CollatedMap<DocumentCustomer>& customers) {
  std::map<std::string, std::vector<std::string>> byCountry;
  data::Recordset codes = brevant.Query("Select Distinct Codigo from MovCliente With (NoLock) Where Pais=''" +
                                        period.Documents() + " order by Codigo");
  for (; !codes.Eof(); codes.MoveNext()) {
    if (codes.IsNull(0)) continue;
    const DocumentCustomer* customer = customers.Find(codes.Text(0));
    if (customer && !toolkit::IsBlank(customer->pais)) byCountry[customer->pais].emplace_back(codes.Text(0));
  }
  return byCountry;
}

void SetCountry(data::Connection& brevant, const std::string& pais, std::span<const std::string> codes) {
  std::string statement = "Update MovCliente set Pais=? where Codigo in (?";
  for (std::size_t i = 1; i < codes.size(); ++i) statement += ",?";
  std::vector<data::Parameter> values{pais};
  values.insert(values.end(), codes.begin(), codes.end());
  brevant.Execute(statement + ")", values);
}

}  // namespace

void RepairDocumentCountries(data::Connection& brevant, const BillingPeriod& period,
                             const data::CollatedMap<DocumentCustomer>& customers) {
  for (const auto& [pais, codes] : CustomersByCountry(brevant, period, customers)) {
    std::span<const std::string> left(codes);
    while (!left.empty()) {
      const std::size_t count = std::min(left.size(), kCustomersAStatement);
      SetCountry(brevant, pais, left.first(count));
      left = left.subspan(count);
    }
  }
}

bool EnsureRemovalMoment(const session::Context& context, data::Connection& brevant) {
  if (brevant.Query("Select * from LOG_MovTerceiro With (NoLock) where NumRegisto<0").Has("DataSys"))
    return true;
  try {
    for (const std::string_view statement : kAddRemovalMoment) brevant.Execute(statement);
    return true;
  } catch (const data::Error& refusal) {
    context.dialogs.Message(
        toolkit::Icon::Critical,
        fmt::format(
            "Falta o campo DataSys na tabela LOG_MovTerceiro e não foi possível acrescentá-lo:\n[{}]\n"
            "O administrador do servidor deve executar, na base de dados {}:\n{}",
            refusal.what(), brevant.Database(), fmt::join(kAddRemovalMoment, "\n")));
    return false;
  }
}

}  // namespace korvel::billing
