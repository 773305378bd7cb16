#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "demo/random.h"

namespace korvel::demo {

/// A customer or supplier. Texts fit the columns of `Contas`, and the name the 50 characters of the staged
/// chart.
struct Taxpayer {
  std::string taxNumber;
  std::string country;  // of two letters; blank where the books leave it out
  std::string name;
  std::string street;
  std::string doorNumber;
  std::string town;
  std::string postalCode;
  std::string district;
  std::string telephone;
  std::string mail;
  bool selfBilling = false;  // makes the invoices itself
};

/// A Portuguese tax number: the eight digits and their check digit.
std::string PortugueseTaxNumber(std::int64_t eightDigits);

/// The postal code that the billing product puts where nobody knows it.
inline constexpr std::string_view kNoPostalCode = "0000000000";

/// Postal code of a document for the taxpayer, never blank.
std::string PostalCodeOf(const Taxpayer& who);
/// Street and door; "Desconhecida" for a taxpayer without street.
std::string AddressOf(const Taxpayer& who);

enum class Kind { Customer, Supplier };

/// `count` taxpayers with different tax numbers; mostly companies of all parts of the country, some from
/// abroad, and some customers bill themselves. Some suppliers have no country, which the extraction takes for
/// Portugal.
std::vector<Taxpayer> MakeTaxpayers(Kind kind, std::int64_t count, Random& random);

/// Persons who buy or sell now and then, under tax numbers of persons, which no company has. Some are from
/// `country`. The first customer is the final consumer, whom nobody knows.
std::vector<Taxpayer> MakePersons(Kind kind, std::string_view country);

}  // namespace korvel::demo
