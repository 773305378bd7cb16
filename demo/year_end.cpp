#include <fmt/format.h>

#include <algorithm>

#include "demo/chart_of_accounts.h"
#include "demo/code_tables.h"
#include "demo/year_book.h"

namespace korvel::demo {

/// A quarter of what the company sells in a month, so that it lives whatever its size.
Cents YearBook::MonthlyWages() {
  constexpr Cents kLeast = 30000;
  Cents sold = 0;
  for (const std::string& sales : ledger_.OpenAccounts("71")) sold -= ledger_.Balance(sales);
  return std::max(kLeast, sold / day_.month / 4) + random_.Between(0, 5000);
}

void YearBook::PostWages() {
  const Cents gross = MonthlyWages();
  const Cents tax = gross / 8;
  const Cents ownCharge = VatOf(gross, 11);
  const Cents companyCharge = VatOf(gross, 24);
  const Cents net = gross - tax - ownCharge;
  Entry entry =
      Start(journal::kStaff, NextNumber("SAL+"), fmt::format("Remunerações de {:02}/{}", day_.month, year_));
  entry.lines = {PlainLine(account::kWages, Side::Debit, gross),
                 PlainLine(account::kWageCharges, Side::Debit, companyCharge),
                 PlainLine(account::kWithheldTax, Side::Credit, tax),
                 PlainLine(account::kSocialSecurity, Side::Credit, ownCharge + companyCharge),
                 PlainLine(account::kStaff, Side::Credit, net)};
  ledger_.Post(entry);
  Entry paid = Start(journal::kBank, entry.number, "Pagamento de ordenados & salários");
  paid.lines = {PlainLine(account::kStaff, Side::Debit, net), PlainLine(account::kBank, Side::Credit, net)};
  ledger_.Post(paid);
}

void YearBook::PayVat() {
  const Cents owed = -ledger_.Balance(account::kVatPayable);
  if (owed <= 0) return;
  Entry entry = Start(journal::kBank, NextNumber("IVA-"), "Pagamento do IVA do mês anterior");
  entry.lines = {PlainLine(account::kVatPayable, Side::Debit, owed),
                 PlainLine(account::kBank, Side::Credit, owed)};
  ledger_.Post(entry);
}

void YearBook::TransferVat() {
  const std::vector<std::string> accounts{std::string(account::kVatOnGoods),
                                          std::string(account::kVatOnServices),
                                          std::string(account::kVatOnSales)};
  CloseAccounts(journal::kVat, fmt::format("Apuramento do IVA de {:02}/{}", day_.month, year_), accounts,
                account::kVatPayable);
}

/// Empties the accounts into another one, by one entry.
void YearBook::CloseAccounts(std::string_view journal, std::string_view text,
                             const std::vector<std::string>& accounts, std::string_view into) {
  Entry entry = Start(journal, NextNumber(fmt::format("T{}+", journal)), std::string(text));
  if (day_.month == 12 && day_.day == 31 && journal != journal::kVat) entry.saftType = "A";
  Cents moved = 0;
  for (const std::string& account : accounts) {
    const Cents balance = ledger_.Balance(account);
    entry.lines.push_back(PlainLine(account, balance > 0 ? Side::Credit : Side::Debit, std::abs(balance)));
    moved += balance;
  }
  entry.lines.push_back(PlainLine(into, moved > 0 ? Side::Debit : Side::Credit, std::abs(moved)));
  ledger_.Post(entry);
}

/// What occasional buyers paid during the day goes to the cash at its end.
void YearBook::CloseTill() {
  if (till_ == 0) return;
  Entry entry = Start(journal::kCash, NextNumber("FC-"), "Folha de caixa do dia");
  const Side side = till_ > 0 ? Side::Debit : Side::Credit;
  entry.lines = {PlainLine(account::kCash, side, std::abs(till_)),
                 PlainLine(account::kOccasionalCustomers, Opposite(side), std::abs(till_))};
  ledger_.Post(entry);
  till_ = 0;
}

void YearBook::CloseMonth(int month) {
  const data::DateTime last{.year = year_, .month = month, .day = data::DaysInMonth(year_, month)};
  GoTo(static_cast<int>(data::DaysFromCivil(year_, month, last.day) - data::DaysFromCivil(year_, 1, 1)));
  PostRarities(month);
  CloseTill();
  PostWages();
  PayVat();
  TransferVat();
}

void YearBook::CloseYear() {
  Entry depreciation = Start(journal::kGeneral, NextNumber("OD-"), "Depreciações do exercício");
  depreciation.saftType = "R";
  depreciation.lines = {PlainLine(account::kDepreciationCost, Side::Debit, 480000),
                        PlainLine(account::kDepreciation, Side::Credit, 480000)};
  ledger_.Post(depreciation);

  const Cents bought = ledger_.Balance(account::kPurchases);
  CloseAccounts(journal::kPurchasesTransfer, "Transferência de compras", {std::string(account::kPurchases)},
                account::kGoods);
  Entry used = Start(journal::kGoodsTransfer, NextNumber("T22+"), "Custo das mercadorias vendidas");
  used.saftType = "A";
  used.lines = {PlainLine(account::kCostOfGoods, Side::Debit, bought),
                PlainLine(account::kGoods, Side::Credit, bought)};
  ledger_.Post(used);

  std::vector<std::string> results = ledger_.OpenAccounts("6");
  std::ranges::copy(ledger_.OpenAccounts("7"), std::back_inserter(results));
  CloseAccounts(journal::kResults, "Apuramento de resultados", results, account::kResultBeforeTax);
  const Cents profit = std::max<Cents>(0, -ledger_.Balance(account::kResultBeforeTax));
  Entry tax = Start(journal::kProfitTax, NextNumber("T31+"), "Estimativa de imposto");
  tax.saftType = "A";
  tax.lines = {PlainLine(account::kTaxOfYear, Side::Debit, VatOf(profit, 21)),
               PlainLine(account::kIncomeTax, Side::Credit, VatOf(profit, 21))};
  ledger_.Post(tax);
  CloseAccounts(journal::kClosing, "Encerramento do exercício",
                {std::string(account::kResultBeforeTax), std::string(account::kTaxOfYear)},
                account::kNetResult);
}

}  // namespace korvel::demo
