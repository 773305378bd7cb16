#pragma once

#include <array>
#include <string_view>

namespace korvel::auditfile {

/// A section of the file that the user chooses, with the staged table it comes from.
struct Section {
  std::string_view box;
  std::string_view caption;
  std::string_view table;
};

namespace sections {
inline constexpr Section kPOCGeneralLedger{
    "chkPOCGeneralLedger", "General Ledger - Plano Oficial de Contas POC", "TabGeneralLedger"};
inline constexpr Section kPOCCustomer{"chkPOCCustomer", "Customer - Clientes do POC", "TabCustomerPOC"};
inline constexpr Section kPOCSupplier{"chkPOCSupplier", "Supplier - Fornecedores do POC", "TabSupplierPOC"};
inline constexpr Section kPOCTaxTable{"chkPOCTaxTable", "Tax Table - Impostos do POC", "TabTaxTablePOC"};
inline constexpr Section kPOCGeneralLedgerEntries{"chkPOCGeneralLedgerEntries",
                                                  "General Ledger Entries - Movimentos Contabilisticos",
                                                  "TabGeneralLedgerEntriesPOC"};
inline constexpr Section kGESTCustomer{"chkGESTCustomer", "Customer - Clientes da Gestão", "TabCustomerGEST"};
inline constexpr Section kGESTProduct{"chkGESTProduct", "Product - Produtos da Gestão", "TabProductGEST"};
inline constexpr Section kGESTTaxTable{"chkGESTTaxTable", "Tax Table - Impostos da Gestão",
                                       "TabTaxTableGEST"};
inline constexpr Section kGESTSourceDocuments{
    "chkGESTSourceDocuments", "Source Documents - Documentos Comerciais da Gestão", "TabSourceDocumentsGEST"};
}  // namespace sections

/// In the order of the export form.
inline constexpr std::array kSections{
    sections::kPOCGeneralLedger,
    sections::kPOCCustomer,
    sections::kPOCSupplier,
    sections::kPOCTaxTable,
    sections::kPOCGeneralLedgerEntries,
    sections::kGESTCustomer,
    sections::kGESTProduct,
    sections::kGESTTaxTable,
    sections::kGESTSourceDocuments,
};

}  // namespace korvel::auditfile
