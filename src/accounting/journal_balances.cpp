#include "accounting/journal_balances.h"

#include <fmt/format.h>

#include <array>
#include <string>

#include "data/collation.h"
#include "data/sql_text.h"
#include "toolkit/numbers.h"
#include "toolkit/text.h"
#include "toolkit/utf8.h"

namespace korvel::accounting {
namespace {

using data::Currency;

/// The columns of an amount: its value, and that value with its sign.
struct AmountColumns {
  std::string_view value;
  std::string_view signedValue;
};

constexpr std::array<AmountColumns, 3> kAmounts{{
    {"valor", "valor*sinal"},
    {"valrecap", "valrecap*sinalrecap"},
    {"valiva", "valiva*sinal"},
}};

const AmountColumns& ColumnsOf(AmountKind kind) {
  return kAmounts[static_cast<std::size_t>(kind)];
}

std::string Dates(const BalanceQuery& query) {
  std::string dates;
  if (!toolkit::IsBlank(query.dataInicial)) dates += " and data>=" + data::Quoted(query.dataInicial);
  if (!toolkit::IsBlank(query.dataFinal)) dates += " and data<=" + data::Quoted(query.dataFinal);
  return dates;
}

std::string Condition(const BalanceQuery& query) {
  return fmt::format("substring(contasp,1,{}) like {} {}", toolkit::CharacterCount(query.conta),
                     data::Quoted(query.conta), Dates(query));
}

Currency SumOf(data::Connection& lunder, std::string_view expression, std::string_view condition) {
  return lunder
      .Query(fmt::format("select a=isnull(sum({}),0) from movdiario With (NoLock) where {}", expression,
                         condition))
      .Money(0);
}

Balance SignedBalance(data::Connection& lunder, const BalanceQuery& query, int casas) {
  const std::string condition = fmt::format("{} {} {}", Condition(query), query.filtro1, query.filtro2);
  const Currency saldo = SumOf(lunder, ColumnsOf(query.tipoValor).signedValue, condition);
  return {{}, {}, toolkit::ArredondaVal(saldo, casas)};
}

Balance Rounded(DebitCredit sums, int casas) {
  const Currency debito = toolkit::ArredondaVal(sums.debito, casas);
  const Currency credito = toolkit::ArredondaVal(sums.credito, casas);
  return {debito, credito, debito - credito};
}

Balance GrossBalance(data::Connection& lunder, const BalanceQuery& query, int casas) {
  const auto side = [&](std::string_view letter) {
    return SumOf(
        lunder, ColumnsOf(query.tipoValor).value,
        fmt::format("{} and afecta='{}' {} {}", Condition(query), letter, query.filtro1, query.filtro2));
  };
  return Rounded({side("D"), side("C")}, casas);
}

/// Adds an amount to the side that `afecta` names; neither for any other letter.
void AddTo(DebitCredit& sums, std::string_view afecta, Currency amount) {
  if (data::SameText(afecta, "D")) sums.debito += amount;
  if (data::SameText(afecta, "C")) sums.credito += amount;
}

/// Puts an account's net, always positive, on the side where it falls.
void AddNet(DebitCredit& totals, DebitCredit account) {
  const Currency net = account.debito - account.credito;
  if (net > Currency()) {
    totals.debito += net;
  } else {
    totals.credito += -net;
  }
}

Balance PerAccountBalance(data::Connection& lunder, const BalanceQuery& query, int casas) {
  data::Recordset lines = lunder.Query(fmt::format(
      "select contasp,valor,valrecap,valiva,afecta,sinal from movdiario With (NoLock) where {} {} {} "
      "order by contasp,NumRegisto",
      Condition(query), query.filtro1, query.filtro2));
  const std::size_t amount = lines.IndexOf(ColumnsOf(query.tipoValor).value);
  DebitCredit totals;
  DebitCredit account;
  std::string code;
  for (; !lines.Eof(); lines.MoveNext()) {
    if (!data::SameText(lines.Text(0), code)) {
      AddNet(totals, account);
      account = {};
      code = lines.Text(0);
    }
    AddTo(account, lines.Text(4), lines.Money(amount));
  }
  AddNet(totals, account);
  return Rounded(totals, casas);
}

/// True when "like" takes the code as more, or as something else, than its own characters.
bool NeedsLike(std::string_view conta) {
  return conta.find_first_of("%_[") != std::string_view::npos || conta.ends_with(' ');
}

PrefixSums ReadSums(data::Connection& lunder, const BalanceQuery& query) {
  PrefixSums sums;
  data::Recordset groups = lunder.Query(fmt::format(
      "select contasp,afecta,a=isnull(sum(valor),0) from movdiario With (NoLock) where contasp is not null "
      "{} {} {} group by contasp,afecta",
      Dates(query), query.filtro1, query.filtro2));
  for (; !groups.Eof(); groups.MoveNext()) {
    DebitCredit amounts;
    AddTo(amounts, groups.Text(1), groups.Money(2));
    sums.Add(groups.Text(0), amounts);
  }
  sums.Seal();
  return sums;
}

}  // namespace

Balance GetValoresMovDiarioRST(data::Connection& lunder, const BalanceQuery& query, int casas) {
  switch (query.modo) {
    case BalanceMode::Signed:
      return SignedBalance(lunder, query, casas);
    case BalanceMode::PerAccount:
      return PerAccountBalance(lunder, query, casas);
    default:
      return GrossBalance(lunder, query, casas);
  }
}

AccountBalances::AccountBalances(data::Connection& lunder, const BalanceQuery& query, int casas)
    : lunder_(lunder), query_(query), casas_(casas), sums_(ReadSums(lunder, query)) {}

Balance AccountBalances::Of(std::string_view conta) const {
  if (!NeedsLike(conta)) return Rounded(sums_.Of(conta), casas_);
  BalanceQuery single = query_;
  single.conta = conta;
  return GrossBalance(lunder_, single, casas_);
}

}  // namespace korvel::accounting
