#include "lunder_world.h"

#include <array>

#include "data/sql_text.h"
#include "databases/company_upgrade.h"

namespace korvel::test {

namespace {

data::Parameter ValueOf(const std::string& text) {
  return text == "NULL" ? data::Parameter() : data::Parameter(text);
}

}  // namespace

LunderWorld::LunderWorld() {
  server.UseCompany("0001");
  databases::ActDBaseExecuta(server.Context(), "Korvel0001");
  server.Run("master", "create database LunderDemo");
  Lunder(ReadFile(std::filesystem::path(KORVEL_SHARED_DIR) / "sources" / "lunder.sql"));
  Lunder(
      "insert into Diarios (Codigo,Descricao) values ('SI','Saldos'),('V','Vendas'),('EN','Fim')\nGO\n"
      "insert into Configura (DiSi,DiEn) values ('SI','EN')");
  Company(
      "delete from ParamGeral\nGO\ninsert into ParamGeral (Servidor_Lunder,Login_Lunder,Password_Lunder,"
      "DBase_Lunder,CasasDec,Header_SaldoDiaAnterior,GeneralLedgerEntries_IncluirSI) values (" +
      data::Quoted(server.Name()) + ",'sa','','LunderDemo',2,'N',0)");
  Company(
      "insert into TabHeader (FiscalYear,StartDate,EndDate,TaxAccountingBasis) "
      "values ('2010','2010-01-01','2010-12-31','C')");
  server.dialogs.Clear();
}

void LunderWorld::AddAccount(std::string_view contaSp, std::string_view titulo, std::string_view tipo) {
  server.Open("LunderDemo")
      ->Execute("insert into Contas (ContaSP,ContaCP,Titulo,Tipo) values (?,?,?,?)",
                {contaSp, contaSp, titulo, tipo});
}

void LunderWorld::AddLines(const std::vector<MovDiario>& lines) {
  static constexpr std::array<std::string_view, 14> kColumns{
      "ContaSP",    "Afecta",  "Valor",        "Numero",   "Data",       "Diario",      "Descricao",
      "Utilizador", "DataSys", "Contribuinte", "ValRecap", "Integracao", "TipoMovSAFT", "SinalRecap"};
  const auto lunder = server.Open("LunderDemo");
  const auto batch = lunder->OpenBatch("MovDiario", kColumns);
  for (const MovDiario& line : lines) {
    const std::array<data::Parameter, 14> row{
        ValueOf(line.contaSp),      ValueOf(line.afecta),     ValueOf(line.valor),
        ValueOf(line.numero),       ValueOf(line.data),       ValueOf(line.diario),
        ValueOf(line.descricao),    ValueOf(line.utilizador), ValueOf(line.dataSys),
        ValueOf(line.contribuinte), ValueOf(line.valRecap),   ValueOf(line.integracao),
        ValueOf(line.tipoMovSaft),  data::Parameter(1)};
    batch->Add(row);
  }
  batch->Finish();
}

void LunderWorld::StageAccounts(const std::vector<std::string>& codes) {
  const auto company = server.Open("Korvel0001");
  for (const std::string& code : codes) {
    company->Execute(
        "insert into TabGeneralLedger (FiscalYear,StartDate,EndDate,AccountID,AccountDescription) "
        "values ('2010','2010-01-01','2010-12-31',?,'Conta')",
        {code});
  }
}

}  // namespace korvel::test
