#include "auditfile/element_list.h"

#include "toolkit/text.h"

namespace korvel::auditfile {

using data::Recordset;

namespace {
constexpr int kCentsDecimals = 2;
}  // namespace

ElementList::ElementList(std::span<const Element> elements, const Recordset& rows, const AmountFormat& format)
    : format_(format) {
  elements_.reserve(elements.size());
  for (const Element& element : elements) elements_.push_back(Bind(element, rows));
  FindEnds();
}

ElementList::Bound ElementList::Bind(const Element& element, const Recordset& rows) {
  Bound bound;
  bound.name = element.name;
  bound.rule = element.rule;
  if (element.column.empty()) return bound;
  bound.column = rows.IndexOf(element.column);
  bound.secondColumn = element.secondColumn.empty() ? bound.column : rows.IndexOf(element.secondColumn);
  bound.isMoney = rows.Fields()[bound.column].type == data::Type::Money;
  return bound;
}

void ElementList::FindEnds() {
  std::vector<std::size_t> open;
  for (std::size_t i = 0; i < elements_.size(); ++i) {
    const Rule rule = elements_[i].rule;
    if (rule == Rule::Open || rule == Rule::OpenIfSet || rule == Rule::OpenIfText) open.push_back(i);
    if (rule != Rule::Close) continue;
    elements_[open.back()].end = i;
    open.pop_back();
  }
}

void ElementList::Write(XmlWriter& xml, const Recordset& rows) const {
  for (std::size_t i = 0; i < elements_.size(); ++i) {
    if (IsLeftOut(rows, elements_[i])) {
      i = elements_[i].end;
    } else {
      WriteElement(xml, rows, elements_[i]);
    }
  }
}

/// Whether a container with a condition does not stand.
bool ElementList::IsLeftOut(const Recordset& rows, const Bound& element) const {
  if (element.rule != Rule::OpenIfSet && element.rule != Rule::OpenIfText) return false;
  const std::string_view second = rows.Text(element.secondColumn);
  const bool secondIsEmpty = element.rule == Rule::OpenIfText ? second.empty() : toolkit::IsBlank(second);
  return secondIsEmpty && toolkit::IsBlank(rows.Text(element.column));
}

void ElementList::WriteElement(XmlWriter& xml, const Recordset& rows, const Bound& element) const {
  switch (element.rule) {
    case Rule::Open:
    case Rule::OpenIfSet:
    case Rule::OpenIfText:
      return xml.OpenElement(element.name);
    case Rule::Close:
      return xml.CloseElement();
    case Rule::Amount:
    case Rule::AmountIfAny:
    case Rule::AmountIfSet:
    case Rule::CentsIfAny:
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
  const Rule rule = element.rule;
  if (rule == Rule::AmountIfSet && toolkit::IsBlank(rows.Text(element.column))) return;
  const data::Currency amount = Number(rows, element);
  if ((rule == Rule::AmountIfAny || rule == Rule::CentsIfAny) && amount.IsZero()) return;
  const int decimals = rule == Rule::CentsIfAny ? kCentsDecimals : format_.casasDec;
  xml.Leaf(element.name, toolkit::FDNum(amount, decimals, toolkit::kNoGrouping, ".", format_.marks));
}

data::Currency ElementList::Number(const Recordset& rows, const Bound& element) const {
  if (element.isMoney) return rows.Money(element.column);
  return toolkit::TextoParaValor(rows.Text(element.column), format_.marks);
}

}  // namespace korvel::auditfile
