#include <signal.h>
#include <sys/resource.h>
#include <unistd.h>

#include <filesystem>

#include "data/embedded/store.h"
#include "data/embedded_fixture.h"

namespace korvel::data {
namespace {

namespace fs = std::filesystem;

class EmbeddedBackup : public EmbeddedServerTest {
 protected:
  EmbeddedBackup() {
    connection->Execute("create table T (a int, v varchar(100)) insert T values (1,'um')");
    connection->Execute("create procedure P as select count(*) from T");
    connection->Execute("use master");
  }

  std::string File(const std::string& name) const { return (folder.Path() / name).string(); }
  std::string BackUp(const std::string& name, const std::string& options = " WITH INIT") {
    return ErrorOf(*connection, "backup database BASE to Disk='" + File(name) + "'" + options);
  }
  std::string Restore(const std::string& name, const std::string& options = " WITH REPLACE",
                      const std::string& database = "BASE") {
    return ErrorOf(*connection, "restore database " + database + " from Disk='" + File(name) + "'" + options);
  }
  std::string Content(std::string_view database = "BASE") {
    return Rows(*Open(database), "select a, v from T order by a exec P");
  }
  /// Rows enough for a copy to take its time.
  void Fill() {
    const auto base = Open();
    Transaction transaction(*base);
    const std::vector<std::string_view> columns = {"a", "v"};
    const auto batch = base->OpenBatch("T", columns);
    const std::string text(100, 'x');
    for (int i = 2; i < 30'000; ++i) batch->Add(std::vector<Parameter>{i, text});
    batch->Finish();
    transaction.Commit();
  }
  /// Names in a folder that are no database's, no log's and not `known`.
  std::vector<std::string> Leftovers(const fs::path& where, const std::string& known) const {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(where)) {
      const std::string name = entry.path().filename().string();
      if (entry.is_regular_file() && name != known && name.find(".mdf") == std::string::npos)
        names.push_back(name);
    }
    return names;
  }
};

TEST_F(EmbeddedBackup, RestoresWhatWasThere) {
  EXPECT_EQ(BackUp("a.dat", ""), "ok");
  Open()->Execute(
      "update T set v='mudou' insert T values (2,'novo') drop procedure P create table Outra (a int)");
  EXPECT_EQ(Restore("a.dat", ""), "ok");
  EXPECT_EQ(Content(), "1|um // 1");
  EXPECT_EQ(Rows(*Open(), "select name from sysobjects order by name"), "P/T");
  EXPECT_EQ(ErrorOf(*connection, "drop database BASE"), "ok");
  EXPECT_EQ(Restore("a.dat"), "ok");
  EXPECT_EQ(Content(), "1|um // 1");
  EXPECT_EQ(Restore("a.dat", "", "Nova"), "ok");
  EXPECT_EQ(Content("Nova"), "1|um // 1");
  EXPECT_EQ(Rows(*connection, "select name from sysdatabases order by dbid"), "master/BASE/Nova");
  EXPECT_EQ(Leftovers(folder.Path(), "a.dat"), std::vector<std::string>());
  EXPECT_EQ(fs::exists(folder / "TESTE/data/BASE.mdf.1"), false);
}

TEST_F(EmbeddedBackup, ADeviceNamesAFile) {
  const std::string file = File("TESTE/backup/BackBASE.dat");
  EXPECT_EQ(ErrorOf(*connection, "backup database BASE to BackBASE with init"), "3206 42000");
  connection->Execute("exec sp_addumpdevice 'disk','BackBASE','" + file + "'");
  connection->Execute("exec sp_addumpdevice 'disk','Curto','relativo.dat'");
  ExpectErrors(*connection, {
                                {"exec sp_addumpdevice 'disk','backbase','outro.dat'", "15026 42000"},
                                {"exec sp_addumpdevice 'tape','Fita','x.dat'", "15044 42000"},
                                {"exec sp_dropdevice 'Nada'", "15012 42000"},
                            });
  EXPECT_EQ(Rows(*connection, "select phyname, status from master..sysdevices where name='BackBASE'"),
            file + "|16");
  EXPECT_EQ(ErrorOf(*connection, "backup database BASE to BackBASE WITH INIT"), "ok");
  const auto size = fs::file_size(file);
  EXPECT_EQ(ErrorOf(*connection, "backup database BASE to [BackBASE] WITH NAME='x', STATS=10, INIT"), "ok");
  EXPECT_EQ(fs::file_size(file), size);
  Open()->Execute("delete from T");
  EXPECT_EQ(ErrorOf(*connection, "restore database BASE from BackBASE WITH REPLACE"), "ok");
  EXPECT_EQ(Content(), "1|um // 1");
  EXPECT_EQ(ErrorOf(*connection, "backup database BASE to Curto"), "ok");
  EXPECT_TRUE(fs::exists(folder / "TESTE/backup/relativo.dat"));
  connection->Execute("exec sp_dropdevice 'Curto'");
  EXPECT_TRUE(fs::exists(folder / "TESTE/backup/relativo.dat"));
  EXPECT_EQ(ErrorOf(*connection, "backup database BASE to Curto WITH INIT").substr(0, 4), "3206");
  EXPECT_EQ(ErrorOf(*connection, "Set Quoted_Identifier OFF"), "ok");
  EXPECT_EQ(ErrorOf(*connection, "Backup Database BASE To Disk=\"" + File("aspas.dat") + "\" With INIT"),
            "ok");
  EXPECT_EQ(Rows(*Open(), "sp_helpfile").substr(0, 7), "BASE|1|");
  Recordset files = connection->Query("use BASE exec sp_helpfile");
  ASSERT_TRUE(files.Fields().size() == 8 || files.NextRecordset());
  EXPECT_EQ(fs::path(files.Text("filename")), fs::absolute(folder / "TESTE/data/BASE.mdf"));
}

TEST_F(EmbeddedBackup, RefusesToWriteWhereItMayNot) {
  EXPECT_EQ(BackUp("a.dat"), "ok");
  const std::string before = test::ReadFile(File("a.dat"));
  test::WriteFile(File("carta.txt"), std::string(3000, 'x'));
  test::WriteFile(File("curto.txt"), "x");
  test::WriteFile(File("vazio.dat"), "");
  for (const char* options : {"", " with noinit"}) EXPECT_EQ(BackUp("a.dat", options), "3201 42000");
  for (const char* nowhere : {"nao/ha/a.dat", "carta.txt/a.dat", "TESTE"})
    EXPECT_EQ(BackUp(nowhere), "3201 42000") << nowhere;
  for (const char* foreign : {"carta.txt", "curto.txt", "TESTE/data/BASE.mdf"})
    EXPECT_EQ(BackUp(foreign), "3241 42000") << foreign;
  EXPECT_EQ(BackUp("vazio.dat"), "ok");
  EXPECT_EQ(test::ReadFile(File("carta.txt")), std::string(3000, 'x'));
  EXPECT_EQ(ErrorOf(*connection, "backup database Nada to Disk='x'"), "911 42000");
  EXPECT_EQ(ErrorOf(*connection, "backup log BASE to Disk='x'"), "102 42000");
  EXPECT_EQ(ErrorOf(*connection, "begin tran backup database BASE to Disk='x'"), "3021 42000");
  connection->Execute("rollback");
  EXPECT_EQ(test::ReadFile(File("a.dat")), before);
  // The beginning of a backup whose end was lost may still be replaced.
  test::WriteFile(File("a.dat"), before.substr(0, before.size() / 2));
  EXPECT_EQ(BackUp("a.dat"), "ok");
  EXPECT_EQ(Restore("a.dat"), "ok");
}

TEST_F(EmbeddedBackup, AFullDiskLeavesTheEarlierBackup) {
  EXPECT_EQ(BackUp("a.dat"), "ok");
  const std::string before = test::ReadFile(File("a.dat"));
  Fill();
  connection.reset();
  const pid_t child = Start([this] {
    const auto mine = Open();
    signal(SIGXFSZ, SIG_IGN);
    const rlimit limit{1'000'000, 1'000'000};
    setrlimit(RLIMIT_FSIZE, &limit);
    const std::string error =
        ErrorOf(*mine, "backup database BASE to Disk='" + File("a.dat") + "' WITH INIT");
    _exit(error == "3202 42000" ? 7 : 8);
  });
  EXPECT_EQ(Wait(child), 7);
  EXPECT_EQ(test::ReadFile(File("a.dat")), before);
  EXPECT_EQ(Leftovers(folder.Path(), "a.dat"), std::vector<std::string>());
}

TEST_F(EmbeddedBackup, RefusesToRestoreWhatIsNoWholeBackup) {
  EXPECT_EQ(BackUp("a.dat"), "ok");
  const std::string sound = test::ReadFile(File("a.dat"));
  Open()->Execute("update T set v='depois'");
  std::vector<std::string> damaged = {"",
                                      "x",
                                      std::string(600, '\n'),
                                      std::string(9000, 'x'),
                                      sound.substr(0, sound.size() - 1),
                                      sound.substr(0, sound.size() - 512),
                                      sound.substr(0, sound.size() / 2),
                                      sound.substr(sound.size() - 512),
                                      sound.substr(512),
                                      sound + "x",
                                      test::ReadFile(folder / "TESTE/data/BASE.mdf")};
  for (const std::size_t at :
       {std::size_t{3}, std::size_t{70}, sound.size() / 2, sound.size() - 513, sound.size() - 500,
        sound.size() - 494, sound.size() - 480, sound.size() - 1}) {
    damaged.push_back(sound);
    damaged.back()[at] = static_cast<char>(damaged.back()[at] ^ 0x10);
  }
  for (std::size_t i = 0; i < damaged.size(); ++i) {
    test::WriteFile(File("mau.dat"), damaged[i]);
    EXPECT_EQ(Restore("mau.dat"), "3241 42000") << i;
  }
  EXPECT_EQ(Content(), "1|depois // 1");
  EXPECT_EQ(Restore("nao.dat"), "3201 42000");
  EXPECT_EQ(Restore("nao.dat", "", "Nova"), "3201 42000");
  EXPECT_EQ(Restore("TESTE"), "3241 42000");
  EXPECT_EQ(Rows(*connection, "select name from sysdatabases"), "master/BASE");
}

TEST_F(EmbeddedBackup, RefusesToRestoreWhereItMayNot) {
  EXPECT_EQ(BackUp("a.dat"), "ok");
  connection->Execute("create database Outra use Outra create table So (a int) use master");
  EXPECT_EQ(Restore("a.dat", "", "Outra"), "3154 42000");
  EXPECT_EQ(Restore("a.dat", "", "master"), "3108 42000");
  EXPECT_EQ(Restore("a.dat", "", "[../fora]"), "1038 42000");
  EXPECT_EQ(ErrorOf(*connection, "restore database Outra from Nada"), "3206 42000");
  EXPECT_EQ(ErrorOf(*connection, "begin tran restore database BASE from Disk='x'"), "3021 42000");
  connection->Execute("rollback");
  {
    const auto user = Open();
    EXPECT_EQ(Restore("a.dat"), "3101 42000");
    EXPECT_EQ(Rows(*user, "select v from T"), "um");
  }
  connection->Execute("use BASE");
  EXPECT_EQ(Restore("a.dat"), "3102 42000");
  connection->Execute("use master");
  EXPECT_EQ(Rows(*Open("Outra"), "select name from sysobjects"), "So");
  EXPECT_EQ(Restore("a.dat", " with replace", "Outra"), "ok");
  EXPECT_EQ(Content("Outra"), "1|um // 1");
  try {
    connection->Execute("restore database BASE from Disk='" + File("nao.dat") + "'");
    ADD_FAILURE() << "the file is not there";
  } catch (const Error& error) {
    EXPECT_NE(std::string(error.what()).find(File("nao.dat")), std::string::npos) << error.what();
  }
}

TEST_F(EmbeddedBackup, RestoresOverADamagedDatabase) {
  EXPECT_EQ(BackUp("a.dat"), "ok");
  const fs::path file = folder / "TESTE/data/BASE.mdf";
  for (const std::string& bytes : {std::string(9000, 'x'), std::string()}) {
    test::WriteFile(file, bytes);
    EXPECT_EQ(Restore("a.dat"), "ok") << bytes.size();
    EXPECT_EQ(Content(), "1|um // 1");
  }
  fs::remove(file);
  EXPECT_EQ(Restore("a.dat"), "ok");
  EXPECT_EQ(Content(), "1|um // 1");
}

TEST_F(EmbeddedBackup, HoldsOneMomentWhileOthersWrite) {
  Fill();
  connection->Execute("use BASE update T set a=0 use master");
  const pid_t writer = Start([this] {
    const auto mine = Open("BASE", 20);
    for (int i = 1; i < 1000; ++i) mine->Execute("update T set a=?", {i});
  });
  for (int i = 0; i < 5; ++i) {
    EXPECT_EQ(BackUp("a.dat"), "ok");
    EXPECT_EQ(Restore("a.dat", "", "Copia" + std::to_string(i)), "ok");
    EXPECT_EQ(Rows(*Open("Copia" + std::to_string(i)), "select max(a)-min(a), count(*) from T"), "0|29999");
  }
  kill(writer, SIGKILL);
  Wait(writer);
}

TEST_F(EmbeddedBackup, AKillLeavesAWholeBackup) {
  EXPECT_EQ(BackUp("a.dat"), "ok");
  Fill();
  connection.reset();
  for (int i = 0; i < 10; ++i) {
    RunAndKill(
        [this] {
          const auto mine = Open("master");
          while (true) mine->Execute("backup database BASE to Disk='" + File("a.dat") + "' WITH INIT");
        },
        std::chrono::milliseconds(20 + 25 * i));
    connection = Open("master");
    EXPECT_EQ(Restore("a.dat", "", "Copia" + std::to_string(i)), "ok");
    const std::string count = Rows(*Open("Copia" + std::to_string(i)), "P");
    EXPECT_TRUE(count == "1" || count == "29999") << count;
    connection.reset();
  }
}

TEST_F(EmbeddedBackup, AKillLeavesTheOldOrTheNewDatabase) {
  EXPECT_EQ(BackUp("pequeno.dat"), "ok");
  Fill();
  EXPECT_EQ(BackUp("grande.dat"), "ok");
  connection.reset();
  for (int i = 0; i < 12; ++i) {
    RunAndKill(
        [this] {
          const auto mine = Open("master");
          while (true) {
            mine->Execute("restore database BASE from Disk='" + File("pequeno.dat") + "' WITH REPLACE");
            mine->Execute("restore database BASE from Disk='" + File("grande.dat") + "' WITH REPLACE");
          }
        },
        std::chrono::milliseconds(20 + 20 * i));
    const auto base = Open();
    const std::string count = Rows(*base, "P");
    EXPECT_TRUE(count == "1" || count == "29999") << count;
    EXPECT_EQ(ErrorOf(*base, "dbcc checkdb"), "ok");
    base->Execute("insert T values (0,'zero') delete from T where a=0");
  }
}

TEST_F(EmbeddedBackup, TwoProcessesBackUpToOneFile) {
  Fill();
  connection.reset();
  std::vector<pid_t> children;
  for (int i = 0; i < 3; ++i) {
    children.push_back(Start([this] {
      const auto mine = Open("master");
      for (int n = 0; n < 6; ++n) {
        const std::string error =
            ErrorOf(*mine, "backup database BASE to Disk='" + File("a.dat") + "' WITH INIT");
        if (error != "ok" && error != "3201 42000") _exit(9);
      }
    }));
  }
  for (const pid_t child : children) EXPECT_EQ(Wait(child), 0);
  connection = Open("master");
  EXPECT_EQ(Restore("a.dat", "", "Copia"), "ok");
  EXPECT_EQ(Rows(*Open("Copia"), "P"), "29999");
  EXPECT_EQ(Leftovers(folder.Path(), "a.dat"), std::vector<std::string>());
}

TEST_F(EmbeddedBackup, NeedsTheRight) {
  EXPECT_EQ(BackUp("a.dat"), "ok");
  connection->Execute(
      "sp_addlogin 'ana','x' use BASE exec sp_adduser 'ana' exec sp_addrolemember 'db_datawriter','ana'");
  connection.reset();
  connection = OpenAs("ana", "x", "master");
  EXPECT_EQ(BackUp("b.dat"), "262 42000");
  EXPECT_EQ(Restore("a.dat"), "262 42000");
  EXPECT_EQ(Restore("a.dat", "", "Nova"), "262 42000");
  EXPECT_EQ(ErrorOf(*connection, "exec sp_addumpdevice 'disk','X','x.dat'"), "15247 42000");
  EXPECT_FALSE(fs::exists(File("b.dat")));
}

class EmbeddedDbcc : public EmbeddedServerTest {
 protected:
  EmbeddedDbcc() {
    connection->Execute("create table T (NumRegisto int identity, a varchar(50) not null)");
    connection->Execute("create unique index IX on T (a)");
    for (int i = 0; i < 200; ++i) connection->Execute("insert T values (?)", {"valor " + std::to_string(i)});
  }
  fs::path File() const { return folder.Path() / "TESTE/data/BASE.mdf"; }
};

TEST_F(EmbeddedDbcc, TakesWhatAVerificationSends) {
  ExpectErrors(*connection, {
                                {"dbcc updateusage(BASE,T)", "ok"},
                                {"dbcc updateusage ('BASE') with no_infomsgs", "ok"},
                                {"dbcc dbreindex('T')", "ok"},
                                {"dbcc dbreindex ('dbo.T', '', 80)", "ok"},
                                {"dbcc dbreindex([T], IX)", "ok"},
                                {"update statistics T", "ok"},
                                {"update statistics dbo.T IX", "ok"},
                                {"dbcc checkdb", "ok"},
                                {"dbcc checkdb('base') with no_infomsgs, all_errormsgs", "ok"},
                                {"dbcc checktable('T')", "ok"},
                                {"dbcc updateusage(Nada,T)", "911 42000"},
                                {"dbcc updateusage(BASE,Nada)", "2501 42000"},
                                {"dbcc dbreindex('Nada')", "2501 42000"},
                                {"dbcc dbreindex", "2583 42000"},
                                {"dbcc checktable('Nada')", "2501 42000"},
                                {"dbcc checkdb('Nada')", "911 42000"},
                                {"update statistics Nada", "2501 42000"},
                                {"dbcc page(1,2)", "2526 42000"},
                                {"dbcc", "102 42000"},
                                {"dbcc dbreindex('T'", "102 42000"},
                            });
  EXPECT_EQ(Rows(*connection, "select count(*) from T where a='VALOR 7'"), "1");
}

TEST_F(EmbeddedDbcc, FindsAKeyThatNoLongerHolds) {
  connection->Execute("use master");
  {
    embedded::Store store(File(), "BASE", embedded::OpenMode::Existing, 5);
    store.Run(R"(DROP INDEX "T.IX"; CREATE INDEX "T.IX" ON "T" ("a"); INSERT INTO "T" (a) VALUES ('valor 7');
      PRAGMA writable_schema=ON; UPDATE sqlite_schema SET sql=replace(sql,'CREATE INDEX','CREATE UNIQUE INDEX')
      WHERE name='T.IX'; PRAGMA writable_schema=RESET)");
  }
  connection->Execute("use BASE");
  EXPECT_EQ(ErrorOf(*connection, "dbcc dbreindex('T')"), "1505 23000");
  EXPECT_EQ(ErrorOf(*connection, "dbcc checktable('T')"), "8946 42000");
  EXPECT_EQ(Rows(*connection, "select count(*) from T"), "201");
}

TEST_F(EmbeddedDbcc, MendsAnIndexAndTellsOfDamage) {
  connection->Execute("use master");
  {
    embedded::Store store(File(), "BASE", embedded::OpenMode::Existing, 5);
    store.Run(
        R"(PRAGMA writable_schema=ON; UPDATE sqlite_schema SET sql=replace(sql,'("a")','("a") WHERE a IS NULL')
      WHERE name='T.IX'; PRAGMA writable_schema=RESET; REINDEX "T.IX"; PRAGMA writable_schema=ON;
      UPDATE sqlite_schema SET sql=replace(sql,' WHERE a IS NULL','') WHERE name='T.IX'; PRAGMA writable_schema=RESET)");
  }
  connection->Execute("use BASE");
  EXPECT_EQ(ErrorOf(*connection, "dbcc checkdb"), "8946 42000");
  EXPECT_EQ(ErrorOf(*connection, "dbcc dbreindex('T') dbcc checkdb"), "ok");
  connection.reset();
  std::string bytes = test::ReadFile(File());
  for (std::size_t at = bytes.size() / 2; at < bytes.size(); ++at) bytes[at] = '\x5A';
  test::WriteFile(File(), bytes);
  const std::string error = ErrorOf(*Open("master"), "dbcc checkdb('BASE')");
  EXPECT_TRUE(error == "8946 42000" || error == "824 HY000") << error;
}

}  // namespace
}  // namespace korvel::data
