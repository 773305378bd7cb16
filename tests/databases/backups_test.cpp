#include "databases/backups.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "databases/canned_connection.h"
#include "support/scripted_world.h"

namespace korvel::databases {
namespace {

constexpr std::string_view kCompany = "Korvel0001";

class BackupsOfACompany : public testing::Test {
 protected:
  BackupsOfACompany() {
    server.UseCompany("0001");
    server.Run(kCompany, "create table Cores (NumRegisto int identity (1,1), Cor varchar(10))");
    Add("Azul");
  }

  void Add(std::string_view color) {
    server.Open(kCompany)->Execute("insert into Cores (Cor) values (?)", {color});
  }
  std::vector<std::string> Colors() {
    return server.Rows(kCompany, "select Cor from Cores order by NumRegisto");
  }
  void BackUp() { ASSERT_TRUE(BackUpDatabase(context, kCompany)) << server.session.gErroDescricao; }
  /// Where the server says that it keeps the backup.
  std::filesystem::path File() {
    const auto device = server.Rows("master", "select phyname from sysdevices where name='BackKorvel0001'");
    return device.empty() ? std::filesystem::path() : std::filesystem::path(device.front());
  }

  test::TestServer server;
  session::Context context = server.Context();
};

TEST_F(BackupsOfACompany, LatestOneComesBack) {
  BackUp();
  Add("Verde");
  BackUp();
  Add("Roxo");
  ASSERT_TRUE(RestoreSQLDatabase(context, kCompany)) << server.session.gErroDescricao;
  EXPECT_EQ(Colors(), (std::vector<std::string>{"Azul", "Verde"}));
  EXPECT_EQ(server.dialogs.Texts(), std::vector<std::string>{"Os Dados Foram Repostos!"});
  EXPECT_EQ(File().filename(), "BackKorvel0001.dat");
  EXPECT_EQ(server.One("master", "select count(*) from sysdevices where name='BackKorvel0001'"), "1");
}

TEST_F(BackupsOfACompany, ComesBackFromAFolderToo) {
  BackUp();
  const std::string folder = File().parent_path().string() + "/";
  server.Run("master", "drop database Korvel0001\nGO\ncreate database Korvel0001");
  ASSERT_TRUE(RestoreSQLDatabase(context, kCompany, folder)) << server.session.gErroDescricao;
  EXPECT_EQ(Colors(), std::vector<std::string>{"Azul"});
}

TEST_F(BackupsOfACompany, NothingIsLostByARestoreThatFails) {
  BackUp();
  const auto file = File();
  Add("Verde");
  test::WriteFile(file, "isto não é uma cópia de segurança");
  EXPECT_FALSE(RestoreSQLDatabase(context, kCompany));
  EXPECT_FALSE(server.session.gErroDescricao.empty());
  std::filesystem::remove(file);
  EXPECT_FALSE(RestoreSQLDatabase(context, kCompany));
  EXPECT_FALSE(RestoreSQLDatabase(context, kCompany, "/nao/existe/"));
  BackUp();
  Add("Roxo");
  {
    const auto user = server.Open(kCompany);
    EXPECT_FALSE(RestoreSQLDatabase(context, kCompany)) << "somebody is in it";
  }
  EXPECT_EQ(Colors(), (std::vector<std::string>{"Azul", "Verde", "Roxo"}));
  EXPECT_EQ(server.dialogs.Texts(), std::vector<std::string>{});
}

TEST_F(BackupsOfACompany, HostileNamesAreRefused) {
  const std::string hostile = "Korvel0001 to Disk='/tmp/x'; drop database Korvel0001 --";
  EXPECT_FALSE(BackUpDatabase(context, hostile));
  EXPECT_FALSE(RestoreSQLDatabase(context, hostile));
  EXPECT_FALSE(RestoreSQLDatabase(context, kCompany, "x' drop database Korvel0001 --"));
  EXPECT_FALSE(BackUpDatabase(context, "Korvel0009"));
  EXPECT_EQ(Colors().size(), 1U);
}

TEST(DatabaseCheck, TablesWhoseIndexesFailAreToldTogether) {
  test::CannedConnection connection;
  test::SilentProgress progress;
  connection.answers["sp_tables"] = {
      {{"TABLE_NAME", "TABLE_TYPE"},
       {{"Cores", "TABLE"}, {"Vista", "VIEW"}, {"Tons", "TABLE"}, {"A B", "TABLE"}}}};
  for (const char* statement : {"dbcc dbreindex('Cores')", "dbcc dbreindex('A B')"}) {
    connection.refused.emplace(statement, data::Error(data::Failure::Statement, "chave repetida"));
  }
  EXPECT_EQ(IndexFaults(connection, "Korvel0001", progress),
            "Falta de Indexado na Tabela [ Cores ]\nFalta de Indexado na Tabela [ A B ]");
  EXPECT_THAT(connection.sent, testing::IsSupersetOf({"dbcc updateusage(Korvel0001,'A B')",
                                                      "update statistics [A B]", "update statistics Cores"}));
  EXPECT_THAT(connection.sent, testing::Not(testing::Contains(testing::HasSubstr("Vista"))));
}

TEST_F(BackupsOfACompany, CheckGoesThroughEveryTable) {
  server.Run(kCompany, "create table Tons (Tom varchar(10))\nGO\ncreate unique index IX_Tom on Tons (Tom)");
  server.statements.clear();
  EXPECT_TRUE(VerificaBaseDados(context, std::string(kCompany)));
  EXPECT_EQ(server.dialogs.Texts(), std::vector<std::string>{});
  EXPECT_THAT(server.statements,
              testing::IsSupersetOf({"dbcc updateusage(Korvel0001,Cores)", "dbcc dbreindex('Tons')",
                                     "update statistics Cores"}));
  EXPECT_EQ(server.progress.totals, std::vector<std::int64_t>{2});
  EXPECT_FALSE(VerificaBaseDados(context, "Korvel0009"));
  EXPECT_EQ(server.dialogs.messages.size(), 1U);
}

}  // namespace
}  // namespace korvel::databases
