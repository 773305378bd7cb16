#include "auditfile/master_files.h"

#include <array>

#include "auditfile/sections.h"
#include "toolkit/progress_scope.h"

namespace korvel::auditfile {
namespace {

constexpr std::array kGeneralLedger{
    Plain("AccountID"),
    Plain("AccountDescription"),
    Element{"OpeningDebitBalance", "OpeningDebitBalance", Rule::Amount},
    Element{"OpeningCreditBalance", "OpeningCreditBalance", Rule::Amount},
};

/// The two kinds of third party have one shape under names of their own.
constexpr auto ThirdParty(std::string_view id, std::string_view taxId, std::string_view shipAddress) {
  return std::array{
      Plain(id),
      Plain("AccountID"),
      Plain(taxId),
      Plain("CompanyName"),
      Optional("Contact"),
      Begin("BillingAddress"),
      Optional("BuildingNumber"),
      Optional("StreetName"),
      Plain("AddressDetail"),
      Plain("City"),
      Plain("PostalCode"),
      Optional("Region"),
      Plain("Country"),
      End("BillingAddress"),
      Begin(shipAddress),
      Element{"BuildingNumber", "Ship_BuildingNumber", Rule::IfSet},
      Element{"StreetName", "Ship_StreetName", Rule::IfSet},
      Element{"AddressDetail", "Ship_AddressDetail"},
      Element{"City", "Ship_City"},
      Element{"PostalCode", "Ship_PostalCode"},
      Element{"Region", "Ship_Region", Rule::IfSet},
      Element{"Country", "Ship_Country"},
      End(shipAddress),
      Optional("Telephone"),
      Optional("Fax"),
      Optional("Email"),
      Optional("Website"),
      Plain("SelfBillingIndicator"),
  };
}

constexpr auto kCustomer = ThirdParty("CustomerID", "CustomerTaxID", "ShipToAddress");
constexpr auto kSupplier = ThirdParty("SupplierID", "SupplierTaxID", "ShipFromAddress");

constexpr std::array kProductElements{
    Plain("ProductType"),        Plain("ProductCode"),       Plain("ProductGroup"),
    Plain("ProductDescription"), Plain("ProductNumberCode"),
};

constexpr std::array kTaxTableEntry{
    Plain("TaxType"),
    Plain("TaxCountryRegion"),
    Plain("TaxCode"),
    Plain("Description"),
    Optional("TaxExpirationDate"),
    Element{"TaxPercentage", "TaxPercentage", Rule::MoneyText},
};

/// Sections that write one element a row.
struct RowShape {
  std::string_view element;
  std::span<const Element> children;
  std::string_view order;
  std::string_view select = "*";
};

constexpr RowShape kAccounts{"GeneralLedger", kGeneralLedger, "AccountID,NumRegisto"};
constexpr RowShape kCustomers{"Customer", kCustomer, "CustomerID,NumRegisto"};
constexpr RowShape kSuppliers{"Supplier", kSupplier, "SupplierID,NumRegisto"};
constexpr RowShape kProducts{"Product", kProductElements, "ProductType,ProductCode,NumRegisto"};
/// Staging holds a tax as often as its source does; the file shows each once.
constexpr RowShape kTaxes{
    "TaxTableEntry", kTaxTableEntry,
    "TaxType,TaxPercentage,TaxCountryRegion,TaxCode,Description,TaxExpirationDate",
    "Distinct TaxType,TaxPercentage,TaxCountryRegion,TaxCode,Description,TaxExpirationDate"};

data::Recordset ReadRows(const Section& section, const RowShape& shape, const SectionContext& context) {
  std::string statement = "Select ";
  statement.append(shape.select).append(" from ").append(section.table);
  statement.append(" where NumRegisto>0 ").append(context.PeriodFilter());
  statement.append(" order by ").append(shape.order);
  return context.company.Query(statement);
}

void WriteRows(XmlWriter& xml, const Section& section, const RowShape& shape, data::Recordset& rows,
               const SectionContext& context) {
  toolkit::ProgressScope progress(context.progress, section.caption, 0);
  const ElementList children(shape.children, rows, context.format);
  for (; !rows.Eof(); rows.MoveNext()) {
    progress.Step();
    xml.Element(shape.element, [&] { children.Write(xml, rows); });
  }
}

void WriteSection(XmlWriter& xml, const Section& section, const RowShape& shape,
                  const SectionContext& context) {
  data::Recordset rows = ReadRows(section, shape, context);
  WriteRows(xml, section, shape, rows, context);
}

/// The container stands only around an entry.
void WriteTaxTable(XmlWriter& xml, const Section& section, const SectionContext& context) {
  data::Recordset rows = ReadRows(section, kTaxes, context);
  if (rows.Eof()) return;
  xml.Element("TaxTable", [&] { WriteRows(xml, section, kTaxes, rows, context); });
}

/// Customers and taxes are staged by both sides. When both are asked for, the billing side's table is taken
/// alone: the two are never merged.
const Section* ChooseSide(const SectionContext& context, bool pocBox, const Section& poc, bool gestBox,
                          const Section& gest) {
  if (gestBox && context.HasBilling()) return &gest;
  if (pocBox && context.HasAccounting()) return &poc;
  return nullptr;
}

void WriteCustomers(XmlWriter& xml, const SectionContext& context) {
  const ExportOptions& options = context.options;
  const Section* section = ChooseSide(context, options.chkPOCCustomer, sections::kPOCCustomer,
                                      options.chkGESTCustomer, sections::kGESTCustomer);
  if (section) WriteSection(xml, *section, kCustomers, context);
}

void WriteTaxes(XmlWriter& xml, const SectionContext& context) {
  const ExportOptions& options = context.options;
  const Section* section = ChooseSide(context, options.chkPOCTaxTable, sections::kPOCTaxTable,
                                      options.chkGESTTaxTable, sections::kGESTTaxTable);
  if (section) WriteTaxTable(xml, *section, context);
}

}  // namespace

void WriteMasterFiles(XmlWriter& xml, const SectionContext& context) {
  const ExportOptions& options = context.options;
  if (options.chkPOCGeneralLedger && context.HasAccounting()) {
    WriteSection(xml, sections::kPOCGeneralLedger, kAccounts, context);
  }
  WriteCustomers(xml, context);
  if (options.chkPOCSupplier && context.HasAccounting()) {
    WriteSection(xml, sections::kPOCSupplier, kSuppliers, context);
  }
  if (options.chkGESTProduct && context.HasBilling()) {
    WriteSection(xml, sections::kGESTProduct, kProducts, context);
  }
  WriteTaxes(xml, context);
}

}  // namespace korvel::auditfile
