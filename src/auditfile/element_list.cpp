#include "auditfile/element_list.h"

#include "toolkit/text.h"

namespace korvel::auditfile {

using data::Recordset;

ElementList::ElementList(std::span<const Element> elements, const Recordset& rows, const AmountFormat& format)
    : format_(format) {
  elements_.reserve(elements.size());
  for (const Element& element : elements) {
    Bound bound{element.name, 0, element.rule, false};
    if (!element.column.empty()) {
      bound.column = rows.IndexOf(element.column);
      bound.isMoney = rows.Fields()[bound.column].type == data::Type::Money;
    }
    elements_.push_back(bound);
  }
}

void ElementList::Write(XmlWriter& xml, const Recordset& rows) const {
  for (const Bound& element : elements_) WriteElement(xml, rows, element);
}

void ElementList::WriteElement(XmlWriter& xml, const Recordset& rows, const Bound& element) const {
  switch (element.rule) {
    case Rule::Open:
      return xml.OpenElement(element.name);
    case Rule::Close:
      return xml.CloseElement();
    case Rule::Amount:
    case Rule::AmountIfAny:
      return WriteAmount(xml, rows, element);
    case Rule::Count:
      return xml.Leaf(element.name, toolkit::NumericPrefix(rows.Text(element.column)).ToText());
    case Rule::MoneyText:
      return xml.Leaf(element.name, rows.IsNull(element.column) ? "" : Number(rows, element).ToText());
    case Rule::Always:
    case Rule::IfSet:
    case Rule::NormalIfBlank:
      break;
  }
  const std::string_view text = rows.Text(element.column);
  if (element.rule == Rule::Always || !toolkit::IsBlank(text)) return xml.Leaf(element.name, text);
  if (element.rule == Rule::NormalIfBlank) xml.Leaf(element.name, "N");
}

void ElementList::WriteAmount(XmlWriter& xml, const Recordset& rows, const Bound& element) const {
  const data::Currency amount = Number(rows, element);
  if (element.rule == Rule::AmountIfAny && amount.IsZero()) return;
  xml.Leaf(element.name, toolkit::FDNum(amount, format_.casasDec, toolkit::kNoGrouping, ".", format_.marks));
}

data::Currency ElementList::Number(const Recordset& rows, const Bound& element) const {
  if (element.isMoney) return rows.Money(element.column);
  return toolkit::TextoParaValor(rows.Text(element.column), format_.marks);
}

}  // namespace korvel::auditfile
