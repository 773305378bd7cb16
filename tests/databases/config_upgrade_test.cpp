#include "databases/config_upgrade.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <iostream>

#include "databases/default_hosts.h"
#include "databases/sql_admin.h"
#include "databases/table_columns.h"
#include "databases/version.h"
#include "support/in_process.h"
#include "support/scripted_world.h"

namespace korvel::databases {
namespace {

struct Expected {
  std::string_view table;
  std::string_view columns;
};

constexpr Expected kExpected[] = {
    {"Empresas",
     "v4: Codigo v50: Descricao v128: Utilizador d: DataSys si: AcessoPrincipal AcessoIndependente"},
    {"Acessos",
     "v128: Utilizador v100: Chave Chave1 v50: Form Ctrl CtrlCap si: Value v4: Empresa v100: Caption"},
    {"Admins", "v20: Uid"},
    {"UserManagement", "v128: LoginName si: AdminTasks AllDatabases"},
    {"UserDatabases", "v128: LoginName Db_Name"},
    // The widening takes its login along.
    {"UsersEmpresas", "v128: Login v20: DBName"},
    {"LogGeral",
     "v128: Utilizador v4: CodEmpresa v50: DescEmpresa v2: Modulo v1: Accao v100: FormCaption m: Valor v10: "
     "Data DataMov Hora t: Conteudo"},
    {"Configura", "t: PathBackup"},
    {"Entidade",
     "v50: NomeEntidade Morada Local CodigoPostal Telefones Contribuinte v128: Utilizador sd: DataSys v50: "
     "SMTPServer SMTPLogin SMTPPassword EmailOrigem v20: FtpUser FtpPWD FTPPath v30: FtpServer v50: Versao"},
    {"Actualiza", "v50: Versao"},
};

/// A configuration database as an early version of the program left it.
constexpr std::string_view kOldConfig = R"(
create table Empresas (NumRegisto numeric(18,0) identity (1,1) not null, Codigo varchar(4), Descricao varchar(50),
  Utilizador varchar(20), DataSys datetime default getdate(), AcessoPrincipal smallint, AcessoIndependente smallint)
GO
insert into Empresas (Codigo,Descricao,Utilizador,AcessoPrincipal) values ('0001','Padaria','ANA',1)
GO
create table Acessos (NumRegisto numeric(18,0) identity (1,1) not null, Utilizador varchar(20), Chave varchar(100),
  Empresa varchar(4))
GO
create index Acessos0 on Acessos (Utilizador)
GO
create unique index Ix_Acessos_1 on Acessos (Utilizador, Chave, Empresa)
GO
insert into Acessos (Utilizador,Chave,Empresa) values ('ANA','WMenu','0001')
GO
create table LogGeral (NumRegisto numeric(18,0) identity (1,1) not null, Utilizador varchar(20))
GO
create index IX_LogGeral on LogGeral (Utilizador)
GO
create table Entidade (NumRegisto numeric(18,0) identity (1,1) not null, NomeEntidade varchar(50), Versao varchar(50))
GO
insert into Entidade (NomeEntidade,Versao) values ('Gabinete','000000010002')
)";

class ConfigUpgrade : public testing::Test {
 protected:
  UpgradeResult Upgrade() {
    const auto config = server.Open("KorvelConfig");
    return ActDBaseExecutaConfig(context, *config);
  }
  void MakeOld() {
    server.Run("master", "create database KorvelConfig");
    server.Run("KorvelConfig", kOldConfig);
  }
  std::string One(std::string_view query) { return server.One("KorvelConfig", query); }
  std::vector<std::string> Schema() {
    return server.Rows("KorvelConfig",
                       "select Object_name(Id) as T, Name from syscolumns order by Object_name(Id), Name");
  }

  test::TestServer server;
  session::Context context = server.Context();
};

TEST_F(ConfigUpgrade, MakesEveryTableColumnAndType) {
  ASSERT_TRUE(EnsureConfigDatabase(context));
  const auto config = server.Open("KorvelConfig");
  for (const Expected& expected : kExpected) {
    EXPECT_EQ(test::TableColumns(*config, expected.table), expected.columns) << expected.table;
  }
  EXPECT_EQ(One("select count(*) from sysobjects where xtype='U'"), std::to_string(std::size(kExpected)));
  EXPECT_EQ(server.dialogs.Texts(), std::vector<std::string>{});
}

TEST_F(ConfigUpgrade, TwiceLeavesTheSameSchemaWithItsKeysAndShowsNothing) {
  ASSERT_TRUE(EnsureConfigDatabase(context));
  const auto schema = Schema();
  ASSERT_GT(schema.size(), 60U);
  ASSERT_TRUE(Upgrade().ran);
  EXPECT_EQ(Schema(), schema);
  EXPECT_EQ(server.Rows("KorvelConfig", "select Versao from Actualiza"),
            std::vector<std::string>{SchemaVersion()});
  EXPECT_EQ(server.dialogs.Texts(), std::vector<std::string>{});
  for (const std::string_view once :
       {"insert into UserManagement (LoginName,AdminTasks,AllDatabases) values ('ANA',0,0)",
        "insert into UserDatabases (LoginName,Db_Name) values ('ANA','Korvel0001')",
        "insert into Acessos (Utilizador,Chave,Empresa) values ('ANA','WMenu','0001')"}) {
    server.Run("KorvelConfig", once);
    EXPECT_THROW(server.Run("KorvelConfig", once), data::Error) << "keys refuse a second row: " << once;
  }
}

TEST_F(ConfigUpgrade, OnNewDatabasesOnlyDropsAndKeysThatAreThereFail) {
  server.Run("master", "create database KorvelConfig");
  for (const Failed& failed : Upgrade().passedOver) {
    EXPECT_THAT(failed.step,
                testing::AnyOf(testing::StartsWith("Drop "), testing::HasSubstr(" ADD CONSTRAINT ")))
        << failed.text;
  }
}

TEST_F(ConfigUpgrade, OldOneKeepsItsRowsAndGetsWhatItLacked) {
  MakeOld();
  EXPECT_EQ(ConfigVersion(*server.Open("KorvelConfig")), "000000010002");
  ASSERT_TRUE(Upgrade().ran);
  EXPECT_EQ(One("select Codigo+Descricao+Utilizador from Empresas"), "0001PadariaANA");
  EXPECT_EQ(server.Rows("KorvelConfig",
                        "select SMTPServer,SMTPLogin,EmailOrigem,FtpUser,FtpServer,Versao from Entidade"),
            std::vector<std::string>{
                fmt::format("{}\tNULL\t\t\t{}\t{}", kDefaultSmtpHost, kDefaultFtpHost, SchemaVersion())});
  const std::string login(128, 'l');
  const auto config = server.Open("KorvelConfig");
  for (const char* table : {"Empresas", "Acessos", "LogGeral"}) {
    EXPECT_NO_THROW(config->Execute(fmt::format("update {} set Utilizador=?", table), {login})) << table;
  }
  EXPECT_EQ(ConfigVersion(*config), SchemaVersion());
}

TEST_F(ConfigUpgrade, HostsThatSomebodySetStay) {
  ASSERT_TRUE(EnsureConfigDatabase(context));
  server.Run("KorvelConfig", "insert into Entidade (SMTPServer,FtpServer) values ('correio','')");
  Upgrade();
  EXPECT_EQ(server.Rows("KorvelConfig", "select SMTPServer,FtpServer from Entidade"),
            std::vector<std::string>{"correio\t"});
}

TEST_F(ConfigUpgrade, EnsureFinishesWhatAnInterruptionLeftAndLeavesACompleteOneAlone) {
  server.Run("master", "create database KorvelConfig");
  ASSERT_TRUE(EnsureConfigDatabase(context));
  EXPECT_EQ(One("select Versao from Actualiza"), SchemaVersion());
  server.Run("KorvelConfig", "drop table Configura");
  ASSERT_TRUE(EnsureConfigDatabase(context));
  EXPECT_EQ(One("select count(*) from sysobjects where name='Configura'"), "0");
  server.session.gPassword = "errada";
  EXPECT_FALSE(EnsureConfigDatabase(context));
  EXPECT_EQ(server.dialogs.messages.size(), 1U) << "why it cannot";
}

TEST_F(ConfigUpgrade, TwoAdministratorsAtATimeMakeOne) {
  const auto ensure = [&](const std::function<void()>&) {
    const bool done = EnsureConfigDatabase(context) && Upgrade().ran;
    for (const auto& text : server.dialogs.Texts()) std::cerr << text << '\n';
    return done && server.dialogs.messages.empty() ? 0 : 1;
  };
  {
    test::InProcess first(ensure);
    test::InProcess second(ensure);
    EXPECT_EQ(first.Wait(), 0);
    EXPECT_EQ(second.Wait(), 0);
  }
  EXPECT_EQ(server.Rows("KorvelConfig", "select Versao from Actualiza"),
            std::vector<std::string>{SchemaVersion()});
  EXPECT_EQ(One("select count(*) from sysobjects where xtype='U'"), std::to_string(std::size(kExpected)));
  EXPECT_EQ(One("select count(*) from sysobjects where xtype='P'"), "4");
}

TEST_F(ConfigUpgrade, ReadOnlyOneIsLeftAsItIs) {
  MakeOld();
  SetReadOnly(*server.Open(), "KorvelConfig", true);
  const auto before = Schema();
  EXPECT_TRUE(Upgrade().ran);
  EXPECT_EQ(Schema(), before);
  EXPECT_EQ(server.dialogs.Texts(), std::vector<std::string>{});
}

TEST_F(ConfigUpgrade, ObjectsAreLookedAtWhereTheServerAsksForIt) {
  ASSERT_TRUE(EnsureConfigDatabase(context));
  server.statements.clear();
  Upgrade();
  EXPECT_THAT(server.statements,
              testing::Not(testing::Contains(testing::StartsWith("Select Name from SysDatabases Where"))));
  server.Run("master", "create table ActUtil (Nome varchar(10))");
  server.statements.clear();
  Upgrade();
  EXPECT_THAT(server.statements,
              testing::Contains("Select Name from SysDatabases Where Name<>'' and (Name Like 'Korvel%' or "
                                "Name Like 'Brevant%' or Name Like 'Lunder%')"));
  EXPECT_TRUE(server.dialogs.questions.empty()) << "nothing foreign is there";
}

}  // namespace
}  // namespace korvel::databases
