#include <fmt/format.h>

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "billing/document_rows.h"
#include "billing/documents.h"
#include "periods/company_tables.h"
#include "periods/staged_tables.h"
#include "session/connections.h"
#include "session/failures.h"
#include "session/lookups.h"
#include "toolkit/progress_scope.h"

namespace korvel::billing {
namespace {

using periods::Alignment;
using periods::Column;

/// The list shows the document's state and signature behind all else, and does not know what came to the table later.
constexpr std::array kReviewColumns{
    Column{"Nº Registo", 0, Alignment::Left, "NumRegisto"},
    Column{"Documentos de Venda", 1500, Alignment::Left, "SalesInvoices"},
    Column{"N.º Total de Documentos", 1500, Alignment::Right, "NumberOfEntries"},
    Column{"Somatório a Débito", 1200, Alignment::Right, "TotalDebit"},
    Column{"Somatório a Crédito", 1200, Alignment::Right, "TotalCredit"},
    Column{"Documento de Venda", 500, Alignment::Left, "Invoice"},
    Column{"Número do Documento", 1500, Alignment::Left, "InvoiceNo"},
    Column{"Mês Contabilistico", 1000, Alignment::Centre, "Period"},
    Column{"Data da Venda", 1000, Alignment::Centre, "InvoiceDate"},
    Column{"Tipo de Documento", 1000, Alignment::Left, "InvoiceType"},
    Column{"Dt de Gravação do Registo", 1200, Alignment::Left, "SystemEntriedate"},
    Column{"Chave Única Mov. Contabilisticos", 1500, Alignment::Left, "TransactionID"},
    Column{"Cód. Cliente", 1200, Alignment::Left, "CustomerID"},
    Column{"Local e Data de Entrega", 1500, Alignment::Left, "ShipTo"},
    Column{"Cód. de Entrega da Mercadoria", 1200, Alignment::Left, "ShipTo_DeliveryId"},
    Column{"Dt de Envio Merc.", 1000, Alignment::Left, "ShipTo_DeliveryDate"},
    Column{"Morada de Envio", 2000, Alignment::Left, "ShipTo_Address"},
    Column{"N.º de Polícia", 1000, Alignment::Left, "ShipTo_BuildingNo"},
    Column{"Nome da Rua", 1500, Alignment::Left, "ShipTo_StreetName"},
    Column{"Nome da Rua e N.º de Polícia", 1500, Alignment::Left, "ShipTo_AddressDetail"},
    Column{"Localidade", 1500, Alignment::Left, "ShipTo_City"},
    Column{"Cód. Postal", 1000, Alignment::Left, "ShipTo_PostalCode"},
    Column{"Distrito", 1200, Alignment::Left, "ShipTo_Region"},
    Column{"País", 1200, Alignment::Left, "ShipTo_Country"},
    Column{"Local e Data de Carga", 1500, Alignment::Left, "ShipFrom"},
    Column{"Cód. de Carga da Mercadoria", 1200, Alignment::Left, "ShipFrom_DeliveryId"},
    Column{"Dt de Carga Merc.", 1000, Alignment::Left, "ShipFrom_DeliveryDate"},
    Column{"Morada de Carga", 2000, Alignment::Left, "ShipFrom_Address"},
    Column{"N.º de Polícia - Carga", 1000, Alignment::Left, "ShipFrom_BuildingNo"},
    Column{"Nome da Rua - Carga", 1500, Alignment::Left, "ShipFrom_StreetName"},
    Column{"Nome da Rua e N.º de Polícia - Carga", 1500, Alignment::Left, "ShipFrom_AddressDetail"},
    Column{"Localidade - Carga", 1500, Alignment::Left, "ShipFrom_City"},
    Column{"Cód. Postal - Carga", 1000, Alignment::Left, "ShipFrom_PostalCode"},
    Column{"Distrito - Carga", 1200, Alignment::Left, "ShipFrom_Region"},
    Column{"País - Carga", 1200, Alignment::Left, "ShipFrom_Country"},
    Column{"Linhas", 500, Alignment::Left, "Line"},
    Column{"N.º de Linha", 1000, Alignment::Left, "LineNumber"},
    Column{"Referências da Encomenda", 1000, Alignment::Left, "OrderReferences"},
    Column{"N.º da Encomenda / Guia", 1500, Alignment::Left, "OriginatingON"},
    Column{"Dt da Encomenda / Guia", 1000, Alignment::Left, "OrderDate"},
    Column{"Cód. do Produto", 1200, Alignment::Left, "ProductCode"},
    Column{"Descrição do Produto", 2000, Alignment::Left, "ProductDescription"},
    Column{"Quantidade", 1000, Alignment::Right, "Quantity"},
    Column{"Unidade", 1000, Alignment::Left, "UnitOfMeasure"},
    Column{"Preço Unitário", 1200, Alignment::Right, "UnitPrice"},
    Column{"Dt do Acto Tributável", 1000, Alignment::Left, "TaxPointDate"},
    Column{"Referências", 1500, Alignment::Left, "References"},
    Column{"Nota de Crédito", 500, Alignment::Left, "CreditNote"},
    Column{"Referência", 1000, Alignment::Left, "Reference"},
    Column{"Motivo", 1000, Alignment::Left, "Reason"},
    Column{"Descrição da Linha", 2000, Alignment::Left, "Description"},
    Column{"Valor a Débito", 1200, Alignment::Right, "DebitAmount"},
    Column{"Valor a Crédito", 1200, Alignment::Right, "CreditAmount"},
    Column{"Imposto", 500, Alignment::Left, "Tax"},
    Column{"Tipo de Imposto", 1000, Alignment::Left, "TaxType"},
    Column{"Código do Imposto", 1000, Alignment::Left, "TaxCode"},
    Column{"Percentagem", 1000, Alignment::Right, "TaxPercentage"},
    Column{"Valor do Desconto", 1200, Alignment::Right, "SettlementAmount"},
    Column{"Totais do Documento", 500, Alignment::Left, "DocumentTotals"},
    Column{"Total do Imposto", 1200, Alignment::Right, "TaxPayable"},
    Column{"Total sem Imposto", 1200, Alignment::Right, "NetTotal"},
    Column{"Total com Imposto", 1200, Alignment::Right, "GrossTotal"},
    Column{"Moeda", 500, Alignment::Left, "Currency"},
    Column{"Cód. da Moeda", 1000, Alignment::Left, "CurrencyCode"},
    Column{"Valor a Crédito na Moeda", 1200, Alignment::Right, "CurrencyCreditAmount"},
    Column{"Valor a Débito na Moeda", 1200, Alignment::Right, "CurrencyDebitAmount"},
    Column{"Pagamento", 500, Alignment::Left, "Settlement"},
    Column{"Acordos de Desconto", 1000, Alignment::Left, "SettlementDiscount"},
    Column{"Montante do Desconto", 1200, Alignment::Right, "SettlementAmount1"},
    Column{"Dt de Pagamento", 1000, Alignment::Left, "SettlementDate"},
    Column{"Forma de Pagamento", 1000, Alignment::Left, "PaymentMechanism"},
    Column{"Estado Doc.", 1200, Alignment::Centre, "InvoiceStatus"},
    Column{"Assinatura (Hash)", 4000, Alignment::Left, "Hash"},
    Column{"Versão Hash", 1200, Alignment::Left, "HashControl"},
};

/// What a save from the list writes of its columns: all but the key in front and the three behind.
constexpr std::size_t kFirstSaved = 1;
constexpr std::size_t kState = kReviewColumns.size() - 3;
constexpr std::size_t kSaved = kState - kFirstSaved;

/// Columns of a save in front of the list's own and behind.
constexpr std::array<std::string_view, 4> kKeyColumns{"FiscalYear", "StartDate", "EndDate", "Cliente"};
constexpr std::array<std::string_view, 3> kStampColumns{"DocAnulado", "Utilizador", "DataSys"};

std::vector<std::string_view> SavedColumns() {
  std::vector<std::string_view> names(kKeyColumns.begin(), kKeyColumns.end());
  for (std::size_t i = kFirstSaved; i < kState; ++i) names.push_back(kReviewColumns[i].staged);
  names.insert(names.end(), kStampColumns.begin(), kStampColumns.end());
  return names;
}

void HandOver(const session::Context& context, data::Connection& company, const std::string& where,
              std::int64_t count, const DocumentRowSink& sink) {
  toolkit::ProgressScope progress(context.progress, "Carregando Dados...", count);
  data::Recordset rows = company.Query(
      fmt::format("Select * from {} With (NoLock){} order by NumRegisto", kDocumentsTable, where));
  std::array<std::size_t, kReviewColumns.size()> places{};
  for (std::size_t i = 0; i < kReviewColumns.size(); ++i) places[i] = rows.IndexOf(kReviewColumns[i].staged);
  periods::GridRow row{true, std::vector<std::string>(kReviewColumns.size())};
  for (; !rows.Eof(); rows.MoveNext()) {
    progress.Step();
    for (std::size_t i = 0; i < kReviewColumns.size(); ++i) row.cells[i] = rows.Text(places[i]);
    sink(row);
  }
}

bool Show(const session::Context& context, const BillingPeriod& period, const DocumentRowSink& sink,
          Caller caller) {
  session::ConnectionPtr company;
  if (!session::AbreConnectionLOCAL_bln(context, company)) return false;
  const std::string where = " Where " + period.key.Condition();
  const std::int64_t count = session::ContaRegistos_lng(*company, kDocumentsTable, where);
  const bool wanted =
      caller == Caller::Wizard ||
      periods::Confirmed(context, fmt::format("Confirma a visualização de {} Registos?", count));
  if (!wanted) return false;
  HandOver(context, *company, where, count, sink);
  return true;
}

void Write(const session::Context& context, data::Connection& company, const BillingPeriod& period,
           const periods::Grid& rows) {
  const std::vector<std::string_view> names = SavedColumns();
  const data::DateTime now = session::Get_DataSysServer(company);
  const auto batch = company.OpenBatch(kDocumentsTable, names);
  std::vector<data::Parameter> values{period.key.fiscalYear, period.key.startDate, period.key.endDate,
                                      period.cliente};
  values.resize(names.size());
  values[names.size() - 2] = context.session.gUtilizador;
  values[names.size() - 1] = now;
  toolkit::ProgressScope progress(context.progress, periods::kSaving, static_cast<std::int64_t>(rows.size()));
  for (const periods::GridRow& row : rows) {
    progress.Step();
    for (std::size_t i = 0; i < kSaved; ++i) values[kKeyColumns.size() + i] = row.cells[kFirstSaved + i];
    values[names.size() - 3] = row.cells[kState] == "A" ? "S" : "N";
    batch->Add(values);
  }
  batch->Finish();
}

bool Save(const session::Context& context, const BillingPeriod& period, const periods::Grid& rows) {
  session::ConnectionPtr company;
  if (!session::AbreConnectionLOCAL_bln(context, company)) return false;
  data::Transaction transaction(*company);
  periods::ClearStaged(*company, kStagedDocuments, period.key, period.cliente);
  Write(context, *company, period, rows);
  transaction.Commit();
  return true;
}

}  // namespace

const periods::StagedTable& DocumentosTable() {
  static constexpr periods::StagedTable kTable{kDocumentsTable, kReviewColumns, " order by NumRegisto"};
  return kTable;
}

bool VerDocumentos(const session::Context& context, const BillingPeriod& period, const DocumentRowSink& sink,
                   Caller caller) {
  if (!periods::IsChosen(period.key)) return false;
  return session::Reported(context, false, [&] { return Show(context, period, sink, caller); });
}

bool GravarDocumentos(const session::Context& context, const BillingPeriod& period,
                      const periods::Grid& rows) {
  if (!periods::IsChosen(period.key) || rows.empty()) return false;
  return session::Reported(context, false, [&] { return Save(context, period, rows); });
}

}  // namespace korvel::billing
