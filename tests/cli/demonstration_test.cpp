#include <gtest/gtest.h>
#include <libxml/parser.h>
#include <libxml/xmlschemas.h>

#include <memory>
#include <string>

#include "cli/cli_world.h"
#include "toolkit/text.h"

namespace korvel::test {
namespace {

/// The published schema in memory. Two of its patterns write "\/" where the reader wants "/".
std::string Schema() {
  return toolkit::ReplaceAll(ReadFile(KORVEL_SHARED_DIR "/schema/SAFTPT1.01_01.xsd"), "\\/", "/");
}

void CollectError(void* errors, xmlErrorPtr error) {
  *static_cast<std::string*>(errors) += error->message;
}

/// What the schema has against a file, empty when it is valid.
std::string ErrorsOf(const std::string& xml) {
  const std::string schemaText = Schema();
  const std::unique_ptr<xmlSchemaParserCtxt, decltype(&xmlSchemaFreeParserCtxt)> parser(
      xmlSchemaNewMemParserCtxt(schemaText.data(), static_cast<int>(schemaText.size())),
      xmlSchemaFreeParserCtxt);
  const std::unique_ptr<xmlSchema, decltype(&xmlSchemaFree)> schema(xmlSchemaParse(parser.get()),
                                                                    xmlSchemaFree);
  if (schema == nullptr) return "the schema cannot be read";
  const std::unique_ptr<xmlDoc, decltype(&xmlFreeDoc)> document(
      xmlReadMemory(xml.data(), static_cast<int>(xml.size()), nullptr, nullptr, 0), xmlFreeDoc);
  if (document == nullptr) return "the file does not parse";
  const std::unique_ptr<xmlSchemaValidCtxt, decltype(&xmlSchemaFreeValidCtxt)> check(
      xmlSchemaNewValidCtxt(schema.get()), xmlSchemaFreeValidCtxt);
  std::string errors;
  xmlSchemaSetValidStructuredErrors(check.get(), CollectError, &errors);
  const int result = xmlSchemaValidateDoc(check.get(), document.get());
  return result == 0 ? std::string() : "invalid: " + errors;
}

class Demonstration : public testing::Test {
 protected:
  std::string Export(const std::string& dates) {
    const auto result = world.Run("assistente --empresa 0001 --base C --ano 2025 " + dates + " --pasta " +
                                  world.Output().string());
    EXPECT_EQ(result.exitCode, 0) << result.err;
    const std::filesystem::directory_iterator files(world.Output());
    return files == end(files) ? std::string() : ReadFile(files->path());
  }

  CliWorld world{CliWorld::Start::Demonstration};
};

TEST_F(Demonstration, FileOfTheYearIsValid) {
  EXPECT_EQ(ErrorsOf(Export("--mes 365")), "");
}

TEST_F(Demonstration, FileOfAMonthIsValid) {
  EXPECT_EQ(ErrorsOf(Export("--mes 2")), "");
}

TEST_F(Demonstration, FileHoldsWhatTheBooksHold) {
  const std::string xml = Export("--mes 365");
  const std::string lines =
      world.One("LunderDemo", "select count(NumRegisto) from MovDiario where Diario<>'00'");
  const std::string debit =
      world.One("LunderDemo", "select sum(Valor) from MovDiario where Diario<>'00' and Afecta='D'");
  EXPECT_NE(xml.find("<NumberOfEntries>" + lines + "</NumberOfEntries><TotalDebit>" + debit), xml.npos)
      << lines << " lines, " << debit << " of debits";
  for (const char* text :
       {"d'\xC1vila &amp; Filhos", "<Period>13</Period>", "<Period>14</Period>", "<Period>15</Period>",
        "<TransactionType>A</TransactionType>", "<CustomerID>999999990<"}) {
    EXPECT_NE(xml.find(text), xml.npos) << text;
  }
}

}  // namespace
}  // namespace korvel::test
