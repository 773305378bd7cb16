#include "periods/entity.h"

#include <gtest/gtest.h>

#include "company_world.h"
#include "databases/config_upgrade.h"

namespace korvel::periods {
namespace {

class EntityTest : public testing::Test, protected test::CompanyWorld {
 protected:
  EntityTest() {
    databases::EnsureConfigDatabase(context);
    server.dialogs.Clear();
  }
  std::vector<std::string> Config(std::string_view query) { return server.Rows("KorvelConfig", query); }
};

TEST_F(EntityTest, EveryValueComesBackInOneRow) {
  server.Run("KorvelConfig", "delete from Entidade");
  const auto fresh = CarregarEntidade(context);
  ASSERT_TRUE(fresh);
  EXPECT_EQ(fresh->SMTPServer, databases::kDefaultSmtpHost);
  EXPECT_EQ(fresh->FtpServer, databases::kDefaultFtpHost);
  Entity typed{"Contas d'Ouro", "Rua 1",  "Braga",  "4700",  "253", "500",  "mail.pt", "eu",
               "p'w",           "a@b.pt", "ftp.pt", "ftpeu", "pw",  "/saft"};
  ASSERT_TRUE(GravarEntidade(context, typed));
  typed.Local.clear();
  ASSERT_TRUE(GravarEntidade(context, typed));
  EXPECT_EQ(
      Config("select NomeEntidade,Morada,Local,CodigoPostal,Telefones,Contribuinte,SMTPServer,SMTPLogin,"
             "SMTPPassword,EmailOrigem,FtpServer,FtpUser,FtpPWD,FTPPath,Utilizador from Entidade"),
      std::vector<std::string>{"Contas d'Ouro\tRua 1\t\t4700\t253\t500\tmail.pt\teu\tp'w\ta@b.pt\tftp.pt\t"
                               "ftpeu\tpw\t/saft\tsa"});
  const auto read = CarregarEntidade(context);
  EXPECT_EQ(read->SMTPPassword, "p'w");
  EXPECT_EQ(read->FTPPath, "/saft");
  EXPECT_EQ(server.session.gNomeEntidade, "Contas d'Ouro");
  EXPECT_EQ(
      Config("select Modulo,Accao,Conteudo,FormCaption from LogGeral order by NumRegisto"),
      (std::vector<std::string>{"TB\tN\tContas d'Ouro\tConfig. Entidade Responsável pelo Processamento",
                                "TB\tA\tContas d'Ouro\tConfig. Entidade Responsável pelo Processamento"}));
}

TEST_F(EntityTest, WhatDoesNotFitChangesNothing) {
  server.Run("KorvelConfig",
             "delete from Entidade\nGO\ninsert into Entidade (NomeEntidade) values ('Antes')");
  Entity typed;
  typed.FtpUser = std::string(21, 'x');
  EXPECT_FALSE(GravarEntidade(context, typed));
  EXPECT_NE(server.dialogs.LastText().find("Existem valores que não cabem"), std::string::npos);
  EXPECT_EQ(Config("select NomeEntidade from Entidade"), std::vector<std::string>{"Antes"});
}

TEST_F(EntityTest, ConfigurationThatDoesNotOpenIsShown) {
  server.session.gPassword = "errada";
  server.dialogs.Clear();
  server.dialogs.answers = {0};
  EXPECT_FALSE(CarregarEntidade(context));
  EXPECT_EQ(server.dialogs.messages.size(), 1U);
}

}  // namespace
}  // namespace korvel::periods
