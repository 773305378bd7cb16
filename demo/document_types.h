#pragma once

#include <cstddef>
#include <string_view>

#include "data/connection.h"
#include "demo/ledger.h"

namespace korvel::demo {

/// A document type of the billing product: a series of documents of its own. Codes have three characters, so
/// that a ledger entry's number can be taken apart into the document's number and type.
struct DocumentType {
  std::string_view code;
  std::string_view description;
  std::string_view classification;  // "FT" ... "DA"; blank or "@@@" for what is no sales document
  std::string_view affectsCustomer;
  std::size_t branch;
  bool signs = true;
  bool copies = false;  // of a document that another system or a person has made
  bool copiesByHand = false;

  /// A sales document, and no other movement of a customer.
  bool IsSale() const { return !classification.empty() && classification != "@@@"; }
  /// On which side of the customer's account a document stands.
  Side CustomerSide() const;
  bool IsPaidAtOnce() const { return affectsCustomer.starts_with('S'); }
  bool IsCredit() const { return CustomerSide() == Side::Credit; }
};

/// The type of that code. Throws std::out_of_range when there is none.
const DocumentType& TypeOf(std::string_view code);
/// A branch's own series of a class, or the one that all branches use.
const DocumentType& SeriesOf(std::string_view classification, std::size_t branch);

/// Writes `TabTipoMov`. Throws data::Error.
void WriteDocumentTypes(data::Connection& brevant);

}  // namespace korvel::demo
