#include "demo/document_types.h"

#include <algorithm>
#include <stdexcept>
#include <string>

#include "demo/branches.h"
#include "demo/brevant_schema.h"
#include "demo/table_writer.h"

namespace korvel::demo {

namespace {

constexpr std::string_view kReceivable = "D+", kCredited = "C+", kPaid = "S+", kPaidBack = "S-";
constexpr std::size_t kAnyBranch = std::size(kBranches);

constexpr DocumentType kTypes[] = {
    {"FAC", "Factura - Açores", "FT", kReceivable, 0},
    {"FAL", "Factura - Lisboa", "FT", kReceivable, 1},
    {"FAM", "Factura - Madeira", "FT", kReceivable, 2},
    {"FRM", "Factura recuperada manual", "FT", kReceivable, kAnyBranch, true, true, true},
    {"FRD", "Factura recuperada de outro sistema", "FT", kReceivable, kAnyBranch, true, true},
    {"NCA", "Nota de crédito - Açores", "NC", kCredited, 0},
    {"NCL", "Nota de crédito - Lisboa", "NC", kCredited, 1},
    {"NCM", "Nota de crédito - Madeira", "NC", kCredited, 2},
    {"NDB", "Nota de débito", "ND", kReceivable, kAnyBranch},
    {"VDA", "Venda a dinheiro - Açores", "VD", kPaid, 0},
    {"VDL", "Venda a dinheiro - Lisboa", "VD", kPaid, 1},
    {"VDM", "Venda a dinheiro - Madeira", "VD", kPaid, 2},
    {"TVE", "Talão de venda", "TV", kPaid, kAnyBranch, false},
    {"TDE", "Talão de devolução", "TD", kPaidBack, kAnyBranch, false},
    {"ALI", "Alienação de activos", "AA", kReceivable, kAnyBranch},
    {"DVA", "Devolução de activos", "DA", kCredited, kAnyBranch},
    {"REC", "Recibo", "", "C-", kAnyBranch, false},
    {"ORC", "Orçamento", "@@@", "", kAnyBranch, false},
    {"GTR", "Guia de transporte", "", "", kAnyBranch, false},
};

}  // namespace

Side DocumentType::CustomerSide() const {
  constexpr std::string_view kCredits[] = {"NC", "TD", "DA"};
  return std::ranges::find(kCredits, classification) == std::end(kCredits) ? Side::Debit : Side::Credit;
}

const DocumentType& TypeOf(std::string_view code) {
  const auto found = std::ranges::find(kTypes, code, &DocumentType::code);
  if (found == std::end(kTypes)) throw std::out_of_range("no document type " + std::string(code));
  return *found;
}

const DocumentType& SeriesOf(std::string_view classification, std::size_t branch) {
  const auto found = std::ranges::find_if(kTypes, [&](const DocumentType& type) {
    return type.classification == classification && (type.branch == branch || type.branch == kAnyBranch);
  });
  if (found == std::end(kTypes)) throw std::out_of_range("no series of " + std::string(classification));
  return *found;
}

void WriteDocumentTypes(data::Connection& brevant) {
  TableWriter types(brevant, brevant::kTabTipoMov);
  for (const DocumentType& type : kTypes) {
    const std::string_view stock = !type.IsSale() ? "" : type.IsCredit() ? "E" : "S";
    types.Add({type.code, type.description, "CL", type.affectsCustomer, stock, type.IsSale(),
               type.classification, type.signs, type.copies, type.copiesByHand});
  }
  types.Add(
      {"VFA", "Vossa factura", "FO", "", "E", true, "FT", false, false, false});  // a supplier's: no sale
  types.Finish();
}

}  // namespace korvel::demo
