#include <limits>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "data/connection_string.h"
#include "data/currency.h"
#include "data/date_time.h"
#include "data/value.h"

namespace korvel::data {
namespace {

TEST(Currency, ReadsAndWritesDecimals) {
  struct Case {
    const char* text;
    std::optional<std::int64_t> units;
    const char* written;
  };
  const std::vector<Case> cases = {
      {"23", 230000, "23"},
      {"-0.125", -1250, "-0.125"},
      {"+5.50", 55000, "5.5"},
      {".5", 5000, "0.5"},
      {"1.00005", 10000, "1"},
      {"1.00015", 10002, "1.0002"},
      {"1.000050001", 10001, "1.0001"},
      {"-1.00025", -10002, "-1.0002"},
      {"922337203685477.5807", std::numeric_limits<std::int64_t>::max(), "922337203685477.5807"},
      {"922337203685477.5808", std::nullopt, ""},
      {"-922337203685477.5808", std::numeric_limits<std::int64_t>::min(), "-922337203685477.5808"},
      {"-922337203685477.5809", std::nullopt, ""},
      {"1844674407370955.16155", std::nullopt, ""},
      {"", std::nullopt, ""},
      {"-", std::nullopt, ""},
      {".", std::nullopt, ""},
      {"1,5", std::nullopt, ""},
      {"1 ", std::nullopt, ""},
      {"1.2.3", std::nullopt, ""},
      {"0x1", std::nullopt, ""}};
  for (const Case& entry : cases) {
    const auto value = Currency::FromText(entry.text);
    ASSERT_EQ(value.has_value(), entry.units.has_value()) << entry.text;
    if (!value) continue;
    EXPECT_EQ(value->Units(), *entry.units) << entry.text;
    EXPECT_EQ(value->ToText(), entry.written) << entry.text;
  }
}

TEST(Currency, NeverWraps) {
  const Currency most = Currency::FromUnits(std::numeric_limits<std::int64_t>::max());
  const Currency least = Currency::FromUnits(std::numeric_limits<std::int64_t>::min());
  EXPECT_THROW(most + Currency::FromUnits(1), std::overflow_error);
  EXPECT_THROW(least - Currency::FromUnits(1), std::overflow_error);
  EXPECT_THROW(-least, std::overflow_error);
  EXPECT_THROW(Currency::FromWhole(922337203685478), std::overflow_error);
  EXPECT_EQ(least.ToText(), "-922337203685477.5808");
}

TEST(DateTime, ReadsOnlyDatesThatCalendarsHave) {
  const std::vector<std::pair<const char*, const char*>> good = {
      {"2008-02-29", "2008-02-29 00:00:00.000"},
      {"20081231", "2008-12-31 00:00:00.000"},
      {"2008-01-01T10:20", "2008-01-01 10:20:00.000"},
      {"2008-01-01 23:59:59.997", "2008-01-01 23:59:59.997"}};
  for (const auto& [text, full] : good) {
    const auto value = DateTime::FromText(text);
    ASSERT_TRUE(value) << text;
    EXPECT_EQ(value->FullText(), full);
  }
  for (const char* text : {"2009-02-29", "2008-13-01", "2008-1-1", "2008-0101", "2008-01-01 24:00",
                           "2008-01-01x", "", "2008-01-01 10:20:61", "0000-01-01"}) {
    EXPECT_FALSE(DateTime::FromText(text)) << text;
  }
}

TEST(DateTime, CountsDaysBothWays) {
  EXPECT_EQ(DaysFromCivil(1970, 1, 1), 0);
  for (std::int64_t days = -60000; days < 60000; days += 97) {
    const DateTime date = CivilFromDays(days);
    EXPECT_EQ(DaysFromCivil(date.year, date.month, date.day), days);
    EXPECT_TRUE(IsCalendarDate(date.year, date.month, date.day));
  }
}

TEST(ConnectionString, TakesTheFourPartsInAnyCaseAndOrder) {
  const auto parts = ConnectionString::Parse(
      "Provider=SQLOLEDB.1;persist security info=False;USER ID=sa;Initial Catalog=Korvel0001;Data "
      "Source=A\\B,1433");
  EXPECT_EQ(parts.server, "A\\B,1433");
  EXPECT_EQ(parts.database, "Korvel0001");
  EXPECT_EQ(parts.login, "sa");
  EXPECT_FALSE(parts.integratedSecurity);
  EXPECT_TRUE(ConnectionString::Parse("Integrated Security=SSPI;;x;=y;").integratedSecurity);
}

TEST(Value, IsWrittenAsTheServerConvertsIt) {
  EXPECT_EQ(ToText(Value()), "");
  EXPECT_EQ(ToText(Value(-7)), "-7");
  EXPECT_EQ(ToText(Value(Currency::FromUnits(-15000))), "-1.5");
  EXPECT_EQ(ToText(Value(DateTime{2008, 1, 2, 3, 4, 5, 7})), "2008-01-02 03:04:05.007");
  EXPECT_EQ(ToText(Value(true)), "1");
}

}  // namespace
}  // namespace korvel::data
