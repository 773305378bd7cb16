#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "billing/document_classes.h"
#include "billing/document_lookups.h"
#include "billing/document_rows.h"
#include "billing/source_document.h"
#include "periods/period.h"

namespace korvel::billing {

/// What all documents of a run share.
struct MappingConstants {
  std::optional<periods::Basis> basis;
  int casasDec = 2;
  std::string decimal = ",";  // mark of the staged amounts
  std::int64_t numberOfEntries = 0;
  std::string totalDebit;  // as staged
  std::string totalCredit;
  std::string productDescriptionDefault;
};

/// What all documents of a class share.
struct MappedClass {
  Side side = Side::Credit;
  std::string classe;  // `TipoMovClassifica` of the class's first document
};

/// `MapeiaDocumento`: turns one document into rows, one a line, one a charge behind it, at least one in all. Works
/// on its arguments alone. The look-ups must outlive it.
class DocumentMapper {
 public:
  /// Takes a row, which it may change; false ends the document.
  using Sink = std::function<bool(StagedRow&)>;

  DocumentMapper(const DocumentLookups& lookups, MappingConstants constants);

  /// False as soon as the sink refused a row. Throws std::overflow_error for amounts that no money column holds.
  bool Map(const SourceDocument& document, const MappedClass& mappedClass, const Sink& sink);

 private:
  struct RowValues;

  void FillDocument(const SourceDocument& document, const std::string& classe);
  void FillSignature(const DocumentHeader& header, const std::string& classe);
  void FillCustomer(const DocumentHeader& header, const std::string& classe);
  void FillTotals(const DocumentHeader& header);
  void FillSettlement(const DocumentHeader& header);
  void FillReferences(const SourceDocument& document);
  void FillTax(const RowValues& values);
  bool Emit(const RowValues& values);

  bool MapLines(const SourceDocument& document);
  bool MapLine(const DocumentHeader& header, const DocumentLine& line);
  bool MapCharge(const DocumentHeader& header, const DocumentLine& line, const ExtraCharge& charge);
  bool MapFreeText(const DocumentHeader& header, const FreeTextItem& item);
  bool MapWithoutLines(const DocumentHeader& header);

  OriginatingOrder OrderOf(const DocumentLine& line) const;
  std::string Amount(Currency value) const;
  const std::string& OrDefault(const std::string& description) const;

  const DocumentLookups& lookups_;
  const MappingConstants constants_;
  StagedRow row_;
  // Of the document at hand:
  const DocumentType* type_ = nullptr;
  const Sink* sink_ = nullptr;
  Side side_ = Side::Credit;
  int lineNumber_ = 0;
};

/// (`valor` over `quantidade`), exact, brought to ten-thousandths half to even; 0 for a quantity of 0.
/// Throws std::overflow_error.
Currency UnitPrice(Currency valor, Currency quantidade);

}  // namespace korvel::billing
