#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "billing/billing_period.h"
#include "billing/document_classes.h"
#include "billing/keyed_stream.h"
#include "billing/numbering_walk.h"
#include "billing/source_document.h"
#include "billing/source_link.h"
#include "toolkit/dates.h"

namespace korvel::billing {

/// Which documents are read, and how.
struct ReaderChoice {
  BillingPeriod period;
  std::string descLinhaDoc;  // `SourceDocuments_DescLinhaDoc`
  toolkit::DateMarks marks;
};

/// The documents that bear one number, in the order of their dates. More than one is a fault of the source: all of
/// them then show the latest one, which is how they were always extracted.
struct NumberedDocuments {
  /// What a document calls itself: duplicates may differ in customer and date, and in the case of their type.
  struct Name {
    std::string codigo;
    std::string tipo;
    std::string numero;
    std::string ano;
    std::string data;
  };
  std::vector<Name> names;  // one a document to be extracted; none for other customers' numbers
  DocumentHeader header;    // of the latest
};

/// The years in which a class has documents in the period, in their order. Throws data::Error.
std::vector<std::string> ReadYears(data::Connection& brevant, const BillingPeriod& period,
                                   const ClassFilter& filter);

/// The documents of one class and year in the order of type and number, each with its rows of other tables. However
/// many there are, one statement a table is sent and memory holds one document at a time. All members throw
/// data::Error.
class DocumentReader {
 public:
  DocumentReader(SourceLink& source, const ReaderChoice& choice, const ClassFilter& filter,
                 const std::string& ano);

  /// The next number with documents; false behind the last.
  bool Next(NumberedDocuments& documents);
  /// Reads lines, charges, free text and, when asked for, links of the document whose header is set.
  void ReadContents(SourceDocument& document, bool links);

  /// Called with the header of a removed document; false ends the walk.
  using RemovedSink = std::function<bool(DocumentHeader&)>;
  /// The removed documents whose numbers lie in a gap. A number that a document bears, of another period or in a
  /// customer period of another customer, is no gap. False when the sink ended it.
  bool ForEachRemoved(std::string_view tipo, const NumberGap& gap, const RemovedSink& sink);

 private:
  void ReadLines(SourceDocument& document);
  void ReadCharges(SourceDocument& document);
  void ReadFreeText(SourceDocument& document);
  static void ReadLinks(KeyedStream& stream, SourceDocument& document);
  std::optional<DocumentHeader> ReadRemoved(const DocumentKey& key);
  bool IsOwn(std::string_view codigo) const;

  const ReaderChoice& choice_;
  KeyedStream headers_;
  KeyedStream lines_;
  KeyedStream charges_;
  KeyedStream freeTexts_;
  KeyedStream linksTo_;
  KeyedStream linksFrom_;
  KeyedStream removed_;
  KeyedStream removedLines_;
  bool started_ = false;
};

}  // namespace korvel::billing
