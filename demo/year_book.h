#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "data/date_time.h"
#include "demo/billing_book.h"
#include "demo/ledger.h"
#include "demo/random.h"
#include "demo/sales_desk.h"
#include "demo/taxpayers.h"

namespace korvel::demo {

/// Everybody that the company deals with.
struct People {
  std::vector<Taxpayer> customers;
  std::vector<Taxpayer> suppliers;
  std::vector<Taxpayer> buyers;   // without a customer's account of their own
  std::vector<Taxpayer> sellers;  // without a supplier's
};

/// The business of one year: opening balances, documents day by day, wages and VAT at each month's end,
/// transfers, results and closing at the year's end. Each piece of business is told twice, by an entry of the
/// ledger and, where the billing product knows it, by a document there.
class YearBook {
 public:
  /// The people, the catalogue and the books must outlive it.
  YearBook(Ledger& ledger, BillingBook& billing, int year, const People& people, const Catalogue& catalogue);

  /// Opens the first year of the books.
  void OpenYear();
  /// Opens the year with the balances that the one before has left in the ledger.
  void CarryForward();
  /// One document of business, on that day of the year (from 0).
  void PostDocument(int dayOfYear);
  /// What belongs to a month's last day (1 to 12), rare sales among it.
  void CloseMonth(int month);
  void CloseYear();

 private:
  using Business = void (YearBook::*)();

  // Sales (sales.cpp).
  void Sale();
  void CashSale();
  void TillSlip();
  void SlipReturn();
  void CreditNote();
  void DebitNote();
  void FreeTextSale();
  void LinelessSale();
  SalesDocument GoodsFor(std::string_view classification, const Party& customer, std::int64_t lines);
  SalesDocument CreditFor(const SalesDesk::Issued& issued, const Party& customer);
  void Issue(const SalesDocument& document);
  void Withdraw(const SalesDocument& document);
  void LinkCredit(const SalesDocument& credit, const DocumentName& credited);

  // Rare sales (rarities.cpp).
  /// This month's share of what is rare: over the year every kind of document and every oddity comes at least
  /// once.
  void PostRarities(int month);
  void SaleAbroad();
  void SelfBilledSale();
  void OrderedSale();
  void DeliveredSale();
  void DiscountedSale();
  void ChargedSale();
  void ExemptSales();
  void NamelessSale();
  void SaleWithoutCountry();
  void CopyByHand();
  void CopyOfOtherSystem();
  void RemovedSale();
  void CreditOfTwo();
  void CreditAndItsReverse();
  void AssetSaleAndReturn();
  void Quotation();
  void SaleInEveryBranch();
  void CashSaleInEveryBranch();
  void SlipAndReturn();

  // Purchases and settlements (purchases.cpp).
  void Purchase();
  void Service();
  void OccasionalService();
  void Receipt();
  void Payment();
  Entry PurchaseOf(const Party& seller, std::string_view costAccount, std::string_view vatAccount);
  Cents Settle(const Party& party, Side partySide, std::string_view prefix, std::string_view word);

  // Month and year ends (year_end.cpp).
  Cents MonthlyWages();
  void PostWages();
  void PayVat();
  void TransferVat();
  void CloseAccounts(std::string_view journal, std::string_view text,
                     const std::vector<std::string>& accounts, std::string_view into);
  void CloseTill();

  Entry Start(std::string_view journal, std::string number, std::string text);
  std::string NextNumber(std::string_view prefix);
  /// The day with a time after the last one asked for.
  data::DateTime Now();
  Party Customer(std::size_t index) const;
  Party PickCustomer();
  Party Buyer(std::size_t index, std::size_t branch) const;
  Party PickBuyer();
  Party PickSupplier();
  Party PickSeller();
  void GoTo(int dayOfYear);

  Ledger& ledger_;
  BillingBook& billing_;
  int year_;
  const People& people_;
  const Catalogue& catalogue_;
  Random random_;
  SalesDesk desk_;
  data::DateTime day_;
  std::int64_t second_ = 0;  // of the day
  Cents till_ = 0;           // taken from occasional buyers since the day's begin
  std::map<std::string, std::int64_t, std::less<>> numbers_;  // last number of each prefix
};

}  // namespace korvel::demo
