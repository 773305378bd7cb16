#include "toolkit/settings_file.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <stdexcept>
#include <string>

#include "support/scripted_ports.h"
#include "support/temp_folder.h"
#include "toolkit/regional.h"
#include "toolkit/system_clock.h"

namespace korvel::toolkit {
namespace {

namespace fs = std::filesystem;

/// Sets an environment variable for the length of a scope.
class Variable {
 public:
  Variable(const char* name, const char* value) : name_(name) {
    if (const char* old = std::getenv(name)) old_ = old;
    setenv(name, value, 1);
  }
  ~Variable() {
    if (old_) {
      setenv(name_, old_->c_str(), 1);
    } else {
      unsetenv(name_);
    }
  }
  Variable(const Variable&) = delete;
  Variable& operator=(const Variable&) = delete;

 private:
  const char* name_;
  std::optional<std::string> old_;
};

class SettingsFileTest : public testing::Test {
 protected:
  std::size_t FilesInFolder() const {
    return static_cast<std::size_t>(
        std::distance(fs::directory_iterator(folder_.Path()), fs::directory_iterator()));
  }

  const test::TempFolder folder_;
  const fs::path file_ = folder_ / "korvel.ini";
};

TEST_F(SettingsFileTest, KeepsWhatItWasTold) {
  const char* kValues[] = {"",        "simples",          "  com brancos  ", "C:\\Pasta\\1",
                           "a=b;c#d", "\"entre aspas\"",  "ligação €",       "duas\nlinhas",
                           "[x]",     "; ponto e vírgula"};
  for (const char* value : kValues) {
    SettingsFile(file_).Write("Servers", "Último", value);
    EXPECT_EQ(SettingsFile(file_).Read("Servers", "Último"), value);
  }
  EXPECT_EQ(FilesInFolder(), 1u);
}

TEST_F(SettingsFileTest, TakesInWhatOthersWrote) {
  SettingsFile one(file_);
  SettingsFile other(file_);
  one.Write("A", "x", "1");
  other.Write("A", "y", "2");
  EXPECT_EQ(one.Read("a", "Y"), "2");
  EXPECT_EQ(other.Read("A", "x"), "1");
  EXPECT_EQ(one.Read("A", "z"), std::nullopt);
  EXPECT_EQ(one.Read("B", "x"), std::nullopt);
}

TEST_F(SettingsFileTest, RefusesWhatItCannotKeep) {
  SettingsFile settings(file_);
  settings.Write("A", "x", "1");
  EXPECT_THROW(settings.Write("A", "x", std::string_view("a\0b", 3)), std::runtime_error);
  EXPECT_THROW(settings.Write("A]\nB", "x", "2"), std::runtime_error);
  EXPECT_THROW(settings.Write("A", "k=v", "2"), std::runtime_error);
  EXPECT_EQ(settings.Read("A", "x"), "1");
}

TEST_F(SettingsFileTest, SaysWhenTheStoreCannotBeWritten) {
  std::ofstream(folder_ / "ficheiro") << "x";
  SettingsFile settings(folder_ / "ficheiro/korvel.ini");
  EXPECT_THROW(settings.Write("A", "x", "1"), std::runtime_error);
}

TEST(SettingsPath, FollowsTheUsersFolders) {
  const Variable home("HOME", "/home/ana");
  {
    const Variable config("XDG_CONFIG_HOME", "/tmp/cfg");
    EXPECT_EQ(DefaultSettingsPath(), "/tmp/cfg/korvel/korvel.ini");
  }
  const Variable config("XDG_CONFIG_HOME", "");
  EXPECT_EQ(DefaultSettingsPath(), "/home/ana/.config/korvel/korvel.ini");
  const Variable noHome("HOME", "");
  EXPECT_THROW(DefaultSettingsPath(), std::runtime_error);
}

TEST(SystemClock, StandsStillWhenToldAndOtherwiseGoesOn) {
  for (const auto& [text, moment] : {std::pair("2011-07-09", "2011-07-09T00:00:00"),
                                     std::pair("2011-07-09T15:04:05", "2011-07-09T15:04:05")}) {
    const Variable told("KORVEL_HOJE", text);
    EXPECT_EQ(SystemClock().Now().IsoText(), moment);
  }
  const Variable untold("KORVEL_HOJE", "");
  EXPECT_GE(SystemClock().Now().year, 2024);
  for (const char* text : {"hoje", "09-07-2011", "2011-02-30", "2011-07-09T15", "20110709"}) {
    const Variable wrong("KORVEL_HOJE", text);
    EXPECT_THROW(SystemClock(), std::invalid_argument) << text;
  }
}

struct Dates {
  const char* format;
  const char* separator;
  const char* normalFormat;
  const char* normalSeparator;
};

TEST(Regional, AcceptsSixDateOrders) {
  constexpr Dates kRows[] = {{"dd-MM-yyyy", "-", "dd-MM-yyyy", "-"}, {"yyyy/MM/dd", "/", "yyyy/MM/dd", "/"},
                             {"MM.yyyy.dd", ".", "MM.yyyy.dd", "."}, {"dd-MM-aaaa", "-", "dd-MM-aaaa", "-"},
                             {"d/M/yyyy", "/", "dd-MM-yyyy", "/"},   {"dd/MM/yy", "/", "dd-MM-yyyy", "/"},
                             {"d.M.aaaa", ".", "dd-MM-aaaa", "."},   {"dd-MM-yyyy", "/", "dd-MM-yyyy", "/"},
                             {"dd0MM0yyyy", "0", "dd0MM0yyyy", "-"}, {"ddMMyyyy", "", "ddMMyyyy", "-"}};
  for (const Dates& row : kRows) {
    Regional values;
    values.shortDate = row.format;
    values.dateSeparator = row.separator;
    values = NormaliseRegional(values);
    EXPECT_EQ(values.shortDate, row.normalFormat) << row.format;
    EXPECT_EQ(values.dateSeparator, row.normalSeparator) << row.format;
  }
}

TEST(Regional, KeepsTheNumberSymbolsApart) {
  const char* const kRows[][4] = {{",", ".", ",", "."}, {"-", ".", ".", ","}, {",", "-", ".", ","},
                                  {"-", "-", ".", ","}, {",", ",", ".", ","}, {",", " ", ",", " "}};
  for (const auto& [decimal, thousands, normalDecimal, normalThousands] : kRows) {
    Regional values;
    values.decimalSeparator = decimal;
    values.thousandsSeparator = thousands;
    values = NormaliseRegional(values);
    EXPECT_EQ(values.decimalSeparator, normalDecimal) << decimal << thousands;
    EXPECT_EQ(values.thousandsSeparator, normalThousands) << decimal << thousands;
  }
}

TEST(Regional, ReadsTheStoreAndWritesBackOnlyWhatChanged) {
  test::MemorySettings settings;
  settings.values[{"Regional", "sDecimal"}] = "-";
  settings.values[{"Regional", "sGrouping"}] = "3;0";
  const Regional values = LoadRegional(settings);
  EXPECT_EQ(values.decimalSeparator, ".");
  EXPECT_EQ(values.thousandsSeparator, ",");
  EXPECT_EQ(values.grouping, "3");
  EXPECT_EQ(values.shortDate, "dd-MM-yyyy");
  EXPECT_EQ((settings.values[{"Regional", "sDecimal"}]), ".");
  EXPECT_EQ((settings.values[{"Regional", "sThousand"}]), ",");
  EXPECT_EQ(settings.values.size(), 3u);
}

}  // namespace
}  // namespace korvel::toolkit
