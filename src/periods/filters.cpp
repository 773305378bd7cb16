#include "periods/filters.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>

#include "data/collation.h"
#include "data/sql_text.h"
#include "periods/company_connection.h"
#include "toolkit/text.h"

namespace korvel::periods {

namespace {

using data::Quoted;
using session::Context;

/// A clause that no row meets.
constexpr std::string_view kNoJournal = " and Diario='XXXXXX' ";
constexpr std::string_view kOpeningRole = "DiSi";

struct Role {
  std::string_view column;  // of the source table Configura
  std::string_view note;
};
constexpr std::array<Role, 7> kRoles{{
    {kOpeningRole, "Saldos Iniciais"},
    {"DiTi", "Transferência de IVA"},
    {"DiTc", "Transferências de Compras"},
    {"DiTm", "Transferência de Mercadorias"},
    {"DiAp", "Apuramento"},
    {"DiIl", "Impostos sobre Lucros"},
    {"DiEn", "Encerramento"},
}};

struct RoleJournal {
  const Role* role;
  std::string codigo;
};

std::vector<RoleJournal> ReadRoles(data::Connection& lunder) {
  std::vector<RoleJournal> journals;
  const auto row = lunder.Query("select DiSi,DiTi,DiTc,DiTm,DiAp,DiIl,DiEn from Configura With (NoLock)");
  if (row.Eof()) return journals;
  for (const Role& role : kRoles) journals.push_back({&role, std::string(row.Text(role.column))});
  return journals;
}

/// The first role of a journal; none for a journal without one.
const Role* RoleOf(const std::vector<RoleJournal>& roles, std::string_view codigo) {
  const auto found = std::find_if(roles.begin(), roles.end(), [&](const RoleJournal& journal) {
    return !toolkit::IsBlank(journal.codigo) && data::SameText(journal.codigo, codigo);
  });
  return found == roles.end() ? nullptr : found->role;
}

std::vector<Journal> ReadJournals(data::Connection& lunder, bool tickOpening) {
  const std::vector<RoleJournal> roles = ReadRoles(lunder);
  std::vector<Journal> journals;
  auto rows = lunder.Query(
      "Select NumRegisto,Codigo,Descricao from Diarios With (NoLock) order by Codigo,NumRegisto");
  for (; !rows.Eof(); rows.MoveNext()) {
    Journal journal{rows.Integer("NumRegisto"),
                    std::string(rows.Text("Codigo")),
                    std::string(rows.Text("Descricao")),
                    {},
                    false};
    if (const Role* role = RoleOf(roles, journal.codigo)) {
      journal.notas = role->note;
      journal.ticked = tickOpening && role->column == kOpeningRole;
    }
    journals.push_back(std::move(journal));
  }
  return journals;
}

std::string AccountBound(std::string_view comparison, std::string_view conta) {
  if (toolkit::IsBlank(conta)) return {};
  return fmt::format(" and ContaSp{}{}", comparison, Quoted(toolkit::TiraPontos(conta)));
}

std::string JournalClause(const std::vector<Journal>& journals) {
  std::string ticked;
  bool all = true;
  for (const Journal& journal : journals) {
    if (journal.ticked) ticked += fmt::format(" or Diario={}", Quoted(journal.codigo));
    all = all && journal.ticked;
  }
  if (ticked.empty()) return std::string(kNoJournal);
  if (all) return {};
  constexpr std::size_t kFirstOr = 3;
  return fmt::format(" and ({}) ", std::string_view(ticked).substr(kFirstOr));
}

void Apply(const LunderChoice& choice, LunderFilterForm& form) {
  form.contaInicial = choice.contaInicial;
  form.contaFinal = choice.contaFinal;
  for (Journal& journal : form.journals) {
    journal.ticked = choice.todosDiarios || std::any_of(choice.diarios.begin(), choice.diarios.end(),
                                                        [&](const std::string& codigo) {
                                                          return data::SameText(codigo, journal.codigo);
                                                        });
  }
}

void AddCondition(std::string& filtro, std::string_view column, std::string_view value) {
  if (!toolkit::IsBlank(value)) filtro += fmt::format(" and Produtos.{}={}", column, Quoted(value));
}

}  // namespace

bool LunderFilterForm::AnyTicked() const {
  return std::any_of(journals.begin(), journals.end(), [](const Journal& journal) { return journal.ticked; });
}

std::optional<LunderFilterForm> LoadLunderFilter(const Context& context) {
  session::ConnectionPtr lunder;
  if (!session::AbreConnection_bln(context, lunder, session::kLunder, false, false)) return std::nullopt;
  const auto company = OpenCompany(context);
  if (!company) return std::nullopt;
  const Parameters stored = ReadParameters(*company).value_or(Parameters());
  return LunderFilterForm{stored.Header_ContaInicial, stored.Header_ContaFinal,
                          ReadJournals(*lunder, stored.Header_ApenasDiarioSI)};
}

bool CheckJournals(toolkit::Dialogs& dialogs, const LunderFilterForm& form) {
  if (form.AnyTicked()) return true;
  dialogs.Message(toolkit::Icon::Warning, "Não seleccionou qualquer Diário!");
  dialogs.Focus("lvwDiarios");
  return false;
}

LunderFilter MakeLunderFilter(const LunderFilterForm& form) {
  LunderFilter filter;
  filter.contas = AccountBound(">=", form.contaInicial) + AccountBound("<=", form.contaFinal);
  filter.diarios = JournalClause(form.journals);
  filter.cancelled = false;
  filter.noJournalTicked = !form.AnyTicked();
  return filter;
}

LunderFilter FiltrosLunder(const Context& context, const std::optional<LunderChoice>& choice) {
  auto form = LoadLunderFilter(context);
  if (!form) return {};
  if (choice) {
    Apply(*choice, *form);
    if (!CheckJournals(context.dialogs, *form)) return {};
  }
  return MakeLunderFilter(*form);
}

BrevantChoice StoredBrevantChoice(const Parameters& parameters) {
  return {parameters.Product_Grupo, parameters.Product_Familia, parameters.Product_SubFamilia,
          parameters.Product_Situacao, parameters.Product_Patamar};
}

BrevantFilter FiltrosBrevant(const BrevantChoice& choice) {
  BrevantFilter filter;
  AddCondition(filter.filtro, "Grupo", choice.grupo);
  AddCondition(filter.filtro, "Familia", choice.familia);
  AddCondition(filter.filtro, "SubFamilia", choice.subFamilia);
  AddCondition(filter.filtro, "Situacao", choice.situacao);
  filter.patamar = choice.patamar;
  return filter;
}

std::optional<BrevantFilter> FiltrosBrevant(const session::Context& context) {
  const session::ConnectionPtr company = OpenCompany(context);
  if (!company) return std::nullopt;
  return FiltrosBrevant(StoredBrevantChoice(ReadParameters(*company).value_or(Parameters{})));
}

}  // namespace korvel::periods
