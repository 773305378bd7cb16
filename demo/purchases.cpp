#include <fmt/format.h>

#include <algorithm>

#include "demo/chart_of_accounts.h"
#include "demo/code_tables.h"
#include "demo/year_book.h"

namespace korvel::demo {

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
  const auto service = random_.Pick(account::kServices);
  ledger_.Post(PurchaseOf(PickSupplier(), service, account::kVatOnServices));
}

void YearBook::OccasionalService() {
  const auto service = random_.Pick(account::kServices);
  ledger_.Post(PurchaseOf(PickSeller(), service, account::kVatOnServices));
}

Cents YearBook::Settle(const Party& party, Side partySide, std::string_view prefix, std::string_view word) {
  const Cents open = std::abs(ledger_.Balance(party.account));
  const Cents amount = random_.Chance(70) ? open : open - open / 3;
  Entry entry = Start(journal::kBank, NextNumber(prefix), {});
  entry.text = fmt::format("{} {} - {}", word, entry.number, party.who->name);
  const auto bank = random_.Chance(80) ? account::kBank : account::kSecondBank;
  entry.lines = {PlainLine(bank, Opposite(partySide), amount), PlainLine(party.account, partySide, amount)};
  entry.lines[1].taxNumber = party.who->taxNumber;
  ledger_.Post(entry);
  return amount;
}

void YearBook::Receipt() {
  const Party payer = PickCustomer();
  if (ledger_.Balance(payer.account) <= 0) return Sale();  // owes nothing: buys instead
  const Cents paid = Settle(payer, Side::Credit, "RC-", "Recibo");
  billing_.AddOther(desk_.NextName(TypeOf("REC")), Now(), payer, paid);
}

void YearBook::Payment() {
  const Party payee = PickSupplier();
  if (ledger_.Balance(payee.account) >= 0) return Purchase();
  Settle(payee, Side::Debit, "PG", "Pagamento");
}

}  // namespace korvel::demo
