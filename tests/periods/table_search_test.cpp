#include "periods/table_search.h"

#include <gtest/gtest.h>

#include "company_world.h"

namespace korvel::periods {
namespace {

std::vector<std::string> Keys(const std::optional<SearchRows>& found) {
  std::vector<std::string> keys;
  for (const FoundRow& row : found.value().rows) keys.push_back(row.key);
  return keys;
}

class TableSearchTest : public testing::Test, protected test::CompanyWorld {
 protected:
  TableSearchTest() {
    PointToSources();
    server.Run("BrevantDemo",
               "create table TabGrupoPro (NumRegisto numeric(18,0) identity (1,1) not null, Codigo "
               "varchar(3), Descricao varchar(50))\nGO\n"
               "insert into TabGrupoPro (Codigo,Descricao) values ('A','Azeite'),('B','Bens 100%'),"
               "('C','Caixa_grande'),('D','D''Avila [novo]'),('','Sem código'),('E','azul')\nGO\n"
               "create table Series (Numero numeric(4,0), Descricao varchar(50))\nGO\n"
               "insert into Series (Numero,Descricao) values (0,'Nenhuma'),(12,'Doze')");
    server.Run("LunderDemo",
               "create table Contas (ContaSP varchar(30), ContaCP varchar(50), Titulo varchar(100))\nGO\n"
               "insert into Contas (ContaSP,ContaCP,Titulo) values ('211','21.1','Clientes'),"
               "('2111','21.1.1','Clientes gerais'),('62','62','Fornecimentos')");
  }
  Lookup Look(const TableSearch& search, std::string_view code, bool showMessage = true) {
    return Pesq(context, search, code, showMessage);
  }
  static TableSearch Numbers() {
    return {.table = "Series",
            .statement = "select * From Series",
            .keyField = "Numero",
            .keyType = KeyType::Number,
            .columns = {{"Número", "Numero"}, {"Descrição", "Descricao"}}};
  }
};

TEST_F(TableSearchTest, CodesFindTheirRow) {
  const Lookup group = Look(Grupo_Produtos(), "b");
  ASSERT_TRUE(group.row);
  EXPECT_EQ(group.row->key, "B");
  EXPECT_EQ(group.row->name, "Bens 100%");
  for (const char* account : {"21.1", "211"}) {
    const Lookup found = Look(Contas_Contabilidade(), account);
    ASSERT_TRUE(found.row) << account;
    EXPECT_EQ(found.row->key, "21.1") << "shown with its points";
    EXPECT_EQ(found.row->name, "Clientes");
    EXPECT_EQ(
        Keys(SearchTable(context, Contas_Contabilidade(), {.typed = account, .fromStart = true, .most = 9})),
        (std::vector<std::string>{"21.1", "21.1.1"}));
  }
  EXPECT_EQ(Look(Numbers(), "12").row.value().name, "Doze");
  server.statements.clear();
  EXPECT_FALSE(Look(Grupo_Produtos(), " ").unknown);
  EXPECT_TRUE(server.statements.empty()) << "a blank code is not looked up";
  EXPECT_TRUE(server.dialogs.messages.empty());
}

TEST_F(TableSearchTest, UnknownCodeIsToldWhenAskedFor) {
  EXPECT_TRUE(Look(Grupo_Produtos(), "Z'", false).unknown);
  EXPECT_TRUE(server.dialogs.messages.empty());
  EXPECT_TRUE(Look(Grupo_Produtos(), "Z'").unknown);
  EXPECT_EQ(server.dialogs.LastTitle(), "Registo Inexistente:");
  EXPECT_EQ(server.dialogs.LastText(),
            "Z' ( Tabela-> TabGrupoPro)\nUse '\\' ou '/' no Campo para Pesquisar!");
}

TEST_F(TableSearchTest, WhatTheServerRefusesIsShown) {
  const Lookup text = Look(Numbers(), "doze", false);
  EXPECT_FALSE(text.row || text.unknown);
  ASSERT_EQ(server.dialogs.messages.size(), 1U) << "a text for a numeric key";
  EXPECT_FALSE(SearchTable(context, Familia_Produtos(), {}));
  EXPECT_NE(server.dialogs.LastText().find("Não existe a tabela"), std::string::npos);
}

TEST_F(TableSearchTest, TypedTextIsNoPattern) {
  struct Case {
    const char* typed;
    bool fromStart;
    std::size_t column;
    std::vector<std::string> keys;
  };
  const Case cases[] = {
      {"", false, 0, {"A", "B", "C", "D", "E"}},
      {"az", false, 1, {"A", "E"}},
      {"e", true, 1, {}},
      {"%", false, 1, {"B"}},
      {"_", false, 1, {"C"}},
      {"[novo]", false, 1, {"D"}},
      {"D'Av", true, 1, {"D"}},
      {"' or 1=1 --", false, 1, {}},
      {"c", true, 0, {"C"}},
  };
  for (const Case& test : cases) {
    const auto found =
        SearchTable(context, Grupo_Produtos(),
                    {.typed = test.typed, .column = test.column, .fromStart = test.fromStart, .most = 100});
    EXPECT_EQ(Keys(found), test.keys) << test.typed;
    EXPECT_EQ(found->count, static_cast<std::int64_t>(test.keys.size())) << test.typed;
  }
}

TEST_F(TableSearchTest, RowsAreCutAndAllCounted) {
  const auto last = SearchTable(context, Grupo_Produtos(), {.column = 1, .descending = true, .most = 2});
  EXPECT_EQ(Keys(last), (std::vector<std::string>{"D", "C"}));
  EXPECT_EQ(last->count, 5);
  EXPECT_EQ(last->rows[1].values, (std::vector<std::string>{"C", "Caixa_grande"}));
  EXPECT_EQ(Keys(SearchTable(context, Numbers(), {.most = 9})), std::vector<std::string>{"12"});
}

TEST_F(TableSearchTest, DatabasesOfAServer) {
  const SourceLocation here{server.Name(), "sa", "", ""};
  EXPECT_EQ(Keys(SearchTable(context, Empresas("Brevant", here), {.most = 9})),
            std::vector<std::string>{"BrevantDemo"});
  EXPECT_TRUE(Look(Empresas("Lunder", here), "lunderdemo").row);
  EXPECT_TRUE(Look(Empresas("Lunder", here), "BrevantDemo").unknown) << "of the other product";
  server.dialogs.Clear();
  EXPECT_FALSE(Look(Empresas("Brevant", {"NAO.EXISTE", "sa", "x", ""}), "BrevantDemo").unknown);
  EXPECT_EQ(server.dialogs.Texts(), std::vector<std::string>{"Não foi possível abrir a ligação!"});
}

TEST_F(TableSearchTest, SourceThatNoParametersNameIsTold) {
  Script("update ParamGeral set Servidor_Brevant=''");
  EXPECT_FALSE(Look(Grupo_Produtos(), "A", false).row);
  EXPECT_TRUE(server.dialogs.messages.empty());
  EXPECT_FALSE(SearchTable(context, Grupo_Produtos(), {}));
  EXPECT_EQ(server.dialogs.Texts(), std::vector<std::string>{"Não foi possível abrir a ligação!"});
}

TEST_F(TableSearchTest, HabitsAreKeptByTable) {
  EXPECT_TRUE(ReadSearchHabits(server.settings, "Contas").atEachKey);
  KeepSearchHabits(server.settings, "Contas", {false, true});
  const SearchHabits kept = ReadSearchHabits(server.settings, "Contas");
  EXPECT_TRUE(!kept.atEachKey && kept.fromStart);
  EXPECT_FALSE(ReadSearchHabits(server.settings, "Clientes").fromStart);
}

TEST(SearchSigns, AskForTheWindow) {
  EXPECT_TRUE(AsksForWindow("ab/") && AsksForWindow("\\"));
  EXPECT_FALSE(AsksForWindow("ab"));
  EXPECT_EQ(WithoutSigns("/a\\b/"), "ab");
}

}  // namespace
}  // namespace korvel::periods
