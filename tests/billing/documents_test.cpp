#include "billing/documents.h"

#include <gmock/gmock.h>

#include <algorithm>

#include "brevant_world.h"

namespace korvel::test {
namespace {

using billing::Caller;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class Documents : public BrevantWorld {};

TEST_F(Documents, AsksInTheFormOnly) {
  AddDocument({});
  server.dialogs.answers = {1};
  EXPECT_FALSE(Run(Caller::Form));
  EXPECT_EQ(server.dialogs.questions.at(0).text, "Confirma o Processamento?");
  EXPECT_THAT(server.dialogs.questions.at(0).buttons, ElementsAre("&Sim", "&Não"));
  EXPECT_THAT(Staged("InvoiceNo"), IsEmpty());
  EXPECT_TRUE(Run(Caller::Wizard));
  EXPECT_EQ(server.dialogs.questions.size(), 1U);
  EXPECT_EQ(server.dialogs.LastFocus(), "lvwDocumentos");
  period.key = {};
  EXPECT_FALSE(Run());
}

TEST_F(Documents, StagesPeriodSectionAndStamp) {
  server.session.gUtilizador = "ana";
  AddDocument({});
  AddDocument({{"Tipo", "NC1"}, {"TotalDoc", "12.345"}, {"IVA", "2"}});
  AddDocument({{"Tipo", "NC1"}, {"Numero", "00000002"}, {"TotalDoc", "12.34"}, {"IVA", "2"}});
  AddDocument({{"Data", "2012-01-01"}, {"Ano", "2012"}});
  AddDocument({{"Tipo", "GR1"}});
  AddDocument({{"Tipo", "FO1"}});
  ASSERT_TRUE(Run()) << LastText();
  EXPECT_THAT(
      Staged(
          "FiscalYear,StartDate,EndDate,Cliente,Utilizador,NumberOfEntries,TotalDebit,TotalCredit,InvoiceNo"),
      ElementsAre("2011\t2011-01-01\t2011-12-31\t\tana\t3\t20,69\t100,00\tFT1 2011/00000001",
                  "2011\t2011-01-01\t2011-12-31\t\tana\t3\t20,69\t100,00\tNC1 2011/00000001",
                  "2011\t2011-01-01\t2011-12-31\t\tana\t3\t20,69\t100,00\tNC1 2011/00000002"));
}

TEST_F(Documents, ReplacesAnEarlierRunOfTheSameCustomer) {
  Company(
      "insert into TabSourceDocumentsGEST (FiscalYear,StartDate,EndDate,Cliente,InvoiceNo) values "
      "('2011','2011-01-01','2011-12-31',null,'old'),('2011','2011-01-01','2011-12-31','C9','other'),"
      "('2010','2010-01-01','2010-12-31','','year')");
  AddDocument({});
  for (int run = 0; run < 2; ++run) ASSERT_TRUE(Run());
  EXPECT_THAT(Staged("InvoiceNo"), ElementsAre("other", "year", "FT1 2011/00000001"));
  Brevant("delete from MovCliente");
  EXPECT_TRUE(Run()) << "a period without documents";
  EXPECT_THAT(Staged("InvoiceNo"), ElementsAre("other", "year"));
  EXPECT_THAT(server.dialogs.messages, IsEmpty());
}

TEST_F(Documents, RefusesDocumentsThatMakeABadFile) {
  struct Case {
    Record values;
    std::string basis;
    std::string fault;  // "" where it passes
  };
  const std::string unknown = ", tem um contribuinte inexistente na tabela de Custumer/Clientes";
  const std::vector<Case> cases{
      {{{"Numero", "0000000A"}}, "F", ", tem caracteres inválidos no campo NÚMERO."},
      {{{"CodPostal", " "}}, "F", ", não tem o Código Postal Definido"},
      {{{"CodPostal", "NULL"}}, "C", ", não tem o Código Postal Definido"},
      {{{"Contribuinte", "555"}}, "F", unknown},
      {{{"Contribuinte", "555"}}, "C", ""},
      {{{"Contribuinte", " 123 456 789"}}, "F", ""},
      {{{"Contribuinte", "999999990"}}, "F", ""},
      {{{"Contribuinte", "o'b"}}, "F", unknown}};
  for (const Case& c : cases) {
    Brevant("delete from MovCliente");
    SetBasis(c.basis);
    Company(
        "insert into TabSourceDocumentsGEST (FiscalYear,StartDate,EndDate,Cliente) values "
        "('2011','2011-01-01','2011-12-31','')");
    AddDocument(c.values);
    const bool passes = c.fault.empty();
    EXPECT_EQ(Run(), passes) << LastText();
    EXPECT_EQ(Staged("NumRegisto").size(), passes ? 1U : 0U) << c.fault;
    if (passes) continue;
    const std::string numero = c.values[0].first == "Numero" ? c.values[0].second : "00000001";
    EXPECT_EQ(LastText(), "O documento FT1 nº " + numero + " de 05-03-2011" + c.fault +
                              "\nNão pode continuar o processo até efectuar a respectiva alteração.");
  }
  EXPECT_FALSE(Run(Caller::Wizard));
  EXPECT_THAT(LastText(), HasSubstr("Custumer/Clientes (Contrib: o'b)\n")) << "the wizard names the number";
}

TEST_F(Documents, AnEmptyColumnWipesThePeriodOfAllCustomers) {
  Company(
      "insert into TabSourceDocumentsGEST (FiscalYear,StartDate,EndDate,Cliente,InvoiceNo) values "
      "('2011','2011-01-01','2011-12-31','C9','other'),('2010','2010-01-01','2010-12-31','','year')");
  AddDocument({});
  AddDocument({{"Numero", "00000002"}, {"Hash", ""}});
  EXPECT_FALSE(Run());
  EXPECT_THAT(Staged("InvoiceNo"), ElementsAre("year"));
  EXPECT_EQ(
      server.dialogs.messages.back(),
      (ScriptedDialogs::Box{toolkit::Icon::Critical, "AVISO",
                            "O Campo [Assinatura do Documento - HASH-(8) ] está Vazio!\nNão pode Gravar\n "
                            "Documento: FT1 2011/00000002  Contribuinte/Cliente: 123456789"}));
}

TEST_F(Documents, ALostConnectionLeavesTheEarlierOnes) {
  IncludeRemoved();
  AddDocument({});
  ASSERT_TRUE(Run()) << LastText();
  AddDocument({{"Numero", "00000003"}, {"Pais", ""}});
  AddLine({{"Numero", "00000003"}});
  AddRemoved({{"Numero", "00000002"}});
  std::size_t lost = 0;
  for (; !Losing(lost, [&] { return Run(); }); ++lost) {
    EXPECT_THAT(LastText(), HasSubstr("Perdida a ligação ao servidor"));
    const std::string at = server.statements.at(lost);
    ASSERT_THAT(Staged("InvoiceNo"), ElementsAre("FT1 2011/00000001")) << at;
  }
  EXPECT_GT(lost, 20U) << "it was lost at every statement of the run";
  EXPECT_THAT(Staged("InvoiceNo"),
              ElementsAre("FT1 2011/00000001", "FT1 2011/00000002", "FT1 2011/00000003"));
}

TEST_F(Documents, AFailedRunLeavesTheEarlierOnes) {
  AddDocument({});
  ASSERT_TRUE(Run());
  AddDocument({{"Numero", "00000002"}});
  server.progress.cancelAfter = server.progress.shown;
  EXPECT_FALSE(Run());
  EXPECT_EQ(server.progress.open, 0);
  server.progress.cancelAfter = INT64_MAX;

  Brevant("update TabTipoMov set CopiaDocumentoOriginal=1 where Codigo='FT1'");
  Brevant("update MovCliente set HashControl='" + std::string(40, 'h') + "'");
  EXPECT_FALSE(Run()) << "a value that is too long";
  EXPECT_THAT(Staged("InvoiceNo,HashControl"), ElementsAre("FT1 2011/00000001\t1"));

  AddLine({{"Numero", "00000002"}, {"Unidade", "Caixa"}});
  Brevant("drop table MovProduto");
  EXPECT_FALSE(Run());
  EXPECT_THAT(LastText(), HasSubstr("MovProduto"));
  EXPECT_THAT(Staged("InvoiceNo,HashControl"), ElementsAre("FT1 2011/00000001\t1"));
}

TEST_F(Documents, FollowsTheNumbering) {
  AddDocument({});
  AddDocument({{"Numero", "00000004"}});
  AddRemoved({{"Numero", "00000002"}, {"DataSys", "2011-03-06 09:08:07"}});
  AddRemovedLine({{"Numero", "00000002"}, {"Codigo", "P9"}});
  ASSERT_TRUE(Run()) << LastText();
  EXPECT_EQ(Staged("InvoiceNo").size(), 2U);
  IncludeRemoved();
  ASSERT_TRUE(Run()) << LastText();
  EXPECT_THAT(Staged("InvoiceNo,InvoiceStatus,CustomerID,SystemEntriedate,ProductCode,NumberOfEntries"),
              ElementsAre("FT1 2011/00000001\tN\t123456789\t2011-03-05T10:20:30\tS/Produto\t2",
                          "FT1 2011/00000002\tA\t999999990\t2011-03-06T09:08:07\tP9\t2",
                          "FT1 2011/00000004\tN\t123456789\t2011-03-05T10:20:30\tS/Produto\t2"));
}

TEST_F(Documents, RemovedDocumentsOutsideAGapStayOut) {
  IncludeRemoved();
  AddDocument({{"Numero", "00000003"}});
  AddDocument({{"Numero", "00000008"}});
  AddDocument({{"Numero", "00000006"}, {"Data", "2010-12-31"}});
  AddRemoved({{"Numero", "00000002"}});                          // before the first
  AddRemoved({{"Numero", "00000003"}});                          // present
  AddRemoved({{"Numero", "00000004"}, {"Data", "2012-01-01"}});  // of another period
  AddRemoved({{"Numero", "5"}});                                 // not eight digits
  AddRemoved({{"Numero", "00000006"}});                          // present in another period
  AddRemoved({{"Numero", "00000007"}, {"Ano", "2010"}});         // of another year
  AddRemoved({{"Numero", "00000007"}, {"Tipo", "NC1"}});         // of another type
  AddRemoved({{"Numero", "00000009"}});                          // behind the last
  ASSERT_TRUE(Run()) << LastText();
  EXPECT_THAT(Staged("InvoiceNo"), ElementsAre("FT1 2011/00000003", "FT1 2011/00000008"));
}

TEST_F(Documents, NumbersOfOtherCustomersAreNoGaps) {
  IncludeRemoved();
  period.cliente = "C1";
  AddDocument({});
  AddDocument({{"Numero", "00000002"}, {"Codigo", "C2"}});
  AddDocument({{"Numero", "00000006"}});
  AddRemoved({{"Numero", "00000003"}, {"Entidade", "C2"}});
  AddRemoved({{"Numero", "00000004"}});
  AddRemoved({{"Numero", "00000002"}});
  Company(
      "insert into TabSourceDocumentsGEST (FiscalYear,StartDate,EndDate,Cliente,InvoiceNo) values "
      "('2011','2011-01-01','2011-12-31','','all')");
  ASSERT_TRUE(Run()) << LastText();
  EXPECT_THAT(Staged("InvoiceNo,Cliente,NumberOfEntries,TotalCredit"),
              ElementsAre("all\t\tNULL\tNULL", "FT1 2011/00000001\tC1\t2\t200,00",
                          "FT1 2011/00000004\tC1\t2\t200,00", "FT1 2011/00000006\tC1\t2\t200,00"));
}

TEST_F(Documents, AddsTheMomentOfRemovalWhereItIsMissing) {
  IncludeRemoved();
  Brevant("alter table LOG_MovTerceiro drop column DataSys");
  AddDocument({});
  AddDocument({{"Numero", "00000003"}});
  AddRemoved({{"Numero", "00000002"}});
  ASSERT_TRUE(Run()) << LastText();
  EXPECT_EQ(Staged("SystemEntriedate").at(1), "2011-03-05T00:00:00");
  EXPECT_EQ(server.One("BrevantDemo", "select DataSys from LOG_MovTerceiro"), "");
}

TEST_F(Documents, RepairsCountriesOfAllPeriodsOfTheCustomer) {
  Brevant("insert into Clientes (Codigo,Pais) values ('O''C','ES'),('C3',''),('C4','FR')");
  AddDocument({{"Codigo", "O'C"}, {"Pais", ""}});
  AddDocument({{"Codigo", "O'C"}, {"Pais", "XX"}, {"Data", "2009-01-01"}, {"Ano", "2009"}});
  AddDocument({{"Codigo", "C3"}, {"Pais", ""}, {"Numero", "00000002"}});
  AddDocument({{"Codigo", "C4"}, {"Pais", "NULL"}, {"Numero", "00000003"}});
  AddDocument({{"Codigo", "C4"}, {"Pais", ""}, {"Numero", "00000004"}, {"Data", "2012-01-01"}});
  ASSERT_TRUE(Run()) << LastText();
  EXPECT_THAT(server.Rows("BrevantDemo", "select Codigo,Pais from MovCliente order by NumRegisto"),
              ElementsAre("O'C\tES", "O'C\tES", "C3\t", "C4\tNULL", "C4\t"));
}

TEST_F(Documents, NamesTheLedgerEntryUnderTheIntegratedBasis) {
  SetBasis("I");
  AddDocument({{"Contribuinte", "555"}});
  EXPECT_FALSE(Run());
  EXPECT_THAT(LastText(), HasSubstr("O Campo [Identificador da Transacção (Data+Diário+Número)-(15) ]"));
  server.Run("LunderDemo",
             "insert into MovDiario (Data,Numero,Diario) values ('2011-03-06','000000001FT1','X'),"
             "('2011-03-05','000000001FT1','VD'),('2011-03-05','000000001FT1','V2')");
  ASSERT_TRUE(Run()) << LastText();
  EXPECT_THAT(Staged("TransactionID"), ElementsAre("2011-03-05 VD 000000001FT1"));
}

TEST_F(Documents, HostileTextsPassUnharmed) {
  const std::string hostile = "x'); drop table MovCliente; --\"?&<";
  Brevant(
      "insert into TabTipoMov (Codigo,Modulo,TipoMovClassifica,ControloHash) values ('F''?','CL','FT',1)");
  AddDocument({{"Tipo", "F'?"}, {"Carga", hostile}, {"Descarga", "?'?"}});
  AddLine(
      {{"Tipo", "F'?"}, {"Descricao", hostile}, {"Codigo", "P'?"}, {"Identifica", "'?"}, {"NumGuia", "'?'"}});
  Add("ImpostosMovProduto",
      "CliFor=C;Processa=S;Tipo=F'?;Numero=00000001;Ano=2011;Identifica='?;Produto=P'?;CodigoImposto=I'?;"
      "Imposto=1;ValorUnitario=1;TabIva=2;TaxaIva=23",
      {});
  ASSERT_TRUE(Run()) << LastText();
  EXPECT_THAT(Staged("InvoiceNo,ProductCode,ProductDescription,ShipTo_DeliveryId"),
              ElementsAre("F'? 2011/00000001\tP'?\t" + hostile + "\t?'?",
                          "F'? 2011/00000001\tPRO_I'?\tSem Descrição\t?'?"));
}

TEST_F(Documents, StatementsDoNotGrowWithDocuments) {
  IncludeRemoved();
  const auto sent = [&] {
    server.statements.clear();
    EXPECT_TRUE(Run()) << LastText();
    return server.statements.size();
  };
  const auto fill = [&](int from, int to) {
    for (int i = from; i <= to; i += 2) {
      const std::string numero = std::to_string(10000000 + i);
      for (const char* tipo : {"FT1", "NC1"}) {
        AddDocument({{"Tipo", tipo}, {"Numero", numero}, {"Pais", ""}});
        AddRemoved({{"Tipo", tipo}, {"Numero", std::to_string(10000001 + i)}});
        if (i % 4 == 1) AddLine({{"Tipo", tipo}, {"Numero", numero}, {"NumEncomenda", numero}});
      }
    }
  };
  fill(1, 9);
  const auto few = sent();
  fill(11, 59);
  EXPECT_LE(sent(), few);
}

TEST_F(Documents, ASourceInUseIsReadAllTheSame) {
  AddDocument({});
  AddLine({});
  AddLine({{"Codigo", "P2"}});
  const data::StatementObserver record = server.servers.observer;
  std::size_t moment = 0;
  for (bool met = true; met; moment += 3) {
    // Somebody sells just before the statement of that number.
    const std::string numero = std::to_string(10000001 + moment);
    std::size_t sent = 0;
    server.servers.observer = [&](std::string_view) {
      if (sent++ != moment) return;
      AddDocument({{"Numero", numero}});
      AddLine({{"Numero", numero}});
    };
    ASSERT_TRUE(Run()) << LastText();
    met = sent > moment;
    const auto rows = Staged("InvoiceNo");
    EXPECT_EQ(std::ranges::count(rows, "FT1 2011/00000001"), 2) << moment;
    EXPECT_GE(rows.size(), 2 + moment / 3) << "what was sold before has gone";
  }
  server.servers.observer = record;
  EXPECT_GT(moment, 20U) << "the run sent few statements";
}

TEST_F(Documents, WithoutALocationNothingHappens) {
  AddDocument({});
  Company("update ParamGeral set DBase_Brevant=''");
  EXPECT_FALSE(Run());
  Company("update ParamGeral set DBase_Brevant='NoSuch'");
  EXPECT_FALSE(Run());
  EXPECT_THAT(LastText(), HasSubstr("Não foi possível estabelecer ligação com a empresa NoSuch!"));
  EXPECT_THAT(Staged("NumRegisto"), IsEmpty());
}

}  // namespace
}  // namespace korvel::test
