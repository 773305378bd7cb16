#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "data/connection.h"

namespace korvel::billing {

/// Where the value of a line goes, and the sum of a class.
enum class Side { Debit, Credit };

struct DocumentClass {
  std::string_view classification;  // `TabTipoMov.TipoMovClassifica`
  Side side;
};

/// The classes of sales documents, in the order of the extraction. Types of any other classification take no part.
inline constexpr std::array<DocumentClass, 8> kDocumentClasses{{
    {"FT", Side::Credit},
    {"NC", Side::Debit},
    {"ND", Side::Credit},
    {"VD", Side::Credit},
    {"TV", Side::Credit},
    {"TD", Side::Debit},
    {"AA", Side::Credit},
    {"DA", Side::Debit},
}};

/// The document types of a class.
class ClassFilter {
 public:
  void Add(std::string_view tipo) { types_.emplace_back(tipo); }

  /// " and (Tipo='XXXX' or Tipo='..' ...) " on any column; the dummy code keeps it valid for a class without types.
  std::string On(std::string_view column = "Tipo") const;

 private:
  std::vector<std::string> types_;
};

/// One a class, in their order.
using ClassFilters = std::array<ClassFilter, kDocumentClasses.size()>;

/// Throws data::Error.
ClassFilters ReadClassFilters(data::Connection& brevant);

}  // namespace korvel::billing
