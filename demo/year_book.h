#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "data/date_time.h"
#include "demo/ledger.h"
#include "demo/random.h"
#include "demo/taxpayers.h"

namespace korvel::demo {

/// The business of one year, entry by entry: opening balances, documents day by day, wages and VAT at each month's
/// end, transfers, results and closing at the year's end.
class YearBook {
 public:
  /// The lists and the ledger must outlive it.
  YearBook(Ledger& ledger, int year, const std::vector<Taxpayer>& customers,
           const std::vector<Taxpayer>& suppliers);

  void OpenYear();
  /// One document of business, on that day of the year (from 0).
  void PostDocument(int dayOfYear);
  /// What belongs to a month's last day (1 to 12).
  void CloseMonth(int month);
  void CloseYear();

 private:
  struct Party {
    std::string account;
    const Taxpayer* who;
  };
  using Document = void (YearBook::*)();

  // Documents (documents.cpp).
  void Sale();
  void CashSale();
  void CreditNote();
  void Purchase();
  void Service();
  void OccasionalService();
  void Receipt();
  void Payment();
  Entry SaleOf(const Party& buyer, std::string number, std::string_view word, Side buyerSide);
  Entry PurchaseOf(const Party& seller, std::string_view costAccount, std::string_view vatAccount);
  void Settle(const Party& party, Side partySide, std::string_view prefix, std::string_view word);

  // Month and year ends (year_end.cpp).
  void PostWages();
  void PayVat();
  void TransferVat();
  void CloseAccounts(std::string_view journal, std::string_view text,
                     const std::vector<std::string>& accounts, std::string_view into);

  Entry Start(std::string_view journal, std::string number, std::string text);
  std::string NextNumber(std::string_view prefix, std::string_view suffix = {});
  Party PickCustomer();
  Party PickSupplier();
  const Taxpayer& PickOccasional(Kind kind);
  void GoTo(int dayOfYear);

  Ledger& ledger_;
  int year_;
  const std::vector<Taxpayer>& customers_;
  const std::vector<Taxpayer>& suppliers_;
  Random random_;
  std::vector<Taxpayer> occasionalCustomers_;
  std::vector<Taxpayer> occasionalSuppliers_;
  data::DateTime day_;
  std::map<std::string, std::int64_t, std::less<>> numbers_;  // last number of each prefix
};

/// A line without a taxpayer.
Line PlainLine(std::string_view account, Side side, Cents amount);
/// The other side.
Side Opposite(Side side);
/// VAT of a net amount, rounded half up.
Cents VatOf(Cents net, int rate);

}  // namespace korvel::demo
