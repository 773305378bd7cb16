#include <gtest/gtest.h>

#include <fmt/format.h>

#include <map>
#include <string>

#include "demo/books_world.h"
#include "toolkit/progress_scope.h"

namespace korvel::demo {
namespace {

/// Documents of sale with the columns of their type.
constexpr std::string_view kSales =
    " from MovCliente m inner join TabTipoMov t on t.Codigo=m.Tipo and t.TipoMovClassifica<>'' and "
    "t.TipoMovClassifica<>'@@@' ";

class BillingBooks : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    smallest_ = new Books(1);
    books_ = new Books(3000);
  }
  static void TearDownTestSuite() {
    delete books_;
    delete smallest_;
  }
  static Books* smallest_;  // made once: the tests only read them
  static Books* books_;
};
Books* BillingBooks::smallest_ = nullptr;
Books* BillingBooks::books_ = nullptr;

struct Amounts {
  data::Currency gross, discount, vat;
  auto operator<=>(const Amounts&) const = default;
};

std::ostream& operator<<(std::ostream& out, const Amounts& amounts) {
  return out << amounts.gross.ToText() << " - " << amounts.discount.ToText() << ", " << amounts.vat.ToText();
}

/// Sums by document of rows that begin with type, year and number, then gross, discount and VAT.
void AddUp(Books& books, std::string_view query, std::map<std::string, Amounts>& sums) {
  const auto connection = books.server.Open("Brevant");
  for (auto rows = connection->Query(query); !rows.Eof(); rows.MoveNext()) {
    Amounts& sum = sums[fmt::format("{} {}/{}", rows.Text(0), rows.Text(1), rows.Text(2))];
    sum.gross += rows.Money(3);
    sum.discount += rows.Money(4);
    sum.vat += rows.Money(5);
  }
}

TEST_F(BillingBooks, TotalsAgreeWithLines) {
  std::map<std::string, Amounts> totals;
  std::map<std::string, Amounts> lines;
  AddUp(*books_, fmt::format("select Tipo,Ano,Numero,Valor,Desconto,IVA{}", kSales), totals);
  AddUp(*books_, "select Tipo,Ano,Numero,ValorIliq,Desconto,IVA from LOG_MovTerceiro", totals);
  for (const char* table : {"MovProduto", "LOG_MovProduto"}) {
    AddUp(*books_,
          fmt::format("select Tipo,Ano,Numero,ValorIliq,TotalDesconto,ValorIVA from {} where Tipo<>'ORC'",
                      table),
          lines);
  }
  AddUp(*books_, "select Tipo,Ano,Numero,Imposto,0,ValorIva from ImpostosMovProduto", lines);
  // What has no lines has its amounts in the header alone; the tax of a free text is that of the header too.
  AddUp(*books_,
        fmt::format("select m.Tipo,m.Ano,m.Numero,i.ValorInc,i.ValorDesc,m.IVA{} inner join MovItem i on "
                    "i.Tipo=m.Tipo and i.Ano=m.Ano and i.Numero=m.Numero",
                    kSales),
        lines);
  std::size_t without = 0;
  for (const auto& [document, total] : totals) {
    const auto found = lines.find(document);
    without += found == lines.end();
    if (found == lines.end()) continue;
    EXPECT_EQ(found->second, total) << document;
  }
  EXPECT_GT(without, 0U);
  EXPECT_EQ(lines.size() + without, totals.size()) << "lines without a document";
  EXPECT_EQ(
      books_->Brevant("select Tipo,Numero from MovCliente where TotalDoc<>Valor-Desconto+IVA or TotalDoc<=0"),
      std::vector<std::string>{});
}

TEST_F(BillingBooks, TaxOfEveryLineIsThatOfItsCode) {
  for (const char* table : {"MovProduto", "LOG_MovProduto"}) {
    EXPECT_EQ(
        books_->Brevant(fmt::format(
            "select l.NumRegisto from {} l left outer join TabIVA v on v.Codigo=l.IvaTabela where "
            "isnull(v.Taxa,0)<>l.IvaTaxa or l.ValorIVA<>round((l.ValorIliq-l.TotalDesconto)*l.IvaTaxa/100,2)",
            table)),
        std::vector<std::string>{})
        << table;
  }
}

TEST_F(BillingBooks, EveryDocumentIsIntegratedInTheLedger) {
  std::map<std::string, data::Currency> entries;  // debits by date and number
  const auto lunder = books_->server.Open("Lunder");
  auto rows = lunder->Query("select Data,Numero,Valor from MovDiario where Integracao=1 and Afecta='D'");
  for (; !rows.Eof(); rows.MoveNext())
    entries[fmt::format("{} {}", rows.Text(0), rows.Text(1))] += rows.Money(2);
  std::size_t documents = 0;
  for (const std::string& source : {fmt::format("select m.Data,m.Numero,m.Tipo,m.TotalDoc{}", kSales),
                                    std::string("select Data,Numero,Tipo,TotalDoc from LOG_MovTerceiro")}) {
    const auto brevant = books_->server.Open("Brevant");
    for (auto row = brevant->Query(source); !row.Eof(); row.MoveNext(), ++documents) {
      const std::string entry = fmt::format("{} 0{}{}", row.Text(0), row.Text(1), row.Text(2));
      EXPECT_EQ(entries[entry].ToText(), row.Money(3).ToText()) << entry;
    }
  }
  EXPECT_EQ(entries.size(), documents) << "integrated entries without a document";
}

struct Found {
  std::string_view what;
  std::string_view query;  // of the documents of 2025
};

TEST_F(BillingBooks, HoldEveryKindAndOddityHoweverSmall) {
  const Found cases[] = {
      {"several series of invoices",
       "select 1 where (select count(distinct Tipo) from MovCliente where Tipo like "
       "'FA%' and Ano='2025')=3"},
      {"a buyer of a general account",
       "select 1 from MovCliente m inner join Clientes c on c.Codigo=m.Codigo where "
       "c.Diversos='1' and m.Contribuinte<>'999999990' and m.Ano='2025'"},
      {"the final consumer", "select 1 from MovCliente where Contribuinte='999999990' and Ano='2025'"},
      {"a self-billing customer",
       "select 1 from MovCliente m inner join Clientes c on c.Codigo=m.Codigo where "
       "c.AutoFacturacao=1 and m.Ano='2025'"},
      {"a customer abroad",
       "select 1 from MovCliente m inner join MovProduto l on l.Tipo=m.Tipo and "
       "l.Numero=m.Numero and l.Ano=m.Ano where m.Pais<>'PT' and l.IvaTabela='E0' and m.Ano='2025'"},
      {"a removed document between present ones",
       "select 1 from LOG_MovTerceiro r inner join LOG_MovProduto l on l.Tipo=r.Tipo and l.Numero=r.Numero "
       "and "
       "l.Ano=r.Ano inner join MovCliente a on a.Tipo=r.Tipo and a.Ano=r.Ano and a.Numero<r.Numero inner "
       "join "
       "MovCliente b on b.Tipo=r.Tipo and b.Ano=r.Ano and b.Numero>r.Numero where r.Ano='2025'"},
      {"a number that nothing bears",
       "select 1 where (select convert(int,max(Numero)) from MovCliente where Tipo='FAC' and Ano='2025')>"
       "(select count(NumRegisto) from MovCliente where Tipo='FAC' and Ano='2025')+"
       "(select count(NumRegisto) from LOG_MovTerceiro where Tipo='FAC' and Ano='2025')"},
      {"a credit note that names its invoice",
       "select 1 from Atribui where Tipo0 like 'NC%' and Tipo1 like 'FA%' and "
       "Ano0='2025'"},
      {"an invoice that names its credit note",
       "select 1 from Atribui where Tipo0 like 'FA%' and Tipo1 like 'NC%' "
       "and Ano0='2025'"},
      {"a credit note of two invoices",
       "select Num0 from Atribui where Tipo0 like 'NC%' and Ano0='2025' group by "
       "Tipo0,Num0 having count(NumRegisto)>1"},
      {"a charge",
       "select 1 from ImpostosMovProduto c inner join ImpostosConfig k on k.Codigo=c.CodigoImposto "
       "inner join MovProduto l on l.Identifica=c.Identifica and l.Codigo=c.Produto where c.Ano='2025'"},
      {"a discount", "select 1 from MovProduto where TotalDesconto>0 and Ano='2025'"},
      {"a free text", "select 1 from MovItem where Ano='2025' and Linha1<>''"},
      {"a document without lines",
       "select 1 from MovCliente m left outer join MovProduto l on l.Tipo=m.Tipo and l.Numero=m.Numero and "
       "l.Ano=m.Ano left outer join MovItem i on i.Tipo=m.Tipo and i.Numero=m.Numero and i.Ano=m.Ano where "
       "l.NumRegisto is null and i.NumRegisto is null and m.Tipo like 'FA%' and m.Ano='2025'"},
      {"an exemption with a reason",
       "select 1 from MovProduto l inner join TabIVA v on v.Codigo=l.IvaTabela where "
       "v.Taxa=0 and v.Saft_TaxExemptionReason<>'' and l.Ano='2025'"},
      {"an exemption without a code", "select 1 from MovProduto where IvaTabela='' and Ano='2025'"},
      {"an order",
       "select 1 from MovProduto l inner join CliMovEnc e on e.NumEnc=l.NumEncomenda where l.Ano='2025'"},
      {"a delivery note",
       "select 1 from MovProduto where NumGuia<>'' and TipoGuia<>'' and DataGuia<>'' and "
       "Ano='2025'"},
      {"carriage",
       "select 1 from MovProduto l inner join Produtos p on p.Codigo=l.Codigo where p.Portes=1 and "
       "l.Ano='2025'"},
      {"a line that takes another back",
       "select 1 from MovProduto l inner join MovProduto o on "
       "o.Identifica=l.IdentificaRelacionado where l.Ano='2025'"},
      {"a copy made by hand",
       "select 1 from MovCliente where Tipo='FRM' and NumeroRecuperado<>'' and Ano='2025'"},
      {"a copy of another system's",
       "select 1 from MovCliente where Tipo='FRD' and NumeroRecuperado<>'' and "
       "Ano='2025'"},
      {"a product without a name", "select 1 from MovProduto where Descricao='' and Ano='2025'"},
      {"a document without a country", "select 1 from MovCliente where Pais='' and Ano='2025'"},
      {"a document of no sale", "select 1 from MovCliente where Tipo='ORC' and Ano='2025'"},
  };
  for (const Found& row : cases) EXPECT_FALSE(smallest_->Brevant(row.query).empty()) << row.what;
  for (const char* region : {"PT", "PT-AC", "PT-MA"}) {
    EXPECT_FALSE(smallest_
                     ->Brevant(fmt::format("select 1 from MovProduto l inner join TabIVA v on "
                                           "v.Codigo=l.IvaTabela where v.SAFT_TaxCountryRegion='{}'",
                                           region))
                     .empty())
        << region;
  }
  for (const char* year : {"2024", "2025"}) {
    EXPECT_EQ(
        smallest_->Brevant(fmt::format("select distinct t.TipoMovClassifica{} where m.Ano='{}' order by "
                                       "t.TipoMovClassifica",
                                       kSales, year)),
        (std::vector<std::string>{"AA", "DA", "FT", "NC", "ND", "TD", "TV", "VD"}))
        << year;
  }
}

TEST_F(BillingBooks, NameNothingThatIsNotThere) {
  const Found cases[] = {
      {"customers",
       "select m.Codigo from MovCliente m left outer join Clientes c on c.Codigo=m.Codigo where "
       "c.Codigo is null"},
      {"types",
       "select m.Tipo from MovCliente m left outer join TabTipoMov t on t.Codigo=m.Tipo where t.Codigo is "
       "null"},
      {"products",
       "select l.Codigo from MovProduto l left outer join Produtos p on p.Codigo=l.Codigo where "
       "p.Codigo is null"},
      {"groups",
       "select p.Codigo from Produtos p left outer join TabGrupoPro g on g.Codigo=p.Grupo left outer join "
       "TabFamPro f on f.Codigo=p.Familia left outer join TabSubFamPro s on s.Codigo=p.SubFamilia where "
       "g.Codigo is null or f.Codigo is null or s.Codigo is null"},
      {"items",
       "select i.Item from MovItem i left outer join TabItem t on t.Codigo=i.Item where t.Codigo is null"},
      {"codes of sales",
       "select l.IvaTabela from MovProduto l left outer join TabIVA v on v.Codigo=l.IvaTabela and "
       "v.CompraVenda='V' where l.IvaTabela<>'' and v.Codigo is null"},
      {"payments",
       "select m.PagaComo from MovCliente m left outer join PagaComo p on p.Codigo=m.PagaComo where "
       "m.PagaComo<>'' and p.Codigo is null"},
      {"orders",
       "select l.NumEncomenda from MovProduto l left outer join CliMovEnc e on e.NumEnc=l.NumEncomenda "
       "where l.NumEncomenda<>'' and e.NumEnc is null"},
      {"postal codes",
       "select m.CodPostal from MovCliente m left outer join V_TabPostal p on p.Codigo=m.CodPostal "
       "where m.CodPostal<>'0000000000' and p.Codigo is null"},
      {"links",
       "select Num1 from Atribui a left outer join MovCliente m on m.Tipo=a.Tipo1 and m.Numero=a.Num1 and "
       "m.Ano=a.Ano1 where m.Codigo is null"},
      {"postal codes twice", "select Codigo from TabPostal group by Codigo having count(NumRegisto)>1"},
      {"numbers twice", "select Numero from MovCliente group by Tipo,Ano,Numero having count(NumRegisto)>1"},
  };
  for (const Found& row : cases)
    EXPECT_EQ(books_->Brevant(row.query), std::vector<std::string>{}) << row.what;
  EXPECT_EQ(books_->Brevant("select distinct len(Hash) from MovCliente where HashControl='1'"),
            std::vector<std::string>{"172"});
}

TEST_F(BillingBooks, SharesCustomersAndTheirAccountsWithTheLedger) {
  const std::string column = "ContaContabilSNC,replace(Contribuinte,' ','')";
  auto billed = books_->Brevant("select " + column +
                                " from Clientes where isnull(Diversos,'')<>'1' order by "
                                "ContaContabilSNC");
  const auto kept = books_->Lunder(
      "select ContaSP,replace(Contribuinte,' ','') from Contas where CliFor='C' and ContaSP like '2111%' "
      "order by "
      "ContaSP");
  EXPECT_EQ(billed, kept);
}

TEST(BooksInStep, HaveAFifthAsManyDocumentsAsLinesAndAsManyDocumentLines) {
  const Books books(8000);
  EXPECT_NEAR(static_cast<double>(books.summary.documents), 1600, 160);
  EXPECT_NEAR(static_cast<double>(books.summary.documentLines), 8000, 800);
}

TEST(BooksInStep, AreTheSameWhereverTheyAreMade) {
  Books first(700, 2024);
  Books second(700, 2024);
  for (const char* table : {"Contas", "MovDiario", "TaxasIva"}) {
    const std::string all = std::string("select * from ") + table + " order by NumRegisto";
    EXPECT_EQ(first.Lunder(all), second.Lunder(all)) << table;
  }
  for (const char* table : {"Clientes", "MovCliente", "MovProduto", "LOG_MovTerceiro", "Atribui"}) {
    const std::string all = std::string("select * from ") + table + " order by NumRegisto";
    EXPECT_EQ(first.Brevant(all), second.Brevant(all)) << table;
  }
}

TEST(BooksInStep, AreLeftEmptyByACancelledRun) {
  test::TestServer server;
  server.Run("master", "create database Lunder\nGO\ncreate database Brevant");
  server.progress.cancelAfter = 0;
  const auto lunder = server.Open("Lunder");
  const auto brevant = server.Open("Brevant");
  EXPECT_THROW(FillBooks(*lunder, *brevant, {}, server.progress), toolkit::Cancelled);
  for (const char* database : {"Lunder", "Brevant"}) {
    EXPECT_EQ(server.Rows(database, "select name from sysobjects where xtype='U'"),
              std::vector<std::string>{})
        << database;
  }
  EXPECT_EQ(server.progress.open, 0);
}

TEST(BooksInStep, TakeNoMoreStatementsForMoreLines) {
  Books small(1000);
  Books large(9000);
  // Rows travel in batches of at least 500, so that more rows may take some batches more, not statements a row.
  EXPECT_LT(large.server.statements.size(), small.server.statements.size() + 3 * 9000 / 500 + 10);
}

}  // namespace
}  // namespace korvel::demo
