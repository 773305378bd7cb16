#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <unordered_map>

#include "demo/catalogue.h"
#include "demo/random.h"
#include "demo/sales_document.h"

namespace korvel::demo {

/// Draws up the sales documents of one year: numbers them by type, puts goods on them and remembers what a
/// customer bought last.
class SalesDesk {
 public:
  /// The catalogue and the generator must outlive it.
  SalesDesk(int year, const Catalogue& catalogue, Random& random);

  DocumentName NextName(const DocumentType& type);
  /// Leaves a number unused, as a document that was never saved does.
  void SkipNumber(const DocumentType& type) { ++numbers_[type.code]; }

  /// A document without lines.
  SalesDocument Open(const DocumentType& type, const Party& customer, const data::DateTime& made);
  /// Lines of goods, mostly of one rate.
  void AddGoods(SalesDocument& document, std::int64_t lines);
  SoldLine& AddLine(SalesDocument& document, const Product& product, data::Currency quantity);

  // Each changes a line and its VAT.
  void Discount(SoldLine& line, int percent);
  void Charge(SoldLine& line, const ChargeKind& kind);
  void ExemptWithoutCode(SoldLine& line);

  // References of a document to what came before it.
  void Order(SalesDocument& document);
  void DeliveryNote(SalesDocument& document);

  /// An issued document that can be credited, and its first line.
  struct Issued {
    DocumentName name;
    SoldLine line;
  };
  void Remember(const SalesDocument& document);
  /// What the customer of that card bought last, once: nothing afterwards.
  std::optional<Issued> TakeLast(const std::string& card);
  /// Puts a line on the document that takes the issued one back.
  void TakeBack(SalesDocument& document, const Issued& issued);

 private:
  std::string NextIdentity();

  int year_;
  const Catalogue& catalogue_;
  Random& random_;
  std::map<std::string_view, std::int64_t> numbers_;
  std::unordered_map<std::string, Issued> lastIssued_;  // by card
  std::int64_t identities_ = 0;
  std::int64_t orders_ = 0;
  std::int64_t notes_ = 0;
};

}  // namespace korvel::demo
