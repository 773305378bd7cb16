#include "periods/table_search.h"

#include <fmt/format.h>

#include <algorithm>

#include "session/connections.h"
#include "session/failures.h"
#include "toolkit/text.h"

namespace korvel::periods {

namespace {

using session::Context;
using toolkit::Icon;

constexpr std::string_view kSigns = "\\/";
constexpr std::string_view kSelect = "select ";
constexpr std::string_view kFrom = " From ";
constexpr std::string_view kAtEachKey = "SearchChange";
constexpr std::string_view kFromStart = "SearchPrincipio";

TableSearch CodeTable(std::string_view table) {
  return {.table = std::string(table), .statement = fmt::format("select * From {}", table)};
}

void TellNoConnection(toolkit::Dialogs& dialogs) {
  dialogs.Message(Icon::Warning, "Não foi possível abrir a ligação!");
}

/// A source that no parameters name fails without a word and without an error number.
bool OpensSource(const Context& context, session::ConnectionPtr& connection, std::string_view product,
                 bool showMessage) {
  context.session.gErroNumero = 0;
  if (session::AbreConnection_bln(context, connection, product, false, showMessage)) return true;
  if (showMessage && context.session.gErroNumero == 0) TellNoConnection(context.dialogs);
  return false;
}

bool OpensServer(const Context& context, session::ConnectionPtr& connection, const SourceLocation& at,
                 bool showMessage) {
  if (session::CreateDBConnection(context, connection, at.server, "master", at.login, at.password))
    return true;
  if (showMessage) TellNoConnection(context.dialogs);
  return false;
}

bool Opens(const Context& context, session::ConnectionPtr& connection, const TableSearch& search,
           bool showMessage) {
  switch (search.place) {
    case SearchPlace::Brevant:
      return OpensSource(context, connection, session::kBrevant, showMessage);
    case SearchPlace::Lunder:
      return OpensSource(context, connection, session::kLunder, showMessage);
    case SearchPlace::Server:
      return OpensServer(context, connection, search.location, showMessage);
    case SearchPlace::Company:
      break;
  }
  return session::AbreConnectionLOCAL_bln(context, connection);
}

const std::string& ShownField(const TableSearch& search) {
  return search.dottedField.empty() ? search.keyField : search.dottedField;
}

FoundRow ReadRow(const data::Recordset& rows, const TableSearch& search) {
  FoundRow found{std::string(rows.Text(ShownField(search))), std::string(rows.Text(search.nameField)), {}};
  for (const SearchColumn& column : search.columns) found.values.emplace_back(rows.Text(column.field));
  return found;
}

/// What is typed as the field that is compared holds it.
std::string Compared(const TableSearch& search, std::string_view typed) {
  return search.dottedField.empty() ? std::string(typed) : toolkit::TiraPontos(typed);
}

void TellUnknown(toolkit::Dialogs& dialogs, const TableSearch& search, std::string_view code) {
  dialogs.Message(
      Icon::Warning,
      fmt::format("{} ( Tabela-> {})\nUse '\\' ou '/' no Campo para Pesquisar!", code, search.table),
      "Registo Inexistente:");
}

/// The signs that a pattern has for other things stand for themselves.
std::string Pattern(std::string_view typed, bool fromStart) {
  std::string pattern = fromStart ? "" : "%";
  for (const char sign : typed) {
    const bool special = sign == '%' || sign == '_' || sign == '[';
    pattern += special ? fmt::format("[{}]", sign) : std::string(1, sign);
  }
  return pattern + '%';
}

/// A column of keys with points is searched and ordered by the keys themselves.
bool IsDotted(const TableSearch& search, const SearchColumn& column) {
  return !search.dottedField.empty() && column.field == search.dottedField;
}

/// A search as its statements need it. Text that was typed is bound.
struct Prepared {
  std::string conditions;  // from the word "From" on
  std::string order;
  std::string pattern;

  std::vector<data::Parameter> Bound() const {
    if (pattern.empty()) return {};
    return {data::Parameter(pattern)};
  }
};

Prepared Prepare(const TableSearch& search, const SearchRequest& request) {
  const SearchColumn& column = search.columns.at(request.column);
  const bool dotted = IsDotted(search, column);
  const std::string& field = dotted ? search.keyField : column.field;
  Prepared prepared;
  prepared.conditions =
      fmt::format("{} Where {} {}{}", search.statement.substr(search.statement.find(kFrom)), search.keyField,
                  search.keyType == KeyType::Text ? "<> '' " : "> 0 ", search.filter);
  if (!toolkit::IsBlank(request.typed)) {
    prepared.conditions += fmt::format(" and {} Like ?", field);
    prepared.pattern = Pattern(dotted ? Compared(search, request.typed) : request.typed, request.fromStart);
  }
  prepared.order = fmt::format(" Order By {}{}", field, request.descending ? " desc" : "");
  if (field != search.keyField) prepared.order += "," + search.keyField;
  return prepared;
}

SearchRows ReadRows(data::Connection& connection, const TableSearch& search, const SearchRequest& request) {
  const Prepared prepared = Prepare(search, request);
  const auto bound = prepared.Bound();
  SearchRows found;
  found.count = connection.Query("select count(*) as Contagem" + prepared.conditions, bound).Integer(0);
  const std::string fields =
      search.statement.substr(kSelect.size(), search.statement.find(kFrom) - kSelect.size());
  auto rows = connection.Query(
      fmt::format("select top {} {}{}{}", request.most, fields, prepared.conditions, prepared.order), bound);
  for (; !rows.Eof(); rows.MoveNext()) found.rows.push_back(ReadRow(rows, search));
  return found;
}

bool ReadFlag(const toolkit::Settings& settings, std::string_view table, std::string_view key, bool usual) {
  const auto kept = settings.Read(table, key);
  return kept ? *kept == "1" : usual;
}

}  // namespace

TableSearch Grupo_Produtos() {
  return CodeTable("TabGrupoPro");
}

TableSearch Familia_Produtos() {
  return CodeTable("TabFamPro");
}

TableSearch SubFamilia_Produtos() {
  return CodeTable("TabSubFamPro");
}

TableSearch Situacoes_Brevant() {
  return CodeTable("TabSituacao");
}

TableSearch Contas_Contabilidade() {
  return {.table = "Contas",
          .place = SearchPlace::Lunder,
          .statement = "select * From Contas",
          .keyField = "ContaSP",
          .nameField = "Titulo",
          .columns = {{"Conta", "ContaCP"}, {"Título", "Titulo"}},
          .dottedField = "ContaCP"};
}

TableSearch Clientes_Brevant() {
  return CodeTable("Clientes");
}

TableSearch Empresas(std::string_view product, const SourceLocation& location) {
  return {.table = "SysDataBases",
          .place = SearchPlace::Server,
          .statement = "select Name From SysDataBases",
          .keyField = "Name",
          .nameField = "Name",
          .columns = {{"Nome", "Name"}},
          .filter = fmt::format(" and Name like '{}%'", product),
          .location = location};
}

bool AsksForWindow(std::string_view typed) {
  return typed.find_first_of(kSigns) != std::string_view::npos;
}

std::string WithoutSigns(std::string_view typed) {
  std::string text(typed);
  std::erase_if(text, [](char sign) { return kSigns.find(sign) != std::string_view::npos; });
  return text;
}

Lookup Pesq(const Context& context, const TableSearch& search, std::string_view code, bool showMessage) {
  if (toolkit::IsBlank(code)) return {};
  Lookup lookup = session::Reported(context, Lookup(), [&]() -> Lookup {
    session::ConnectionPtr connection;
    if (!Opens(context, connection, search, showMessage)) return {};
    const std::string key = Compared(search, code);
    const auto row = connection->Query(
        fmt::format("{} Where {}=?{}", search.statement, search.keyField, search.filter), {key});
    if (row.Eof()) return {std::nullopt, true};
    return {ReadRow(row, search)};
  });
  if (lookup.unknown && showMessage) TellUnknown(context.dialogs, search, code);
  return lookup;
}

std::optional<SearchRows> SearchTable(const Context& context, const TableSearch& search,
                                      const SearchRequest& request) {
  using Found = std::optional<SearchRows>;
  return session::Reported(context, Found(), [&]() -> Found {
    session::ConnectionPtr connection;
    if (!Opens(context, connection, search, true)) return std::nullopt;
    return ReadRows(*connection, search, request);
  });
}

SearchHabits ReadSearchHabits(const toolkit::Settings& settings, std::string_view table) {
  const SearchHabits usual;
  return {ReadFlag(settings, table, kAtEachKey, usual.atEachKey),
          ReadFlag(settings, table, kFromStart, usual.fromStart)};
}

void KeepSearchHabits(toolkit::Settings& settings, std::string_view table, const SearchHabits& habits) {
  settings.Write(table, kAtEachKey, habits.atEachKey ? "1" : "0");
  settings.Write(table, kFromStart, habits.fromStart ? "1" : "0");
}

}  // namespace korvel::periods
