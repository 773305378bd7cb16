#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "company_world.h"
#include "databases/config_upgrade.h"
#include "periods/parameters.h"
#include "periods/period_editor.h"

namespace korvel::periods {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class PeriodLog : public testing::Test, protected test::CompanyWorld {
 protected:
  void WithConfiguration() {
    ASSERT_TRUE(databases::EnsureConfigDatabase(context));
    server.dialogs.Clear();
  }
  std::vector<std::string> Log() {
    return server.Rows(
        "KorvelConfig",
        "select Modulo,Accao,FormCaption,Conteudo,CodEmpresa from LogGeral order by NumRegisto");
  }
};

TEST_F(PeriodLog, SavesAndDeletionOfAPeriod) {
  WithConfiguration();
  PeriodHeader header = Filled("2010");
  ASSERT_TRUE(GravarHeader(context, HeaderMode::New, header));
  ASSERT_TRUE(GravarHeader(context, HeaderMode::Change, header));
  EXPECT_FALSE(GravarHeader(context, HeaderMode::New, header)) << "it is there already";
  server.dialogs.confirmations = {false, true};
  const auto periods = ListPeriods(context, *server.Open("Korvel0001"));
  EXPECT_FALSE(EliminarHeader(context, periods));
  EXPECT_TRUE(EliminarHeader(context, periods));
  const std::string form = "Identificação da Empresa - \"Header\"",
                    record = "\t2010 - Padaria D'Avila, Lda\t0001";
  EXPECT_THAT(
      Log(), ElementsAre("TB\tN\t" + form + " - Entrada de Registos :" + record,
                         "TB\tA\t" + form + " - Alteração de Registo :" + record, "TB\tE\t" + form + record));
}

TEST_F(PeriodLog, SavesOfTheParameters) {
  WithConfiguration();
  Parameters parameters;
  EXPECT_FALSE(GravarParametros(context, parameters, {})) << "refused";
  parameters.lunder = {server.Name(), "sa", "segredo", "LunderDemo"};
  ASSERT_TRUE(GravarParametros(context, parameters, {}));
  ASSERT_TRUE(GravarParametros(context, parameters, {}));
  EXPECT_THAT(Log(), ElementsAre("TB\tN\tParâmetros Gerais\tParâmetros Gerais\t0001",
                                 "TB\tA\tParâmetros Gerais\tParâmetros Gerais\t0001"));
}

TEST_F(PeriodLog, WithoutAConfigurationNothingIsSaid) {
  PeriodHeader header = Filled("2010");
  ASSERT_TRUE(GravarHeader(context, HeaderMode::New, header));
  EXPECT_THAT(server.dialogs.messages, IsEmpty());
  EXPECT_THAT(server.dialogs.alerts, IsEmpty());
  EXPECT_EQ(server.session.gErroNumero, 0);
}

}  // namespace
}  // namespace korvel::periods
