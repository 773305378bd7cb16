#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "periods/parameters.h"
#include "session/context.h"

namespace korvel::periods {

/// A row of the grid of journals.
struct Journal {
  std::int64_t numRegisto = 0;
  std::string codigo;
  std::string descricao;
  std::string notas;  // its role, such as "Saldos Iniciais"
  bool ticked = false;
};

/// The filter dialog of the chart of accounts as it is shown, or as it was confirmed.
struct LunderFilterForm {
  std::string contaInicial;
  std::string contaFinal;
  std::vector<Journal> journals;

  bool AnyTicked() const;
};

/// What the dialog starts with: the stored account range, the journals by code, and the one of opening
/// balances ticked when the parameters ask for it alone. Nothing when a database does not open; that of the
/// product is not told.
std::optional<LunderFilterForm> LoadLunderFilter(const session::Context& context);

/// "Não seleccionou qualquer Diário!" and the cursor in the grid when no journal is ticked; false then.
bool CheckJournals(toolkit::Dialogs& dialogs, const LunderFilterForm& form);

/// The clauses that a filter gives its caller.
struct LunderFilter {
  std::string contas;  // " and ContaSp>='..' and ContaSp<='..'", without bounds ""
  std::string
      diarios;  // " and ( Diario='..' or Diario='..') ", all ticked "", none ticked a clause without rows
  bool cancelled = true;         // nothing was confirmed: both clauses are empty
  bool noJournalTicked = false;  // confirmed without a journal, as only stored parameters can be
};

LunderFilter MakeLunderFilter(const LunderFilterForm& form);

/// What a caller chooses instead of the stored parameters.
struct LunderChoice {
  std::string contaInicial;
  std::string contaFinal;
  std::vector<std::string> diarios;  // codes to tick
  bool todosDiarios = false;         // ticks all
};

/// The filter without a screen: with a choice as if it were typed and confirmed, "Não seleccionou qualquer
/// Diário!" and cancelled when it ticks no journal; without one as the stored parameters stand, even with no
/// journal ticked.
LunderFilter FiltrosLunder(const session::Context& context, const std::optional<LunderChoice>& choice = {});

/// The boxes of the filter of products.
struct BrevantChoice {
  std::string grupo;
  std::string familia;
  std::string subFamilia;
  std::string situacao;
  std::string patamar;
};
BrevantChoice StoredBrevantChoice(const Parameters& parameters);

struct BrevantFilter {
  std::string filtro;   // " and Produtos.Grupo='..'" and so on; "CANCELAR" when cancelled
  std::string patamar;  // level that gives `ProductGroup`
};
inline constexpr std::string_view kFilterCancelled = "CANCELAR";

BrevantFilter FiltrosBrevant(const BrevantChoice& choice);
/// The filter without a screen: as the stored parameters stand. Nothing when the company does not open, which is shown.
std::optional<BrevantFilter> FiltrosBrevant(const session::Context& context);

}  // namespace korvel::periods
