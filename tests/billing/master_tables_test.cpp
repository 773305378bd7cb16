#include <gmock/gmock.h>

#include "billing/customers.h"
#include "billing/products.h"
#include "billing/tax_table.h"
#include "brevant_world.h"

/// What the three tables of master data have in common: how they are saved.
namespace korvel::test {
namespace {

using billing::BillingPeriod;
using periods::Grid;
using testing::ElementsAre;
using testing::IsEmpty;

struct Master {
  const periods::StagedTable& (*table)();
  std::optional<Grid> (*calculate)(const session::Context&, const BillingPeriod&);
  bool (*save)(const session::Context&, const BillingPeriod&, const Grid&);
  std::optional<Grid> (*load)(const session::Context&, const periods::PeriodKey&);
  std::size_t text;  // a column of free text
  std::vector<std::pair<std::size_t, std::string>> required;
};

const std::vector<Master>& Masters() {
  using namespace billing;
  static const std::vector<Master> kMasters{
      {ClientesTable,
       CalcularClientes,
       GravarClientes,
       CarregarClientes,
       customer::kCompanyName,
       {{3, "Nº Identificação Fiscal"},
        {4, "Descrição"},
        {6, "Morada Facturação"},
        {9, "Rua e Nº Policia"},
        {10, "Localidade"},
        {11, "Cód. Postal"},
        {13, "País"},
        {17, "Rua e Nº de Policia"},
        {18, "Localidade"},
        {19, "Cód. Postal"},
        {21, "País"}}},
      {ProdutosTable,
       [](const session::Context& context, const BillingPeriod& period) {
         return CalcularProdutos(context, period, {"", "Grupo"});
       },
       GravarProdutos,
       CarregarProdutos,
       4,
       {{1, "Tipo de Produto"},
        {2, "Código"},
        {3, "Família"},
        {4, "Descrição do Produto"},
        {5, "Código EAN"}}},
      {ImpostosTable,
       CalcularImpostos,
       GravarImpostos,
       CarregarImpostos,
       4,
       {{1, "Tipo de Imposto"},
        {2, "País ou Região"},
        {3, "Código do Imposto"},
        {4, "Descrição do Imposto"}}},
  };
  return kMasters;
}

class MasterTables : public BrevantWorld {
 protected:
  MasterTables() {
    ClearMasters();
    Brevant("insert into TabPostal (Codigo,Descricao) values ('9500-100','A'),('9600-200','B')");
    Brevant("insert into TabGrupoPro (Codigo,Descricao) values ('G','Grupo G')");
    for (const std::string number : {"1", "2", "3"}) {
      AddCustomer({{"Codigo", "C" + number}, {"Contribuinte", number}});
      AddProduct({{"Codigo", "P" + number}});
      AddTax({{"Codigo", number}});
    }
  }
  Grid Calculated(const Master& master) {
    const auto grid = master.calculate(server.Context(), period);
    EXPECT_TRUE(grid) << LastText();
    return grid.value_or(Grid());
  }
  std::string Count(const Master& master, const std::string& where = "") {
    return server.One("Korvel0001", "select count(*) from " + std::string(master.table().table) + where);
  }
};

TEST_F(MasterTables, AnEmptyColumnLeavesTheRowsBeforeIt) {
  for (const Master& master : Masters()) {
    const Grid grid = Calculated(master);
    ASSERT_TRUE(master.save(server.Context(), period, grid)) << LastText();
    for (const auto& [column, label] : master.required) {
      Grid spoilt = grid;
      spoilt[2].cells[column] = " ";
      EXPECT_FALSE(master.save(server.Context(), period, spoilt));
      EXPECT_EQ(server.dialogs.messages.back(),
                (ScriptedDialogs::Box{toolkit::Icon::Warning, "AVISO",
                                      "O Campo [" + label + "] está Vazio!\nNão pode Gravar"}));
      EXPECT_EQ(Count(master), "2") << label;
    }
    Grid spoilt = grid;
    for (const auto& [column, label] : master.required) spoilt[0].cells[column] = "";
    EXPECT_FALSE(master.save(server.Context(), period, spoilt));
    EXPECT_EQ(LastText(), "O Campo [" + master.required[0].second + "] está Vazio!\nNão pode Gravar");
    EXPECT_EQ(Count(master), "0");
  }
}

TEST_F(MasterTables, PeriodsOfACustomerStandApart) {
  const BillingPeriod own{period.key, "C'2"};
  for (const Master& master : Masters()) {
    const Grid grid = Calculated(master);
    ASSERT_TRUE(master.save(server.Context(), period, grid));
    ASSERT_TRUE(master.save(server.Context(), own, {grid[0], grid[1]}));
    ASSERT_TRUE(master.save(server.Context(), own, {grid[0]}));
    Company("update " + std::string(master.table().table) + " set Cliente=null where isnull(Cliente,'')=''");
    EXPECT_EQ(Count(master, " where Cliente='C''2'"), "1");
    EXPECT_EQ(Count(master), std::to_string(grid.size() + 1));
    const auto loaded = master.load(server.Context(), period.key);
    ASSERT_TRUE(loaded);
    EXPECT_EQ(loaded->size(), grid.size() + 1) << "all customers' rows are shown";
    ASSERT_TRUE(master.save(server.Context(), period, {grid[0]}));
    EXPECT_EQ(Count(master), "2") << "rows from before there were customers belong to all";
  }
}

TEST_F(MasterTables, APeriodThatWasDeletedMeanwhileTakesNoRows) {
  for (const Master& master : Masters()) {
    const Grid grid = Calculated(master);
    SetBasis("F");
    ASSERT_TRUE(master.save(server.Context(), period, {grid[0]}));
    Company("delete from TabHeader");
    EXPECT_FALSE(master.save(server.Context(), period, grid));
    EXPECT_EQ(LastText(), "O período já não existe: foi eliminado entretanto.");
    EXPECT_EQ(Count(master), "1") << "as it was";
  }
}

TEST_F(MasterTables, HostileTextsPassUnharmed) {
  const std::string hostile = "x'); drop table TabHeader; --\"?&<";
  server.session.gUtilizador = "o'ana";
  const BillingPeriod other{{"2011", "' or ''='", "x"}, "' or 1=1--"};
  AddPeriod(other);
  for (const Master& master : Masters()) {
    Grid grid = Calculated(master);
    grid[0].cells[master.text] = hostile;
    ASSERT_TRUE(master.save(server.Context(), period, grid)) << LastText();
    EXPECT_EQ(master.load(server.Context(), period.key)->at(0).cells[master.text], hostile);
    EXPECT_EQ(Count(master, " where Utilizador='o''ana' and DataSys is not null"),
              std::to_string(grid.size()));
    ASSERT_TRUE(master.save(server.Context(), other, {grid[0]})) << LastText();
  }
}

TEST_F(MasterTables, WithoutPeriodOrSourceNothingHappens) {
  for (const Master& master : Masters()) {
    EXPECT_FALSE(master.calculate(server.Context(), {}));
    EXPECT_FALSE(master.save(server.Context(), {}, Grid(1)));
    EXPECT_FALSE(master.load(server.Context(), {}));
  }
  EXPECT_THAT(server.dialogs.messages, IsEmpty());
  Company("update ParamGeral set DBase_Brevant='NoSuch'");
  for (const Master& master : Masters()) {
    EXPECT_FALSE(master.calculate(server.Context(), period));
    EXPECT_THAT(LastText(), testing::HasSubstr("Não foi possível estabelecer ligação com a empresa NoSuch!"));
  }
}

TEST_F(MasterTables, ALostConnectionLeavesTheEarlierRows) {
  for (const Master& master : Masters()) {
    const Grid grid = Calculated(master);
    ASSERT_TRUE(master.save(server.Context(), period, {grid[0], grid[1]}));
    const auto run = [&] {
      const auto rows = master.calculate(server.Context(), period);
      return rows && master.save(server.Context(), period, *rows);
    };
    std::size_t lost = 0;
    for (; !Losing(lost, run); ++lost) {
      EXPECT_THAT(LastText(), testing::HasSubstr("Perdida a ligação ao servidor"));
      const std::string at = server.statements.at(lost);
      ASSERT_EQ(Count(master), "2") << at;
    }
    EXPECT_GT(lost, 5U) << "it was lost at every statement of the run";
    EXPECT_EQ(Count(master), std::to_string(grid.size()));
  }
}

}  // namespace
}  // namespace korvel::test
