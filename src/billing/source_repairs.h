#pragma once

#include <string>

#include "billing/billing_period.h"
#include "billing/document_lookups.h"
#include "data/connection.h"
#include "session/context.h"

/// The only writes of an extraction into the billing product's database.
namespace korvel::billing {

/// Gives each document without a country, of all periods, that of its customer, and those whose country is NULL, of
/// any customer, the country of the first customer by code who has one and documents without; deliberate. Customers
/// without a country of their own are left alone. Throws data::Error.
void RepairMissingCountries(data::Connection& brevant);

/// Gives documents the country of their customer: every document, of all periods, of each customer who has one
/// without a country in this period. Customers without a country of their own are left alone. Throws data::Error.
void RepairDocumentCountries(data::Connection& brevant, const BillingPeriod& period,
                             const data::CollatedMap<DocumentCustomer>& customers);

/// Adds `DataSys` to the log of removed documents where it is missing. False when the server refuses; what its
/// administrator must run is shown then. Throws data::Error when the log itself is missing.
bool EnsureRemovalMoment(const session::Context& context, data::Connection& brevant);

}  // namespace korvel::billing
