#include "demo/sales_document.h"

#include <fmt/format.h>

#include <map>
#include <utility>

#include "demo/chart_of_accounts.h"
#include "demo/code_tables.h"

namespace korvel::demo {

namespace {

std::string_view SalesAccount(Rate rate) {
  constexpr std::string_view kAccounts[] = {account::kSalesExempt, account::kSalesReduced,
                                            account::kSalesIntermediate, account::kSalesNormal};
  return kAccounts[static_cast<std::size_t>(rate)];
}

std::string_view AccountOf(const DocumentType& type, const SoldLine& line) {
  if (type.classification == "AA" || type.classification == "DA") return account::kAssetSales;
  if (type.IsCredit()) return account::kSalesReturns;
  return SalesAccount(line.vatCode ? line.vatCode->rate : Rate::Exempt);
}

Line PartyLine(const SalesDocument& document, Side side) {
  Line line = PlainLine(document.customer.account, side, document.Total());
  line.recapitulative = document.Net();
  line.taxNumber = document.customer.who->taxNumber;
  line.country = document.customer.who->country;
  return line;
}

Line VatLine(const SalesDocument& document, Side side) {
  Line line = PlainLine(account::kVatOnSales, side, document.Vat());
  line.vat = document.Vat();
  return line;
}

Entry MakeEntry(const SalesDocument& document, std::string number, Side customerSide) {
  Entry entry;
  entry.posted = document.made;
  entry.journal = journal::kSales;
  entry.number = std::move(number);
  std::map<std::string_view, Cents> sales;
  for (const SoldLine& line : document.lines) {
    sales[AccountOf(*document.type, line)] += line.Net() + (line.charge ? line.charge->amount : 0);
  }
  entry.lines.push_back(PartyLine(document, customerSide));
  for (const auto& [code, amount] : sales)
    entry.lines.push_back(PlainLine(code, Opposite(customerSide), amount));
  entry.lines.push_back(VatLine(document, Opposite(customerSide)));
  return entry;
}

}  // namespace

std::string DocumentName::LedgerNumber() const {
  return fmt::format("0{}{}", number, type);
}

Cents SalesDocument::Gross() const {
  Cents sum = 0;
  for (const SoldLine& line : lines) sum += line.gross + (line.charge ? line.charge->amount : 0);
  return sum;
}

Cents SalesDocument::Discount() const {
  Cents sum = 0;
  for (const SoldLine& line : lines) sum += line.discount;
  return sum;
}

Cents SalesDocument::Vat() const {
  Cents sum = 0;
  for (const SoldLine& line : lines) sum += line.vat + (line.charge ? line.charge->vat : 0);
  return sum;
}

Entry EntryOf(const SalesDocument& document) {
  Entry entry = MakeEntry(document, document.name.LedgerNumber(), document.type->CustomerSide());
  entry.text = fmt::format("{} {}/{} - {}", document.name.type, document.name.year, document.name.number,
                           document.customer.who->name);
  entry.fromBilling = true;
  return entry;
}

Entry ReversalOf(const SalesDocument& document, std::string number) {
  Entry entry = MakeEntry(document, std::move(number), Opposite(document.type->CustomerSide()));
  entry.text =
      fmt::format("Anulação de {} {}/{}", document.name.type, document.name.year, document.name.number);
  return entry;
}

}  // namespace korvel::demo
