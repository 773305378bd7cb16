#include "demo/lunder_schema.h"

#include <gtest/gtest.h>

#include <map>
#include <regex>
#include <string>
#include <utility>
#include <vector>

#include "support/temp_folder.h"

namespace korvel::demo {
namespace {

using Columns = std::vector<std::pair<std::string, std::string>>;

/// Tables with the names and types of their columns, `NumRegisto` left out, from a script of "CREATE TABLE"s.
std::map<std::string, Columns> ReadTables(const std::string& script) {
  static const std::regex line(R"(CREATE TABLE (\w+) \(|^\s+(\w+) (\w+(?:\(\d+\))?) null)",
                               std::regex::ECMAScript | std::regex::multiline);
  std::map<std::string, Columns> tables;
  std::string table;
  for (std::sregex_iterator at(script.begin(), script.end(), line), end; at != end; ++at) {
    if ((*at)[1].matched) {
      table = (*at)[1];
    } else {
      tables[table].emplace_back((*at)[2], (*at)[3]);
    }
  }
  return tables;
}

std::map<std::string, Columns> OwnTables() {
  std::map<std::string, Columns> tables;
  for (const auto* table : LunderTables()) {
    for (const auto& column : table->columns)
      tables[std::string(table->name)].emplace_back(column.name, column.type);
  }
  return tables;
}

TEST(LunderSchema, HasTheTablesColumnsAndTypesOfTheProduct) {
  const auto published = ReadTables(test::ReadFile(KORVEL_SHARED_DIR "/sources/lunder.sql"));
  ASSERT_EQ(published.size(), 5U);
  EXPECT_EQ(OwnTables(), published);
}

}  // namespace
}  // namespace korvel::demo
