#include "billing/customers.h"

#include <gmock/gmock.h>

#include "brevant_world.h"

namespace korvel::test {
namespace {

using namespace billing::customer;  // the columns
using periods::Grid;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr const char* kUnknown = "Desconhecido";

class Customers : public BrevantWorld {
 protected:
  Customers() {
    ClearMasters();
    Brevant(
        "insert into TabPostal (Codigo,Descricao) values ('9500-100','Ponta Delgada'),('9600-200','Ribeira "
        "Grande'),('9500-100','Duplicado'),('','Em branco'),('0000000000','Zero')");
  }
  Grid Calculated() {
    const auto grid = billing::CalcularClientes(server.Context(), period);
    EXPECT_TRUE(grid) << LastText();
    return grid.value_or(Grid());
  }
  /// One column of the grid.
  std::vector<std::string> Cells(std::size_t column) {
    std::vector<std::string> cells;
    for (const auto& row : Calculated()) cells.push_back(row.cells[column]);
    return cells;
  }
  /// A document of the general account C5, without number: those of documents do not matter here.
  void AddSale(const std::string& contribuinte, const Record& values = {}) {
    Record sale = With(
        "Codigo=C5;Descricao=Comprador;Morada=Rua C;Local=Lagoa;CodPostal=9600-200;Data=2011-03-05", values);
    sale.emplace_back("Contribuinte", contribuinte);
    AddDocument(sale);
  }
};

TEST_F(Customers, EachHasItsCells) {
  AddCustomer({});
  AddCustomer({{"Codigo", "A0"}, {"Contribuinte", " 502 000 000 "}, {"Descricao", "O'Neill"}});
  const Grid grid = Calculated();
  ASSERT_EQ(grid.size(), 2U);
  EXPECT_THAT(grid[1].cells,
              ElementsAre("2", "501234567", kUnknown, "501234567", "Cliente Um", "Ana", "----------", "7",
                          "Rua A", "Rua A, 7", "Ponta Delgada", "9500-100", "Leste", "PT", "----------", "8",
                          "Rua B", "Rua B, 8", "Ribeira Grande", "9600-200", "Norte", "ES", "296", "297",
                          "ana@um.pt", "um.pt", "1"));
  EXPECT_EQ(grid[0].cells[kTaxId], "502000000") << "by code";
  EXPECT_EQ(grid[0].cells[kCustomerId], "502000000");
  EXPECT_EQ(grid[0].cells[kCompanyName], "O'Neill");
  EXPECT_EQ(grid[0].colour, 0U);
}

TEST_F(Customers, WhatIsMissingIsFilled) {
  struct Case {
    Record values;
    std::vector<std::pair<std::size_t, std::string>> cells;
  };
  const std::vector<Case> cases{
      {{{"Contribuinte", ""}}, {{kTaxId, "999999990"}, {kCompanyName, "Consumidor Final"}}},
      {{{"Contribuinte", "NULL"}}, {{kCustomerId, "999999990"}, {kCompanyName, "Consumidor Final"}}},
      {{{"Contribuinte", "n/d -"}}, {{kTaxId, "999999990"}, {kCompanyName, "Consumidor Final"}}},
      {{{"Contribuinte", "999999990"}}, {{kTaxId, "999999990"}, {kCompanyName, "Cliente Um"}}},
      {{{"Descricao", " "}}, {{kCompanyName, " "}}},
      {{{"Contacto", ""}, {"Policia", "NULL"}}, {{kContact, kUnknown}, {kBuildingNumber, kUnknown}}},
      {{{"Rua", " "}, {"Morada", ""}}, {{kStreetName, kUnknown}, {kAddressDetail, kUnknown}}},
      {{{"Telefone", ""}, {"Fax", ""}, {"Email", "NULL"}, {"Site", " "}},
       {{kTelephone, kUnknown}, {kFax, kUnknown}, {kEmail, kUnknown}, {kWebsite, kUnknown}}},
      {{{"Pais", ""}, {"Expedicao_Pais", "NULL"}, {"Distrito", ""}},
       {{kCountry, kUnknown}, {kShipCountry, kUnknown}, {kRegion, kUnknown}}},
      {{{"CodPost", "1000"}, {"Expedicao_CodPost", "1000"}},
       {{kCity, kUnknown}, {kPostalCode, "1000"}, {kShipCity, kUnknown}, {kShipPostalCode, "1000"}}},
      // A blank code is a code that the table of towns may have; a customer without one has no town.
      {{{"CodPost", "NULL"}, {"Expedicao_CodPost", "NULL"}},
       {{kCity, kUnknown}, {kPostalCode, kUnknown}, {kShipCity, "Em branco"}, {kShipPostalCode, kUnknown}}},
      {{{"CodPost", "0000000000"}},
       {{kCity, kUnknown}, {kPostalCode, kUnknown}, {kShipCity, kUnknown}, {kShipPostalCode, kUnknown}}},
      {{{"Expedicao_CodPost", "0000000000"}}, {{kCity, "Ponta Delgada"}, {kShipCity, "Zero"}}},
      {{{"AutoFacturacao", "NULL"}}, {{kSelfBilling, ""}}},
  };
  for (const Case& c : cases) {
    Brevant("delete from Clientes");
    AddCustomer(c.values);
    const Grid grid = Calculated();
    ASSERT_EQ(grid.size(), 1U);
    for (const auto& [column, text] : c.cells) {
      EXPECT_EQ(grid[0].cells[column], text)
          << c.values[0].first << "=" << c.values[0].second << ", column " << column;
    }
  }
}

TEST_F(Customers, TheFirstByCodeKeepsATaxNumber) {
  AddCustomer({{"Codigo", "C2"}, {"Descricao", "Segundo"}, {"Contribuinte", "501 234 567"}});
  AddCustomer({{"Codigo", "C3"}, {"Descricao", "Terceiro"}, {"Contribuinte", ""}});
  AddCustomer({{"Codigo", "C4"}, {"Descricao", "Quarto"}, {"Contribuinte", "x"}});
  AddCustomer({});
  EXPECT_THAT(Cells(kCompanyName), ElementsAre("Cliente Um", "Consumidor Final"));
}

TEST_F(Customers, GeneralAccountsGiveTheirBuyersARow) {
  SetBasis("I");
  AddCustomer({{"Codigo", "C5"}, {"Diversos", "1"}, {"Contribuinte", "505555555"}});
  AddCustomer({{"Codigo", "C6"}, {"Contribuinte", "222"}, {"Descricao", "Depois"}});
  AddCustomer({});
  AddSale("333", {{"Data", "2011-04-01"}, {"Descricao", "Tarde"}});
  AddSale("333", {{"Data", "2011-02-01"}, {"Descricao", "Cedo"}, {"Pais", "ES"}});
  AddSale("222", {{"Descricao", ""}, {"Morada", " "}, {"Local", "NULL"}, {"Pais", "NULL"}});
  AddSale("2 22", {{"Descricao", "Outra escrita"}});
  AddSale("444", {{"CodPostal", "0000000000"}});
  AddSale("999999990", {{"Descricao", "Anónimo"}});
  AddSale("abc");
  AddSale("501234567", {{"Descricao", "Já é cliente"}});
  AddSale("666", {{"Data", "2012-01-01"}});
  AddSale("777", {{"Data", "2010-12-31"}});
  AddSale(" ");
  AddSale("888", {{"Codigo", "C6"}});
  const Grid grid = Calculated();
  std::vector<std::string> numbers;
  for (const auto& row : grid) numbers.push_back(row.cells[kTaxId]);
  EXPECT_THAT(numbers, ElementsAre("501234567", "505555555", "222", "333", "444", "999999990", "abc"));
  EXPECT_EQ(grid[1].colour, 16711680U);
  EXPECT_EQ(grid[2].colour, 0U);
  EXPECT_THAT(grid[3].cells, ElementsAre("", "333", "snc", "333", "Cedo", "", "----------", "", "", "Rua C",
                                         "Lagoa", "9600-200", "", "ES", "----------", "", "", "Rua C",
                                         "Ribeira Grande", "9600-200", "", "ES", "", "", "", "", "0"));
  EXPECT_EQ(grid[2].cells[kCompanyName], "Outra escrita") << "blanks sort in front";
  EXPECT_EQ(grid[4].cells[kCity] + grid[4].cells[kShipPostalCode], std::string(kUnknown) + kUnknown);
  EXPECT_EQ(grid[4].cells[kAddressDetail], "Rua C");
  for (std::size_t column = kContact; column <= kWebsite; ++column) {
    const bool address = column == kBilingAddress || column == kShipToAddress;
    EXPECT_EQ(grid[5].cells[column], address ? "----------" : kUnknown) << column;
  }
  EXPECT_EQ(grid[5].cells[kCompanyName], "Anónimo");
}

TEST_F(Customers, ABuyerWithoutDataIsUnknownAtHome) {
  AddCustomer({{"Codigo", "C5"}, {"Diversos", "1"}});
  AddSale("222",
          {{"Descricao", ""}, {"Morada", " "}, {"Local", "NULL"}, {"Pais", "NULL"}, {"CodPostal", "1"}});
  EXPECT_THAT(
      Calculated().at(1).cells,
      ElementsAre("", "222", kUnknown, "222", kUnknown, "", "----------", "", "", kUnknown, kUnknown, "1", "",
                  "PT", "----------", "", "", kUnknown, "", "1", "", "PT", "", "", "", "", "0"));
}

TEST_F(Customers, TheAccountStandsInAColumnThatAParameterNames) {
  AddCustomer({});
  struct Case {
    std::string basis;
    std::string equivCliente;  // "NULL" for none
    std::string configura;     // values of AnoSNC, "" for no row
    std::string account;       // "" where it is refused
  };
  const std::vector<Case> cases{
      {"F", "ContaContabil", "('2010')", kUnknown},
      {"I", "ContaContabil", "('2010')", "snc"},
      {"I", "ContaContabil", "('2011')", "snc"},
      {"I", "ContaContabil", "('2012'),('1')", "poc"},
      {"I", "ContaContabil", "", "snc"},
      {"I", "contacontabilb", "('2012')", "poc B"},
      {"I", "ContaContabilB", "('2010')", kUnknown},
      {"I", "CODIGO", "('2010')", kUnknown},
      {"I", "codigo", "('2012')", kUnknown},
      {"I", " ", "('2012')", kUnknown},
      {"I", "Conta", "('2012')", ""},
      {"I", "x from y --", "('2012')", ""},
      {"I", "Codigo]; delete--", "('2012')", ""},
  };
  for (const Case& c : cases) {
    SetBasis(c.basis);
    Company("update ParamGeral set EquivCliente='" + c.equivCliente + "'");
    Brevant("delete from Configura");
    if (!c.configura.empty()) Brevant("insert into Configura (AnoSNC) values " + c.configura);
    const auto grid = billing::CalcularClientes(server.Context(), period);
    ASSERT_EQ(grid.has_value(), !c.account.empty()) << c.equivCliente << LastText();
    if (grid) {
      EXPECT_EQ(grid->at(0).cells[kAccountId], c.account) << c.equivCliente << c.configura;
    } else {
      EXPECT_THAT(LastText(), HasSubstr("Não existe o campo [" + c.equivCliente + "] na tabela [Clientes]!"));
    }
  }
  Brevant("drop table Configura");
  Company("update ParamGeral set EquivCliente='ContaContabil'");
  EXPECT_THAT(Cells(kAccountId), ElementsAre("snc"));
}

TEST_F(Customers, CountriesAreRepairedInAllDocuments) {
  AddCustomer({{"Codigo", "C2"}, {"Pais", "FR"}});
  AddCustomer({{"Codigo", "O'C"}, {"Pais", "ES"}});
  AddCustomer({{"Codigo", "C3"}, {"Pais", " "}});
  AddDocument({{"Codigo", "C3"}, {"Pais", "NULL"}, {"Data", "2009-01-01"}});
  const auto countries = [&] {
    Calculated();
    return server.Rows("BrevantDemo", "select Codigo,Pais from MovCliente order by NumRegisto");
  };
  EXPECT_THAT(countries(), ElementsAre("C3\tNULL")) << "no document is blank: nobody's turn comes";
  AddDocument({{"Codigo", "C1"}, {"Pais", ""}});
  AddDocument({{"Codigo", "C3"}, {"Pais", ""}});
  EXPECT_THAT(countries(), ElementsAre("C3\tNULL", "C1\t", "C3\t")) << "nobody with a country of his own";
  AddDocument({{"Codigo", "O'C"}, {"Pais", ""}, {"Data", "2009-01-01"}});
  AddDocument({{"Codigo", "O'C"}, {"Pais", "PT"}});
  AddDocument({{"Codigo", "C2"}, {"Pais", ""}, {"Tipo", "GR1"}});
  AddDocument({{"Codigo", "O'C"}, {"Pais", "NULL"}});
  EXPECT_THAT(countries(), ElementsAre("C3\tFR", "C1\t", "C3\t", "O'C\tES", "O'C\tPT", "C2\tFR", "O'C\tFR"));
}

TEST_F(Customers, ACustomerPeriodHasThatCustomerAndHisBuyers) {
  period.cliente = "C5";
  AddCustomer({});
  AddCustomer({{"Codigo", "C5"}, {"Diversos", "1"}, {"Contribuinte", "505555555"}});
  AddCustomer({{"Codigo", "C6"}, {"Diversos", "1"}, {"Contribuinte", "506666666"}});
  AddSale("333");
  AddSale("444", {{"Codigo", "C6"}});
  EXPECT_THAT(Cells(kTaxId), ElementsAre("505555555", "333"));
}

TEST_F(Customers, StatementsDoNotGrowWithCustomersAndBuyers) {
  SetBasis("I");
  const auto sent = [&](int from, int to) {
    for (int i = from; i < to; ++i) {
      const std::string number = std::to_string(100 + i);
      AddCustomer({{"Codigo", number}, {"Contribuinte", number}, {"Diversos", "1"}, {"CodPost", number}});
      AddSale("B" + number, {{"Codigo", number}, {"Pais", ""}});
      AddSale("C" + number, {{"Codigo", number}, {"CodPostal", number}});
    }
    server.statements.clear();
    const Grid grid = Calculated();
    EXPECT_EQ(grid.size(), 3U * static_cast<std::size_t>(to));
    EXPECT_TRUE(billing::GravarClientes(server.Context(), period, {grid[0]})) << LastText();
    return server.statements.size();
  };
  const std::size_t few = sent(0, 2);
  EXPECT_LE(sent(2, 40), few);
}

TEST_F(Customers, ARowWithoutCodeIsRefusedBeforeAnythingIsDeleted) {
  AddCustomer({});
  Grid grid = Calculated();
  ASSERT_TRUE(billing::GravarClientes(server.Context(), period, grid));
  grid[0].cells[kCustomerId] = " ";
  EXPECT_FALSE(billing::GravarClientes(server.Context(), period, grid));
  EXPECT_EQ(LastText(), "Cliente sem o Código Definido!\n\n[Cliente Um]");
  EXPECT_FALSE(billing::GravarClientes(server.Context(), period, {}));
  EXPECT_EQ(server.One("Korvel0001", "select count(*) from TabCustomerGEST"), "1");
}

TEST_F(Customers, CellsOfAnyLengthAreSaved) {
  AddCustomer({});
  Grid grid = Calculated();
  for (std::size_t column = kAccountId; column <= kSelfBilling; ++column) {
    if (column != kTaxId) grid[0].cells[column] = std::string(200, 'x');
  }
  ASSERT_TRUE(billing::GravarClientes(server.Context(), period, grid)) << LastText();
  EXPECT_EQ(server.One("Korvel0001", "select len(AccountID)*1000+len(Ship_Country) from TabCustomerGEST"),
            "30100");
}

}  // namespace
}  // namespace korvel::test
