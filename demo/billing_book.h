#pragma once

#include <cstdint>
#include <string_view>

#include "demo/sales_document.h"
#include "demo/table_writer.h"

namespace korvel::demo {

/// Writes documents to the billing product's tables. Memory does not grow with them.
class BillingBook {
 public:
  explicit BillingBook(data::Connection& brevant);

  void Add(const SalesDocument& document);
  /// A document that was removed after it was issued: it stands in the logs alone.
  void AddRemoved(const SalesDocument& document);
  /// A movement of the customer's account that is no sales document.
  void AddOther(const DocumentName& name, const data::DateTime& made, const Party& customer, Cents amount);
  /// `from` names `to`.
  void Link(const DocumentName& from, const DocumentName& to);
  void Finish();

  // Of sale.
  std::int64_t Documents() const { return documents_; }
  std::int64_t Lines() const { return lines_; }

 private:
  void AddHeader(const SalesDocument& document);
  void AddRemovedHeader(const SalesDocument& document);
  void AddLines(const SalesDocument& document);
  void AddLine(TableWriter& table, const SalesDocument& document, const SoldLine& line);
  void AddCharge(const SalesDocument& document, const SoldLine& line);
  void AddFreeText(const SalesDocument& document);

  TableWriter movCliente_;
  TableWriter movProduto_;
  TableWriter logMovTerceiro_;
  TableWriter logMovProduto_;
  TableWriter movItem_;
  TableWriter charges_;
  TableWriter orders_;
  TableWriter links_;
  std::int64_t documents_ = 0;
  std::int64_t lines_ = 0;
};

}  // namespace korvel::demo
