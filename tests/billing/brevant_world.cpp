#include "brevant_world.h"

#include <algorithm>

#include "data/sql_text.h"
#include "databases/company_upgrade.h"

namespace korvel::test {

namespace {

constexpr std::string_view kDocument =
    "Tipo=FT1;Numero=00000001;Ano=2011;Data=2011-03-05;DataVenc=2011-04-05;PagaComo=NU;"
    "Desconto=0;IVA=23;TotalDoc=123;ValorIRS=0;TabIva1=2;Armazem=A1;Hash=abc;HashControl=1";

constexpr std::string_view kLine =
    "Tipo=FT1;Numero=00000001;Ano=2011;Data=2011-03-05;Codigo=P1;Descricao=Porca;QuantNormal=1;"
    "Unidade=Uni;ValorIliq=100;TotalDesconto=0;IvaTabela=2;IvaTaxa=23;Armazem=A1";

constexpr std::string_view kCustomer =
    "Codigo=C1;Descricao=Cliente Um;Contribuinte=501234567;Contacto=Ana;Policia=7;Rua=Rua A;"
    "Morada=Rua A, 7;CodPost=9500-100;Distrito=Leste;Pais=PT;Expedicao_Policia=8;"
    "Expedicao_Rua=Rua B;Expedicao_Morada=Rua B, 8;Expedicao_CodPost=9600-200;"
    "Expedicao_Distrito=Norte;Expedicao_Pais=ES;Telefone=296;Fax=297;Email=ana@um.pt;Site=um.pt;"
    "Diversos=0;AutoFacturacao=1;ContaContabil=poc;ContaContabilSNC=snc;ContaContabilB=poc B";

}  // namespace

Record With(std::string_view texts, const Record& values) {
  Record defaults;
  while (!texts.empty()) {
    const std::string_view cell = texts.substr(0, texts.find(';'));
    const auto equals = cell.find('=');
    defaults.emplace_back(cell.substr(0, equals), cell.substr(equals + 1));
    texts.remove_prefix(std::min(texts.size(), cell.size() + 1));
  }
  for (const auto& [column, value] : values) {
    const auto same = [&, name = column](const auto& entry) { return entry.first == name; };
    const auto found = std::find_if(defaults.begin(), defaults.end(), same);
    if (found == defaults.end()) {
      defaults.emplace_back(column, value);
    } else {
      found->second = value;
    }
  }
  return defaults;
}

BrevantWorld::BrevantWorld() {
  server.UseCompany("0001");
  databases::ActDBaseExecuta(server.Context(), "Korvel0001");
  const auto sources = std::filesystem::path(KORVEL_SHARED_DIR) / "sources";
  for (const auto& [database, file] :
       {std::pair{"BrevantDemo", "brevant.sql"}, {"LunderDemo", "lunder.sql"}}) {
    server.Run("master", std::string("create database ") + database);
    server.Run(database, ReadFile(sources / file));
  }
  const std::string name = data::Quoted(server.Name());
  Company(
      "delete from ParamGeral\nGO\ninsert into ParamGeral (Servidor_Brevant,Login_Brevant,Password_Brevant,"
      "DBase_Brevant,Servidor_Lunder,Login_Lunder,Password_Lunder,DBase_Lunder,CasasDec,"
      "ProductDescriptionDefault,SourceDocuments_DescLinhaDoc,IncluirDocumentosAnulados) values (" +
      name + ",'sa','','BrevantDemo'," + name + ",'sa','','LunderDemo',2,'Sem Descrição','ObsLinha','N')");
  SetBasis("F");
  Brevant(
      "alter table LOG_MovTerceiro add DataSys varchar(50)\nGO\n"
      "insert into TabTipoMov (Codigo,Modulo,TipoMovClassifica,AfectaCli,ControloHash) values "
      "('FT1','CL','FT','D+',1),('NC1','CL','NC','C+',1),('VD1','FC','VD','S+',1),('TD1','CL','TD','S-',1),"
      "('GR1','CL','@@@','',0),('FO1','FO','FT','',0)\nGO\n"
      "insert into TabIVA (Codigo,Saft_TaxExemptionReason) values ('2',''),('0','Artigo 53')\nGO\n"
      "insert into Clientes (Codigo,Pais,AutoFacturacao) values ('C1','PT',0)");
  Company(
      "insert into TabTaxTableGEST "
      "(FiscalYear,StartDate,EndDate,CodigoBrevant,TaxType,TaxCountryRegion,TaxCode) "
      "values ('2011','2011-01-01','2011-12-31','2','IVA','PT','NOR'),"
      "('2011','2011-01-01','2011-12-31','0','IVA','PT','ISE')\nGO\n"
      "insert into TabArmazens (Armazem,Classificacao) values ('A1','PT')\nGO\n"
      "insert into TabCustomerGEST (FiscalYear,StartDate,EndDate,CustomerID) values "
      "('2011','2011-01-01','2011-12-31','123456789')");
  server.dialogs.Clear();
}

void BrevantWorld::SetBasis(std::string_view basis) {
  Company("delete from TabHeader");
  AddPeriod(period, basis);
}

void BrevantWorld::AddPeriod(const billing::BillingPeriod& added, std::string_view basis) {
  server.Open("Korvel0001")
      ->Execute(
          "insert into TabHeader (FiscalYear,StartDate,EndDate,TaxAccountingBasis,Cliente) values "
          "(?,?,?,?,?)",
          {added.key.fiscalYear, added.key.startDate, added.key.endDate, basis, added.cliente});
}

void BrevantWorld::IncludeRemoved() {
  Company("update ParamGeral set IncluirDocumentosAnulados='S'");
}

void BrevantWorld::Add(std::string_view table, std::string_view defaults, const Record& values) {
  std::string names;
  std::string marks;
  std::vector<data::Parameter> bound;
  const Record record = With(defaults, values);
  for (const auto& [column, value] : record) {
    names += (names.empty() ? "" : ",") + std::string(column);
    marks += marks.empty() ? "?" : ",?";
    bound.push_back(value == "NULL" ? data::Parameter() : data::Parameter(value));
  }
  if (!brevant_) brevant_ = server.Open("BrevantDemo");
  brevant_->Execute("insert into " + std::string(table) + " (" + names + ") values (" + marks + ")", bound);
}

void BrevantWorld::AddDocument(const Record& values) {
  static const std::string defaults =
      std::string(kDocument) +
      ";Codigo=C1;CodPostal=9500-100;Pais=PT;Contribuinte=123456789;DataSys=2011-03-05 10:20:30;Valor=100;"
      "TaxIva1=23";
  Add("MovCliente", defaults, values);
}

void BrevantWorld::AddRemoved(const Record& values) {
  static const std::string defaults = std::string(kDocument) + ";Entidade=C1;ValorIliq=100;TaxaIva1=23";
  Add("LOG_MovTerceiro", defaults, values);
}

void BrevantWorld::AddLine(const Record& values) {
  Add("MovProduto", kLine, values);
}

void BrevantWorld::AddRemovedLine(const Record& values) {
  Add("LOG_MovProduto", kLine, values);
}

void BrevantWorld::AddCustomer(const Record& values) {
  Add("Clientes", kCustomer, values);
}

void BrevantWorld::AddProduct(const Record& values) {
  Add("Produtos", "Codigo=P1;Descricao=Porca;Servico=0;Portes=0;Grupo=G", values);
}

void BrevantWorld::AddTax(const Record& values) {
  Add("TabIVA",
      "Codigo=2;Descricao=Normal;CompraVenda=V;Zona=PT;Taxa=23;Saft_TaxType=IVA;SAFT_TaxCountryRegion=PT;"
      "Saft_TaxCode=NOR;Saft_Description=Taxa Normal",
      values);
}

void BrevantWorld::ClearMasters() {
  Brevant("delete from Clientes\nGO\ndelete from TabIVA");
  Company("delete from TabCustomerGEST\nGO\ndelete from TabTaxTableGEST");
}

bool BrevantWorld::Losing(std::size_t statement, const std::function<bool()>& work) {
  const data::StatementObserver record = server.servers.observer;
  server.statements.clear();
  server.servers.observer = [&](std::string_view text) {
    record(text);
    if (server.statements.size() == statement + 1)
      throw data::Error(data::Failure::NoServer, "Perdida a ligação ao servidor");
  };
  const bool done = work();
  server.servers.observer = record;
  return done;
}

}  // namespace korvel::test
