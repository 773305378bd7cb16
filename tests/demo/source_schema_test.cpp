#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "demo/brevant_schema.h"
#include "demo/lunder_schema.h"
#include "support/scripted_world.h"

namespace korvel::demo {
namespace {

/// A server with a database that a product's own script made, and an empty one beside it.
class Products : public testing::Test {
 protected:
  void Publish(std::string_view script) {
    server.Run("master", "create database Published\nGO\ncreate database Made");
    server.Run("Published", test::ReadFile(std::string(KORVEL_SHARED_DIR "/sources/") + std::string(script)));
  }
  /// Tables and views with the names, types and order of their columns.
  std::vector<std::string> Columns(std::string_view database) {
    return server.Rows(database,
                       "select o.name,o.xtype,c.colid,c.name,c.xtype,c.length from sysobjects o inner join "
                       "syscolumns c on c.id=o.id order by o.name,c.colid");
  }

  test::TestServer server;
};

TEST_F(Products, LunderHasTheTablesAndColumnsOfTheProduct) {
  Publish("lunder.sql");
  const auto made = server.Open("Made");
  for (const auto* table : LunderTables()) made->Execute(databases::CreateTableStatement(*table));
  EXPECT_EQ(Columns("Made"), Columns("Published"));
}

TEST_F(Products, BrevantHasTheTablesViewsAndColumnsOfTheProduct) {
  Publish("brevant.sql");
  CreateBrevantTables(*server.Open("Made"));
  const auto columns = Columns("Made");
  EXPECT_GT(columns.size(), 180U);
  EXPECT_EQ(columns, Columns("Published"));
}

}  // namespace
}  // namespace korvel::demo
