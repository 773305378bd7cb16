#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "billing/billing_period.h"
#include "billing/text_lookups.h"
#include "data/connection.h"
#include "periods/keyed_grid.h"

namespace korvel::billing {

/// One who bought through a general account, as the earliest document of the period shows it.
struct Buyer {
  std::string contribuinte;
  std::string descricao;
  std::string morada;
  std::string local;
  std::string codPostal;
  std::string pais;
};

/// By `Clientes.Codigo`: the buyers of each general account, by tax number.
using BuyersByAccount = data::CollatedMap<std::vector<Buyer>>;
/// One statement, whatever the number of accounts and buyers. Throws data::Error.
BuyersByAccount ReadBuyers(data::Connection& brevant, const BillingPeriod& period);

/// The columns of `Clientes` that AddCustomer reads; the account has to stand beside them as `MContaContabilidade`.
inline constexpr std::string_view kCustomerFields =
    "NumRegisto,Codigo,Descricao,Policia,Rua,Distrito,Morada,CodPost,Pais,Contacto,Expedicao_Policia,"
    "Expedicao_Rua,Expedicao_Morada,Expedicao_CodPost,Expedicao_Distrito,Expedicao_Pais,Contribuinte,"
    "Telefone,Fax,"
    "Email,Site,Diversos,AutoFacturacao";

/// Adds the row of a customer unless one stands under its tax number; behind a general account, which turns blue, the
/// rows of its buyers too. `towns` are those of `TabPostal` by code.
void AddCustomer(const data::Recordset& cliente, const TextMap& towns, const BuyersByAccount& buyers,
                 periods::KeyedGrid& grid);

}  // namespace korvel::billing
