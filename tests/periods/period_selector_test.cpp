#include "periods/period_selector.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "company_world.h"

namespace korvel::periods {
namespace {

using testing::ElementsAre;

TEST(PeriodSelector, NamesEachPeriodByItsKind) {
  test::CompanyWorld world;
  constexpr const char* kPeriods[] = {
      "2010','2010-02-01','2010-02-28','F','C1'",    "2010','2010-01-01','2010-12-31','C',null",
      "2009','2009-01-01','2009-12-31','I',''",      "2011','2011-01-01','2011-01-31','F',' '",
      "2012','2012-01-01','2012-01-31','S',''",      "2013','2013-01-01','2013-01-31','P',''",
      "2014','2014-01-01','2014-01-31','Contab',''", "','','','C',''"};
  for (const char* values : kPeriods) {
    world.Script(
        std::string(
            "insert into TabHeader (FiscalYear,StartDate,EndDate,TaxAccountingBasis,Cliente) values ('") +
        values + ")");
  }
  const auto company = world.server.Open("Korvel0001");
  std::vector<std::string> captions;
  for (const auto& option : PeriodOptions(world.server.session, *company)) captions.push_back(option.caption);
  EXPECT_THAT(
      captions,
      ElementsAre("Ano 2009 (01-01-2009 até 31-12-2009)  -  [Integrados - Facturação e Contabilidade]",
                  "Ano 2010 (01-01-2010 até 31-12-2010)  -  [Contabilidade]",
                  "Ano 2010 (01-02-2010 até 28-02-2010)  -  [Facturação] - [C1] Autofacturação",
                  "Ano 2011 (01-01-2011 até 31-01-2011)  -  [Facturação]",
                  "Ano 2012 (01-01-2012 até 31-01-2012)  -  [Autofacturação]",
                  "Ano 2013 (01-01-2013 até 31-01-2013)  -  [Dados Parciais de Facturação]",
                  "Ano 2014 (01-01-2014 até 31-01-2014)"));

  const auto billing =
      PeriodOptions(world.server.session, *company, " and TaxAccountingBasis='F' and Cliente='C1'");
  ASSERT_EQ(billing.size(), 1u);
  EXPECT_EQ(billing[0].key, "20102010-02-012010-02-28C1");
  EXPECT_TRUE(ChosenBy(billing[0].key) == (ChosenPeriod{{"2010", "2010-02-01", "2010-02-28"}, "C1"}));
  EXPECT_TRUE(ChosenBy("20102010-0") == (ChosenPeriod{{"2010", "2010-0", ""}, ""}));
}

}  // namespace
}  // namespace korvel::periods
