#include "demo/billing_book.h"

#include <fmt/format.h>

#include "demo/brevant_schema.h"
#include "demo/signature.h"
#include "toolkit/text.h"

namespace korvel::demo {

namespace {

constexpr std::string_view kFilledOfMovItem[] = {"Tipo",     "Numero",    "Ano",    "Data",
                                                 "Item",     "ItemDesc",  "Linha1", "Linha3",
                                                 "ValorInc", "ValorDesc", "IvaTab", "IvaTaxa"};

constexpr std::int64_t kDaysOfCredit = 30;

std::string DueDate(const SalesDocument& document) {
  const data::DateTime& made = document.made;
  const std::int64_t days = document.paidBy.empty() ? kDaysOfCredit : 0;
  return data::CivilFromDays(data::DaysFromCivil(made.year, made.month, made.day) + days).DateText();
}

/// Of types under control; blank for the rest.
struct Signature {
  explicit Signature(const SalesDocument& document)
      : hash(document.type->signs ? SignatureOf(fmt::format("{}{}{}", document.name.type, document.name.year,
                                                            document.name.number))
                                  : std::string()),
        control(document.type->signs ? "1" : "") {}
  std::string hash;
  std::string_view control;
};

std::string_view Letter(Side side) {
  return side == Side::Debit ? "D" : "C";
}

}  // namespace

BillingBook::BillingBook(data::Connection& brevant)
    : movCliente_(brevant, brevant::kMovCliente),
      movProduto_(brevant, brevant::kMovProduto),
      logMovTerceiro_(brevant, brevant::kLogMovTerceiro),
      logMovProduto_(brevant, brevant::kLogMovProduto),
      movItem_(brevant, brevant::kMovItem, kFilledOfMovItem),
      charges_(brevant, brevant::kImpostosMovProduto),
      orders_(brevant, brevant::kCliMovEnc),
      links_(brevant, brevant::kAtribui) {}

void BillingBook::Add(const SalesDocument& document) {
  AddHeader(document);
  if (!document.order.empty()) orders_.Add({document.order, document.made.DateText()});
  if (document.contents == Contents::Lines) AddLines(document);
  if (document.contents == Contents::FreeText) AddFreeText(document);
  if (document.type->IsSale()) ++documents_;
}

void BillingBook::AddLines(const SalesDocument& document) {
  for (const SoldLine& line : document.lines) {
    AddLine(movProduto_, document, line);
    if (line.charge) AddCharge(document, line);
    if (document.type->IsSale()) lines_ += line.charge ? 2 : 1;
  }
}

void BillingBook::AddRemoved(const SalesDocument& document) {
  AddRemovedHeader(document);
  for (const SoldLine& line : document.lines) {
    AddLine(logMovProduto_, document, line);
    if (line.charge) AddCharge(document, line);  // the charges have no log: they stay
  }
}

void BillingBook::AddHeader(const SalesDocument& document) {
  const Taxpayer& buyer = *document.customer.who;
  const SoldLine& first = document.lines.front();
  const Signature sign(document);
  movCliente_.Add({document.customer.card,
                   document.name.type,
                   document.name.number,
                   document.name.year,
                   document.made.DateText(),
                   DueDate(document),
                   buyer.name,
                   AddressOf(buyer),
                   buyer.town,
                   PostalCodeOf(buyer),
                   document.withoutCountry ? std::string() : toolkit::Upper(buyer.country),
                   buyer.taxNumber,
                   document.made,
                   document.paidBy,
                   FromCents(document.Gross()),
                   FromCents(document.Discount()),
                   FromCents(document.Vat()),
                   FromCents(document.Total()),
                   data::Currency(),
                   first.Code(),
                   data::Currency::FromWhole(first.Percent()),
                   document.Place().warehouse,
                   sign.hash,
                   sign.control,
                   document.remark,
                   Letter(document.type->CustomerSide()),
                   document.copiedNumber,
                   document.copiedSeries,
                   document.Place().place,
                   AddressOf(buyer)});
}

void BillingBook::AddRemovedHeader(const SalesDocument& document) {
  const SoldLine& first = document.lines.front();
  const Signature sign(document);
  logMovTerceiro_.Add({document.customer.card, document.name.type, document.name.number, document.name.year,
                       document.made.DateText(), DueDate(document),
                       toolkit::Upper(document.customer.who->country), document.paidBy,
                       FromCents(document.Gross()), FromCents(document.Discount()), FromCents(document.Vat()),
                       FromCents(document.Total()), data::Currency(), first.Code(),
                       data::Currency::FromWhole(first.Percent()), document.Place().warehouse, sign.hash,
                       sign.control, "Anulado a pedido do cliente"});
}

void BillingBook::AddLine(TableWriter& table, const SalesDocument& document, const SoldLine& line) {
  const std::string_view noteType = document.deliveryNote.empty() ? "" : TypeOf("GTR").code;
  table.Add({document.name.type,
             document.name.number,
             document.name.year,
             document.made.DateText(),
             line.product->code,
             line.product->description,
             line.quantity,
             line.product->unit,
             noteType,
             document.deliveryNote,
             document.deliveryDate,
             document.order,
             FromCents(line.gross),
             FromCents(line.discount),
             line.Code(),
             data::Currency::FromWhole(line.Percent()),
             FromCents(line.vat),
             document.Place().warehouse,
             line.identity,
             line.relatedTo,
             line.remark});
}

void BillingBook::AddCharge(const SalesDocument& document, const SoldLine& line) {
  const LineCharge& charge = *line.charge;
  charges_.Add({"C", "S", document.name.type, document.name.number, document.name.year, line.identity,
                line.product->code, charge.kind->code, FromCents(charge.amount), FromCents(charge.kind->each),
                line.Code(), data::Currency::FromWhole(line.Percent()), FromCents(charge.vat)});
}

void BillingBook::AddFreeText(const SalesDocument& document) {
  const SoldLine& line = document.lines.front();
  movItem_.Add({document.name.type, document.name.number, document.name.year, document.made.DateText(),
                document.item->code, document.item->description, "Conforme orçamento aceite,",
                "incluindo pessoal & transporte.", FromCents(line.gross), FromCents(line.discount),
                line.Code(), data::Currency::FromWhole(line.Percent())});
  ++lines_;
}

void BillingBook::AddOther(const DocumentName& name, const data::DateTime& made, const Party& customer,
                           Cents amount) {
  const Taxpayer& who = *customer.who;
  const data::Null none;
  movCliente_.Add({customer.card,
                   name.type,
                   name.number,
                   name.year,
                   made.DateText(),
                   made.DateText(),
                   who.name,
                   AddressOf(who),
                   who.town,
                   PostalCodeOf(who),
                   toolkit::Upper(who.country),
                   who.taxNumber,
                   made,
                   "TRF",
                   FromCents(amount),
                   data::Currency(),
                   data::Currency(),
                   FromCents(amount),
                   data::Currency(),
                   none,
                   none,
                   kBranches[customer.branch].warehouse,
                   none,
                   none,
                   none,
                   "C",
                   none,
                   none,
                   none,
                   none});
}

void BillingBook::Link(const DocumentName& from, const DocumentName& to) {
  links_.Add({from.type, from.number, from.year, to.type, to.number, to.year});
}

void BillingBook::Finish() {
  for (TableWriter* table : {&movCliente_, &movProduto_, &logMovTerceiro_, &logMovProduto_, &movItem_,
                             &charges_, &orders_, &links_}) {
    table->Finish();
  }
}

}  // namespace korvel::demo
