#include "billing/customer_rows.h"

#include <array>

#include "billing/audit_codes.h"
#include "billing/customers.h"
#include "data/collation.h"
#include "toolkit/text.h"

namespace korvel::billing {
namespace {

using namespace customer;  // the columns
using periods::GridRow;

constexpr std::string_view kNoAddress = "----------";
constexpr std::string_view kFinalConsumerName = "Consumidor Final";

/// Cells in which the file wants a text.
constexpr std::array kDescriptive{kContact,
                                  kBuildingNumber,
                                  kStreetName,
                                  kAddressDetail,
                                  kCity,
                                  kPostalCode,
                                  kRegion,
                                  kCountry,
                                  kTelephone,
                                  kShipBuildingNumber,
                                  kShipStreetName,
                                  kShipAddressDetail,
                                  kShipCity,
                                  kShipPostalCode,
                                  kShipRegion,
                                  kShipCountry,
                                  kFax,
                                  kEmail,
                                  kWebsite};
constexpr std::array kPostal{kCity, kPostalCode, kShipCity, kShipPostalCode};

/// A cell that takes a column of `Clientes` as it stands.
struct Taken {
  std::size_t cell;
  std::string_view field;
};
constexpr std::array kTaken{Taken{kNumRegisto, "NumRegisto"},
                            Taken{kAccountId, "MContaContabilidade"},
                            Taken{kContact, "Contacto"},
                            Taken{kBuildingNumber, "Policia"},
                            Taken{kStreetName, "Rua"},
                            Taken{kAddressDetail, "Morada"},
                            Taken{kPostalCode, "CodPost"},
                            Taken{kRegion, "Distrito"},
                            Taken{kCountry, "Pais"},
                            Taken{kShipBuildingNumber, "Expedicao_Policia"},
                            Taken{kShipStreetName, "Expedicao_Rua"},
                            Taken{kShipAddressDetail, "Expedicao_Morada"},
                            Taken{kShipPostalCode, "Expedicao_CodPost"},
                            Taken{kShipRegion, "Expedicao_Distrito"},
                            Taken{kShipCountry, "Expedicao_Pais"},
                            Taken{kTelephone, "Telefone"},
                            Taken{kFax, "Fax"},
                            Taken{kEmail, "Email"},
                            Taken{kWebsite, "Site"},
                            Taken{kSelfBilling, "AutoFacturacao"}};

std::string OrUnknown(std::string_view text) {
  return std::string(toolkit::IsBlank(text) ? kUnknown : text);
}

template <typename Cells>
void SetUnknown(GridRow& row, const Cells& cells) {
  for (const std::size_t cell : cells) row.cells[cell] = kUnknown;
}

/// What rows of both sources have in common.
void FillFixedCells(GridRow& row, const std::string& taxId) {
  row.cells.resize(kColumnCount);
  row.cells[kCustomerId] = row.cells[kTaxId] = taxId;
  row.cells[kBilingAddress] = row.cells[kShipToAddress] = kNoAddress;
}

void FillFromCustomer(GridRow& row, const data::Recordset& cliente, const TextMap& towns,
                      const std::string& taxId) {
  auto& cells = row.cells;
  FillFixedCells(row, taxId);
  for (const Taken& taken : kTaken) cells[taken.cell] = cliente.Text(taken.field);
  const bool anonymous = !toolkit::TemDigito(cliente.Text("Contribuinte"));
  cells[kCompanyName] = anonymous ? kFinalConsumerName : cliente.Text("Descricao");
  if (!cliente.IsNull("CodPost")) cells[kCity] = TextOf(towns, cells[kPostalCode]);
  cells[kShipCity] = TextOf(towns, cells[kShipPostalCode]);
  const bool nowhere = cells[kPostalCode] == kNoPostalCode;
  for (const std::size_t cell : kDescriptive) cells[cell] = OrUnknown(cells[cell]);
  if (nowhere) SetUnknown(row, kPostal);
}

/// Cells that are not named here stay blank, deliberately: the save tells of those that the file needs.
void FillFromBuyer(GridRow& row, const Buyer& buyer, const TextMap& towns, const std::string& taxId,
                   std::string_view account) {
  auto& cells = row.cells;
  FillFixedCells(row, taxId);
  cells[kAccountId] = account;
  cells[kCompanyName] = OrUnknown(buyer.descricao);
  cells[kAddressDetail] = cells[kShipAddressDetail] = OrUnknown(buyer.morada);
  cells[kCity] = OrUnknown(buyer.local);
  cells[kShipCity] = TextOf(towns, buyer.codPostal);
  cells[kPostalCode] = cells[kShipPostalCode] = buyer.codPostal;
  cells[kCountry] = cells[kShipCountry] = buyer.pais;
  cells[kSelfBilling] = "0";
  if (taxId == kFinalConsumer) SetUnknown(row, kDescriptive);
  if (buyer.codPostal == kNoPostalCode) SetUnknown(row, kPostal);
}

Buyer ReadBuyer(const data::Recordset& row) {
  const auto text = [&](std::string_view field) { return std::string(row.Text(field)); };
  return {text("Contribuinte"), text("Descricao"), text("Morada"),
          text("Local"),        text("CodPostal"), text("MPais")};
}

}  // namespace

BuyersByAccount ReadBuyers(data::Connection& brevant, const BillingPeriod& period) {
  BuyersByAccount buyers;
  data::Recordset rows = brevant.Query(
      "select Codigo,Contribuinte,Descricao,Morada,Local,CodPostal,MPais=IsNull(Pais,'PT') from MovCliente "
      "With (NoLock) Where Codigo in (select Codigo from Clientes With (NoLock) where Diversos='1') and "
      "ltrim(rtrim(Contribuinte))<>''" +
      period.Documents() + " order by Codigo,Contribuinte,Data,NumRegisto");
  for (; !rows.Eof(); rows.MoveNext()) {
    std::vector<Buyer>& account = buyers[rows.Text(0)];
    const bool known = !account.empty() && data::SameText(account.back().contribuinte, rows.Text(1));
    if (!known) account.push_back(ReadBuyer(rows));
  }
  return buyers;
}

void AddCustomer(const data::Recordset& cliente, const TextMap& towns, const BuyersByAccount& buyers,
                 periods::KeyedGrid& grid) {
  const std::string customerId = CustomerIdOf(cliente.Text("Contribuinte"));
  const auto [row, added] = grid.FindOrAdd(customerId);
  if (added) FillFromCustomer(row, cliente, towns, customerId);
  if (cliente.Text("Diversos") != "1") return;
  row.colour = kGeneralAccountColour;
  const std::vector<Buyer>* own = buyers.Find(cliente.Text("Codigo"));
  if (!own) return;
  for (const Buyer& buyer : *own) {
    const std::string taxId = toolkit::LimpaContribuinte_str(buyer.contribuinte);
    const auto place = grid.FindOrAdd(taxId);
    if (place.added) FillFromBuyer(place.row, buyer, towns, taxId, cliente.Text("MContaContabilidade"));
  }
}

}  // namespace korvel::billing
