#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "demo/random.h"

namespace korvel::demo {

/// A customer or supplier. Texts fit the columns of `Contas`, and the name the 50 characters of the staged chart.
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
};

/// A Portuguese tax number: the eight digits and their check digit.
std::string PortugueseTaxNumber(std::int64_t eightDigits);

enum class Kind { Customer, Supplier };

/// `count` taxpayers with different tax numbers; mostly companies of all parts of the country, some from
/// abroad. Some suppliers have no country, which the extraction takes for Portugal.
std::vector<Taxpayer> MakeTaxpayers(Kind kind, std::int64_t count, Random& random);

}  // namespace korvel::demo
