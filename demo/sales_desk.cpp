#include "demo/sales_desk.h"

#include <fmt/format.h>

#include <utility>

namespace korvel::demo {

namespace {

constexpr std::int64_t kQuarter = data::Currency::kScale / 4;

data::Currency QuantityOf(const Product& product, std::int64_t most, Random& random) {
  return product.byWeight ? data::Currency::FromUnits(random.Between(1, 4 * most) * kQuarter)
                          : data::Currency::FromWhole(random.Between(1, most));
}

void SetVat(SoldLine& line) {
  line.vat = VatOf(line.Net(), line.Percent());
  if (line.charge) line.charge->vat = VatOf(line.charge->amount, line.Percent());
}

}  // namespace

SalesDesk::SalesDesk(int year, const Catalogue& catalogue, Random& random)
    : year_(year), catalogue_(catalogue), random_(random) {}

DocumentName SalesDesk::NextName(const DocumentType& type) {
  return {type.code, fmt::format("{:08}", ++numbers_[type.code]), std::to_string(year_)};
}

SalesDocument SalesDesk::Open(const DocumentType& type, const Party& customer, const data::DateTime& made) {
  SalesDocument document;
  document.type = &type;
  document.name = NextName(type);
  document.made = made;
  document.customer = customer;
  return document;
}

void SalesDesk::AddGoods(SalesDocument& document, std::int64_t lines) {
  constexpr Rate kRates[] = {Rate::Normal,  Rate::Normal,  Rate::Normal,       Rate::Reduced,
                             Rate::Reduced, Rate::Reduced, Rate::Intermediate, Rate::Exempt};
  const std::int64_t most = document.type->IsPaidAtOnce() ? 3 : 18;
  const bool mixed = random_.Chance(15);
  Rate rate = random_.Pick(kRates);
  for (; lines > 0; --lines) {
    const Product& product = catalogue_.Pick(rate, random_);
    AddLine(document, product, QuantityOf(product, most, random_));
    if (mixed) rate = random_.Pick(kRates);
  }
}

SoldLine& SalesDesk::AddLine(SalesDocument& document, const Product& product, data::Currency quantity) {
  SoldLine line;
  line.product = &product;
  line.quantity = quantity;
  line.gross = Worth(quantity, product.price);
  line.vatCode = document.customer.abroad ? &ForeignVat() : &SaleVat(document.Place(), product.rate);
  line.identity = NextIdentity();
  SetVat(line);
  document.lines.push_back(std::move(line));
  return document.lines.back();
}

void SalesDesk::Discount(SoldLine& line, int percent) {
  line.discount = VatOf(line.gross, percent);
  SetVat(line);
}

void SalesDesk::Charge(SoldLine& line, const ChargeKind& kind) {
  line.charge = LineCharge{&kind, Worth(line.quantity, kind.each)};
  SetVat(line);
}

void SalesDesk::ExemptWithoutCode(SoldLine& line) {
  line.vatCode = nullptr;
  SetVat(line);
}

void SalesDesk::Order(SalesDocument& document) {
  document.order = fmt::format("{:02}{:07}", year_ % 100, ++orders_);
}

void SalesDesk::DeliveryNote(SalesDocument& document) {
  document.deliveryNote = fmt::format("{:08}", ++notes_);
  document.deliveryDate = document.made.DateText();
}

void SalesDesk::Remember(const SalesDocument& document) {
  lastIssued_.insert_or_assign(document.customer.card, Issued{document.name, document.lines.front()});
}

std::optional<SalesDesk::Issued> SalesDesk::TakeLast(const std::string& card) {
  auto node = lastIssued_.extract(card);
  if (node.empty()) return std::nullopt;
  return std::move(node.mapped());
}

void SalesDesk::TakeBack(SalesDocument& document, const Issued& issued) {
  SoldLine& line = document.lines.emplace_back(issued.line);
  line.relatedTo = std::exchange(line.identity, NextIdentity());
  line.charge.reset();
  line.remark = "Devolução";
}

std::string SalesDesk::NextIdentity() {
  return fmt::format("{:02}{:09}", year_ % 100, ++identities_);
}

}  // namespace korvel::demo
