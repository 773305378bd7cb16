#include "auditfile/header_section.h"

#include <array>

#include "toolkit/text.h"

namespace korvel::auditfile {
namespace {

constexpr std::array kIdentity{Plain("AuditFileVersion"), Plain("CompanyID"), Plain("TaxRegistrationNumber")};

constexpr std::array kCompany{
    Plain("CompanyName"),   Optional("BusinessName"), Begin("CompanyAddress"), Optional("BuildingNumber"),
    Optional("StreetName"), Plain("AddressDetail"),   Plain("City"),           Plain("PostalCode"),
    Optional("Region"),     Plain("Country"),         End("CompanyAddress"),   Plain("FiscalYear"),
    Plain("StartDate"),     Plain("EndDate"),         Plain("CurrencyCode"),
};

constexpr std::array kProducer{
    Plain("TaxEntity"),
    Plain("ProductCompanyTaxID"),
    Plain("SoftwareCertificateNumber"),
    Plain("ProductID"),
    Plain("ProductVersion"),
    Optional("HeaderComment"),
    Optional("Telephone"),
    Optional("Fax"),
    Optional("Email"),
    Optional("Website"),
};

/// A monthly file is a partial one whatever the period's kind, and self-billing goes before the kind too.
std::string_view FileBasis(const SectionContext& context, std::string_view ofPeriod) {
  if (context.options.chkPorMeses) return "P";
  if (!toolkit::IsBlank(context.Cliente)) return "S";
  return ofPeriod;
}

void WriteList(XmlWriter& xml, std::span<const Element> elements, const data::Recordset& row,
               const AmountFormat& format) {
  ElementList(elements, row, format).Write(xml, row);
}

}  // namespace

bool WriteHeader(XmlWriter& xml, const SectionContext& context) {
  const data::Recordset row =
      context.company.Query("Select * from TabHeader where NumRegisto>0 " + context.PeriodFilter());
  if (row.Eof()) return false;
  WriteList(xml, kIdentity, row, context.format);
  xml.Leaf("TaxAccountingBasis", FileBasis(context, row.Text("TaxAccountingBasis")));
  WriteList(xml, kCompany, row, context.format);
  xml.Leaf("DateCreated", context.today);
  WriteList(xml, kProducer, row, context.format);
  return true;
}

void StoreDateCreated(const SectionContext& context) {
  context.company.Execute("Update TabHeader set DateCreated=? where " + context.period.Condition(),
                          {context.today});
}

}  // namespace korvel::auditfile
