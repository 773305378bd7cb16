#include "databases/names.h"

#include <gtest/gtest.h>

#include "data/error.h"
#include "databases/backups.h"

namespace korvel::databases {
namespace {

TEST(Names, StandInStatementsSafelyOrNotAtAll) {
  const struct {
    std::string name;
    std::string asName;
    std::string asArgument;
  } good[] = {
      {"Korvel0001", "Korvel0001", "Korvel0001"},
      {"_lock", "_lock", "_lock"},
      {"MAQUINA\\ana", "[MAQUINA\\ana]", "'MAQUINA\\ana'"},
      {"a b", "[a b]", "'a b'"},
      {"9a", "[9a]", "'9a'"},
      {"João", "[João]", "'João'"},
      {"a--b", "[a--b]", "'a--b'"},
      {std::string(128, 'x'), std::string(128, 'x'), std::string(128, 'x')},
  };
  for (const auto& c : good) {
    EXPECT_EQ(AsName(c.name), c.asName);
    EXPECT_EQ(AsArgument(c.name), c.asArgument);
  }
  for (const std::string& bad :
       {std::string(), std::string("  "), std::string(" a"), std::string("a "),
        std::string("x]; drop database master --"), std::string("a'b"), std::string("a\"b"),
        std::string("a;b"), std::string("a,b"), std::string("a?b"), std::string("a\nb"),
        std::string("a\0b", 3), std::string(129, 'x')}) {
    EXPECT_FALSE(IsName(bad)) << bad;
    EXPECT_THROW(AsName(bad), data::Error) << bad;
    EXPECT_THROW(AsArgument(bad), data::Error) << bad;
    EXPECT_THROW(QuotedName(bad), data::Error) << bad;
  }
}

TEST(Backups, LieBesideTheFolderOfTheData) {
  const std::pair<const char*, const char*> cases[] = {
      {"C:\\MSSQL\\Data\\Korvel0001.mdf", "C:\\MSSQL\\backup\\"},
      {"/dados/TESTE/data/KORVEL0001.mdf", "/dados/TESTE/backup/"},
      {"C:\\Data\\x.mdf", "C:\\backup\\"},
  };
  for (const auto& [file, folder] : cases) EXPECT_EQ(BackupFolder(file), folder);
  EXPECT_EQ(BackupFile("Korvel0001"), "BackKorvel0001.dat");
}

}  // namespace
}  // namespace korvel::databases
