#include "toolkit/dates.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "support/scripted_ports.h"

namespace korvel::toolkit {
namespace {

using test::ScriptedDialogs;

const DateTime kToday{2011, 7, 9, 15, 4, 5, 0};
constexpr std::string_view kBadParts =
    "Data Inválida de Acordo com o formato de data existente no  Painel de Control (dd/MM/yyyy)";
const DateMarks kSlashes{"dd/MM/yyyy", "/"};

struct Typed {
  const char* text;
  const char* neutral;
  const char* regional;
};

TEST(PData, ReadsPartsInTheOrderOfTheFormat) {
  constexpr Typed kRows[] = {{"2/3/2011", "2011-03-02", "02/03/2011"},
                             {"2/3", "2011-03-02", "02/03/2011"},
                             {"2/", "2011-07-02", "02/07/2011"},
                             {"02032011", "2011-03-02", "02/03/2011"},
                             {"5", "2011-07-05", "05/07/2011"},
                             {"0503", "2011-03-05", "05/03/2011"},
                             {"29/2/2012", "2012-02-29", "29/02/2012"},
                             {"", "", ""},
                             {"  ", "", ""},
                             {"/", "", ""},
                             {"//3", "2011-07-03", "03/07/2011"},
                             {"1//2", "2011-02-01", "01/02/2011"}};
  for (const Typed& row : kRows) {
    ScriptedDialogs dialogs;
    const DateTexts date = pData(row.text, kSlashes, kToday, dialogs);
    EXPECT_EQ(date.neutral, row.neutral) << row.text;
    EXPECT_EQ(date.regional, row.regional) << row.text;
    EXPECT_TRUE(dialogs.messages.empty()) << row.text;
  }
}

TEST(PData, SaysWhatIsWrong) {
  const std::pair<std::string_view, std::vector<const char*>> kRows[] = {
      {kBadParts, {"32/1/2011", "0/1/2011", "1/13/2011", "1/1/0", "ab/1/2011", "99999999999999999999/1/1"}},
      {"Data Invalida\n-", {"31/02/2011", "1x/2/2011", "1/2/20111", "05 10:30/3/2011"}}};
  for (const auto& [message, texts] : kRows) {
    for (const char* text : texts) {
      ScriptedDialogs dialogs;
      EXPECT_EQ(pData(text, kSlashes, kToday, dialogs).neutral, "") << text;
      EXPECT_EQ(dialogs.LastText(), message) << text;
      ASSERT_EQ(dialogs.messages.size(), 1u) << text;
      EXPECT_EQ(dialogs.messages.front().icon, Icon::Critical);
    }
  }
}

struct CutOrder {
  const char* format;
  const char* text;
  const char* neutral;
};

TEST(PData, CutsByOrderWithoutSeparators) {
  constexpr CutOrder kRows[] = {
      {"yyyy-MM-dd", "20110302", "2011-03-02"}, {"yyyy-dd-MM", "20110203", "2011-03-02"},
      {"dd-yyyy-MM", "02201103", "2011-03-02"}, {"MM-yyyy-dd", "03201102", "2011-03-02"},
      {"dd-MM-aaaa", "02032011", "2011-03-02"}, {"dd-MM-yyyy", "020320119", "2011-03-02"},
      {"MM-dd-yyyy", "03022011", "2011-07-09"}};  // no cutting: all of it is today
  for (const CutOrder& row : kRows) {
    ScriptedDialogs dialogs;
    EXPECT_EQ(pData(row.text, {row.format, "-"}, kToday, dialogs).neutral, row.neutral) << row.format;
  }
}

TEST(Dates, AreWrittenByAFormat) {
  const DateTime date{2011, 3, 2};
  EXPECT_EQ(WriteDate(date, "dd-MM-yyyy"), "02-03-2011");
  EXPECT_EQ(WriteDate(date, "d/M/yy"), "2/3/11");
  EXPECT_EQ(WriteDate(date, "yyyy-mm-dd"), "2011-03-02");
  EXPECT_EQ(WriteDate(date, "dd.MM.aaaa"), "02.03.2011");
  EXPECT_EQ(GData("2011-03-02", kSlashes), "02/03/2011");
  EXPECT_EQ(GData("2011-03-02 10:00:00.000", kSlashes), "02/03/2011");
  EXPECT_EQ(GData("ontem", kSlashes), "ontem");
  EXPECT_EQ(CreateStrPos("dd-MM-aaaa"), "DMY");
}

TEST(FormataData, SplitsByThePlacesOfTheFormat) {
  const auto neutral = [](std::string_view text, std::string_view format) {
    const auto date = FormataData(text, format, kSlashes, kToday);
    return date ? date->neutral + " " + date->regional : std::string();
  };
  EXPECT_EQ(neutral("02/03/2011", ""), "2011-03-02 02/03/2011");
  EXPECT_EQ(neutral("2011-03-02", "yyyy-mm-dd"), "2011-03-02 2011-03-02");
  EXPECT_EQ(neutral("02032011", ""), "2011-03-02 02/03/2011");
  EXPECT_EQ(neutral("20110302", "yyyy-mm-dd"), "2011-03-02 2011-03-02");
  EXPECT_EQ(neutral("5", ""), "2011-07-05 05/07/2011");
  EXPECT_EQ(neutral("0503", ""), "2011-03-05 05/03/2011");
  for (const char* text :
       {"", "31/02/2011", "02/13/2011", "00032011", "02/03/0000", "020320", "123456789012"}) {
    EXPECT_EQ(neutral(text, ""), "") << text;
  }
  EXPECT_EQ(FormataData("2011-03-02", "", {"", ""}, kToday)->regional, "2011-03-02");
}

struct Sum {
  const char* interval;
  int number;
  const char* date;
  const char* result;
};

TEST(DataAdd, AddsByTheCalendar) {
  constexpr Sum kRows[] = {
      {"d", 1, "2011-12-31", "2012-01-01"},         {"d", -1, "2012-03-01", "2012-02-29"},
      {"m", 1, "2011-01-31", "2011-02-28"},         {"m", -13, "2011-01-31", "2009-12-31"},
      {"yyyy", 1, "2012-02-29", "2013-02-28"},      {"m", 12, "2011-05-05", "2012-05-05"},
      {"d", 1, "2011-12-31 23:59:59", "2012-01-01"}};
  for (const Sum& row : kRows) {
    ScriptedDialogs dialogs;
    EXPECT_EQ(DataAdd(row.interval, row.number, row.date, dialogs), row.result);
    EXPECT_TRUE(dialogs.messages.empty());
  }
  for (const Sum& row : {Sum{"h", 1, "2011-01-01", ""}, Sum{"d", 1, "2011-02-30", ""}, Sum{"d", 1, "", ""},
                         Sum{"d", 1, "9999-12-31", ""}, Sum{"yyyy", -3000, "2011-01-01", ""},
                         Sum{"m", -2147483647, "2011-01-01", ""}}) {
    ScriptedDialogs dialogs;
    EXPECT_EQ(DataAdd(row.interval, row.number, row.date, dialogs), "");
    EXPECT_EQ(dialogs.LastText(), "Erro Interno ( DataAdd )");
  }
}

class BrokenClock final : public Clock {
 public:
  DateTime Now() const override { throw std::runtime_error("no clock"); }
};

TEST(GetDate, IsTodayOrAMessage) {
  ScriptedDialogs dialogs;
  EXPECT_EQ(GetDate(test::FixedClock(kToday), dialogs), "2011-07-09");
  EXPECT_TRUE(dialogs.messages.empty());
  EXPECT_EQ(GetDate(BrokenClock(), dialogs), "");
  EXPECT_EQ(dialogs.LastText(), "Erro Interno ( GetDate )");
}

TEST(Dates, AreComposedFromParts) {
  EXPECT_EQ(Data_Actual_PData_str("", "3", " ", kToday), "2011-03-09");
  EXPECT_EQ(Data_Actual_PData_str("2010", "12", "1", kToday), "2010-12-01");
  EXPECT_EQ(DataExtenso("2011-03-02"), "02 de Março de 2011");
  EXPECT_EQ(DataExtenso("2011-3-2"), "");
  EXPECT_EQ(DataToMinutes(kToday), 904);
  const auto february = GetDataIniFimParaMovs("2012", "2");
  ASSERT_TRUE(february);
  EXPECT_EQ(february->first, "2012-02-01");
  EXPECT_EQ(february->last, "2012-02-29");
  EXPECT_EQ(GetDataIniFimParaMovs("2011", "12")->last, "2011-12-31");
  EXPECT_FALSE(GetDataIniFimParaMovs("2011", "13"));
  EXPECT_FALSE(GetDataIniFimParaMovs("", ""));
}

TEST(FormataHora, Normalises) {
  const std::pair<const char*, const char*> kRows[] = {
      {"10:30", "10:30"}, {"10:60", "11:00"}, {"23:60", "00:00"}, {"24:00", "00:00"}, {"10:61", "00:00"},
      {"9:30", "00:00"},  {"1a:3b", "01:03"}, {"", "00:00"},      {"1030", "00:00"},  {" 08:05 ", "08:05"}};
  for (const auto& [typed, time] : kRows) EXPECT_EQ(FormataHora_str(typed), time) << typed;
}

TEST(CalendarNames, CountFromOne) {
  EXPECT_EQ(meses(12, NameForm::Short), "Dez");
  EXPECT_EQ(MesesStr("01"), "Janeiro");
  EXPECT_EQ(Dias(7, NameForm::Short), "Sab");
  for (const int number : {0, 13, -1}) EXPECT_EQ(meses(number), " - Não Defenido");
  EXPECT_EQ(Dias(8), " - Não Defenido");
}

TEST(DayCounts, SplitSpans) {
  EXPECT_EQ(ConvertDaysToOther(800, "A"), 2);
  EXPECT_EQ(ConvertOtherToDays(2, "M"), 60);
  const auto span = DivideDiasMesesAnos("2010-01-31", "2011-03-01");
  ASSERT_TRUE(span);
  EXPECT_EQ(std::tuple(span->years, span->months, span->days), std::tuple(1, 1, 1));
  EXPECT_FALSE(DivideDiasMesesAnos("2011-03-01", "2010-01-31"));
  EXPECT_FALSE(DivideDiasMesesAnos("", "2010-01-31"));
}

}  // namespace
}  // namespace korvel::toolkit
