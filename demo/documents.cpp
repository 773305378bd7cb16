#include <fmt/format.h>

#include <algorithm>

#include "demo/chart_of_accounts.h"
#include "demo/code_tables.h"
#include "demo/year_book.h"

namespace korvel::demo {

namespace {

struct SalesRate {
  std::string_view account;
  int rate;
};
constexpr SalesRate kSalesRates[] = {{account::kSalesNormal, 23},
                                     {account::kSalesNormal, 23},
                                     {account::kSalesReduced, 6},
                                     {account::kSalesIntermediate, 13},
                                     {account::kSalesExempt, 0}};

}  // namespace

Entry YearBook::SaleOf(const Party& buyer, std::string number, std::string_view word, Side buyerSide) {
  Entry entry = Start(journal::kSales, std::move(number), {});
  entry.text = fmt::format("{} {} - {}", word, entry.number, buyer.who->name);
  Line total = PlainLine(buyer.account, buyerSide, 0);
  total.taxNumber = buyer.who->taxNumber;
  total.country = buyer.who->country;
  entry.lines.push_back(total);
  Cents net = 0;
  Cents vat = 0;
  for (std::int64_t i = random_.Between(1, 3); i > 0; --i) {
    const SalesRate& rate = random_.Pick(kSalesRates);
    const Cents amount = random_.Between(250, 180000);
    const auto sales = buyerSide == Side::Debit ? rate.account : account::kSalesReturns;
    entry.lines.push_back(PlainLine(sales, Opposite(buyerSide), amount));
    net += amount;
    vat += VatOf(amount, rate.rate);
  }
  entry.lines.push_back(PlainLine(account::kVatOnSales, Opposite(buyerSide), vat));
  entry.lines.back().vat = vat;
  entry.lines.front().amount = net + vat;
  entry.lines.front().recapitulative = net;
  return entry;
}

void YearBook::Sale() {
  // The billing product's numbers end in the document's type.
  Entry entry =
      SaleOf(PickCustomer(), NextNumber(fmt::format("{:02}-", year_ % 100), "FAC"), "Factura", Side::Debit);
  entry.fromBilling = true;
  ledger_.Post(entry);
}

void YearBook::CashSale() {
  const Party buyer{std::string(account::kOccasionalCustomers), &PickOccasional(Kind::Customer)};
  const Entry entry = SaleOf(buyer, NextNumber("VD-"), "Venda a dinheiro", Side::Debit);
  ledger_.Post(entry);
  Entry paid = Start(journal::kCash, entry.number, entry.text);
  const Cents total = entry.lines.front().amount;
  paid.lines = {PlainLine(account::kCash, Side::Debit, total), PlainLine(buyer.account, Side::Credit, total)};
  ledger_.Post(paid);
}

void YearBook::CreditNote() {
  ledger_.Post(SaleOf(PickCustomer(), NextNumber("NC+"), "Nota de crédito", Side::Credit));
}

Entry YearBook::PurchaseOf(const Party& seller, std::string_view costAccount, std::string_view vatAccount) {
  Entry entry = Start(journal::kPurchases, NextNumber("VF+"), {});
  entry.text = fmt::format("V/ factura {} - {}", entry.number, seller.who->name);
  const Cents net = random_.Between(1500, 120000);
  const Cents vat = VatOf(net, 23);
  Line total = PlainLine(seller.account, Side::Credit, net + vat);
  total.recapitulative = net;
  total.taxNumber = seller.who->taxNumber;
  total.country = seller.who->country;
  entry.lines = {PlainLine(costAccount, Side::Debit, net), PlainLine(vatAccount, Side::Debit, vat), total};
  entry.lines[1].vat = vat;
  return entry;
}

void YearBook::Purchase() {
  ledger_.Post(PurchaseOf(PickSupplier(), account::kPurchases, account::kVatOnGoods));
}

void YearBook::Service() {
  ledger_.Post(PurchaseOf(PickSupplier(), random_.Pick(account::kServices), account::kVatOnServices));
}

void YearBook::OccasionalService() {
  const Party seller{std::string(account::kOccasionalSuppliers), &PickOccasional(Kind::Supplier)};
  ledger_.Post(PurchaseOf(seller, random_.Pick(account::kServices), account::kVatOnServices));
}

void YearBook::Settle(const Party& party, Side partySide, std::string_view prefix, std::string_view word) {
  const Cents open = std::abs(ledger_.Balance(party.account));
  const Cents amount = random_.Chance(70) ? open : open - open / 3;
  Entry entry = Start(journal::kBank, NextNumber(prefix), {});
  entry.text = fmt::format("{} {} - {}", word, entry.number, party.who->name);
  const auto bank = random_.Chance(80) ? account::kBank : account::kSecondBank;
  entry.lines = {PlainLine(bank, Opposite(partySide), amount), PlainLine(party.account, partySide, amount)};
  entry.lines[1].taxNumber = party.who->taxNumber;
  ledger_.Post(entry);
}

void YearBook::Receipt() {
  const Party payer = PickCustomer();
  if (ledger_.Balance(payer.account) <= 0) return Sale();  // owes nothing: buys instead
  Settle(payer, Side::Credit, "RC-", "Recibo");
}

void YearBook::Payment() {
  const Party payee = PickSupplier();
  if (ledger_.Balance(payee.account) >= 0) return Purchase();
  Settle(payee, Side::Debit, "PG", "Pagamento");
}

void YearBook::PostDocument(int dayOfYear) {
  struct Share {
    int percent;
    Document document;
  };
  constexpr Share kShares[] = {{34, &YearBook::Sale},      {8, &YearBook::CashSale},
                               {3, &YearBook::CreditNote}, {15, &YearBook::Purchase},
                               {9, &YearBook::Service},    {3, &YearBook::OccasionalService},
                               {18, &YearBook::Receipt},   {10, &YearBook::Payment}};
  GoTo(dayOfYear);
  std::int64_t drawn = random_.Below(100);
  for (const Share& share : kShares) {
    drawn -= share.percent;
    if (drawn < 0) return (this->*share.document)();
  }
}

}  // namespace korvel::demo
