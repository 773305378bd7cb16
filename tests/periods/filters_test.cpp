#include "periods/filters.h"

#include <gtest/gtest.h>

#include "company_world.h"

namespace korvel::periods {
namespace {

LunderFilterForm Form(std::string_view ticks, std::string_view from = {}, std::string_view to = {}) {
  LunderFilterForm form{std::string(from), std::string(to), {}};
  for (const char tick : ticks) {
    const std::string codigo = "D'" + std::to_string(form.journals.size());
    form.journals.push_back({1, codigo, "", "", tick == 'x'});
  }
  return form;
}

TEST(LunderFilterTest, Clauses) {
  struct Case {
    LunderFilterForm form;
    const char *contas, *diarios;
  };
  const Case cases[] = {
      {Form("xx"), "", ""},
      {Form("x."), "", " and ( Diario='D''0') "},
      {Form("x.x"), "", " and ( Diario='D''0' or Diario='D''2') "},
      {Form(".."), "", " and Diario='XXXXXX' "},
      {Form(""), "", " and Diario='XXXXXX' "},
      {Form("x", "21.1", "  "), " and ContaSp>='211'", ""},
      {Form("x", " 2 ", "3.1.1"), " and ContaSp>='2' and ContaSp<='311'", ""},
      {Form("x", "", "2' or ''='"), " and ContaSp<='2'' or ''''='''", ""},
  };
  for (const Case& test : cases) {
    const LunderFilter filter = MakeLunderFilter(test.form);
    EXPECT_EQ(filter.contas, test.contas);
    EXPECT_EQ(filter.diarios, test.diarios);
    EXPECT_FALSE(filter.cancelled);
    EXPECT_EQ(filter.noJournalTicked, !test.form.AnyTicked());
  }
}

TEST(BrevantFilterTest, OnlyWhatIsFilledNarrows) {
  EXPECT_EQ(FiltrosBrevant({}).filtro, "");
  const BrevantFilter filter = FiltrosBrevant({"G'1", " ", "S", "A", "Familia"});
  EXPECT_EQ(filter.filtro,
            " and Produtos.Grupo='G''1' and Produtos.SubFamilia='S' and Produtos.Situacao='A'");
  EXPECT_EQ(filter.patamar, "Familia");
}

class StoredFilter : public testing::Test, protected test::CompanyWorld {
 protected:
  StoredFilter() {
    PointToSources();
    server.Run(
        "LunderDemo",
        "create table Diarios (NumRegisto numeric(18,0) identity (1,1) not null, Codigo varchar(10), "
        "Descricao varchar(50))\nGO\n"
        "insert into Diarios (Codigo,Descricao) values ('VD','Vendas'),('SI','Saldos'),('EN','Fim')\nGO\n"
        "create table Configura (NumRegisto numeric(18,0) identity (1,1) not null, DiSi varchar(10), "
        "DiTi varchar(10), DiTc varchar(10), DiTm varchar(10), DiAp varchar(10), DiIl varchar(10), "
        "DiEn varchar(10))\nGO\n"
        "insert into Configura (DiSi,DiEn) values ('si','EN')");
  }
  LunderChoice Choice(std::vector<std::string> journals, bool all = false) {
    return {"", "", std::move(journals), all};
  }
};

TEST_F(StoredFilter, FormShowsJournalsByCodeWithTheirRoles) {
  Script("update ParamGeral set Header_ApenasDiarioSI='S',Header_ContaInicial='21',Header_ContaFinal='29'");
  const auto form = LoadLunderFilter(context);
  ASSERT_TRUE(form);
  std::vector<std::string> rows;
  for (const Journal& journal : form->journals) {
    rows.push_back(journal.codigo + "|" + journal.notas + (journal.ticked ? "|x" : "|"));
  }
  EXPECT_EQ(rows, (std::vector<std::string>{"EN|Encerramento|", "SI|Saldos Iniciais|x", "VD||"}));
  const LunderFilter filter = FiltrosLunder(context);
  EXPECT_EQ(filter.contas, " and ContaSp>='21' and ContaSp<='29'");
  EXPECT_EQ(filter.diarios, " and ( Diario='SI') ");
  EXPECT_FALSE(filter.noJournalTicked);
}

TEST_F(StoredFilter, WithoutTheOpeningJournalNothingIsTickedAndWithoutTheSourceAllIsCancelled) {
  const LunderFilter filter = FiltrosLunder(context);
  EXPECT_TRUE(filter.noJournalTicked);
  EXPECT_FALSE(filter.cancelled);
  EXPECT_EQ(filter.diarios, " and Diario='XXXXXX' ");
  Script("update ParamGeral set DBase_Lunder='LunderFalta'");
  EXPECT_TRUE(FiltrosLunder(context).cancelled) << "a source that does not open cancels in silence";
  EXPECT_TRUE(server.dialogs.messages.empty());
}

TEST_F(StoredFilter, ChoiceOfACallerStandsInPlaceOfTheStoredOne) {
  Script("update ParamGeral set Header_ApenasDiarioSI='S',Header_ContaInicial='21'");
  EXPECT_EQ(FiltrosLunder(context, Choice({"vd", "EN", "falta"})).diarios,
            " and ( Diario='EN' or Diario='VD') ");
  EXPECT_EQ(FiltrosLunder(context, Choice({}, true)).diarios, "");
  EXPECT_EQ(FiltrosLunder(context, Choice({}, true)).contas, "");
  const LunderFilter none = FiltrosLunder(context, Choice({"falta"}));
  EXPECT_TRUE(none.cancelled);
  EXPECT_EQ(server.dialogs.LastText(), "Não seleccionou qualquer Diário!");
}

}  // namespace
}  // namespace korvel::periods
