#pragma once

#include <string>
#include <string_view>
#include <unordered_map>

#include "billing/billing_period.h"
#include "billing/text_lookups.h"
#include "data/collated_map.h"
#include "data/collation.h"
#include "data/connection.h"

/// Everything that the mapping of documents looks up, read once a run. Of several rows with one code the first counts.
namespace korvel::billing {

/// A row of `TabTipoMov`.
struct DocumentType {
  std::string classification;
  std::string afectaCli;  // "D-", "D+", "C-", "C+", "S-", "S+"
  bool signs = false;     // `ControloHash` does not read 0
  bool copiesOriginal = false;
  bool copiesManual = false;

  bool RefersToOthers() const { return afectaCli == "C+" || afectaCli == "D-"; }
  bool Settles() const { return RefersToOthers() || afectaCli == "C-" || afectaCli == "D+"; }
  bool Pays() const { return afectaCli == "S-" || afectaCli == "S+"; }
};

struct DocumentCustomer {
  std::string autoFacturacao = "0";
  std::string pais;
};

/// A row of `TabTaxTableGEST`.
struct TaxKeys {
  std::string taxType;
  std::string countryRegion;
  std::string taxCode;
};

/// What a line was made from: another document's number and date.
struct OriginatingOrder {
  std::string number;
  std::string date;
};

/// As CollatedMap, for many keys that are asked for once each.
template <typename Value>
class LargeMap {
 public:
  void Keep(std::string_view key, Value value) { values_.emplace(data::CollationKey(key), std::move(value)); }
  const Value* Find(std::string_view key) const {
    const auto found = values_.find(data::CollationKey(key));
    return found == values_.end() ? nullptr : &found->second;
  }

 private:
  std::unordered_map<std::string, Value> values_;
};

struct DocumentLookups {
  data::CollatedMap<DocumentType> types;          // by `TabTipoMov.Codigo`
  data::CollatedMap<DocumentCustomer> customers;  // by `Clientes.Codigo`
  TextMap exemptionReasons;                       // `TabIVA.Saft_TaxExemptionReason` by `Codigo`
  TextMap paymentMechanisms;                      // `PagaComo.ClassificaSaft` by `Codigo`
  TextMap chargeNames;                            // `ImpostosConfig.Descricao` by `Codigo`
  data::CollatedMap<TaxKeys> taxes;               // by `CodigoBrevant`, of the period
  TextMap regions;                                // `TabArmazens.Classificacao` by `Armazem`
  LargeMap<std::string> orderDates;               // `CliMovEnc.DataPedido` by `NumEnc`
  LargeMap<OriginatingOrder> relatedLines;        // by `MovProduto.Identifica`
  LargeMap<std::string> transactions;             // "<Data> <Diario> <Numero>" by TransactionKey
};

/// The key of a ledger entry in `transactions`.
std::string TransactionKey(std::string_view data, std::string_view numero);

/// Fills everything that lies in the Brevant database. What only lines name (orders, related lines) is read for the
/// lines of the period alone, those of removed documents among them with `removed`. Throws data::Error.
void ReadBrevantLookups(data::Connection& brevant, const BillingPeriod& period, bool removed,
                        DocumentLookups& lookups);
/// Fills taxes and regions from the company database. Throws data::Error.
void ReadCompanyLookups(data::Connection& company, const periods::PeriodKey& period,
                        DocumentLookups& lookups);
/// Fills the ledger's transactions of the period from the Lunder database. Throws data::Error.
void ReadTransactions(data::Connection& lunder, const periods::PeriodKey& period, DocumentLookups& lookups);

}  // namespace korvel::billing
