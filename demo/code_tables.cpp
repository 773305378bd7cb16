#include "demo/code_tables.h"

#include "demo/lunder_schema.h"

namespace korvel::demo {

namespace {

struct Journal {
  std::string_view code;
  std::string_view description;
};

constexpr Journal kJournals[] = {
    {journal::kOpening, "Saldos iniciais"},
    {journal::kSales, "Vendas"},
    {journal::kPurchases, "Compras & serviços externos"},
    {journal::kCash, "Caixa"},
    {journal::kBank, "Bancos"},
    {journal::kStaff, "Pessoal"},
    {journal::kGeneral, "Operações diversas"},
    {journal::kVat, "Transferência de IVA"},
    {journal::kPurchasesTransfer, "Transferência de compras"},
    {journal::kGoodsTransfer, "Transferência de mercadorias"},
    {journal::kResults, "Apuramento de resultados"},
    {journal::kProfitTax, "Imposto sobre lucros"},
    {journal::kClosing, "Encerramento do exercício"},
};

struct VatRate {
  std::string_view code;
  std::string_view description;
  std::string_view region;
  std::string_view rate;
  std::string_view taxType;
  std::string_view taxRegion;
  std::string_view taxCode;
  std::string_view taxDescription;
  std::string_view expires = {};
};

constexpr VatRate kVatRates[] = {
    {"C0", "Isento", "C", "0", "IVA", "PT", "ISE", "Isenta"},
    {"C1", "Reduzida do continente", "C", "6", "IVA", "PT", "RED", "Taxa reduzida"},
    {"C2", "Intermédia do continente", "C", "13", "IVA", "PT", "INT", "Taxa intermédia"},
    {"C3", "Normal do continente", "C", "23", "IVA", "PT", "NOR", "Taxa normal"},
    {"C9", "Normal até 2010", "C", "21", "IVA", "PT", "NOR", "Taxa normal (anterior)", "2010-12-31"},
    {"A0", "Isento nos Açores", "A", "0", "IVA", "PT-AC", "ISE", "Isenta - Açores"},
    {"A1", "Reduzida dos Açores", "A", "4", "IVA", "PT-AC", "RED", "Taxa reduzida - Açores"},
    {"A2", "Intermédia dos Açores", "A", "9", "IVA", "PT-AC", "INT", "Taxa intermédia - Açores"},
    {"A3", "Normal dos Açores", "A", "16", "IVA", "PT-AC", "NOR", "Taxa normal - Açores"},
    {"M0", "Isento na Madeira", "M", "0", "IVA", "PT-MA", "ISE", "Isenta - Madeira"},
    {"M1", "Reduzida da Madeira", "M", "5", "IVA", "PT-MA", "RED", "Taxa reduzida - Madeira"},
    {"M2", "Intermédia da Madeira", "M", "12", "IVA", "PT-MA", "INT", "Taxa intermédia - Madeira"},
    {"M3", "Normal da Madeira", "M", "22", "IVA", "PT-MA", "NOR", "Taxa normal - Madeira"},
    {"X0", "Não sujeito", "X", "0", "", "", "", ""},  // no audit file data: stays out of the file
};

void WriteJournals(data::Connection& lunder) {
  const auto batch = lunder.OpenBatch(lunder::kDiarios.name, ColumnNames(lunder::kDiarios));
  for (const Journal& row : kJournals) {
    const data::Parameter values[] = {row.code, row.description};
    batch->Add(values);
  }
  batch->Finish();
}

void WriteRoles(data::Connection& lunder) {
  const auto batch = lunder.OpenBatch(lunder::kConfigura.name, ColumnNames(lunder::kConfigura));
  const data::Parameter roles[] = {journal::kOpening,       journal::kVat,     journal::kPurchasesTransfer,
                                   journal::kGoodsTransfer, journal::kResults, journal::kProfitTax,
                                   journal::kClosing};
  batch->Add(roles);
  batch->Finish();
}

void WriteVatRates(data::Connection& lunder) {
  const auto batch = lunder.OpenBatch(lunder::kTaxasIva.name, ColumnNames(lunder::kTaxasIva));
  for (const VatRate& row : kVatRates) {
    const data::Parameter values[] = {
        row.code,    row.description, row.region,  data::Currency::FromText(row.rate).value(),
        row.taxType, row.taxRegion,   row.taxCode, row.taxDescription,
        row.expires};
    batch->Add(values);
  }
  batch->Finish();
}

}  // namespace

void WriteCodeTables(data::Connection& lunder) {
  WriteJournals(lunder);
  WriteRoles(lunder);
  WriteVatRates(lunder);
}

}  // namespace korvel::demo
