#include "periods/period_header.h"

#include <algorithm>
#include <array>
#include <stdexcept>

#include "databases/version.h"
#include "toolkit/dates.h"
#include "toolkit/numbers.h"
#include "toolkit/options.h"
#include "toolkit/text.h"
#include "toolkit/utf8.h"

namespace korvel::periods {

namespace {

std::size_t PlaceOf(std::string_view column) {
  const auto fields = HeaderFields();
  const auto found = std::find_if(fields.begin(), fields.end(), [&](const HeaderField& field) {
    return toolkit::SameIgnoringCase(field.column, column);
  });
  if (found == fields.end()) throw std::out_of_range("TabHeader: " + std::string(column));
  return static_cast<std::size_t>(found - fields.begin());
}

/// Checked one after another; a blank one is told by the cursor alone.
constexpr std::array<std::string_view, 10> kRequired{
    "AuditFileVersion", "CompanyID", "TaxRegistrationNumber", "CompanyName", "AddressDetail", "City",
    "PostalCode",       "Country",   "CurrencyCode",          "ProductID"};

struct RequiredWithMessage {
  std::string_view column;
  std::string_view message;
};
constexpr std::array<RequiredWithMessage, 2> kRequiredNames{{
    {"BusinessName", "Não definiu a Designação Comercial!"},
    {"TaxEntity", "Não definiu o Estabelecimento!"},
}};

bool Blank(const PeriodHeader& header, std::string_view column) {
  return toolkit::IsBlank(header[column]);
}

std::optional<HeaderFault> CheckPeriod(const PeriodHeader& header) {
  for (const std::string_view column : {"FiscalYear", "StartDate", "EndDate"}) {
    if (Blank(header, column)) return HeaderFault{column};
  }
  // The year of the end is deliberately not looked at: a period may end in the next year.
  if (header["StartDate"].substr(0, 4) != header["FiscalYear"]) return HeaderFault{"StartDate"};
  return std::nullopt;
}

std::optional<HeaderFault> CheckRequired(const PeriodHeader& header) {
  for (const std::string_view column : kRequired) {
    if (Blank(header, column)) return HeaderFault{column};
  }
  return std::nullopt;
}

/// Length and dash alone are looked at: letters pass, deliberately.
bool IsPostalCode(std::string_view text) {
  constexpr std::size_t kLength = 8;
  constexpr std::size_t kBeforeDash = 4;
  return toolkit::CharacterCount(text) == kLength && text[toolkit::CutTo(text, kBeforeDash).size()] == '-';
}

std::optional<HeaderFault> CheckTexts(const PeriodHeader& header) {
  if (Blank(header, "ProductVersion")) {
    return HeaderFault{"ProductVersion", "Sem a versão do produto definida!"};
  }
  if (!IsPostalCode(header["PostalCode"])) {
    return HeaderFault{"PostalCode", "O Código Postal tem que obedecer à formatação 0000-000"};
  }
  for (const auto& [column, message] : kRequiredNames) {
    if (Blank(header, column)) return HeaderFault{column, message};
  }
  return std::nullopt;
}

}  // namespace

PeriodHeader::PeriodHeader() : values_(HeaderFields().size()) {}

std::string& PeriodHeader::operator[](std::string_view column) {
  return values_[PlaceOf(column)];
}

const std::string& PeriodHeader::operator[](std::string_view column) const {
  return values_[PlaceOf(column)];
}

PeriodKey PeriodHeader::Key() const {
  return {(*this)["FiscalYear"], (*this)["StartDate"], (*this)["EndDate"]};
}

void ChangeKind(PeriodHeader& header, std::string_view kind) {
  if (!toolkit::eselChave(kBasisList, kind))
    return;  // a choice that is not in the list leaves the control as it is
  header["TaxAccountingBasis"] = toolkit::Upper(kind);
  header["TaxEntity"] = ShowsCustomer(header) ? "Global" : "Sede";
}

bool ShowsCustomer(const PeriodHeader& header) {
  return header["TaxAccountingBasis"] == "F";
}

void LeaveFiscalYear(const toolkit::Clock& clock, PeriodHeader& header) {
  std::string& year = header["FiscalYear"];
  const auto number = toolkit::NumericPrefix(year).Whole();
  year = number == 0 ? std::string() : std::to_string(number);
  const data::DateTime today = clock.Now();  // whose year empty dates take beside an empty year
  if (Blank(header, "StartDate")) {
    header["StartDate"] = toolkit::Data_Actual_PData_str(year, "01", "01", today);
  }
  if (Blank(header, "EndDate")) header["EndDate"] = toolkit::Data_Actual_PData_str(year, "12", "31", today);
}

bool LeaveTaxRegistrationNumber(toolkit::Dialogs& dialogs, const PeriodHeader& header) {
  if (toolkit::SoDigitos(header["TaxRegistrationNumber"])) return true;
  dialogs.Message(toolkit::Icon::Warning,
                  "N.º Identificação Fiscal da Empresa, deve apenas conter caracteres numéricos.");
  dialogs.Focus("TaxRegistrationNumber");
  return false;
}

void CarregarTemplate(data::Connection& company, PeriodHeader& header) {
  const auto latest = company.Query(
      "Select top 1 * from TabHeader order by FiscalYear+StartDate+EndDate desc ,NumRegisto desc");
  if (latest.Eof()) return;
  header["FiscalYear"] = std::to_string(toolkit::NumericPrefix(latest.Text("FiscalYear")).Whole() + 1);
  header["StartDate"] = latest.Text("StartDate");
  header["EndDate"] = latest.Text("EndDate");
  for (const HeaderField& field : HeaderFields()) {
    if (field.fromTemplate && field.column != "TaxAccountingBasis") {
      header[field.column] = latest.Text(field.column);
    }
  }
  ChangeKind(header, latest.Text("TaxAccountingBasis"));
  header["DateCreated"].clear();
  header["ProductVersion"] = databases::ProgramVersion();
}

std::optional<HeaderFault> CheckHeader(const PeriodHeader& header) {
  if (auto fault = CheckPeriod(header)) return fault;
  if (auto fault = CheckRequired(header)) return fault;
  return CheckTexts(header);
}

}  // namespace korvel::periods
