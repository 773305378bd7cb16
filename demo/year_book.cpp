#include "demo/year_book.h"

#include <fmt/format.h>

#include <algorithm>

#include "demo/billing_cards.h"
#include "demo/chart_of_accounts.h"
#include "demo/code_tables.h"
#include "toolkit/text.h"

namespace korvel::demo {

namespace {

constexpr std::uint64_t kSeed = 20130101;
constexpr std::int64_t kShopOpens = 8 * 3600 + 1800;
constexpr std::int64_t kLastSecond = 24 * 3600 - 1;

std::size_t PickIndex(std::size_t count, Random& random) {
  return static_cast<std::size_t>(random.Below(static_cast<std::int64_t>(count)));
}

}  // namespace

YearBook::YearBook(Ledger& ledger, BillingBook& billing, int year, const People& people,
                   const Catalogue& catalogue)
    : ledger_(ledger),
      billing_(billing),
      year_(year),
      people_(people),
      catalogue_(catalogue),
      random_(kSeed + static_cast<std::uint64_t>(year)),
      desk_(year, catalogue, random_) {
  GoTo(0);
}

void YearBook::GoTo(int dayOfYear) {
  const data::DateTime day = data::CivilFromDays(data::DaysFromCivil(year_, 1, 1) + dayOfYear);
  if (day == day_) return;
  CloseTill();
  day_ = day;
  second_ = kShopOpens;
}

data::DateTime YearBook::Now() {
  second_ = std::min(second_ + random_.Between(3, 40), kLastSecond);
  data::DateTime now = day_;
  now.hour = static_cast<int>(second_ / 3600);
  now.minute = static_cast<int>(second_ / 60 % 60);
  now.second = static_cast<int>(second_ % 60);
  return now;
}

std::string YearBook::NextNumber(std::string_view prefix) {
  const auto found = numbers_.try_emplace(std::string(prefix), 0).first;
  return fmt::format("{}{:06}", prefix, ++found->second);
}

Entry YearBook::Start(std::string_view journal, std::string number, std::string text) {
  Entry entry;
  entry.posted = Now();
  entry.journal = journal;
  entry.number = std::move(number);
  entry.text = std::move(text);
  return entry;
}

Party YearBook::Customer(std::size_t index) const {
  const Taxpayer& who = people_.customers[index];
  return {CustomerCard(index), TaxpayerAccount(Kind::Customer, index), &who, index % std::size(kBranches),
          toolkit::Upper(who.country) != "PT"};
}

Party YearBook::PickCustomer() {
  return Customer(PickIndex(people_.customers.size(), random_));
}

Party YearBook::Buyer(std::size_t index, std::size_t branch) const {
  return {GeneralCard(branch), std::string(account::kOccasionalCustomers), &people_.buyers[index], branch};
}

Party YearBook::PickBuyer() {
  const std::size_t branch = PickIndex(std::size(kBranches), random_);
  return Buyer(PickIndex(people_.buyers.size(), random_), branch);
}

Party YearBook::PickSupplier() {
  const std::size_t index = PickIndex(people_.suppliers.size(), random_);
  return {"", TaxpayerAccount(Kind::Supplier, index), &people_.suppliers[index]};
}

Party YearBook::PickSeller() {
  return {"", std::string(account::kOccasionalSuppliers),
          &people_.sellers[PickIndex(people_.sellers.size(), random_)]};
}

void YearBook::OpenYear() {
  Entry entry = Start(journal::kOpening, "SI-1", "Saldos de abertura");
  entry.lines = {PlainLine(account::kCash, Side::Debit, 125000),
                 PlainLine(account::kBank, Side::Debit, 4250075),
                 PlainLine(account::kSecondBank, Side::Debit, 1810040),
                 PlainLine(account::kGoods, Side::Debit, 3675000),
                 PlainLine(account::kEquipment, Side::Debit, 2400000),
                 PlainLine(account::kDepreciation, Side::Credit, 960000),
                 PlainLine(account::kCapital, Side::Credit, 5000000)};
  for (std::size_t i = 0; i < people_.customers.size(); i += 5) {
    entry.lines.push_back(
        PlainLine(TaxpayerAccount(Kind::Customer, i), Side::Debit, random_.Between(5000, 250000)));
  }
  for (std::size_t i = 0; i < people_.suppliers.size(); i += 4) {
    entry.lines.push_back(
        PlainLine(TaxpayerAccount(Kind::Supplier, i), Side::Credit, random_.Between(5000, 120000)));
  }
  Cents difference = 0;
  for (const Line& line : entry.lines) difference += line.side == Side::Debit ? line.amount : -line.amount;
  const Side side = difference > 0 ? Side::Credit : Side::Debit;
  entry.lines.push_back(PlainLine(account::kRetained, side, std::abs(difference)));
  ledger_.Post(entry);
}

void YearBook::CarryForward() {
  Entry entry = Start(journal::kOpening, "SI-1", "Saldos de abertura");
  for (const std::string& open : ledger_.OpenAccounts("")) {
    const Cents balance = ledger_.Balance(open);
    const std::string_view code = open == account::kNetResult ? account::kRetained : std::string_view(open);
    entry.lines.push_back(PlainLine(code, balance > 0 ? Side::Debit : Side::Credit, std::abs(balance)));
  }
  ledger_.Restart();
  ledger_.Post(entry);
}

}  // namespace korvel::demo
