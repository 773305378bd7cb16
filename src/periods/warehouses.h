#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "data/connection.h"
#include "session/context.h"

namespace korvel::periods {

/// A warehouse with its region of exemption; `classificacao` is "" until one is chosen.
struct Warehouse {
  std::string armazem;
  std::string descricao;
  std::string classificacao;
};

inline constexpr std::string_view kClassificacaoList =
    "PT:PT - Portugal Continental;PT-AC:PT-AC - Região Autónoma dos Açores;PT-MA:PT-MA - Região Autónoma da "
    "Madeira;";

/// The warehouses as `TabArmazens` holds them, without descriptions. Throws data::Error.
std::vector<Warehouse> StoredWarehouses(data::Connection& company);

/// `cmdCarregarArmazens`: the warehouses of the billing product with what `TabArmazens` says of them. The stored ones
/// when the product's database does not open, so that saving them does not lose them. Throws data::Error.
std::vector<Warehouse> CarregarArmazens(const session::Context& context, data::Connection& company);

/// Replaces `TabArmazens` as a whole. Belongs inside a transaction.
void ReplaceWarehouses(data::Connection& company, std::span<const Warehouse> warehouses);

}  // namespace korvel::periods
