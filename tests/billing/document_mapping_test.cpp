#include "billing/document_mapping.h"

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <stdexcept>
#include <vector>

#include "support/money.h"

namespace korvel::billing {
namespace {

using test::Money;
using testing::ElementsAre;

std::string Repeated(std::string_view text, int times) {
  std::string repeated;
  for (int i = 0; i < times; ++i) repeated += text;
  return repeated;
}

/// Maps documents against look-ups of its own; a test changes what it is about.
class DocumentMapping : public testing::Test {
 protected:
  DocumentMapping() {
    lookups.types["FT"] = {"FT", "D+", true, false, false};
    lookups.types["NC"] = {"NC", "C+", true, false, false};
    lookups.types["VD"] = {"VD", "S+", true, false, false};
    lookups.taxes["2"] = {"IVA", "PT", "NOR"};
    lookups.taxes["0"] = {"IVA", "PT", "ISE"};
    lookups.exemptionReasons["0"] = "Artigo 53";
    lookups.regions["A1"] = "PT-AC";
    lookups.customers["C1"] = {"0", "PT"};
    lookups.customers["AUTO"] = {"1", "PT"};
    constants.productDescriptionDefault = "Sem Descrição";
    constants.numberOfEntries = 7;
    constants.totalDebit = "1,00";
    constants.totalCredit = "22,50";
    DocumentHeader& header = document.header;
    header.codigo = "C1";
    header.tipo = "FT";
    header.numero = "00000012";
    header.ano = "2011";
    header.data = "2011-03-05";
    header.dataVenc = "2011-04-05";
    header.systemEntry = "2011-03-05T10:20:30";
    header.pagaComo = "NU";
    header.valor = Money("100");
    header.desconto = Money("5");
    header.iva = Money("21.85");
    header.totalDoc = Money("116.85");
    header.valorIrs = {};
    header.tabIva1 = "2";
    header.taxIva1 = Money("23");
    header.contribuinte = " 123 456 789 ";
    header.armazem = "A1";
    header.hash = "abc";
    header.hashControl = "1";
  }

  static DocumentLine Line() {
    DocumentLine line;
    line.codigo = "P1";
    line.descricao = "Parafuso";
    line.quantNormal = Money("4");
    line.unidade = "Kg";
    line.valorIliq = Money("100");
    line.totalDesconto = Money("5");
    line.ivaTabela = "2";
    line.ivaTaxa = Money("23");
    line.armazem = "A1";
    line.identifica = "L1";
    line.descLinha = "Obs";
    return line;
  }

  std::vector<StagedRow> Map(Side side = Side::Credit, std::string classe = "FT") {
    std::vector<StagedRow> rows;
    DocumentMapper mapper(lookups, constants);
    mapper.Map(document, {side, std::move(classe)}, [&](StagedRow& row) {
      rows.push_back(row);
      return true;
    });
    return rows;
  }
  StagedRow Row(Side side = Side::Credit, std::string classe = "FT") {
    const std::vector<StagedRow> rows = Map(side, std::move(classe));
    EXPECT_EQ(rows.size(), 1U);
    return rows.at(0);
  }

  DocumentLookups lookups;
  MappingConstants constants;
  SourceDocument document;
};

TEST_F(DocumentMapping, WritesEveryColumnOfALine) {
  document.header.carga = Repeated("ã", 40);
  document.lines = {Line()};
  const StagedRow row = Row();
  std::string filled;
  for (std::size_t i = 0; i < kMappedColumns; ++i) {
    if (!row.Values()[i].empty()) filled += fmt::format("{}={};", MappedColumns()[i].name, row.Values()[i]);
  }
  EXPECT_EQ(filled,
            "NumberOfEntries=7;TotalDebit=1,00;TotalCredit=22,50;InvoiceNo=FT 2011/00000012;"
            "InvoiceStatus=N;Hash=abc;HashControl=1;Period=3;InvoiceDate=2011-03-05;InvoiceType=FT;"
            "SelfBillingIndicator=0;SystemEntriedate=2011-03-05T10:20:30;CustomerID=123456789;"
            "ShipTo=123456789;ShipTo_DeliveryDate=2011-03-05;ShipTo_StreetName=Desconhecido;"
            "ShipTo_AddressDetail=Desconhecido;ShipTo_City=Desconhecido;ShipTo_PostalCode=Desconhecido;"
            "ShipTo_Region=Desconhecido;ShipTo_Country=Desconhecido;ShipFrom_DeliveryId=" +
                Repeated("ã", 30) +
                ";ShipFrom_DeliveryDate=2011-03-05;ShipFrom_StreetName=Desconhecido;"
                "ShipFrom_AddressDetail=Desconhecido;ShipFrom_City=Desconhecido;"
                "ShipFrom_PostalCode=Desconhecido;ShipFrom_Region=Desconhecido;ShipFrom_Country=Desconhecido;"
                "LineNumber=00001;ProductCode=P1;ProductDescription=Parafuso;Quantity=4;UnitOfMeasure=Kg;"
                "UnitPrice=23,75;TaxPointDate=2011-03-05;Description=Obs;CreditAmount=95;TaxType=IVA;"
                "TaxCountryRegion=PT;TaxCode=NOR;TaxPercentage=23;SettlementAmount=5;TaxPayable=21,85;"
                "NetTotal=95;GrossTotal=116,85;SettlementDate=2011-04-05;");
}

TEST_F(DocumentMapping, PutsTheValueOnTheSideOfTheClass) {
  document.lines = {Line()};
  EXPECT_EQ(Row(Side::Debit)[Col::DebitAmount], "95");
  EXPECT_EQ(Row(Side::Debit)[Col::CreditAmount], "");
}

TEST_F(DocumentMapping, LaterStatesOverwriteEarlierOnes) {
  struct Case {
    const char *codigo, *classe;
    bool removed;
    const char *status, *selfBilling;
  };
  for (const Case& c : {Case{"C1", "FT", false, "N", "0"}, Case{"AUTO", "FT", false, "S", "1"},
                        Case{"AUTO", "TD", false, "F", "1"}, Case{"C1", "TV", false, "F", "0"},
                        Case{"", "TV", true, "A", "0"}, Case{"MISSING", "FT", false, "N", "0"}}) {
    document.header.codigo = c.codigo;
    document.header.removed = c.removed;
    const StagedRow row = Row(Side::Credit, c.classe);
    EXPECT_EQ(row[Col::InvoiceStatus], c.status) << c.codigo << c.classe;
    EXPECT_EQ(row[Col::SelfBillingIndicator], c.selfBilling) << c.codigo;
  }
}

TEST_F(DocumentMapping, TakesTheFinalConsumerForNumbersWithoutDigits) {
  for (const auto& [contribuinte, id] : std::map<std::string, std::string>{
           {"", "999999990"}, {"   ", "999999990"}, {"Desconhecido", "999999990"}, {"PT 5", "PT5"}}) {
    document.header.contribuinte = contribuinte;
    EXPECT_EQ(Row()[Col::CustomerID], id) << contribuinte;
  }
}

TEST_F(DocumentMapping, FollowsTheRulesOfSignatures) {
  struct Case {
    const char *hash, *data;
    DocumentType type;
    const char *expectedHash, *expectedControl;
  };
  const DocumentType plain{"FT", "D+", false, false, false};
  const DocumentType signing{"FT", "D+", true, false, false};
  const DocumentType manual{"FT", "D+", true, true, true};
  const DocumentType copy{"FT", "D+", true, true, false};
  for (const Case& c :
       {Case{"abc", "2011-01-01", signing, "abc", "1"}, Case{"", "2011-01-01", signing, "", "1"},
        Case{" ", "2011-01-01", plain, "0", "0"}, Case{"abc", "2011-01-01", plain, "abc", "1"},
        Case{"abc", "2011-01-01", manual, "abc", "1-FTM A/12"},
        Case{"abc", "2011-01-01", copy, "abc", "1-FTD A/12"}, Case{"abc", "2010-12-31", manual, "0", "0"}}) {
    lookups.types["FT"] = c.type;
    document.header.hash = c.hash;
    document.header.data = c.data;
    document.header.serieRecuperado = "A";
    document.header.numeroRecuperado = "12";
    const StagedRow row = Row();
    EXPECT_EQ(row[Col::Hash], c.expectedHash) << c.hash << c.data;
    EXPECT_EQ(row[Col::HashControl], c.expectedControl) << c.hash << c.data;
  }
}

TEST_F(DocumentMapping, SettlesByTheEffectOfTheType) {
  lookups.paymentMechanisms["NU"] = "NU";
  struct Case {
    const char *effect, *pagaComo, *date, *mechanism;
  };
  for (const Case& c : {Case{"D+", "NU", "2011-04-05", ""}, Case{"C-", "NU", "2011-04-05", ""},
                        Case{"S+", "NU", "", "NU"}, Case{"S-", "nu ", "", "NU"}, Case{"S-", "", "", ""},
                        Case{"S-", "XX", "", ""}, Case{"", "NU", "", ""}}) {
    lookups.types["FT"] = {"FT", c.effect, true, false, false};
    document.header.pagaComo = c.pagaComo;
    const StagedRow row = Row();
    EXPECT_EQ(row[Col::SettlementDate], c.date) << c.effect;
    EXPECT_EQ(row[Col::PaymentMechanism], c.mechanism) << c.effect << c.pagaComo;
  }
}

TEST_F(DocumentMapping, JoinsReferencesOfTypesThatRefer) {
  document.links = {{"FT", "2011", "00000001"}, {"FT", "2010", "00000002"}};
  document.header.tipo = "NC";
  EXPECT_EQ(Row()[Col::References], "FT 2011/00000001; FT 2010/00000002");
  document.header.tipo = "FT";
  EXPECT_EQ(Row()[Col::References], "");
}

TEST_F(DocumentMapping, NamesTheOrderOfALine) {
  lookups.orderDates.Keep("77", "2010-12-30");
  lookups.relatedLines.Keep("R9", {"GR 2011/00000009", "2011-02-01"});
  struct Case {
    const char *encomenda, *guia, *relacionado, *number, *date;
  };
  for (const Case& c :
       {Case{"", "", "", "", ""}, Case{"77", "", "R9", "ENCO 2010/77", "2010-12-30"},
        Case{"77", "5", "R9", "GT 2011/5", "2011-03-01"}, Case{"78", "", "R9", "ENCO /78", ""},
        Case{" ", " ", "R9", "GR 2011/00000009", "2011-02-01"}, Case{"", "", "R8", "", ""}}) {
    DocumentLine line = Line();
    line.numEncomenda = c.encomenda;
    line.numGuia = c.guia;
    line.identificaRelacionado = c.relacionado;
    line.tipoGuia = "GT";
    line.dataGuia = "2011-03-01";
    document.lines = {line};
    const StagedRow row = Row();
    EXPECT_EQ(row[Col::OriginatingON], c.number);
    EXPECT_EQ(row[Col::OrderDate], c.date);
    EXPECT_EQ(row[Col::TaxPointDate], "2011-03-01");
  }
}

TEST_F(DocumentMapping, FillsBlankDescriptions) {
  struct Case {
    std::string descricao;
    std::optional<std::string> descLinha;
    std::string product, description;
  };
  const std::string sixty = Repeated("é", 60);
  for (const Case& c :
       {Case{"", std::nullopt, "Sem Descrição", "Sem Descrição"},
        Case{"Porca", std::nullopt, "Porca", "Porca"}, Case{"Porca", " ", "Porca", "Porca"},
        Case{"", "Nota", "Sem Descrição", "Nota"}, Case{sixty + "x", sixty + "y", sixty, sixty}}) {
    DocumentLine line = Line();
    line.descricao = c.descricao;
    line.descLinha = c.descLinha;
    document.lines = {line};
    EXPECT_EQ(Row()[Col::ProductDescription], c.product);
    EXPECT_EQ(Row()[Col::Description], c.description);
  }
}

TEST_F(DocumentMapping, LooksTaxesUpOrTakesTheExemption) {
  struct Case {
    const char *table, *rate;
    const char* expected;  // type, region, code, percentage, reason
  };
  for (const Case& c : {Case{"2", "23", "IVA|PT|NOR|23|"}, Case{"0", "0", "IVA|PT|ISE|0|Artigo 53"},
                        Case{"9", "6", "|||6|"}, Case{"", "0", "IVA|PT-AC|ISE|0|Desconhecido"},
                        Case{" ", "23", "IVA|PT-AC|ISE|0|Desconhecido"}, Case{"9", "0", "|||0|"}}) {
    DocumentLine line = Line();
    line.ivaTabela = c.table;
    line.ivaTaxa = Money(c.rate);
    document.lines = {line};
    const StagedRow row = Row();
    EXPECT_EQ(row[Col::TaxType] + "|" + row[Col::TaxCountryRegion] + "|" + row[Col::TaxCode] + "|" +
                  row[Col::TaxPercentage] + "|" + row[Col::TaxExemptionReason],
              c.expected)
        << c.table;
  }
}

TEST_F(DocumentMapping, FindsTheReasonUnderABlankTaxCode) {
  lookups.exemptionReasons[""] = "Artigo 9";
  DocumentLine line = Line();
  line.ivaTabela = "";
  document.lines = {line};
  EXPECT_EQ(Row()[Col::TaxExemptionReason], "Artigo 9");
}

TEST_F(DocumentMapping, PutsChargesBehindTheirLine) {
  lookups.chargeNames["ECO"] = "Ecovalor";
  DocumentLine second = Line();
  second.codigo = "P2";
  second.identifica = "L2";
  document.lines = {Line(), second};
  document.charges = {{"L2", "p2", "ECO", Money("3"), Money("0.125"), "", {}},
                      {"L1", "P1", "XXX", Money("1"), Money("1"), "2", Money("23")},
                      {"L1", "OTHER", "ECO", Money("9"), Money("9"), "2", Money("23")}};
  std::vector<std::string> lines;
  for (const StagedRow& row : Map()) {
    lines.push_back(row[Col::LineNumber] + " " + row[Col::ProductCode] + " " + row[Col::ProductDescription] +
                    " " + row[Col::Description] + " " + row[Col::UnitPrice] + " " + row[Col::CreditAmount] +
                    " " + row[Col::TaxCode] + " " + row[Col::SettlementAmount]);
  }
  EXPECT_THAT(lines, ElementsAre("00001 P1 Parafuso Obs 23,75 95 NOR 5",
                                 "00002 PRO_XXX Sem Descrição Sem Descrição 1 1 NOR 0",
                                 "00003 P2 Parafuso Obs 23,75 95 NOR 5",
                                 "00004 PRO_ECO Ecovalor Ecovalor 0,13 3 ISE 0"));
}

TEST_F(DocumentMapping, GivesOneRowWithoutLines) {
  document.header.observa = "Primeira\r\nSegunda";
  const StagedRow present = Row();
  EXPECT_EQ(present[Col::ProductCode], "S/Produto");
  EXPECT_EQ(present[Col::ProductDescription], "Sem Descrição");
  EXPECT_EQ(present[Col::Description], "Primeira\r\nSegunda");
  EXPECT_EQ(present[Col::Quantity] + present[Col::UnitOfMeasure], "1Uni");
  EXPECT_EQ(present[Col::UnitPrice] + "|" + present[Col::CreditAmount], "95|95");
  EXPECT_EQ(present[Col::SettlementAmount], "0");
  document.header.observa = " ";
  EXPECT_EQ(Row()[Col::Description], "Omisso");
}

TEST_F(DocumentMapping, ShowsTheRemarksOfARemovedDocument) {
  document.header.removed = true;
  document.header.systemEntry = "";
  document.header.observa = "Primeira\r\nSegunda";
  const StagedRow row = Row();
  EXPECT_EQ(row[Col::ProductDescription], "Primeira  Segunda");
  EXPECT_EQ(row[Col::Description], "Primeira  Segunda");
  EXPECT_EQ(row[Col::SystemEntriedate], "2011-03-05T00:00:00");
  document.header.observa = "";
  EXPECT_EQ(Row()[Col::Description], "Sem Descrição");
}

TEST_F(DocumentMapping, MapsFreeText) {
  document.freeText =
      FreeTextItem{"SERV", "Serviços", "Linha um dois", Money("50"), Money("7.5"), "2", Money("6")};
  const StagedRow row = Row();
  EXPECT_EQ(row[Col::ProductCode] + "|" + row[Col::ProductDescription] + "|" + row[Col::Description],
            "SERV|Serviços|Linha um dois");
  EXPECT_EQ(row[Col::UnitPrice] + "|" + row[Col::CreditAmount] + "|" + row[Col::TaxPercentage],
            "42,5|42,5|6");
  document.freeText = FreeTextItem{"SERV", "", " ", {}, {}, "", {}};
  EXPECT_EQ(Row()[Col::Description], "Sem Descrição");
  EXPECT_EQ(Row()[Col::TaxCountryRegion], "PT-AC");
}

TEST_F(DocumentMapping, NamesTheLedgerEntryOfIntegratedPeriodsOnly) {
  lookups.transactions.Keep(TransactionKey("2011-03-05", "000000012FT"), "2011-03-05 VD 000000012FT");
  EXPECT_EQ(Row()[Col::TransactionID], "");
  constants.basis = periods::Basis::Integrated;
  EXPECT_EQ(Row()[Col::TransactionID], "2011-03-05 VD 000000012FT");
  document.header.numero = "00000013";
  EXPECT_EQ(Row()[Col::TransactionID], "");
}

TEST_F(DocumentMapping, RoundsOnceToTheDecimalsOfTheCompany) {
  DocumentLine line = Line();
  line.valorIliq = Money("10.004");
  line.totalDesconto = Money("0.0001");
  line.quantNormal = Money("2.125");
  document.lines = {line};
  EXPECT_EQ(Row()[Col::CreditAmount], "10");
  EXPECT_EQ(Row()[Col::Quantity], "2.13");
  EXPECT_EQ(Row()[Col::UnitPrice], "4,71");
  constants.casasDec = 4;
  EXPECT_EQ(Row()[Col::CreditAmount], "10,0039");
}

TEST_F(DocumentMapping, StopsAtTheFirstRefusal) {
  document.lines = {Line(), Line(), Line()};
  int rows = 0;
  DocumentMapper mapper(lookups, constants);
  EXPECT_FALSE(mapper.Map(document, {Side::Credit, "FT"}, [&](StagedRow&) { return ++rows < 2; }));
  EXPECT_EQ(rows, 2);
}

TEST(UnitPriceTest, IsTheExactQuotientHalfToEven) {
  struct Case {
    const char *valor, *quantidade, *price;
  };
  for (const Case& c :
       {Case{"10", "0", "0"}, Case{"10", "3", "3.3333"}, Case{"20", "3", "6.6667"}, Case{"0.0001", "2", "0"},
        Case{"0.0003", "2", "0.0002"}, Case{"-0.0003", "2", "-0.0002"}, Case{"-10", "-4", "2.5"},
        Case{"922337203685477.5807", "1", "922337203685477.5807"}, Case{"1", "0.0001", "10000"}}) {
    EXPECT_EQ(UnitPrice(Money(c.valor), Money(c.quantidade)).ToText(), c.price)
        << c.valor << "/" << c.quantidade;
  }
  EXPECT_THROW(UnitPrice(Money("922337203685477.5807"), Money("0.5")), std::overflow_error);
}

}  // namespace
}  // namespace korvel::billing
