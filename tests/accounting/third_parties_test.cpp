#include "accounting/third_parties.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "lunder_world.h"

namespace korvel::accounting {
namespace {

using namespace third_party;  // the columns
using testing::ElementsAre;

class ThirdParties : public test::LunderWorld {
 protected:
  void AddParty(std::string_view contaSp, std::string_view titulo, std::string_view cliFor,
                std::string_view contribuinte, std::string_view pais = "", std::string_view morada = "") {
    server.Open("LunderDemo")
        ->Execute(
            "insert into Contas "
            "(ContaSP,ContaCP,Titulo,Tipo,CliFor,Contribuinte,Pais,Morada0,AutoFacturacao) "
            "values (?,?,?,'M',?,?,?,?,'1')",
            {contaSp, std::string(contaSp) + ".0", titulo, cliFor, contribuinte, pais, morada});
  }
  void AddMovement(std::string_view contaSp, std::string_view contribuinte, std::string_view prefix,
                   int sinalRecap = 1, std::string_view data = "2010-06-01") {
    server.Open("LunderDemo")
        ->Execute(
            "insert into MovDiario (ContaSP,Data,Contribuinte,PrefixoNif,SinalRecap) values (?,?,?,?,?)",
            {contaSp, data, contribuinte, prefix, sinalRecap});
  }
  periods::Grid Calculated(const ThirdPartyKind& kind) {
    const auto grid = CalcularTerceiros(server.Context(), period, kind);
    EXPECT_TRUE(grid);
    return grid.value_or(periods::Grid());
  }
};

TEST_F(ThirdParties, OneRowATaxpayerTheLastAccountWinning) {
  AddParty("2111", "D'Avila", "C", " 501 234 567", "pt", "Rua A");
  AddParty("2112", "O'Neill & Filhos", "C", "501234567");
  AddParty("2211", "Fornecedor", "F", "600000000");
  const periods::Grid grid = Calculated(Clientes());
  ASSERT_EQ(grid.size(), 1u);
  EXPECT_THAT(grid[0].cells,
              ElementsAre("2", "2112", "501234567", "O'Neill & Filhos", "", "----------", "", "",
                          "Desconhecido", "Desconhecido", "Desconhecido", "", "Desconhecido", "----------",
                          "", "", "Desconhecido", "Desconhecido", "Desconhecido", "", "Desconhecido", "", "",
                          "", "", "1", "501234567", "501234567"));
  EXPECT_TRUE(grid[0].ticked);

  ASSERT_TRUE(GravarTerceiros(server.Context(), period, Clientes(), grid));
  EXPECT_THAT(
      Staged("select CustomerID,AccountID,CompanyName,Country,Ship_Country,SelfBillingIndicator,Utilizador "
             "from TabCustomerPOC"),
      ElementsAre("501234567\t2112\tO'Neill & Filhos\tDESCONHECIDO\tDESCONHECIDO\t1\tsa"));
}

TEST_F(ThirdParties, TaxpayersOfMovementsCompleteThem) {
  AddParty("2111", "Cliente", "C", "501234567", "ES");
  AddParty("278", "Recapitulativa", "R", "", "");
  Lunder("update Contas set RCRF='RC' where ContaSP='278'");
  AddMovement("2111", "501234567", "PT");
  AddMovement("2111", "B 12345678", "ES");
  AddMovement("278", "509999999", "");
  AddMovement("278", "  ", "FR");
  AddMovement("2111", "508888888", "", 0);
  AddMovement("2111", "507777777", "", 1, "2011-01-01");
  const periods::Grid grid = Calculated(Clientes());
  ASSERT_EQ(grid.size(), 3u);
  EXPECT_EQ(grid[0].cells[kCountry], "ES");
  EXPECT_EQ(grid[0].cells[kShipCountry], "ES");
  EXPECT_THAT(grid[1].cells,
              ElementsAre("", "Desconhecido", "509999999", "Desconhecido", "", "----------", "",
                          "Desconhecido", "Desconhecido", "Desconhecido", "Desconhecido", "Desconhecido",
                          "Desconhecido", "----------", "", "", "Desconhecido", "Desconhecido",
                          "Desconhecido", "", "Desconhecido", "", "", "", "", "0", "509999999", "509999999"));
  EXPECT_EQ(grid[2].cells[kTaxId], "B12345678");
  EXPECT_EQ(grid[2].cells[kCountry], "ES");
  EXPECT_EQ(grid[2].cells[kShipCountry], "ES");
}

TEST_F(ThirdParties, SuppliersDifferInCountryAndCode) {
  AddParty("2211", "Fornecedor", "F", "600000000");
  AddParty("2212", "Proveedor", "F", "ESB1", "es");
  AddMovement("2211", "B2", "");
  periods::Grid grid = Calculated(Fornecedores());
  ASSERT_EQ(grid.size(), 3u);
  EXPECT_EQ(grid[0].cells[kCountry], "PT");
  EXPECT_EQ(grid[0].cells[kShipCountry], "PT");
  EXPECT_EQ(grid[1].cells[kCountry], "ES");
  EXPECT_EQ(grid[2].cells[kCountry], "Desconhecido");
  grid[0].cells[kTaxId] = "corrigido";
  ASSERT_TRUE(GravarTerceiros(server.Context(), period, Fornecedores(), grid));
  EXPECT_THAT(Staged("select SupplierID,SupplierTaxID,AccountID from TabSupplierPOC order by NumRegisto"),
              ElementsAre("600000000\tcorrigido\t2211", "ESB1\tESB1\t2212", "B2\tB2\tDesconhecido"));
}

TEST_F(ThirdParties, AnAccountWithoutTaxNumberStopsTheLoad) {
  AddParty("2111", "Com", "C", "501234567");
  AddParty("2112", "Sem", "C", "   ");
  EXPECT_FALSE(CalcularTerceiros(server.Context(), period, Clientes()));
  EXPECT_EQ(LastText(),
            "A conta 2112.0 não tem contribuinte definido!\n"
            "Para continuar, tem que acertar esta situação!");
  EXPECT_TRUE(CalcularTerceiros(server.Context(), period, Fornecedores()));
}

TEST_F(ThirdParties, ABlankCodeTakesTheTaxNumberOfTheRow) {
  AddParty("2111", "Cliente", "C", "501234567");
  periods::Grid grid = Calculated(Clientes());
  grid[0].cells[kCode] = " ";
  grid[0].cells[kTaxId] = "999";
  ASSERT_TRUE(GravarTerceiros(server.Context(), period, Clientes(), grid));
  auto loaded = CarregarTerceiros(server.Context(), period, Clientes());
  ASSERT_TRUE(loaded);
  EXPECT_EQ((*loaded)[0].cells[kCode], "501234567");
  EXPECT_EQ((*loaded)[0].cells[kItemKey], "501234567");
  EXPECT_EQ((*loaded)[0].cells[kTaxId], "999");
}

TEST_F(ThirdParties, ValuesAreCutToTheirWidths) {
  AddParty("2111", "Cliente", "C", "501234567");
  periods::Grid grid = Calculated(Clientes());
  for (const std::size_t column : {kTaxId, kCompanyName, kPostalCode, kCountry, kEmail}) {
    grid[0].cells[column] = std::string(99, 'e');
  }
  ASSERT_TRUE(GravarTerceiros(server.Context(), period, Clientes(), grid));
  EXPECT_EQ(server.One("Korvel0001",
                       "select len(CustomerTaxID)*1000000+len(CompanyName)*10000+len(PostalCode)*100+"
                       "len(Email) from TabCustomerPOC"),
            "20602060");
  EXPECT_EQ(server.One("Korvel0001", "select Country from TabCustomerPOC"), "EEEEEEEEEEEE");
}

TEST_F(ThirdParties, EachRequiredFieldHasItsLabel) {
  AddParty("2111", "Cliente", "C", "501234567");
  const periods::Grid grid = Calculated(Clientes());
  ASSERT_TRUE(GravarTerceiros(server.Context(), period, Clientes(), grid));
  const std::pair<std::size_t, const char*> cases[] = {{kAccountId, "Código"},
                                                       {kTaxId, "Nº Identificação Fiscal"},
                                                       {kCompanyName, "Descrição"},
                                                       {kBilingAddress, "Morada Facturação"},
                                                       {kAddressDetail, "Rua e Nº Policia"},
                                                       {kCity, "Localidade"},
                                                       {kPostalCode, "Cód. Postal"},
                                                       {kCountry, "País"},
                                                       {kShipAddressDetail, "Rua e Nº de Policia"},
                                                       {kShipCity, "Localidade"},
                                                       {kShipPostalCode, "Cód. Postal"},
                                                       {kShipCountry, "País"}};
  for (const auto& [column, label] : cases) {
    periods::Grid spoilt = grid;
    spoilt[0].cells[column] = " ";
    EXPECT_FALSE(GravarTerceiros(server.Context(), period, Clientes(), spoilt));
    EXPECT_EQ(LastText(), std::string("O Campo [") + label + "] está Vazio!\nNão pode Gravar");
    EXPECT_EQ(server.One("Korvel0001", "select count(NumRegisto) from TabCustomerPOC"), "0") << label;
  }
}

}  // namespace
}  // namespace korvel::accounting
