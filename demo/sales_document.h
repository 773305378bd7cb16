#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "data/date_time.h"
#include "demo/branches.h"
#include "demo/catalogue.h"
#include "demo/document_types.h"
#include "demo/ledger.h"
#include "demo/taxpayers.h"

namespace korvel::demo {

/// Whom the company deals with: a customer's or supplier's own account, or a general one and who stands
/// behind it.
struct Party {
  std::string card;     // code in the billing product; blank for suppliers
  std::string account;  // in the chart of accounts
  const Taxpayer* who = nullptr;
  std::size_t branch = kHeadOffice;
  bool abroad = false;  // sold to without VAT
};

/// A document by its name in the billing product.
struct DocumentName {
  std::string_view type;
  std::string number;  // eight digits
  std::string year;

  /// The number of its entry in the ledger, by which the extraction finds the entry.
  std::string LedgerNumber() const;
};

struct LineCharge {
  const ChargeKind* kind = nullptr;
  Cents amount = 0;
  Cents vat = 0;
};

/// One line of a document. Amounts are what the document's side makes of them, never negative.
struct SoldLine {
  const Product* product = nullptr;
  data::Currency quantity = data::Currency::FromWhole(1);
  Cents gross = 0;  // quantity at its price
  Cents discount = 0;
  Cents vat = 0;
  const VatCode* vatCode = nullptr;  // nothing: exempt without a code
  std::string identity;              // of this line among all
  std::string relatedTo;             // identity of another document's line
  std::string_view remark;
  std::optional<LineCharge> charge;

  Cents Net() const { return gross - discount; }
  int Percent() const { return vatCode ? vatCode->percent : 0; }
  std::string_view Code() const { return vatCode ? vatCode->code : std::string_view(); }
};

/// What the billing product keeps of a document's contents.
enum class Contents { Lines, FreeText, Nothing };

/// A sales document, from which both the ledger's entry and the billing product's rows are made.
struct SalesDocument {
  const DocumentType* type = nullptr;
  DocumentName name;
  data::DateTime made;  // date of the document and the time at which it was typed
  Party customer;
  std::vector<SoldLine> lines;  // at least one, also where the billing product does not keep it
  Contents contents = Contents::Lines;
  const TextItem* item = nullptr;  // of a free text
  std::string order;               // the customer's order
  std::string deliveryNote;
  std::string deliveryDate;  // YYYY-MM-DD
  std::string_view paidBy;   // payment code, blank for credit
  std::string_view remark;
  std::string copiedSeries;  // of a copy: what it bore where it was made
  std::string copiedNumber;
  bool withoutCountry = false;  // the billing product lacks the country

  const Branch& Place() const { return kBranches[customer.branch]; }
  /// Of goods and charges, discounts not taken off.
  Cents Gross() const;
  Cents Discount() const;
  Cents Vat() const;
  Cents Net() const { return Gross() - Discount(); }
  Cents Total() const { return Net() + Vat(); }
};

/// The entry that integrates a document into the ledger.
Entry EntryOf(const SalesDocument& document);
/// The entry that takes it back, under a number of its own.
Entry ReversalOf(const SalesDocument& document, std::string number);

}  // namespace korvel::demo
