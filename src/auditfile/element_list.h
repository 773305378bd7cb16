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
  AmountIfSet,    // left out when the trimmed column is empty: a staged "0.00" stands
  CentsIfAny,     // as AmountIfAny, but with two decimals whatever the company has
  Count,          // the number that the text begins with, in its shortest form
  MoneyText,      // money in its shortest form with "."
  NormalIfBlank,  // "N" when the trimmed column is empty
  Open,           // a container begins: what follows is in it, always written
  OpenIfSet,      // a container that is left out with all it holds when both trimmed columns are empty
  OpenIfText,     // the same, but blanks in the second column are enough for it to stand
  Close,          // the innermost container ends
};

struct Element {
  std::string_view name;
  std::string_view column;
  Rule rule = Rule::Always;
  std::string_view secondColumn = {};  // of a container that may be left out
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
/// A container that stands when one of its columns is set.
constexpr Element BeginIfSet(std::string_view container, std::string_view column,
                             std::string_view secondColumn = {}) {
  return {container, column, Rule::OpenIfSet, secondColumn};
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
    std::size_t secondColumn = 0;
    Rule rule = Rule::Always;
    bool isMoney = false;
    std::size_t end = 0;  // of a container: where it closes
  };

  static Bound Bind(const Element& element, const data::Recordset& rows);
  void FindEnds();
  bool IsLeftOut(const data::Recordset& rows, const Bound& element) const;
  void WriteElement(XmlWriter& xml, const data::Recordset& rows, const Bound& element) const;
  void WriteAmount(XmlWriter& xml, const data::Recordset& rows, const Bound& element) const;
  data::Currency Number(const data::Recordset& rows, const Bound& element) const;

  std::vector<Bound> elements_;
  const AmountFormat& format_;
};

}  // namespace korvel::auditfile
