#include "billing/source_repairs.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <functional>
#include <map>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

#include "billing/text_lookups.h"
#include "session/lookups.h"
#include "toolkit/text.h"

namespace korvel::billing {
namespace {

constexpr std::size_t kCustomersAStatement = 500;

constexpr std::array<std::string_view, 2> kAddRemovalMoment{
    "alter table LOG_MovTerceiro add DataSys varchar(50)",
    "Update LOG_MovTerceiro set DataSys='' where DataSys is null"};

/// A customer with documents that lack a country.
struct MissingCountry {
  std::string codigo;
  std::string pais;  // of the customer, never blank
};
using CountryOf = std::function<std::string(std::string_view codigo)>;

/// By code. Customers without a country of their own are left out.
std::vector<MissingCountry> FindMissing(data::Connection& brevant, const std::string& documents,
                                        const CountryOf& countryOf) {
  std::vector<MissingCountry> missing;
  data::Recordset codes = brevant.Query("Select Distinct Codigo from MovCliente With (NoLock) Where Pais=''" +
                                        documents + " order by Codigo");
  for (; !codes.Eof(); codes.MoveNext()) {
    std::string pais = countryOf(codes.Text(0));
    if (!toolkit::IsBlank(pais)) missing.push_back({std::string(codes.Text(0)), std::move(pais)});
  }
  return missing;
}

void SetCountry(data::Connection& brevant, const std::string& pais, std::span<const std::string> codes,
                std::string_view documents) {
  std::string statement = "Update MovCliente set Pais=? where Codigo in (?";
  for (std::size_t i = 1; i < codes.size(); ++i) statement += ",?";
  statement.append(")").append(documents);
  std::vector<data::Parameter> values{pais};
  values.insert(values.end(), codes.begin(), codes.end());
  brevant.Execute(statement, values);
}

/// `documents` narrows the documents written, as a condition that begins with " and ", or is empty.
void SetCountries(data::Connection& brevant, const std::vector<MissingCountry>& missing,
                  std::string_view documents) {
  std::map<std::string, std::vector<std::string>> byCountry;
  for (const MissingCountry& customer : missing) byCountry[customer.pais].push_back(customer.codigo);
  for (const auto& [pais, codes] : byCountry) {
    std::span<const std::string> left(codes);
    while (!left.empty()) {
      const std::size_t count = std::min(left.size(), kCustomersAStatement);
      SetCountry(brevant, pais, left.first(count), documents);
      left = left.subspan(count);
    }
  }
}

}  // namespace

void RepairMissingCountries(data::Connection& brevant) {
  TextMap countries;
  ReadTexts(brevant, "Clientes", "Codigo", "Pais", countries);
  const auto missing =
      FindMissing(brevant, "", [&](std::string_view codigo) { return TextOf(countries, codigo); });
  if (missing.empty()) return;
  brevant.Execute("Update MovCliente set Pais=? where Pais is null", {missing.front().pais});
  SetCountries(brevant, missing, " and Pais=''");
}

void RepairDocumentCountries(data::Connection& brevant, const BillingPeriod& period,
                             const data::CollatedMap<DocumentCustomer>& customers) {
  const auto countryOf = [&](std::string_view codigo) {
    const DocumentCustomer* customer = customers.Find(codigo);
    return customer ? customer->pais : std::string();
  };
  SetCountries(brevant, FindMissing(brevant, period.Documents(), countryOf), "");
}

bool EnsureRemovalMoment(const session::Context& context, data::Connection& brevant) {
  if (session::HasColumn(brevant, "LOG_MovTerceiro", "DataSys")) return true;
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
