#include <gtest/gtest.h>

#include "cli/cli_world.h"

namespace korvel::test {
namespace {

constexpr const char* kPeriod = " --ano 2025 --inicio 2025-01-01 --fim 2025-12-31";

/// Ctrl+C during long work: the command says so, ends with 1, and the staged rows are those of before.
TEST(Interrupted, LongWorkIsRolledBack) {
  CliWorld world(CliWorld::Start::Demonstration);
  ASSERT_EQ(world.Run("extrair contas --empresa 0001 --diarios 00" + std::string(kPeriod)).exitCode, 0);
  ASSERT_EQ(world.Run("extrair movimentos --empresa 0001" + std::string(kPeriod)).exitCode, 0);
  const std::string count = "select count(NumRegisto) from TabGeneralLedgerEntriesPOC";
  const std::string before = world.One("Korvel0001", count);
  world.Sql("LunderDemo", "delete from MovDiario where Diario='03'");

  world.interrupted = [] { return true; };
  const auto result = world.Run("extrair movimentos --empresa 0001" + std::string(kPeriod));
  world.interrupted = nullptr;

  EXPECT_EQ(result.exitCode, 1);
  EXPECT_EQ(result.err, "Operação cancelada pelo utilizador\n");
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(world.One("Korvel0001", count), before);
}

TEST(Interrupted, AQueryStopsPrinting) {
  CliWorld world(CliWorld::Start::Demonstration);
  world.interrupted = [] { return true; };
  const auto result = world.Run("sql --base-dados LunderDemo --texto 'select NumRegisto from MovDiario'");
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_EQ(result.err, "Operação cancelada pelo utilizador\n");
  EXPECT_LT(result.out.size(), 40U);
}

}  // namespace
}  // namespace korvel::test
