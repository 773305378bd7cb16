#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "auditfile/xml_writer.h"
#include "data/recordset.h"
#include "toolkit/numbers.h"

namespace korvel::auditfile {

/// How an element comes out of its column.
enum class Rule : std::uint8_t {
  Always,         // the column as it stands, NULL as no text
  IfSet,          // left out when the trimmed column is empty
  Amount,         // a number with the decimals of the company
  AmountIfAny,    // left out when the number is 0
  Count,          // the number that the text begins with, in its shortest form
  MoneyText,      // money in its shortest form with "."
  NormalIfBlank,  // "N" when the trimmed column is empty
  Open,           // a container begins: what follows is in it, always written
  Close,          // the innermost container ends
};

struct Element {
  std::string_view name;
  std::string_view column;
  Rule rule = Rule::Always;
};

/// A plain element whose name is its column's.
constexpr Element Plain(std::string_view name) {
  return {name, name, Rule::Always};
}
constexpr Element Optional(std::string_view name) {
  return {name, name, Rule::IfSet};
}
constexpr Element Begin(std::string_view container) {
  return {container, {}, Rule::Open};
}
constexpr Element End(std::string_view container) {
  return {container, {}, Rule::Close};
}

/// How numbers are read from staged text and written to the file.
struct AmountFormat {
  int casasDec = 2;
  toolkit::Marks marks;
};

/// A list of elements bound to the columns of one statement, found by name once.
class ElementList {
 public:
  /// `elements` is a table of the program; the list keeps a view of it. `format` must outlive the list. Throws
  /// data::Error for a column that the statement does not bring.
  ElementList(std::span<const Element> elements, const data::Recordset& rows, const AmountFormat& format);

  /// Writes the elements from the current row.
  void Write(XmlWriter& xml, const data::Recordset& rows) const;

 private:
  struct Bound {
    std::string_view name;
    std::size_t column = 0;
    Rule rule = Rule::Always;
    bool isMoney = false;
  };

  void WriteElement(XmlWriter& xml, const data::Recordset& rows, const Bound& element) const;
  void WriteAmount(XmlWriter& xml, const data::Recordset& rows, const Bound& element) const;
  data::Currency Number(const data::Recordset& rows, const Bound& element) const;

  std::vector<Bound> elements_;
  const AmountFormat& format_;
};

}  // namespace korvel::auditfile
