#include "demo/year_book.h"

#include <fmt/format.h>

#include "demo/chart_of_accounts.h"
#include "demo/code_tables.h"

namespace korvel::demo {

namespace {

constexpr std::int64_t kOccasional = 24;  // taxpayers that occur in entries only

/// They take tax numbers of persons, which no customer or supplier of the chart has.
std::vector<Taxpayer> MakeOccasional(std::int64_t firstNumber, std::string_view country) {
  std::vector<Taxpayer> made(kOccasional);
  for (std::int64_t i = 0; i < kOccasional; ++i) {
    Taxpayer& who = made[static_cast<std::size_t>(i)];
    who.taxNumber = PortugueseTaxNumber(firstNumber + i * 101);
    who.country = i % 3 == 0 ? country : "PT";
    who.name = fmt::format("Particular n.º {}", i + 1);
  }
  made.front().taxNumber = "999999990";  // the final consumer
  return made;
}

constexpr std::uint64_t kSeed = 20130101;

}  // namespace

Line PlainLine(std::string_view account, Side side, Cents amount) {
  Line line;
  line.account = account;
  line.side = side;
  line.amount = amount;
  return line;
}

Side Opposite(Side side) {
  return side == Side::Debit ? Side::Credit : Side::Debit;
}

Cents VatOf(Cents net, int rate) {
  return (net * rate + 50) / 100;
}

YearBook::YearBook(Ledger& ledger, int year, const std::vector<Taxpayer>& customers,
                   const std::vector<Taxpayer>& suppliers)
    : ledger_(ledger),
      year_(year),
      customers_(customers),
      suppliers_(suppliers),
      random_(kSeed),
      occasionalCustomers_(MakeOccasional(20100000, "FR")),
      occasionalSuppliers_(MakeOccasional(21700000, "ES")) {
  GoTo(0);
}

void YearBook::GoTo(int dayOfYear) {
  day_ = data::CivilFromDays(data::DaysFromCivil(year_, 1, 1) + dayOfYear);
}

std::string YearBook::NextNumber(std::string_view prefix, std::string_view suffix) {
  const auto found = numbers_.try_emplace(std::string(prefix), 0).first;
  return fmt::format("{}{:06}{}", prefix, ++found->second, suffix);
}

Entry YearBook::Start(std::string_view journal, std::string number, std::string text) {
  Entry entry;
  entry.posted = day_;
  entry.posted.hour = static_cast<int>(random_.Between(9, 18));
  entry.posted.minute = static_cast<int>(random_.Below(60));
  entry.posted.second = static_cast<int>(random_.Below(60));
  entry.journal = journal;
  entry.number = std::move(number);
  entry.text = std::move(text);
  return entry;
}

YearBook::Party YearBook::PickCustomer() {
  const auto index = static_cast<std::size_t>(random_.Below(static_cast<std::int64_t>(customers_.size())));
  return {TaxpayerAccount(Kind::Customer, index), &customers_[index]};
}

YearBook::Party YearBook::PickSupplier() {
  const auto index = static_cast<std::size_t>(random_.Below(static_cast<std::int64_t>(suppliers_.size())));
  return {TaxpayerAccount(Kind::Supplier, index), &suppliers_[index]};
}

const Taxpayer& YearBook::PickOccasional(Kind kind) {
  const auto& list = kind == Kind::Customer ? occasionalCustomers_ : occasionalSuppliers_;
  return list[static_cast<std::size_t>(random_.Below(kOccasional))];
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
  for (std::size_t i = 0; i < customers_.size(); i += 5) {
    entry.lines.push_back(
        PlainLine(TaxpayerAccount(Kind::Customer, i), Side::Debit, random_.Between(5000, 250000)));
  }
  for (std::size_t i = 0; i < suppliers_.size(); i += 4) {
    entry.lines.push_back(
        PlainLine(TaxpayerAccount(Kind::Supplier, i), Side::Credit, random_.Between(5000, 120000)));
  }
  Cents difference = 0;
  for (const Line& line : entry.lines) difference += line.side == Side::Debit ? line.amount : -line.amount;
  const Side side = difference > 0 ? Side::Credit : Side::Debit;
  entry.lines.push_back(PlainLine(account::kRetained, side, std::abs(difference)));
  ledger_.Post(entry);
}

}  // namespace korvel::demo
