#pragma once

#include <span>
#include <string_view>

namespace korvel::periods {

/// One column of `TabHeader` that the entry form shows.
struct HeaderField {
  std::string_view column;
  std::string_view control;
  std::string_view label;  // "&" stands before the access key
  std::string_view tip = {};
  bool fromTemplate = false;  // a new period takes it from the latest one
};

/// In the order of the form, the period key first.
std::span<const HeaderField> HeaderFields();

/// The most characters that a column of `TabHeader` holds; throws std::out_of_range for another name.
int HeaderWidth(std::string_view column);

/// What the form always shows and saves as `ProductID`, whatever the row holds.
inline constexpr std::string_view kProductId = "Korvel/Morvane";
inline constexpr std::string_view kAuditFileVersion = "1.01_01";
inline constexpr std::string_view kProductCompanyTaxId = "508123453";

/// The kinds of system as an option list.
inline constexpr std::string_view kBasisList =
    "C:Contabilidade;F:Facturação;I:Integrados - Facturação e Contabilidade;";

/// A column of the list of periods.
struct HeaderListColumn {
  std::string_view field;
  std::string_view heading;
};
std::span<const HeaderListColumn> HeaderListColumns();

}  // namespace korvel::periods
