#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "data/currency.h"

namespace korvel::accounting {

struct DebitCredit {
  data::Currency debito;
  data::Currency credito;
};

/// Debits and credits by account code, and what all codes that start with a given one add up to. Codes
/// compare as the servers compare text.
class PrefixSums {
 public:
  /// A code may come several times; its amounts add up. Throws std::overflow_error.
  void Add(std::string_view code, DebitCredit amounts);
  /// To be called once, behind the last Add. Throws std::overflow_error.
  void Seal();
  /// Of all codes that start with `prefix`; of all there are when it is empty. Zeros when there is none.
  DebitCredit Of(std::string_view prefix) const;

 private:
  struct Entry {
    std::string key;  // data::CollationKey of the code
    DebitCredit amounts;
  };
  std::vector<Entry> entries_;              // sorted by key once sealed
  std::vector<DebitCredit> runningTotals_;  // of the first n entries
};

}  // namespace korvel::accounting
