#pragma once

#include <string>
#include <vector>

#include "session/context.h"

namespace korvel::periods {

/// A document type of the billing product that the audit file takes.
struct MovementType {
  std::string codigo;
  std::string descricao;
  std::string classificacao;
  std::string afectaCli;
  std::string afectaStk;
  std::string modulo;
  std::string afectaIVA;  // "S" or "N"
};

/// `cmdCarregarTiposMov`: to be looked at alone, nobody stores them. Empty when the product's database does not open.
/// Throws data::Error.
std::vector<MovementType> CarregarTiposMov(const session::Context& context);

}  // namespace korvel::periods
