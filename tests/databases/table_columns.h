#pragma once

#include <fmt/format.h>

#include <string>
#include <string_view>

#include "data/connection.h"

namespace korvel::test {

/// v: varchar, m: money, si: smallint, sd: smalldatetime, d: datetime, t: text.
inline std::string TypeName(const data::Field& field) {
  switch (field.type) {
    case data::Type::Varchar:
      return fmt::format("v{}", field.length);
    case data::Type::Money:
      return "m";
    case data::Type::SmallInt:
      return "si";
    case data::Type::SmallDateTime:
      return "sd";
    case data::Type::DateTime:
      return "d";
    case data::Type::Text:
      return "t";
    default:
      return fmt::format("type {}", static_cast<int>(field.type));
  }
}

/// The columns of a table behind `NumRegisto`: a type, then the columns that have it.
inline std::string TableColumns(data::Connection& connection, std::string_view table) {
  const auto rows = connection.Query(fmt::format("select * from {}", table));
  std::string columns;
  std::string type;
  for (const data::Field& field : rows.Fields().subspan(1)) {
    if (TypeName(field) != type) columns += fmt::format("{}{}:", type.empty() ? "" : " ", TypeName(field));
    type = TypeName(field);
    columns += " " + field.name;
  }
  return columns;
}

}  // namespace korvel::test
