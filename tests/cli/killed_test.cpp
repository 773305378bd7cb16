#include <gtest/gtest.h>
#include <libxml/parser.h>

#include <chrono>
#include <map>
#include <memory>

#include "cli/cli_world.h"

namespace korvel::test {
namespace {

using std::chrono::duration_cast;
using std::chrono::microseconds;
using std::chrono::steady_clock;

constexpr const char* kPeriod = " --empresa 0001 --ano 2025 --inicio 2025-01-01 --fim 2025-12-31";
constexpr int kMoments = 14;

/// A staged table with columns that are the same from run to run.
struct Staged {
  const char* table;
  const char* columns;
};
constexpr Staged kTables[] = {
    {"TabGeneralLedger", "AccountID,AccountDescription"},
    {"TabGeneralLedgerEntriesPOC", "RecordID,TransactionID,NumberOfEntries,TotalDebit"},
    {"TabSupplierPOC", "AccountID,CompanyName"},
    {"TabCustomerGEST", "CustomerID,CompanyName"},
    {"TabProductGEST", "ProductCode,ProductDescription"},
    {"TabTaxTableGEST", "TaxCountryRegion,TaxCode,Description"},
    {"TabSourceDocumentsGEST", "InvoiceNo,LineNumber,ProductDescription,TotalCredit"},
};

/// The rows of a table as one text.
std::string Contents(CliWorld& world, const Staged& staged) {
  std::string all;
  for (const std::string& row : world.Rows("Korvel0001", std::string("select ") + staged.columns + " from " +
                                                             staged.table + " order by NumRegisto")) {
    all += row + '\n';
  }
  return all;
}

std::map<std::string, std::string> AllContents(CliWorld& world) {
  std::map<std::string, std::string> contents;
  for (const Staged& staged : kTables) contents[staged.table] = Contents(world, staged);
  return contents;
}

bool IsWellFormed(const std::string& xml) {
  const std::unique_ptr<xmlDoc, decltype(&xmlFreeDoc)> document(
      xmlReadMemory(xml.data(), static_cast<int>(xml.size()), nullptr, nullptr,
                    XML_PARSE_NOERROR | XML_PARSE_NOWARNING),
      xmlFreeDoc);
  return document != nullptr;
}

std::string Wizard(const CliWorld& world) {
  return "assistente --empresa 0001 --ano 2025 --mes 365 --base I --diarios 00 --pasta " +
         world.Output().string();
}
std::string ExtractEntries(const CliWorld&) {
  return std::string("extrair movimentos") + kPeriod;
}
std::string ExtractDocuments(const CliWorld&) {
  return std::string("extrair documentos") + kPeriod;
}
std::string Export(const CliWorld& world) {
  return std::string("exportar") + kPeriod + " --pasta " + world.Output().string();
}

std::unique_ptr<CliWorld> CopyOf(const CliWorld& world) {
  auto copy = std::make_unique<CliWorld>();
  std::filesystem::copy(world.Servers(), copy->Servers(), std::filesystem::copy_options::recursive);
  return copy;
}

/// A company staged and exported once, its books changed since: what a run makes now differs in every table and in
/// the file from what is there.
class KilledRuns : public testing::Test {
 protected:
  KilledRuns() : world(CliWorld::Start::Demonstration) {
    Done(Wizard(world));
    before = AllContents(world);
    for (const auto& entry : std::filesystem::directory_iterator(world.Output())) file = entry.path();
    fileBefore = ReadFile(file);
    world.Sql("LunderDemo",
              "update Contas set Titulo=Titulo+' X'\nGO\n"
              "delete from MovDiario where Diario='03' and isnull(Integracao,0)<>1");
    world.Sql("BrevantDemo",
              "update Clientes set Descricao=Descricao+' X'\nGO\nupdate Produtos set Descricao=Descricao+' X'"
              "\nGO\nupdate TabIVA set Saft_Description=Saft_Description+' X'\nGO\n"
              "update MovProduto set Descricao=Descricao+' X'");
  }

  /// Runs as a process of its own, to its end.
  void Done(const std::string& line) {
    const auto result = world.RunProcess(line);
    ASSERT_EQ(result.exitCode, 0) << line << '\n' << result.err;
  }

  /// Kills the command that `lineFor` gives for a world, at moments spread over the time that it takes; `look` comes
  /// after each.
  template <typename LineFor, typename Look>
  void KillOverAndOver(LineFor&& lineFor, Look&& look) {
    const auto rehearsal = CopyOf(world);
    const auto begun = steady_clock::now();
    ASSERT_EQ(rehearsal->RunProcess(lineFor(*rehearsal)).exitCode, 0);
    const auto whole = duration_cast<microseconds>(steady_clock::now() - begun);
    int killed = 0;
    for (int moment = 1; moment <= kMoments; ++moment) {
      killed += world.RunAndKill(lineFor(world), whole * moment / kMoments).signal == SIGKILL ? 1 : 0;
      look();
    }
    EXPECT_GT(killed, kMoments / 3) << "too few kills met the command at work";
  }

  void ExpectBeforeNoneOrAfter(const std::map<std::string, std::string>& after) {
    for (const Staged& staged : kTables) {
      const std::string now = Contents(world, staged);
      const bool whole = now.empty() || now == before[staged.table] || now == after.at(staged.table);
      EXPECT_TRUE(whole) << staged.table << " holds a part of a run";
    }
  }

  CliWorld world;
  std::map<std::string, std::string> before;
  std::filesystem::path file;
  std::string fileBefore;
};

/// What the staged tables hold once the whole wizard has run over the changed books, in a copy of the world.
std::map<std::string, std::string> AfterTheWizard(const CliWorld& world) {
  const auto copy = CopyOf(world);
  const auto result = copy->Run(Wizard(*copy));
  EXPECT_EQ(result.exitCode, 0) << result.err;
  return AllContents(*copy);
}

TEST_F(KilledRuns, AnExtractionLeavesTheRowsOfBeforeOrOfAfter) {
  const auto after = AfterTheWizard(world);
  for (const auto& [table, rows] : after) ASSERT_NE(rows, before[table]) << table;
  for (const auto extract : {ExtractEntries, ExtractDocuments}) {
    KillOverAndOver(extract, [&] { ExpectBeforeNoneOrAfter(after); });
    Done(extract(world));
  }
  const auto now = AllContents(world);
  EXPECT_EQ(now.at("TabGeneralLedgerEntriesPOC"), after.at("TabGeneralLedgerEntriesPOC"));
}

TEST_F(KilledRuns, TheWizardLeavesWholeTablesAndAWholeFile) {
  const auto after = AfterTheWizard(world);
  KillOverAndOver(Wizard, [&] {
    ExpectBeforeNoneOrAfter(after);
    EXPECT_TRUE(IsWellFormed(ReadFile(file)));
  });
  Done(Wizard(world));
  EXPECT_EQ(AllContents(world), after);
}

TEST_F(KilledRuns, AnExportLeavesTheEarlierFileOrTheNewOne) {
  Done(ExtractEntries(world));
  const auto copy = CopyOf(world);
  ASSERT_EQ(copy->RunProcess(Export(*copy)).exitCode, 0);
  const std::string fileAfter = ReadFile(copy->Output() / file.filename().string());
  ASSERT_NE(fileAfter, fileBefore);
  KillOverAndOver(Export, [&] {
    const std::string now = ReadFile(file);
    EXPECT_TRUE(now == fileBefore || now == fileAfter) << "the file is a part of one";
  });
  Done(Export(world));
  EXPECT_EQ(ReadFile(file), fileAfter);
}

}  // namespace
}  // namespace korvel::test
