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

/// What rows of 2025 are looked for; `d` is the document or the line that they are of.
struct Oddity {
  std::string_view what;
  std::string_view rows;
  std::string_view where;
};

constexpr std::string_view kDocuments = "MovCliente d";
constexpr std::string_view kBuyers = "MovCliente d inner join Clientes c on c.Codigo=d.Codigo";
constexpr std::string_view kLines = "MovProduto d";
constexpr std::string_view kTaxes = "MovProduto d inner join TabIVA v on v.Codigo=d.IvaTabela";

constexpr Oddity kOddities[] = {
    {"a buyer of a general account", kBuyers, "c.Diversos='1' and d.Contribuinte<>'999999990'"},
    {"the final consumer", kDocuments, "d.Contribuinte='999999990'"},
    {"a self-billing customer", kBuyers, "c.AutoFacturacao=1"},
    {"a customer abroad",
     "MovProduto d inner join MovCliente m on m.Tipo=d.Tipo and m.Numero=d.Numero and m.Ano=d.Ano",
     "m.Pais<>'PT' and d.IvaTabela='E0'"},
    {"a removed document between present ones",
     "LOG_MovTerceiro d inner join LOG_MovProduto l on l.Tipo=d.Tipo and l.Numero=d.Numero and l.Ano=d.Ano "
     "inner join MovCliente a on a.Tipo=d.Tipo and a.Ano=d.Ano and a.Numero<d.Numero "
     "inner join MovCliente b on b.Tipo=d.Tipo and b.Ano=d.Ano and b.Numero>d.Numero",
     "1=1"},
    {"a charge",
     "ImpostosMovProduto d inner join ImpostosConfig k on k.Codigo=d.CodigoImposto "
     "inner join MovProduto l on l.Identifica=d.Identifica and l.Codigo=d.Produto",
     "1=1"},
    {"a discount", kLines, "d.TotalDesconto>0"},
    {"a free text", "MovItem d", "d.Linha1<>''"},
    {"a document without lines",
     "MovCliente d left outer join MovProduto l on l.Tipo=d.Tipo and l.Numero=d.Numero and l.Ano=d.Ano "
     "left outer join MovItem i on i.Tipo=d.Tipo and i.Numero=d.Numero and i.Ano=d.Ano",
     "l.NumRegisto is null and i.NumRegisto is null and d.Tipo like 'FA%'"},
    {"an exemption with a reason", kTaxes, "v.Taxa=0 and v.Saft_TaxExemptionReason<>''"},
    {"a rate of the mainland", kTaxes, "v.SAFT_TaxCountryRegion='PT'"},
    {"a rate of the Azores", kTaxes, "v.SAFT_TaxCountryRegion='PT-AC'"},
    {"a rate of Madeira", kTaxes, "v.SAFT_TaxCountryRegion='PT-MA'"},
    {"an exemption without a code", kLines, "d.IvaTabela=''"},
    {"an order", "MovProduto d inner join CliMovEnc e on e.NumEnc=d.NumEncomenda", "1=1"},
    {"a delivery note", kLines, "d.NumGuia<>'' and d.TipoGuia<>'' and d.DataGuia<>''"},
    {"carriage", "MovProduto d inner join Produtos p on p.Codigo=d.Codigo", "p.Portes=1"},
    {"a line that takes another back",
     "MovProduto d inner join MovProduto o on o.Identifica=d.IdentificaRelacionado", "1=1"},
    {"a copy made by hand", kDocuments, "d.Tipo='FRM' and d.NumeroRecuperado<>''"},
    {"a copy of another system's", kDocuments, "d.Tipo='FRD' and d.NumeroRecuperado<>''"},
    {"a product without a name", kLines, "d.Descricao=''"},
    {"a document without a country", kDocuments, "d.Pais=''"},
    {"a document of no sale", kDocuments, "d.Tipo='ORC'"},
};

struct Found {
  std::string_view what;
  std::string_view query;
};

TEST_F(BillingBooks, HoldEveryKindAndOddityHoweverSmall) {
  for (const Oddity& each : kOddities) {
    const auto rows =
        smallest_->Brevant(fmt::format("select 1 from {} where {} and d.Ano='2025'", each.rows, each.where));
    EXPECT_FALSE(rows.empty()) << each.what;
  }
  const Found others[] = {
      {"several series of invoices",
       "select 1 where (select count(distinct Tipo) from MovCliente where Tipo like 'FA%' and Ano='2025')=3"},
      {"a number that nothing bears",
       "select 1 where (select convert(int,max(Numero)) from MovCliente where Tipo='FAC' and Ano='2025')>"
       "(select count(NumRegisto) from MovCliente where Tipo='FAC' and Ano='2025')+"
       "(select count(NumRegisto) from LOG_MovTerceiro where Tipo='FAC' and Ano='2025')"},
      {"a credit note that names its invoice",
       "select 1 from Atribui where Tipo0 like 'NC%' and Tipo1 like 'FA%' and Ano0='2025'"},
      {"an invoice that names its credit note",
       "select 1 from Atribui where Tipo0 like 'FA%' and Tipo1 like 'NC%' and Ano0='2025'"},
      {"a credit note of two invoices",
       "select Num0 from Atribui where Tipo0 like 'NC%' and Ano0='2025' group by Tipo0,Num0 "
       "having count(NumRegisto)>1"},
  };
  for (const Found& row : others) EXPECT_FALSE(smallest_->Brevant(row.query).empty()) << row.what;
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
  const struct {
    std::string_view rows, column, table;
    std::string_view condition = "1=1";
    std::string_view key = "Codigo";
  } links[] = {{"MovCliente", "Codigo", "Clientes"},
               {"MovCliente", "Tipo", "TabTipoMov"},
               {"MovCliente", "PagaComo", "PagaComo", "r.PagaComo<>''"},
               {"MovCliente", "CodPostal", "V_TabPostal", "r.CodPostal<>'0000000000'"},
               {"MovProduto", "Codigo", "Produtos"},
               {"MovProduto", "NumEncomenda", "CliMovEnc", "r.NumEncomenda<>''", "NumEnc"},
               {"MovItem", "Item", "TabItem"},
               {"Produtos", "Grupo", "TabGrupoPro"},
               {"Produtos", "Familia", "TabFamPro"},
               {"Produtos", "SubFamilia", "TabSubFamPro"}};
  for (const auto& [rows, column, table, condition, key] : links) {
    const auto lost = books_->Brevant(fmt::format(
        "select r.{0} from {1} r left outer join {2} t on t.{3}=r.{0} where {4} and t.{3} is null", column,
        rows, table, key, condition));
    EXPECT_EQ(lost, std::vector<std::string>{}) << rows << ' ' << column;
  }
  const Found cases[] = {
      {"codes of sales",
       "select l.IvaTabela from MovProduto l left outer join TabIVA v on v.Codigo=l.IvaTabela and "
       "v.CompraVenda='V' where l.IvaTabela<>'' and v.Codigo is null"},
      {"documents of links",
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
