#include "demo/code_tables.h"

#include "demo/lunder_schema.h"
#include "demo/vat_codes.h"

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

}  // namespace

void WriteCodeTables(data::Connection& lunder) {
  WriteJournals(lunder);
  WriteRoles(lunder);
  WriteAccountingVat(lunder);
}

}  // namespace korvel::demo
