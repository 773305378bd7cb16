#include "auditfile/file_plan.h"

#include <gtest/gtest.h>

namespace korvel::auditfile {
namespace {

TEST(FilePlan, NamesOfFiles) {
  const struct {
    FileNaming naming;
    std::string_view stem;
    int month;
    std::string_view path;
  } cases[] = {
      {{"/exp/", "508123453", "I"},
       "2008-01-01_2008-12-31",
       3,
       "/exp/508123453_2008_2008-01-01_2008-12-31_3_Saft_Integrado.XML"},
      {{"/exp", "508123453", "I"},
       "2008-01-01_2008-12-31",
       0,
       "/exp/508123453_2008_2008-01-01_2008-12-31_Saft_Integrado.XML"},
      {{"", "1", "C"}, "2008-01-01_2008-12-31", 12, "1_2008_2008-01-01_2008-12-31_12_Saft_Contabilidade.XML"},
      {{" ", "1", "F"}, "2008-01-01_2008-12-31", 0, "1_2008_2008-01-01_2008-12-31_Saft_Facturação.XML"},
      {{"/exp/", "1", "C"}, "/exp/1_2008.XML", 2, "/exp/1_/exp_/exp/1_2008.XML_2_Saft_Contabilidade.XML"},
      {{"/exp/", "1", "Contabilidade"}, "2008-01-01_2008-12-31", 2, "2008-01-01_2008-12-31"},
  };
  for (const auto& row : cases) EXPECT_EQ(FilePath(row.naming, row.stem, row.month), row.path);
}

TEST(FilePlan, MonthsAndTheirFilters) {
  EXPECT_EQ(MonthOf("2008-03-31"), 3);
  EXPECT_EQ(MonthOf("2008-12-01"), 12);
  EXPECT_EQ(MonthOf("2008"), 0);
  EXPECT_EQ(MonthFilter(0, 1, true), "");
  EXPECT_EQ(MonthFilter(3, 1, false), " and convert(int,period)= 3");
  EXPECT_EQ(MonthFilter(3, 1, true), " and convert(int,period)>= 1 and convert(int,period)<= 3");
}

}  // namespace
}  // namespace korvel::auditfile
