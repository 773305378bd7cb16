#include "billing/document_walk.h"

#include <fmt/format.h>

namespace korvel::billing {

bool DocumentWalk::Run(const ClassFilters& filters, const SectionTotals& totals,
                       const DocumentMapper::Sink& sink) {
  for (std::size_t i = 0; i < filters.size(); ++i) {
    if (totals.documents[i] == 0) continue;
    class_ = {kDocumentClasses[i].side, {}};
    if (!WalkClass(filters[i], sink)) return false;
  }
  return true;
}

bool DocumentWalk::WalkClass(const ClassFilter& filter, const DocumentMapper::Sink& sink) {
  classNamed_ = false;
  numbering_ = {};
  for (const std::string& ano : ReadYears(source_.Main(), choice_.documents.period, filter)) {
    DocumentReader reader(source_, choice_.documents, filter, ano);
    if (!WalkYear(reader, sink)) return false;
  }
  return true;
}

bool DocumentWalk::WalkYear(DocumentReader& reader, const DocumentMapper::Sink& sink) {
  for (NumberedDocuments documents; reader.Next(documents);) {
    if (documents.names.empty()) continue;
    const NumberedDocuments::Name& first = documents.names.front();
    if (!classNamed_) {
      // The class is named by its first document's type, whatever the types of the others say.
      const DocumentType* type = lookups_.types.Find(first.tipo);
      class_.classe = type ? type->classification : std::string();
      classNamed_ = true;
    }
    const auto gap = numbering_.Step(first.ano, first.tipo, first.numero);
    if (choice_.removed && gap && !MapGap(reader, first, *gap, sink)) return false;
    if (!MapDocuments(reader, documents, sink)) return false;
  }
  return true;
}

bool DocumentWalk::MapGap(DocumentReader& reader, const NumberedDocuments::Name& next, const NumberGap& gap,
                          const DocumentMapper::Sink& sink) {
  return reader.ForEachRemoved(next.tipo, gap, [&](DocumentHeader& removed) {
    document_.header = std::move(removed);
    document_.header.tipo = next.tipo;
    document_.header.ano = next.ano;
    progress_.Step([&] {
      return fmt::format("Documento : {} / {} / {} ---> DOCUMENTO ANULADO",
                         toolkit::GData(next.data, choice_.documents.marks), next.tipo,
                         document_.header.numero);
    });
    reader.ReadContents(document_, RefersToOthers(next.tipo));
    return mapper_.Map(document_, class_, sink);
  });
}

bool DocumentWalk::MapDocuments(DocumentReader& reader, NumberedDocuments& documents,
                                const DocumentMapper::Sink& sink) {
  document_.header = std::move(documents.header);
  DocumentHeader& header = document_.header;
  reader.ReadContents(document_, RefersToOthers(header.tipo));
  for (NumberedDocuments::Name& name : documents.names) {
    header.codigo = std::move(name.codigo);
    header.tipo = std::move(name.tipo);
    header.numero = std::move(name.numero);
    header.ano = std::move(name.ano);
    progress_.Step([&] {
      return fmt::format("Documento : {} / {} / {}", toolkit::GData(name.data, choice_.documents.marks),
                         header.tipo, header.numero);
    });
    if (!mapper_.Map(document_, class_, sink)) return false;
  }
  return true;
}

bool DocumentWalk::RefersToOthers(const std::string& tipo) const {
  const DocumentType* type = lookups_.types.Find(tipo);
  return type && type->RefersToOthers();
}

}  // namespace korvel::billing
