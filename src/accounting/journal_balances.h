#pragma once

#include <string_view>

#include "accounting/prefix_sums.h"
#include "data/connection.h"
#include "data/currency.h"

namespace korvel::accounting {

/// How the journal's amounts are summed.
enum class BalanceMode {
  Signed = 1,      // each amount times its sign, into `saldo` alone
  Gross = 2,       // debits and credits apart
  PerAccount = 3,  // each account's net on the side where it falls
};

/// Which amount of a journal line is summed.
enum class AmountKind { VA, VR, VI };  // valor, valrecap, valiva

struct BalanceQuery {
  BalanceMode modo = BalanceMode::Gross;
  AmountKind tipoValor = AmountKind::VA;
  std::string_view conta = {};        // an account code; its sub-accounts are those whose code starts with it
  std::string_view dataInicial = {};  // YYYY-MM-DD, blank for no bound
  std::string_view dataFinal = {};
  std::string_view filtro1 =
      {};  // conditions to append as they stand, such as the journal clause of a filter
  std::string_view filtro2 = {};
};

struct Balance {
  data::Currency debito;
  data::Currency credito;
  data::Currency saldo;

  friend bool operator==(const Balance&, const Balance&) = default;
};

/// The balance of one account, read from `movdiario` of Lunder and rounded to `casas` decimal places.
/// `query.conta` is matched as the server's "like" matches it, so "%", "_" and "[" in it are wildcards.
/// Throws data::Error.
Balance GetValoresMovDiarioRST(data::Connection& lunder, const BalanceQuery& query, int casas);

/// Gross balances (`BalanceMode::Gross` of `valor`) of any number of accounts from one statement: what
/// GetValoresMovDiarioRST would give for each of them, one at a time.
class AccountBalances {
 public:
  /// Reads the sums of every account code of the journal. `query.conta`, `modo` and `tipoValor` are not
  /// looked at; the filters must outlive this object. Throws data::Error.
  AccountBalances(data::Connection& lunder, const BalanceQuery& query, int casas);

  /// The account with all its sub-accounts. Sends a statement only for a code that holds a wildcard.
  Balance Of(std::string_view conta) const;

 private:
  data::Connection& lunder_;
  BalanceQuery query_;
  int casas_;
  PrefixSums sums_;
};

}  // namespace korvel::accounting
