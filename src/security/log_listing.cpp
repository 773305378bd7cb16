#include "security/log_listing.h"

#include <fmt/format.h>

#include <algorithm>

#include "data/collation.h"
#include "session/regional_values.h"
#include "toolkit/dates.h"
#include "toolkit/numbers.h"
#include "toolkit/text.h"

namespace korvel::security {

namespace {

struct Spelling {
  std::string_view code;
  std::string_view text;
};
constexpr std::array<Spelling, 4> kActions{
    {{"N", "Novo"}, {"A", "Alteração"}, {"E", "Eliminação"}, {kEveryCode, "Todas"}}};
constexpr std::array<Spelling, 2> kModules{{{"TB", "Tabelas"}, {kEveryCode, "Todos"}}};

std::string Spelt(std::span<const Spelling> spellings, std::string_view code, std::string_view unknown) {
  const auto found = std::find_if(spellings.begin(), spellings.end(), [&](const Spelling& spelling) {
    return data::SameText(spelling.code, code);
  });
  return std::string(found == spellings.end() ? unknown : found->text);
}

/// Entries into a company, log offs and listings have no word of their own here, deliberately.
std::string ActionText(std::string_view code) {
  return Spelt(kActions, code, "Não Def.");
}

std::string ModuleText(std::string_view code) {
  return Spelt(kModules, code, code);
}

std::string HourRange(const LogFilter& filter) {
  const bool none = toolkit::IsBlank(filter.horaInicial) && toolkit::IsBlank(filter.horaFinal);
  return none ? std::string() : fmt::format("{} - {}", filter.horaInicial, filter.horaFinal);
}

/// Turns entries into what is printed of them.
class Printer {
 public:
  explicit Printer(const session::SessionRecord& session)
      : marks_(session.Marks()), dates_(session::DateMarks(session)), decimals_(session.gCasasDec) {}

  std::vector<std::pair<std::string_view, std::string>> Head(const LogFilter& filter) const {
    return {{"Acção : ", ActionText(filter.accao)},
            {"Módulo : ", ModuleText(filter.modulo)},
            {"Utilizador :", filter.utilizador},
            {"Data Inicial :", toolkit::GData(filter.dataInicial, dates_)},
            {"Data Final :", toolkit::GData(filter.dataFinal, dates_)},
            {"Hora :", HourRange(filter)}};
  }

  LogCells Cells(const LogEntry& entry) const {
    return {ModuleText(entry.modulo),
            entry.formCaption,
            entry.conteudo,
            toolkit::FDNum(entry.valor, decimals_, {}, {}, marks_),
            ActionText(entry.accao),
            toolkit::GData(entry.data, dates_),
            entry.hora};
  }

 private:
  toolkit::Marks marks_;
  toolkit::DateMarks dates_;
  int decimals_;
};

std::vector<const LogEntry*> ByUserAndCompany(std::span<const LogEntry> entries) {
  std::vector<const LogEntry*> sorted;
  for (const LogEntry& entry : entries) sorted.push_back(&entry);
  std::stable_sort(sorted.begin(), sorted.end(), [](const LogEntry* a, const LogEntry* b) {
    const int users = data::Collate(a->utilizador, b->utilizador);
    return users != 0 ? users < 0 : data::Collate(a->codEmpresa, b->codEmpresa) < 0;
  });
  return sorted;
}

}  // namespace

std::optional<LogListing> MakeLogListing(const session::Context& context, const LogFilter& filter,
                                         std::span<const LogEntry> entries) {
  if (entries.empty()) {
    context.dialogs.Message(toolkit::Icon::Information, "Não Existem Registos a Imprimir !", "Informação :");
    return std::nullopt;
  }
  const Printer printer(context.session);
  LogListing listing{printer.Head(filter), {}};
  const LogEntry* last = nullptr;
  for (const LogEntry* entry : ByUserAndCompany(entries)) {
    const bool sameUser = last != nullptr && data::SameText(last->utilizador, entry->utilizador);
    const bool sameCompany = sameUser && data::SameText(last->codEmpresa, entry->codEmpresa);
    if (!sameUser) listing.users.push_back({"Utilizador : " + entry->utilizador, {}});
    auto& companies = listing.users.back().companies;
    if (!sameCompany) {
      companies.push_back({fmt::format("Empresa : {} - {}", entry->codEmpresa, entry->descEmpresa), {}});
    }
    companies.back().lines.push_back(printer.Cells(*entry));
    last = entry;
  }
  return listing;
}

}  // namespace korvel::security
