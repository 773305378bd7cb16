#include "periods/period_header.h"

#include <gtest/gtest.h>

#include "databases/version.h"
#include "support/scripted_ports.h"

namespace korvel::periods {
namespace {

PeriodHeader Valid() {
  PeriodHeader header;
  for (const HeaderField& field : HeaderFields()) header[field.column] = "x";
  header["FiscalYear"] = "2010";
  header["StartDate"] = "2010-01-01";
  header["EndDate"] = "2010-12-31";
  header["PostalCode"] = "1000-001";
  return header;
}

TEST(PeriodHeader, NamesTheColumnAtFaultAndWhatIsWrongWithIt) {
  struct Case {
    std::string_view column, value;
    std::string_view fault;  // "": none
    std::string_view message;
  };
  constexpr std::string_view kPostal = "O Código Postal tem que obedecer à formatação 0000-000";
  const Case cases[] = {
      {"FiscalYear", "  ", "FiscalYear", ""},
      {"StartDate", "2009-12-01", "StartDate", ""},
      {"EndDate", "2011-03-31", "", ""},
      {"ProductVersion", "", "ProductVersion", "Sem a versão do produto definida!"},
      {"PostalCode", "1000-00", "PostalCode", kPostal},
      {"PostalCode", "1000 001", "PostalCode", kPostal},
      {"PostalCode", "1000-0011", "PostalCode", kPostal},
      {"PostalCode", "ABCD-EFG", "", ""},
      {"PostalCode", "ÁBÇD-ÉFG", "", ""},
      {"PostalCode", "ÁBÇ-ÉFGH", "PostalCode", kPostal},
      {"BusinessName", " ", "BusinessName", "Não definiu a Designação Comercial!"},
      {"TaxEntity", "", "TaxEntity", "Não definiu o Estabelecimento!"},
      {"BuildingNumber", "", "", ""},
      {"Region", "", "", ""},
      {"Cliente", "", "", ""},
      {"SoftwareCertificateNumber", "", "", ""},
  };
  for (const Case& test : cases) {
    PeriodHeader header = Valid();
    header[test.column] = test.value;
    const HeaderFault fault = CheckHeader(header).value_or(HeaderFault{});
    EXPECT_EQ(fault.column, test.fault) << test.column << " '" << test.value << "'";
    EXPECT_EQ(fault.message, test.message) << test.column << " '" << test.value << "'";
  }
}

TEST(PeriodHeader, TheFirstEmptyColumnIsTheOneTold) {
  const std::string_view order[] = {"FiscalYear",       "StartDate",      "EndDate",
                                    "AuditFileVersion", "CompanyID",      "TaxRegistrationNumber",
                                    "CompanyName",      "AddressDetail",  "City",
                                    "PostalCode",       "Country",        "CurrencyCode",
                                    "ProductID",        "ProductVersion", "BusinessName",
                                    "TaxEntity"};
  PeriodHeader header;
  for (const std::string_view column : order) {
    ASSERT_TRUE(CheckHeader(header));
    EXPECT_EQ(CheckHeader(header)->column, column);
    header[column] = Valid()[column];
  }
  EXPECT_FALSE(CheckHeader(header));
}

TEST(PeriodHeader, KindDecidesTheEstablishment) {
  struct Case {
    const char *kind, *basis, *entity;
    bool customer;
  };
  for (const Case& test :
       {Case{"F", "F", "Global", true}, Case{"I", "I", "Sede", false}, Case{"c", "C", "Sede", false},
        Case{"Contabilidade", "", "Antes", false}, Case{"", "", "Antes", false}}) {
    PeriodHeader header;
    header["TaxEntity"] = "Antes";
    ChangeKind(header, test.kind);
    EXPECT_EQ(header["TaxAccountingBasis"], test.basis) << test.kind;
    EXPECT_EQ(header["TaxEntity"], test.entity) << test.kind;
    EXPECT_EQ(ShowsCustomer(header), test.customer) << test.kind;
  }
}

TEST(PeriodHeader, LeavingTheYearFillsEmptyDates) {
  struct Case {
    const char *typed, *start, *year, *startAfter, *endAfter;
  };
  const test::FixedClock clock({2026, 5, 17});
  for (const Case& test : {Case{"2010x", "", "2010", "2010-01-01", "2010-12-31"},
                           Case{" 2010", "2010-04-01", "2010", "2010-04-01", "2010-12-31"},
                           Case{"0", "2010-04-01", "", "2010-04-01", "2026-12-31"},
                           Case{"abc", "", "", "2026-01-01", "2026-12-31"}}) {
    PeriodHeader header;
    header["FiscalYear"] = test.typed;
    header["StartDate"] = test.start;
    LeaveFiscalYear(clock, header);
    EXPECT_EQ(header["FiscalYear"], test.year) << test.typed;
    EXPECT_EQ(header["StartDate"], test.startAfter) << test.typed;
    EXPECT_EQ(header["EndDate"], test.endAfter) << test.typed;
  }
}

TEST(PeriodHeader, TaxNumberTakesDigitsAlone) {
  for (const auto& [text, good] :
       {std::pair{"512345678", true}, {"PT512345678", false}, {"512 345", false}, {"", true}}) {
    test::ScriptedDialogs dialogs;
    PeriodHeader header;
    header["TaxRegistrationNumber"] = text;
    EXPECT_EQ(LeaveTaxRegistrationNumber(dialogs, header), good) << text;
    EXPECT_EQ(dialogs.LastFocus(), good ? "" : "TaxRegistrationNumber");
    EXPECT_EQ(dialogs.messages.size(), good ? 0U : 1U);
  }
}

TEST(PeriodHeader, UnknownColumnIsAMistake) {
  PeriodHeader header;
  EXPECT_THROW(header["Morada"], std::out_of_range);
  EXPECT_NO_THROW(header["website"]);
  for (const HeaderField& field : HeaderFields()) EXPECT_GT(HeaderWidth(field.column), 0) << field.column;
}

}  // namespace
}  // namespace korvel::periods
