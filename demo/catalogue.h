#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "data/connection.h"
#include "demo/money.h"
#include "demo/random.h"
#include "demo/vat_codes.h"

namespace korvel::demo {

struct Product {
  std::string code;
  std::string description;  // one of them has none, as careless typing leaves it
  std::string_view unit;
  std::string_view group;
  std::string_view family;
  std::string_view subFamily;
  Rate rate = Rate::Normal;
  Cents price = 0;
  bool service = false;
  bool carriage = false;
  bool byWeight = false;  // sold in fractions of its unit
};

/// A charge that stands behind a line, for each unit sold.
struct ChargeKind {
  std::string_view code;
  std::string_view description;
  Cents each;
};
inline constexpr ChargeKind kBagCharge{"SACO", "Contribuição sobre sacos de plástico leves", 10};
inline constexpr ChargeKind kPackagingCharge{"ECO", "Ecovalor de embalagens", 3};

/// An item of documents that are kept as free text.
struct TextItem {
  std::string_view code;
  std::string_view description;
};
inline constexpr TextItem kCatering{"CATERING", "Serviço de catering"};
inline constexpr TextItem kConsulting{"CONSULTORIA", "Consultoria de panificação"};

/// What the company sells.
class Catalogue {
 public:
  /// About as many products as asked for, and at least one of every kind.
  explicit Catalogue(std::int64_t count);

  const std::vector<Product>& Products() const { return products_; }
  /// One of the goods of that rate.
  const Product& Pick(Rate rate, Random& random) const;
  const Product& Carriage() const { return Named("PORTES"); }
  const Product& Training() const { return Named("FORMACAO"); }
  const Product& UsedEquipment() const { return Named("EQUIPUSADO"); }
  const Product& Nameless() const { return Named("SEMNOME"); }

 private:
  const Product& Named(std::string_view code) const;

  std::vector<Product> products_;
  std::array<std::vector<std::size_t>, 4> byRate_;  // places of the goods of each rate
};

/// Writes `Produtos`, its groups, families, sub-families and situations, `TabItem` and `ImpostosConfig`.
/// Throws data::Error.
void WriteCatalogue(data::Connection& brevant, const Catalogue& catalogue);

}  // namespace korvel::demo
