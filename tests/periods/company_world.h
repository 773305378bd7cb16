#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "data/sql_text.h"
#include "databases/company_upgrade.h"
#include "periods/period_editor.h"
#include "support/scripted_world.h"

namespace korvel::test {

/// A server with the company 0001 and the two source databases, still without tables, where its parameters may point.
struct CompanyWorld {
  CompanyWorld() {
    server.UseCompany("0001");
    databases::ActDBaseExecuta(context, "Korvel0001");
    server.Run("master", "create database BrevantDemo\nGO\ncreate database LunderDemo");
    server.dialogs.Clear();
  }

  std::vector<std::string> Rows(std::string_view query) { return server.Rows("Korvel0001", query); }
  std::string One(std::string_view query) { return server.One("Korvel0001", query); }
  void Script(std::string_view script) { server.Run("Korvel0001", script); }

  /// A row of parameters that points to both source databases.
  void PointToSources() {
    const std::string at = data::Quoted(server.Name()) + ",'sa','',";
    Script(
        "insert into ParamGeral "
        "(Servidor_Brevant,Login_Brevant,Password_Brevant,DBase_Brevant,Servidor_Lunder,"
        "Login_Lunder,Password_Lunder,DBase_Lunder,CasasDec) values (" +
        at + "'BrevantDemo'," + at + "'LunderDemo',2)");
  }

  /// A new period of that year with nothing missing.
  periods::PeriodHeader Filled(std::string_view year, std::string_view name = "Padaria D'Avila, Lda") {
    periods::PeriodHeader header = periods::OpenHeader(context, periods::HeaderMode::New, 0)->header;
    periods::ChangeKind(header, "C");
    for (const char* column : {"CompanyID", "TaxRegistrationNumber"}) header[column] = "512345678";
    for (const char* column : {"AddressDetail", "City", "BusinessName"}) header[column] = "Rua d'Alegria";
    header["CompanyName"] = name;
    header["PostalCode"] = "9500-001";
    header["FiscalYear"] = year;
    periods::LeaveFiscalYear(server.clock, header);
    server.dialogs.Clear();
    return header;
  }

  TestServer server;
  session::Context context = server.Context();
};

}  // namespace korvel::test
