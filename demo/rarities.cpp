#include <fmt/format.h>

#include <span>

#include "demo/billing_cards.h"
#include "demo/code_tables.h"
#include "demo/year_book.h"

namespace korvel::demo {

namespace {

constexpr std::size_t kSelfBilled = 2;  // customers of their kind, in every demonstration
constexpr std::size_t kForeigner = 3;
constexpr std::size_t kPlain = 0;  // with all that a card can hold

const data::Currency kOne = data::Currency::FromWhole(1);

}  // namespace

void YearBook::SaleAbroad() {
  Issue(GoodsFor("FT", Customer(kForeigner), 2));
}

void YearBook::SelfBilledSale() {
  Issue(GoodsFor("FT", Customer(kSelfBilled), 3));
}

void YearBook::OrderedSale() {
  SalesDocument document = GoodsFor("FT", Customer(kPlain), 2);
  desk_.Order(document);
  Issue(document);
}

void YearBook::DeliveredSale() {
  SalesDocument document = GoodsFor("FT", Customer(kPlain), 2);
  desk_.DeliveryNote(document);
  desk_.AddLine(document, catalogue_.Carriage(), kOne);
  Issue(document);
}

void YearBook::DiscountedSale() {
  SalesDocument document = GoodsFor("FT", Customer(1), 2);
  desk_.Discount(document.lines.front(), 15);
  document.lines.back().remark = "Entregue à porta, c/ gelo & embalagem d'esferovite";
  Issue(document);
}

void YearBook::ChargedSale() {
  SalesDocument document = GoodsFor("FT", Customer(1), 2);
  desk_.Charge(document.lines.front(), kPackagingCharge);
  desk_.Charge(document.lines.back(), kBagCharge);
  Issue(document);
}

void YearBook::ExemptSales() {
  SalesDocument withReason = desk_.Open(SeriesOf("FT", kMainland), Customer(1), Now());
  desk_.AddLine(withReason, catalogue_.Training(), kOne);
  Issue(withReason);
  SalesDocument withoutCode = GoodsFor("FT", Customer(1), 1);
  desk_.ExemptWithoutCode(withoutCode.lines.front());
  Issue(withoutCode);
}

void YearBook::NamelessSale() {
  SalesDocument document = desk_.Open(SeriesOf("FT", kHeadOffice), Customer(kPlain), Now());
  desk_.AddLine(document, catalogue_.Nameless(), kOne);
  Issue(document);
}

void YearBook::SaleWithoutCountry() {
  SalesDocument document = GoodsFor("FT", Customer(kPlain), 1);
  document.withoutCountry = true;
  Issue(document);
}

void YearBook::CopyByHand() {
  SalesDocument document = desk_.Open(TypeOf("FRM"), Customer(1), Now());
  desk_.AddGoods(document, 1);
  document.copiedSeries = "A";
  document.copiedNumber = "12";
  Issue(document);
}

void YearBook::CopyOfOtherSystem() {
  SalesDocument document = desk_.Open(TypeOf("FRD"), Customer(1), Now());
  desk_.AddGoods(document, 1);
  document.copiedSeries = "2009";
  document.copiedNumber = "418";
  Issue(document);
}

/// A number whose document was removed, then one that no document ever bore, both between documents of one
/// series.
void YearBook::RemovedSale() {
  Issue(GoodsFor("FT", Customer(kPlain), 1));
  SalesDocument removed = GoodsFor("FT", Customer(kPlain), 2);
  desk_.Charge(removed.lines.front(), kPackagingCharge);
  Withdraw(removed);
  desk_.SkipNumber(SeriesOf("FT", kHeadOffice));
  Issue(GoodsFor("FT", Customer(kPlain), 1));
}

void YearBook::CreditOfTwo() {
  const Party customer = Customer(kPlain);
  const SalesDocument first = GoodsFor("FT", customer, 2);
  const SalesDocument second = GoodsFor("FT", customer, 2);
  Issue(first);
  Issue(second);
  SalesDocument credit = CreditFor({first.name, first.lines.front()}, customer);
  desk_.TakeBack(credit, {second.name, second.lines.front()});
  billing_.Link(credit.name, first.name);
  billing_.Link(credit.name, second.name);
  Issue(credit);
}

/// Links from the credit note, and from the invoice.
void YearBook::CreditAndItsReverse() {
  for (const bool reverse : {false, true}) {
    const Party customer = Customer(1);
    const SalesDocument sold = GoodsFor("FT", customer, 2);
    Issue(sold);
    const SalesDocument credit = CreditFor({sold.name, sold.lines.front()}, customer);
    if (reverse) {
      billing_.Link(sold.name, credit.name);
    } else {
      billing_.Link(credit.name, sold.name);
    }
    Issue(credit);
  }
}

void YearBook::AssetSaleAndReturn() {
  for (const std::string_view classification : {"AA", "DA"}) {
    SalesDocument document = desk_.Open(SeriesOf(classification, kMainland), Customer(1), Now());
    desk_.AddLine(document, catalogue_.UsedEquipment(), kOne);
    Issue(document);
  }
}

/// No sale yet: the ledger does not know it.
void YearBook::Quotation() {
  SalesDocument document = desk_.Open(TypeOf("ORC"), Customer(kPlain), Now());
  desk_.AddGoods(document, 2);
  billing_.Add(document);
}

void YearBook::SaleInEveryBranch() {
  for (std::size_t branch = 0; branch < std::size(kBranches); ++branch) {
    Party customer = Customer(kPlain);
    customer.branch = branch;
    Issue(GoodsFor("FT", customer, 2));
  }
}

void YearBook::CashSaleInEveryBranch() {
  for (std::size_t branch = 0; branch < std::size(kBranches); ++branch) {
    Issue(GoodsFor("VD", Buyer(branch, branch), 2));  // the final consumer among them
  }
}

void YearBook::SlipAndReturn() {
  TillSlip();
  SlipReturn();
}

void YearBook::PostRarities(int month) {
  constexpr Business kRarities[] = {
      &YearBook::SaleInEveryBranch, &YearBook::CashSaleInEveryBranch, &YearBook::SlipAndReturn,
      &YearBook::RemovedSale,       &YearBook::CreditOfTwo,           &YearBook::CreditAndItsReverse,
      &YearBook::DebitNote,         &YearBook::AssetSaleAndReturn,    &YearBook::SelfBilledSale,
      &YearBook::SaleAbroad,        &YearBook::ExemptSales,           &YearBook::ChargedSale,
      &YearBook::DiscountedSale,    &YearBook::FreeTextSale,          &YearBook::LinelessSale,
      &YearBook::OrderedSale,       &YearBook::DeliveredSale,         &YearBook::CopyByHand,
      &YearBook::CopyOfOtherSystem, &YearBook::NamelessSale,          &YearBook::SaleWithoutCountry,
      &YearBook::Quotation};
  constexpr std::size_t kMonths = 12;
  for (std::size_t i = static_cast<std::size_t>(month - 1); i < std::size(kRarities); i += kMonths) {
    const Business rarity = kRarities[i];
    (this->*rarity)();
  }
}

}  // namespace korvel::demo
