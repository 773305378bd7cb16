#include <fmt/format.h>

#include <utility>

#include "demo/billing_cards.h"
#include "demo/chart_of_accounts.h"
#include "demo/code_tables.h"
#include "demo/year_book.h"

namespace korvel::demo {

void YearBook::Issue(const SalesDocument& document) {
  ledger_.Post(EntryOf(document));
  billing_.Add(document);
  if (document.customer.account != account::kOccasionalCustomers) return;
  till_ += document.type->IsCredit() ? -document.Total() : document.Total();
}

void YearBook::Withdraw(const SalesDocument& document) {
  ledger_.Post(EntryOf(document));
  ledger_.Post(ReversalOf(document, NextNumber("AN-")));
  billing_.AddRemoved(document);
}

SalesDocument YearBook::GoodsFor(std::string_view classification, const Party& customer, std::int64_t lines) {
  SalesDocument document = desk_.Open(SeriesOf(classification, customer.branch), customer, Now());
  desk_.AddGoods(document, lines);
  if (document.type->IsPaidAtOnce()) document.paidBy = random_.Pick(kPayments);
  return document;
}

void YearBook::Sale() {
  const std::int64_t lines = random_.Between(2, 9);
  SalesDocument document = GoodsFor("FT", PickCustomer(), lines);
  if (random_.Chance(12)) desk_.Order(document);
  if (random_.Chance(10)) desk_.DeliveryNote(document);
  if (random_.Chance(20)) desk_.Discount(document.lines.front(), 5);
  if (random_.Chance(20)) desk_.Charge(document.lines.back(), kPackagingCharge);
  if (random_.Chance(1)) return Withdraw(document);
  Issue(document);
  desk_.Remember(document);
}

void YearBook::CashSale() {
  const std::int64_t lines = random_.Between(2, 9);
  SalesDocument document = GoodsFor("VD", PickBuyer(), lines);
  if (random_.Chance(30)) desk_.Charge(document.lines.back(), kBagCharge);
  Issue(document);
}

void YearBook::TillSlip() {
  const std::int64_t lines = random_.Between(1, 6);
  Issue(GoodsFor("TV", PickBuyer(), lines));
}

void YearBook::SlipReturn() {
  Issue(GoodsFor("TD", PickBuyer(), 1));
}

/// The link is kept on either side; both mean the same.
void YearBook::LinkCredit(const SalesDocument& credit, const DocumentName& credited) {
  if (credit.lines.front().identity.back() % 2 == 0) {
    billing_.Link(credit.name, credited);
  } else {
    billing_.Link(credited, credit.name);
  }
}

SalesDocument YearBook::CreditFor(const SalesDesk::Issued& issued, const Party& customer) {
  SalesDocument document = desk_.Open(SeriesOf("NC", customer.branch), customer, Now());
  desk_.TakeBack(document, issued);
  return document;
}

void YearBook::CreditNote() {
  const Party customer = PickCustomer();
  const auto issued = desk_.TakeLast(customer.card);
  if (!issued) return Sale();  // nothing to take back: buys instead
  const SalesDocument document = CreditFor(*issued, customer);
  LinkCredit(document, issued->name);
  Issue(document);
}

void YearBook::DebitNote() {
  const Party customer = PickCustomer();
  SalesDocument document = desk_.Open(SeriesOf("ND", customer.branch), customer, Now());
  desk_.AddLine(document, catalogue_.Carriage(), data::Currency::FromWhole(random_.Between(1, 5)));
  Issue(document);
}

void YearBook::FreeTextSale() {
  SalesDocument document = GoodsFor("FT", PickCustomer(), 1);
  document.contents = Contents::FreeText;
  document.item = random_.Chance(50) ? &kCatering : &kConsulting;
  Issue(document);
}

void YearBook::LinelessSale() {
  SalesDocument document = GoodsFor("FT", PickCustomer(), 1);
  document.contents = Contents::Nothing;
  if (random_.Chance(50)) document.remark = "Fornecimento do mês, conforme contrato";
  Issue(document);
}

void YearBook::PostDocument(int dayOfYear) {
  struct Share {
    int percent;
    Business business;
  };
  constexpr Share kShares[] = {
      {27, &YearBook::Sale},        {14, &YearBook::CashSale},         {8, &YearBook::TillSlip},
      {1, &YearBook::SlipReturn},   {4, &YearBook::CreditNote},        {2, &YearBook::DebitNote},
      {1, &YearBook::FreeTextSale}, {1, &YearBook::LinelessSale},      {10, &YearBook::Purchase},
      {5, &YearBook::Service},      {2, &YearBook::OccasionalService}, {16, &YearBook::Receipt},
      {9, &YearBook::Payment}};
  GoTo(dayOfYear);
  std::int64_t drawn = random_.Below(100);
  for (const Share& share : kShares) {
    drawn -= share.percent;
    if (drawn < 0) return (this->*share.business)();
  }
}

}  // namespace korvel::demo
