#include <gtest/gtest.h>

#include <algorithm>

#include "cli/cli_world.h"

namespace korvel::test {
namespace {

namespace fs = std::filesystem;

bool IsOneLine(const std::string& text) {
  return text.size() > 1 && std::ranges::count(text, '\n') == 1 && text.back() == '\n';
}

constexpr const char* kCompany = " --empresa 0001";
constexpr const char* kWholeYear = " --ano 2025 --inicio 2025-01-01 --fim 2025-12-31";

TEST(Faults, OfALoginAreOneLine) {
  CliWorld world(CliWorld::Start::Demonstration);
  const std::pair<const char*, const char*> cases[] = {
      {"--password errada", "Login ou Password Incorrectos\n"},
      {"--login ninguem", "Login ou Password Incorrectos\n"},
      {"--login ''", "Login ou Password Incorrectos\n"},
      {"--servidor ''", "Não definiu o Servidor\n"},
  };
  for (const auto& [options, said] : cases) {
    const auto result = world.Run(std::string("empresa listar ") + options);
    EXPECT_EQ(result.exitCode, 1) << options;
    EXPECT_EQ(result.err, said) << options;
    EXPECT_EQ(result.out, "") << options;
  }
}

TEST(Faults, OfAServerThatDoesNotAnswerAreOneLine) {
  CliWorld world;
  for (const char* server : {"127.0.0.1,1", "(LOCALDB)\\..", "(LOCALDB)\\A/B"}) {
    const auto result =
        world.Run(std::vector<std::string>{"empresa", "listar", "--servidor", server, "--login", "sa"});
    EXPECT_EQ(result.exitCode, 1) << server;
    EXPECT_TRUE(IsOneLine(result.err)) << result.err;
    EXPECT_TRUE(result.err.starts_with("O Servidor Indicado Não Existe ou o Acesso Foi Negado!"))
        << result.err;
  }
}

/// All database files of a world that hold that database.
std::vector<fs::path> FilesOf(const CliWorld& world, const std::string& database) {
  std::vector<fs::path> files;
  for (const auto& entry : fs::recursive_directory_iterator(world.Servers())) {
    const std::string stem = entry.path().stem().string();
    if (entry.is_regular_file() && stem == database) files.push_back(entry.path());
  }
  return files;
}

TEST(Faults, OfADamagedDatabaseLoseNothing) {
  CliWorld world(CliWorld::Start::Demonstration);
  const auto files = FilesOf(world, "KORVEL0001");
  ASSERT_FALSE(files.empty());
  std::string damaged = ReadFile(files.front());
  std::fill(damaged.begin(), damaged.begin() + 4096, 'x');
  WriteFile(files.front(), damaged);

  const auto result = world.Run(std::string("periodo listar") + kCompany);
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_EQ(result.err,
            "-2147467259 - Não foi possivel abrir a Empresa seleccionada!\n"
            "O ficheiro da base de dados Korvel0001 está danificado\n");
  EXPECT_EQ(ReadFile(files.front()), damaged);
  EXPECT_EQ(world.Run("empresa listar").exitCode, 0);
}

TEST(Faults, OfFoldersAndFilesAreOneLine) {
  CliWorld world(CliWorld::Start::Demonstration);
  const std::pair<std::string, std::string> cases[] = {
      {std::string("exportar --pasta /nao/existe") + kCompany + kWholeYear,
       "A pasta /nao/existe não existe.\n"},
      {std::string("assistente --ano 2025 --mes 365 --base C --pasta /nao/existe") + kCompany,
       "A pasta /nao/existe não existe.\n"},
      {"sql --base-dados master --ficheiro /nao/existe.sql",
       "Não foi possível ler o ficheiro /nao/existe.sql.\n"},
      {"sql --base-dados master --ficheiro /", "Não foi possível ler o ficheiro /.\n"},
  };
  for (const auto& [line, said] : cases) {
    const auto result = world.Run(line);
    EXPECT_EQ(result.exitCode, 1) << line;
    EXPECT_EQ(result.err, said) << line;
  }
}

TEST(Faults, OfTheEnvironmentAreOneLine) {
  TempFolder folder;
  WriteFile(folder / "ficheiro", "não é uma pasta");
  const std::string settings = (folder / "config").string();
  const ProcessResult results[] = {
      RunProcess({KORVELCTL_PATH, "empresa", "listar"},
                 {{"KORVEL_DADOS", (folder / "ficheiro").string()}, {"XDG_CONFIG_HOME", settings}}),
      RunProcess({KORVELCTL_PATH, "--versao"}, {{"KORVEL_HOJE", "ontem"},
                                                {"KORVEL_DADOS", folder.Path().string()},
                                                {"XDG_CONFIG_HOME", settings}})};
  for (const ProcessResult& result : results) {
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_TRUE(IsOneLine(result.err)) << result.err;
  }
}

constexpr const char* kHostile = "x'); drop table TabHeader; delete from Empresas --";

TEST(HostileTexts, OnTheCommandLineDoNoHarm) {
  CliWorld world(CliWorld::Start::Demonstration);
  const std::vector<std::vector<std::string>> commands = {
      {"empresa", "criar", "--codigo", "0002", "--descricao", "D'Ávila'); drop table Empresas--"},
      {"periodo", "listar", "--empresa", kHostile},
      {"extrair", "contas", "--empresa", "0001", "--ano", kHostile, "--inicio", "2025-01-01", "--fim",
       "2025-12-31"},
      {"extrair", "contas", "--empresa", "0001", "--ano", "2025", "--inicio", "2025-01-01", "--fim",
       "2025-12-31", "--diarios", kHostile},
      {"parametros", "definir", "--empresa", "0001", std::string("ProductDescriptionDefault=") + kHostile},
      {"armazem", "definir", "--empresa", "0001", "A';=PT"},
      {"periodo", "criar", "--empresa", "0001", "FiscalYear=2026",
       "BusinessName=D'Ávila'; drop table TabHeader"},
      {"sql", "--base-dados", kHostile, "--texto", "select 1"},
      {"empresa", "listar", "--login", kHostile},
  };
  for (const auto& command : commands) world.Run(command);
  EXPECT_EQ(world.One("KorvelConfig", "select descricao from Empresas where codigo='0002'"),
            "D'Ávila'); drop table Empresas--");
  EXPECT_EQ(world.One("Korvel0001", "select ProductDescriptionDefault from ParamGeral"), kHostile);
  EXPECT_EQ(world.One("Korvel0001", "select BusinessName from TabHeader where FiscalYear='2026'"),
            "D'Ávila'; drop table TabHeader");
  EXPECT_EQ(world.One("Korvel0001", "select Armazem from TabArmazens where Armazem like 'A%'"), "A';");
  EXPECT_EQ(world.Rows("KorvelConfig", "select codigo from Empresas").size(), 2U);
}

TEST(HostileTexts, InTheBooksPassThroughEveryStep) {
  CliWorld world(CliWorld::Start::Demonstration);
  world.Sql("LunderDemo",
            "update Contas set Titulo='D''Avila''); drop table TabCustomerPOC --',Rua='<&>\"'' x' where "
            "CliFor='C'\nGO\n"
            "update MovDiario set Descricao='O''Neil'' or 1=1 --' where Diario='02'\nGO\n"
            "update Diarios set Descricao='Vendas''; delete from TabHeader --' where Codigo='01'");
  const auto result =
      world.Run("assistente --empresa 0001 --ano 2025 --mes 365 --base C --pasta " + world.Output().string());
  ASSERT_EQ(result.exitCode, 0) << result.err;
  EXPECT_EQ(world.Rows("Korvel0001",
                       "select distinct CompanyName from TabCustomerPOC where AccountID<>'Desconhecido'"),
            std::vector<std::string>{"D'Avila'); drop table TabCustomerPOC --"});
  EXPECT_EQ(
      world.Rows("Korvel0001",
                 "select distinct LineDescription from TabGeneralLedgerEntriesPOC where JournalID='02'"),
      std::vector<std::string>{"O'Neil' or 1=1 --"});
  EXPECT_EQ(
      world.Rows("Korvel0001",
                 "select distinct JournalDescription from TabGeneralLedgerEntriesPOC where JournalID='01'"),
      std::vector<std::string>{"Vendas'; delete from TabHeader --"});
}

/// Ctrl+C during long work: the command says so, ends with 1, and the staged rows are those of before.
TEST(Interrupted, LongWorkIsRolledBack) {
  CliWorld world(CliWorld::Start::Demonstration);
  ASSERT_EQ(world.Run("extrair contas --empresa 0001 --diarios 00" + std::string(kWholeYear)).exitCode, 0);
  ASSERT_EQ(world.Run("extrair movimentos --empresa 0001" + std::string(kWholeYear)).exitCode, 0);
  const std::string count = "select count(NumRegisto) from TabGeneralLedgerEntriesPOC";
  const std::string before = world.One("Korvel0001", count);
  world.Sql("LunderDemo", "delete from MovDiario where Diario='03'");

  world.interrupted = [] { return true; };
  const auto result = world.Run("extrair movimentos --empresa 0001" + std::string(kWholeYear));
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
