#include <gtest/gtest.h>

#include <fmt/format.h>

#include <string>
#include <vector>

#include "cli/cli_world.h"
#include "support/reference_check.h"
#include "support/schema_check.h"

namespace korvel::test {
namespace {

class Demonstration : public testing::Test {
 protected:
  /// Runs the wizard into an empty folder and gives the file.
  std::string Export(std::string_view basis, std::string_view month) {
    Run(fmt::format("assistente --empresa 0001 --base {} --ano 2025 --mes {} --diarios 00 --pasta {}", basis,
                    month, world.Output().string()));
    const auto files = TakeFiles();
    return files.size() == 1 ? files.front() : std::string();
  }
  void Run(const std::string& line) {
    const auto result = world.Run(line);
    EXPECT_EQ(result.exitCode, 0) << line << '\n' << result.out << result.err;
  }
  /// The files in the folder, which is empty then.
  std::vector<std::string> TakeFiles() {
    std::vector<std::string> files;
    for (const auto& file : std::filesystem::directory_iterator(world.Output()))
      files.push_back(ReadFile(file.path()));
    std::filesystem::remove_all(world.Output());
    std::filesystem::create_directory(world.Output());
    return files;
  }
  void ExpectSound(const std::string& xml, FileScope scope) {
    EXPECT_EQ(schema.Faults(xml), std::vector<std::string>{});
    EXPECT_EQ(BrokenReferences(xml, scope), std::vector<std::string>{});
  }

  CliWorld world{CliWorld::Start::Demonstration};
  const SchemaCheck schema;
};

std::size_t Count(const std::string& xml, std::string_view text) {
  std::size_t count = 0;
  for (std::size_t at = xml.find(text); at != xml.npos; at = xml.find(text, at + 1)) ++count;
  return count;
}

TEST_F(Demonstration, EveryKindOfFileIsSoundOneAfterTheOther) {
  for (const char* basis : {"C", "F", "I"}) {
    for (const char* month : {"365", "4"}) {
      SCOPED_TRACE(fmt::format("{} {}", basis, month));
      ExpectSound(Export(basis, month), FileScope::Whole);
    }
  }
  ExpectSound(Export("C", "365"), FileScope::Whole);  // the others have left a period of its kind
}

TEST_F(Demonstration, MonthlyFilesAreSoundAndHoldTheYearTogether) {
  const std::size_t invoices = Count(Export("I", "365"), "<Invoice>");
  Run("exportar --empresa 0001 --ano 2025 --inicio 2025-01-01 --fim 2025-12-31 --por-meses --pasta " +
      world.Output().string());
  const auto files = TakeFiles();
  EXPECT_EQ(files.size(), 12U);
  std::size_t monthly = 0;
  for (const std::string& xml : files) {
    ExpectSound(xml, FileScope::Part);
    monthly += Count(xml, "<Invoice>");
  }
  EXPECT_GT(invoices, 100U);
  EXPECT_EQ(monthly, invoices);
}

TEST_F(Demonstration, IntegratedFileHoldsWhatTheBooksHold) {
  const std::string xml = Export("I", "365");
  const std::string ofYear = "Data>='2025-01-01' and Diario<>'00'";
  const std::string lines =
      world.One("LunderDemo", "select count(NumRegisto) from MovDiario where " + ofYear);
  const std::string debit =
      world.One("LunderDemo", "select sum(Valor) from MovDiario where Afecta='D' and " + ofYear);
  EXPECT_NE(xml.find("<NumberOfEntries>" + lines + "</NumberOfEntries><TotalDebit>" + debit), xml.npos)
      << lines << " lines, " << debit << " of debits";
  const std::string documents = world.One(
      "BrevantDemo",
      "select count(m.NumRegisto) from MovCliente m inner join TabTipoMov t on t.Codigo=m.Tipo where "
      "t.TipoMovClassifica<>'' and t.TipoMovClassifica<>'@@@' and m.Ano='2025'");
  EXPECT_NE(xml.find("<SalesInvoices><NumberOfEntries>" + documents + "<"), xml.npos) << documents;
  const std::pair<std::string_view, std::vector<std::string_view>> texts[] = {
      {"CompanyName", {"Padaria d'\xC1vila &amp; Filhos"}},
      {"Period", {"13<", "14<", "15<"}},
      {"TransactionType", {"A<"}},
      {"CustomerID", {"999999990<"}},
      {"InvoiceType", {"FT<", "NC<", "ND<", "VD<", "TV<", "TD<", "AA<", "DA<"}},
      {"InvoiceStatus", {"N<", "S<", "F<", "A<"}},
      {"ProductCode", {"PRO_SACO<", "S/Produto<", "CATERING<"}},
      {"Reference", {"FA"}},
      {"OriginatingON", {"ENCO 2025/", "GTR 2025/"}},
      {"HashControl", {"1-FTM A/12<", "1-FTD 2009/418<"}},
      {"TaxExemptionReason", {"Isento artigo 14."}},
      {"SelfBillingIndicator", {"1<"}},
      {"PaymentMechanism", {""}},
      {"TaxCountryRegion", {"PT-AC<", "PT-MA<"}}};
  for (const auto& [element, values] : texts) {
    for (const std::string_view value : values) {
      EXPECT_NE(xml.find(fmt::format("<{}>{}", element, value)), xml.npos) << element << ' ' << value;
    }
  }
}

}  // namespace
}  // namespace korvel::test
