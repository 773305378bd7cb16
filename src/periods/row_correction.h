#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "periods/staging.h"

/// Correcting a row of a review grid by hand: which columns its boxes show, what they make of each other, and the fill of
/// blank cells. Works on the grid alone; the save of the grid's form stores the result.
namespace korvel::periods {

/// A box of a correction form.
struct CorrectionField {
  std::string_view
      column;  // staged column, after which the box is named: "txtCity", its fill check box "chkCity"
  std::string_view label;          // "&" stands before the access key
  bool fills = false;              // has a fill check box
  std::string_view twin = {};      // the shipping column that takes its text while blank
  std::string_view supplier = {};  // what suppliers call the column, where that is another name
};

/// Of `frmCustomerIns`, in the order of the form. `SelfBillingIndicator` is a check box there, not one of these.
std::span<const CorrectionField> CustomerFields();
inline constexpr std::string_view kSelfBillingColumn = "SelfBillingIndicator";

/// Of `frmTaxTableIns`.
struct TaxField {
  std::string_view column;
  std::string_view control;
  std::string_view label;
  std::string_view tip = {};
  std::string_view fillControl = {};  // its fill check box, when it has one
};
std::span<const TaxField> TaxFields();

/// Behind every fill check box.
inline constexpr std::string_view kFillTip =
    R"("Controlo de Preenchimento Automático"  -  Aplica-se apenas aos registos vazios)";

/// Where a grid holds a staged column, in any case of letters; nothing where it has none.
std::optional<std::size_t> ColumnOf(const StagedTable& table, std::string_view column);
std::optional<std::size_t> ColumnOf(const StagedTable& table, const CorrectionField& field);

/// Leaving the tax code: what is stored of it, and the description that it stands for, nothing for other codes.
struct TaxCodeLeft {
  std::string code;  // upper-cased
  std::optional<std::string_view> description;
};
TaxCodeLeft LeaveTaxCode(std::string_view typed);

/// What a correction writes into one column.
struct Correction {
  std::size_t column = 0;
  std::string text;
  bool fills = false;  // into every row of the grid, ticked or not, whose cell is blank
};

/// Before the form closes: where something fills, warns and asks. False when the user declines.
bool ConfirmCorrections(const session::Context& context, std::span<const Correction> corrections);
/// Writes the texts to the row `row`, then fills.
void CorrectRow(Grid& grid, std::size_t row, std::span<const Correction> corrections);

}  // namespace korvel::periods
