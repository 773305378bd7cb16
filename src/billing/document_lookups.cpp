#include "billing/document_lookups.h"

#include <fmt/format.h>

#include "data/sql_text.h"
#include "toolkit/numbers.h"
#include "toolkit/text.h"

namespace korvel::billing {
namespace {

bool ReadsOne(std::string_view text) {
  return toolkit::NumericPrefix(text) == data::Currency::FromWhole(1);
}

void ReadTypes(data::Connection& brevant, DocumentLookups& lookups) {
  ForEachKey(brevant,
             "select Codigo,TipoMovClassifica,AfectaCli,ControloHash,CopiaDocumentoOriginal,"
             "CopiaDocumentoOriginal_Manual from TabTipoMov With (NoLock) order by NumRegisto",
             [&](const data::Recordset& row) {
               KeepFirst(lookups.types, row.Text(0),
                         DocumentType{std::string(toolkit::TrimRight(row.Text(1))),
                                      std::string(toolkit::TrimRight(row.Text(2))),
                                      !toolkit::NumericPrefix(row.Text(3)).IsZero(), ReadsOne(row.Text(4)),
                                      ReadsOne(row.Text(5))});
             });
}

void ReadCustomers(data::Connection& brevant, DocumentLookups& lookups) {
  ForEachKey(brevant,
             "Select Codigo,AutoFacturacao=IsNull(AutoFacturacao,0),Pais from Clientes With (NoLock) "
             "order by NumRegisto",
             [&](const data::Recordset& row) {
               KeepFirst(lookups.customers, row.Text(0),
                         DocumentCustomer{std::string(row.Text(1)), std::string(row.Text(2))});
             });
}

void ReadOrders(data::Connection& brevant, std::string_view lineTable, const std::string& dates,
                DocumentLookups& lookups) {
  ForEachKey(
      brevant,
      fmt::format(
          "select NumEnc,DataPedido from CliMovEnc With (NoLock) where NumEnc in (select NumEncomenda "
          "from {} With (NoLock) where NumEncomenda<>''{}) order by NumRegisto",
          lineTable, dates),
      [&](const data::Recordset& row) { lookups.orderDates.Keep(row.Text(0), std::string(row.Text(1))); });
}

/// The lines that name another line, and neither an order nor a delivery note, which would go before it.
void ReadRelatedLines(data::Connection& brevant, std::string_view lineTable, const std::string& dates,
                      DocumentLookups& lookups) {
  ForEachKey(
      brevant,
      fmt::format("Select Identifica,Tipo,Ano,Numero,Data from MovProduto With (NoLock) where Identifica in "
                  "(select IdentificaRelacionado from {} With (NoLock) where IdentificaRelacionado<>'' and "
                  "isnull(NumGuia,'')='' and isnull(NumEncomenda,'')=''{}) order by NumRegisto",
                  lineTable, dates),
      [&](const data::Recordset& row) {
        lookups.relatedLines.Keep(
            row.Text(0),
            {fmt::format("{} {}/{}", row.Text(1), row.Text(2), row.Text(3)), std::string(row.Text(4))});
      });
}

}  // namespace

std::string TransactionKey(std::string_view data, std::string_view numero) {
  return fmt::format("{}|{}", data, numero);
}

void ReadBrevantLookups(data::Connection& brevant, const BillingPeriod& period, bool removed,
                        DocumentLookups& lookups) {
  ReadTypes(brevant, lookups);
  ReadCustomers(brevant, lookups);
  ReadTexts(brevant, "TabIVA", "Codigo", "Saft_TaxExemptionReason", lookups.exemptionReasons);
  ReadTexts(brevant, "PagaComo", "Codigo", "ClassificaSaft", lookups.paymentMechanisms);
  ReadTexts(brevant, "ImpostosConfig", "Codigo", "Descricao", lookups.chargeNames);
  for (const std::string_view lineTable : {"MovProduto", "LOG_MovProduto"}) {
    ReadOrders(brevant, lineTable, period.Dates(), lookups);
    ReadRelatedLines(brevant, lineTable, period.Dates(), lookups);
    if (!removed) break;
  }
}

void ReadCompanyLookups(data::Connection& company, const periods::PeriodKey& period,
                        DocumentLookups& lookups) {
  ReadTexts(company, "TabArmazens", "Armazem", "Classificacao", lookups.regions);
  ForEachKey(
      company,
      "select CodigoBrevant,TaxType,TaxCountryRegion,TaxCode from TabTaxTableGEST With (NoLock) where " +
          period.Condition() + " order by NumRegisto",
      [&](const data::Recordset& row) {
        KeepFirst(lookups.taxes, row.Text(0),
                  TaxKeys{std::string(row.Text(1)), std::string(row.Text(2)), std::string(row.Text(3))});
      });
}

void ReadTransactions(data::Connection& lunder, const periods::PeriodKey& period, DocumentLookups& lookups) {
  ForEachKey(
      lunder,
      fmt::format("Select Numero,Data,Diario from MovDiario With (NoLock) where Data>={} and Data<={} and "
                  "Numero like '0%' order by NumRegisto",
                  data::Quoted(period.startDate), data::Quoted(period.endDate)),
      [&](const data::Recordset& row) {
        lookups.transactions.Keep(TransactionKey(row.Text(1), row.Text(0)),
                                  fmt::format("{} {} {}", row.Text(1), row.Text(2), row.Text(0)));
      });
}

}  // namespace korvel::billing
