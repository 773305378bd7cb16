#include "billing/document_checks.h"

#include <fmt/format.h>

#include "billing/audit_codes.h"
#include "data/collation.h"
#include "toolkit/dates.h"
#include "toolkit/text.h"

namespace korvel::billing {
namespace {

enum : std::size_t { kTipo, kNumero, kData, kCodPostal, kContribuinte };

std::string FaultText(const session::Context& context, const data::Recordset& row, std::string_view fault) {
  const session::SessionRecord& session = context.session;
  return fmt::format(
      "O documento {} nº {} de {}{}\nNão pode continuar o processo até efectuar a respectiva alteração.",
      row.Text(kTipo), row.Text(kNumero),
      toolkit::GData(row.Text(kData), {session.gFormatoData, session.gSepData}), fault);
}

}  // namespace

CustomerSet ReadStagedCustomers(data::Connection& company) {
  CustomerSet customers;
  data::Recordset rows = company.Query("Select Distinct CustomerID from TabCustomerGEST With (NoLock)");
  for (; !rows.Eof(); rows.MoveNext()) {
    if (!rows.IsNull(0)) customers.insert(data::CollationKey(rows.Text(0)));
  }
  return customers;
}

std::string FaultOf(const CheckedDocument& document, const CheckRules& rules) {
  if (!toolkit::SoDigitos(document.numero)) return ", tem caracteres inválidos no campo NÚMERO.";
  if (toolkit::IsBlank(document.codPostal)) return ", não tem o Código Postal Definido";
  if (!rules.customers || document.contribuinte == kFinalConsumer) return {};
  const std::string number = toolkit::LimpaContribuinte_str(document.contribuinte);
  if (rules.customers->contains(data::CollationKey(number))) return {};
  const std::string fault = ", tem um contribuinte inexistente na tabela de Custumer/Clientes";
  return rules.showsTaxNumber ? fmt::format("{} (Contrib: {})", fault, document.contribuinte) : fault;
}

std::optional<std::string> FindFault(const session::Context& context, data::Connection& brevant,
                                     const BillingPeriod& period, const ClassFilters& filters,
                                     const CheckRules& rules) {
  for (const ClassFilter& filter : filters) {
    data::Recordset rows = brevant.Query(fmt::format(
        "select Tipo,Numero,Data,CodPostal,Contribuinte from MovCliente With (NoLock) Where NumRegisto>0 "
        "{}{} Order by Numero,NumRegisto",
        filter.On(), period.Documents()));
    for (; !rows.Eof(); rows.MoveNext()) {
      const std::string fault =
          FaultOf({rows.Text(kNumero), rows.Text(kCodPostal), rows.Text(kContribuinte)}, rules);
      if (!fault.empty()) return FaultText(context, rows, fault);
    }
  }
  return std::nullopt;
}

}  // namespace korvel::billing
