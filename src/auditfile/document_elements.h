#pragma once

#include <array>

#include "auditfile/element_list.h"

/// What the elements of `SourceDocuments` are made of.
namespace korvel::auditfile::documents {

inline constexpr std::array kTotals{
    Plain("NumberOfEntries"),
    Element{"TotalDebit", "TotalDebit", Rule::Amount},
    Element{"TotalCredit", "TotalCredit", Rule::Amount},
};

inline constexpr std::array kInvoice{
    Plain("InvoiceNo"),
    Plain("InvoiceStatus"),
    Plain("Hash"),
    Plain("HashControl"),
    Plain("Period"),
    Plain("InvoiceDate"),
    Plain("InvoiceType"),
    Plain("SelfBillingIndicator"),
    Element{"SystemEntryDate", "SystemEntriedate"},
};

/// Only in integrated files.
inline constexpr std::array kTransaction{Plain("TransactionID")};

inline constexpr std::array kCustomer{Plain("CustomerID")};

/// The columns of one of the two ends of a delivery.
struct DeliveryColumns {
  std::string_view id, date, buildingNo, streetName, addressDetail, city, postalCode, region, country;
};

constexpr auto Delivery(std::string_view container, const DeliveryColumns& columns) {
  return std::array{
      Begin(container),
      Element{"DeliveryID", columns.id, Rule::IfSet},
      Element{"DeliveryDate", columns.date, Rule::IfSet},
      Begin("Address"),
      Element{"BuildingNumber", columns.buildingNo, Rule::IfSet},
      Element{"StreetName", columns.streetName, Rule::IfSet},
      Element{"AddressDetail", columns.addressDetail},
      Element{"City", columns.city},
      Element{"PostalCode", columns.postalCode},
      Element{"Region", columns.region, Rule::IfSet},
      Element{"Country", columns.country},
      End("Address"),
      End(container),
  };
}

inline constexpr auto kShipTo =
    Delivery("ShipTo",
             {"ShipTo_DeliveryId", "ShipTo_DeliveryDate", "ShipTo_BuildingNo", "ShipTo_StreetName",
              "ShipTo_AddressDetail", "ShipTo_City", "ShipTo_PostalCode", "ShipTo_Region", "ShipTo_Country"});
inline constexpr auto kShipFrom =
    Delivery("ShipFrom", {"ShipFrom_DeliveryId", "ShipFrom_DeliveryDate", "ShipFrom_BuildingNo",
                          "ShipFrom_StreetName", "ShipFrom_AddressDetail", "ShipFrom_City",
                          "ShipFrom_PostalCode", "ShipFrom_Region", "ShipFrom_Country"});

inline constexpr std::array kLine{
    Begin("Line"),
    Element{"LineNumber", "LineNumber", Rule::Count},
    BeginIfSet("OrderReferences", "OriginatingON", "OrderDate"),
    Optional("OriginatingON"),
    Optional("OrderDate"),
    End("OrderReferences"),
    Plain("ProductCode"),
    Plain("ProductDescription"),
    Plain("Quantity"),
    Plain("UnitOfMeasure"),
    Element{"UnitPrice", "UnitPrice", Rule::Amount},
    Plain("TaxPointDate"),
    BeginIfSet("References", "References", "Reason"),
    Begin("CreditNote"),
    Element{"Reference", "References", Rule::IfSet},
    Optional("Reason"),
    End("CreditNote"),
    End("References"),
    Plain("Description"),
    // Unlike the ledger's: the test is on the text, so that a staged "0.00" is written.
    Element{"DebitAmount", "DebitAmount", Rule::AmountIfSet},
    Element{"CreditAmount", "CreditAmount", Rule::AmountIfSet},
    Begin("Tax"),
    Plain("TaxType"),
    Plain("TaxCountryRegion"),
    Plain("TaxCode"),
    Element{"TaxPercentage", "TaxPercentage", Rule::Amount},
    End("Tax"),
    Optional("TaxExemptionReason"),
    Element{"SettlementAmount", "SettlementAmount", Rule::CentsIfAny},
    End("Line"),
};

inline constexpr std::array kDocumentTotals{
    Begin("DocumentTotals"),
    Element{"TaxPayable", "TaxPayable", Rule::Amount},
    Element{"NetTotal", "NetTotal", Rule::Amount},
    Element{"GrossTotal", "GrossTotal", Rule::Amount},
    BeginIfSet("Currency", "CurrencyCode"),
    Plain("CurrencyCode"),
    Element{"CurrencyCreditAmount", "CurrencyCreditAmount", Rule::AmountIfSet},
    Element{"CurrencyDebitAmount", "CurrencyDebitAmount", Rule::AmountIfSet},
    End("Currency"),
    // Blanks in `PaymentMechanism` alone give an empty element, deliberately.
    Element{"Settlement", "SettlementDate", Rule::OpenIfText, "PaymentMechanism"},
    Optional("SettlementDate"),
    Optional("PaymentMechanism"),
    End("Settlement"),
    End("DocumentTotals"),
};

}  // namespace korvel::auditfile::documents
