#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>

#include "billing/billing_period.h"
#include "billing/document_classes.h"
#include "data/connection.h"
#include "session/context.h"

namespace korvel::billing {

/// The customers that are staged, by data::CollationKey of `CustomerID`.
using CustomerSet = std::unordered_set<std::string>;
/// All of `TabCustomerGEST`, of whatever period. Throws data::Error.
CustomerSet ReadStagedCustomers(data::Connection& company);

struct CheckRules {
  const CustomerSet* customers = nullptr;  // null: customers are not looked at
  bool showsTaxNumber = false;             // the message of an unknown customer ends in its tax number
};

/// The values of a document that are checked.
struct CheckedDocument {
  std::string_view numero;
  std::string_view codPostal;
  std::string_view contribuinte;
};
/// How the message of the document's first fault goes on, "" when it has none.
std::string FaultOf(const CheckedDocument& document, const CheckRules& rules);

/// The full message of the period's first document, class by class, that would make a bad audit file; nothing when all
/// are well. Throws data::Error.
std::optional<std::string> FindFault(const session::Context& context, data::Connection& brevant,
                                     const BillingPeriod& period, const ClassFilters& filters,
                                     const CheckRules& rules);

}  // namespace korvel::billing
