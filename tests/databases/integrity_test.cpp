#include "databases/integrity.h"

#include <gtest/gtest.h>

#include "databases/canned_connection.h"

namespace korvel::databases {
namespace {

TEST(Integrity, ForeignTablesGoWhenEmptyAndAreReportedOtherwise) {
  test::CannedConnection connection;
  connection.answers["sp_tables"] = {{{"TABLE_QUALIFIER", "TABLE_OWNER", "TABLE_NAME", "TABLE_TYPE"},
                                      {{"K", "dbo", "Empresas", "TABLE"},
                                       {"K", "sys", "objects", "TABLE"},
                                       {"K", "joao", "Vista", "VIEW"},
                                       {"K", "joao", "Vazia", "TABLE"},
                                       {"K", "joao", "Cheia", "TABLE"},
                                       {"K", "joao", "TableDefs", "TABLE"},
                                       {"K", "MAQ\\ana", "FieldsDef", "TABLE"},
                                       {"K", "joao", "a]; drop table Empresas --", "TABLE"}}}};
  const auto count = [&](const std::string& table, const std::string& rows) {
    connection.answers["Select Count(*) as Contagem from " + table] = {{{"Contagem"}, {{rows}}}};
  };
  count("joao.Vazia", "0");
  count("joao.Cheia", "3");
  count("joao.TableDefs", "5");
  count("[MAQ\\ana].FieldsDef", "1");
  EXPECT_EQ(ForeignObjects(connection, "KorvelConfig"),
            (std::vector<std::string>{"KorvelConfig - joao - Cheia",
                                      "KorvelConfig - joao - a]; drop table Empresas --"}));
  std::vector<std::string> dropped;
  for (const std::string& statement : connection.sent) {
    if (statement.starts_with("Drop")) dropped.push_back(statement);
  }
  EXPECT_EQ(dropped, (std::vector<std::string>{"Drop Table joao.Vazia", "Drop Table joao.TableDefs",
                                               "Drop Table [MAQ\\ana].FieldsDef"}));
}

}  // namespace
}  // namespace korvel::databases
