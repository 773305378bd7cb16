#include "toolkit/statements.h"

#include <gtest/gtest.h>

#include <array>

namespace korvel::toolkit {
namespace {

constexpr std::array<std::string_view, 5> kFields = {"a", "b", "c", "d", "e"};
const std::array<StatementValue, 5> kValues = {std::int64_t{7}, data::Currency::FromUnits(-125000), true,
                                               data::DateTime{2011, 3, 2}, std::string_view("x")};

TEST(Statements, WriteEachKindOfValue) {
  EXPECT_EQ(InsertSQL("T", kFields, kValues),
            "INSERT INTO T (a,b,c,d,e) VALUES (7 , -12.5 , -1 , '2011-03-02 00:00:00.000' , 'x' )");
  EXPECT_EQ(UpdateSQL("T", kFields, kValues, " where NumRegisto=1"),
            "UPDATE T SET a=7,b=-12.5,c=-1,d='2011-03-02 00:00:00.000',e='x' where NumRegisto=1");
}

TEST(Statements, LeaveOutEmptyValuesAndInnerQuotesAlone) {
  constexpr std::array<std::string_view, 2> kTwo = {"a", "b"};
  EXPECT_EQ(InsertSQL("T", kTwo, std::array<StatementValue, 2>{std::monostate{}, false}),
            "INSERT INTO T (a,b) VALUES (0 )");
  EXPECT_EQ(
      UpdateSQL("T", kTwo, std::array<StatementValue, 2>{std::string_view("D''Ávila"), std::monostate{}}, ""),
      "UPDATE T SET a='D''Ávila',b=");
}

}  // namespace
}  // namespace korvel::toolkit
