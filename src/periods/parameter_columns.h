#pragma once

#include <span>
#include <string_view>
#include <variant>

#include "data/recordset.h"
#include "data/value.h"
#include "periods/parameters.h"

namespace korvel::periods {

/// How a member of Parameters stands in its column.
struct TextColumn {
  std::string Parameters::*member;
};
struct LocationColumn {
  SourceLocation Parameters::*side;
  std::string SourceLocation::*member;
};
struct LetterColumn {  // "S" or "N"
  bool Parameters::*member;
};
struct FlagColumn {  // 1 or 0
  bool Parameters::*member;
};
struct NumberColumn {
  int Parameters::*member;
};

struct ParameterColumn {
  std::string_view name;
  std::variant<TextColumn, LocationColumn, LetterColumn, FlagColumn, NumberColumn> form;
};

/// The eight columns of where the sources lie, and all others that the parameters' form writes.
std::span<const ParameterColumn> LocationColumns();
std::span<const ParameterColumn> BehaviourColumns();

/// NULL leaves the member as it is.
void ReadColumn(const ParameterColumn& column, const data::Recordset& row, Parameters& parameters);
data::Value ValueOf(const ParameterColumn& column, const Parameters& parameters);

}  // namespace korvel::periods
