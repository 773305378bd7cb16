#include "session/lookups.h"

#include <fmt/format.h>

#include "data/sql_text.h"
#include "session/connections.h"
#include "toolkit/system_clock.h"
#include "toolkit/text.h"

namespace korvel::session {
namespace {

std::string KeyValue(const LookupKey& key) {
  const bool number = key.numeric && data::Currency::FromText(key.value).has_value();
  return number ? std::string(key.value) : data::Quoted(key.value);
}

std::string FirstText(data::Connection& connection, std::string_view statement) {
  const data::Recordset rows = connection.Query(statement);
  return rows.Eof() ? std::string() : std::string(rows.Text(0));
}

}  // namespace

std::string LerCampoTabela(data::Connection& connection, std::string_view table, std::string_view field) {
  return FirstText(connection, fmt::format("select {}  from {} With (NoLock) ", field, table));
}

std::string LerCampoTabela(data::Connection& connection, std::string_view table, std::string_view field,
                           const LookupKey& key, std::string_view extra) {
  return FirstText(connection, fmt::format("select {}  from {} With (NoLock) where {}={}{}", field, table,
                                           key.field, KeyValue(key), extra));
}

std::string LerCampoTabela(const Context& context, std::string_view table, std::string_view field,
                           const LookupKey& key, std::string_view extra) {
  ConnectionPtr company;
  std::string database;
  if (!AbreGeral(context, company, database)) return {};
  return LerCampoTabela(*company, table, field, key, extra);
}

std::int64_t ContaRegistos_lng(data::Connection& connection, std::string_view table, std::string_view where) {
  if (toolkit::IsBlank(table)) return 0;
  const std::string_view gap = toolkit::IsBlank(where) ? "" : " ";
  const data::Recordset rows =
      connection.Query(fmt::format("select TotRegist=count(NumRegisto) From {}{}{}", table, gap, where));
  return rows.Eof() ? 0 : rows.Integer("TotRegist");
}

bool HasColumn(data::Connection& connection, std::string_view table, std::string_view column) {
  return connection.Query(fmt::format("Select * from {} With (NoLock) where NumRegisto<0", table))
      .Has(column);
}

bool VerSeExiste(data::Connection& connection, std::string_view statement) {
  return !connection.Query(statement).Eof();
}

data::Value GetFieldValue(data::Connection& connection, std::string_view statement, std::string_view field) {
  try {
    const data::Recordset rows = connection.Query(statement);
    return rows.Eof() ? data::Value() : rows.Get(rows.IndexOf(field));
  } catch (const data::Error&) {
    return {};  // asked for: its callers take a failure as an empty value
  }
}

data::DateTime Get_DataSysServer(data::Connection& connection) {
  const data::Recordset rows = connection.Query("Select MDataSys=GetDate()");
  return rows.Eof() ? toolkit::SystemClock().Now() : rows.Date("MDataSys");
}

data::DateTime Get_DataSysServer(const Context& context) {
  ConnectionPtr connection;
  if (!AbreConnectionLOCAL_bln(context, connection)) return context.clock.Now();
  return Get_DataSysServer(*connection);
}

data::DateTime Get_DataServer(data::Connection& connection) {
  const data::DateTime moment = Get_DataSysServer(connection);
  return {moment.year, moment.month, moment.day};
}

}  // namespace korvel::session
