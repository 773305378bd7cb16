#include "session/connections.h"

#include <array>
#include <exception>

#include <fmt/format.h>

#include "data/connect.h"
#include "toolkit/text.h"

namespace korvel::session {
namespace {

/// A value of a connection string: between double quotes, inner ones doubled, where it could be read as more.
std::string StringValue(std::string_view value) {
  const bool plain = value.find_first_of(";\"") == std::string_view::npos && toolkit::Trim(value) == value;
  if (plain) return std::string(value);
  return "\"" + toolkit::ReplaceAll(value, "\"", "\"\"") + "\"";
}

void KeepFailure(SessionRecord& session, std::int32_t number, std::string_view description) {
  session.gErroNumero = number;
  session.gErroDescricao = description;
}

bool OpenOrAsk(const Context& context, ConnectionPtr& connection, std::string_view database,
               std::string_view caption) {
  if (OpenSessionDatabase(context, connection, database)) return true;
  constexpr std::array<std::string_view, 2> kButtons = {"Continuar a tentar", "Terminar o Programa"};
  if (context.dialogs.Alert(caption, kButtons) == 1) throw EndProgram{};
  return false;
}

/// Where the database of a source product lies.
struct Source {
  std::string server;
  std::string database;
  std::string login;
  std::string password;
};

Source ReadSource(data::Connection& company, std::string_view product, bool isConfig) {
  const data::Recordset parameters = company.Query("Select * from Paramgeral");
  if (parameters.Eof()) return {};
  const auto column = [&](std::string_view name) {
    return std::string(parameters.Text(fmt::format("{}_{}", name, product)));
  };
  return {column("Servidor"), isConfig ? fmt::format("{}Config", product) : column("DBase"), column("Login"),
          column("Password")};
}

}  // namespace

std::string BuildConnectionString(std::string_view server, std::string_view database, std::string_view login,
                                  bool windowsAuthentication) {
  const std::string place =
      fmt::format("Initial Catalog={};Data Source={}", StringValue(database), StringValue(server));
  if (windowsAuthentication) {
    return "Provider=SQLOLEDB.1;Integrated Security=SSPI;Persist Security Info=False;" + place;
  }
  return fmt::format("Provider=SQLOLEDB.1;Persist Security Info=False;User ID={};{}", StringValue(login),
                     place);
}

bool CreateDBConnection(const Context& context, ConnectionPtr& connection, std::string_view server,
                        std::string_view database, std::string_view login, std::string_view password,
                        int timeoutSeconds) {
  const bool windows = context.session.gAutenticacaoWindows;
  if (toolkit::IsBlank(server) || (!windows && toolkit::IsBlank(login))) return false;
  connection.reset();
  try {
    connection = data::Connect(context.servers, BuildConnectionString(server, database, login, windows),
                               password, timeoutSeconds);
    return true;
  } catch (const data::Error& error) {
    KeepFailure(context.session, error.Number(), error.what());
  } catch (const std::exception& error) {
    KeepFailure(context.session, static_cast<std::int32_t>(data::Failure::NoServer), error.what());
  }
  return false;
}

void FechaConection(ConnectionPtr& connection) {
  if (connection && connection->IsOpen()) connection->Close();
  connection.reset();
}

bool ValidateLogin(const Context& context, std::string_view server, std::string_view database,
                   std::string_view login, std::string_view password) {
  ConnectionPtr connection;
  return CreateDBConnection(context, connection, server, database, login, password);
}

bool OpenSessionDatabase(const Context& context, ConnectionPtr& connection, std::string_view database) {
  const SessionRecord& session = context.session;
  return CreateDBConnection(context, connection, session.gServidor, database, session.gLogin,
                            session.gPassword);
}

bool AbreConfig(const Context& context, ConnectionPtr& connection) {
  return OpenOrAsk(context, connection, kConfigDatabase,
                   "Ocorreu um erro ao tentar abrir uma conecção (Config)");
}

bool AbreGeral(const Context& context, ConnectionPtr& connection, std::string& database) {
  if (toolkit::IsBlank(database)) database = context.session.gBaseDados;
  return OpenOrAsk(context, connection, database, "Ocorreu um erro ao tentar abrir uma conecção (Geral)");
}

bool AbreConnectionLOCAL_bln(const Context& context, ConnectionPtr& connection) {
  if (OpenSessionDatabase(context, connection, context.session.gBaseDados)) return true;
  context.dialogs.Message(toolkit::Icon::Warning, "Ocorreu um erro ao tentar abrir uma conecção (Local)");
  return false;
}

bool AbreConnection_bln(const Context& context, ConnectionPtr& connection, std::string_view product,
                        bool isConfig, bool showMessage) {
  ConnectionPtr company;
  std::string database;
  if (!AbreGeral(context, company, database)) return false;
  const Source source = ReadSource(*company, product, isConfig);
  FechaConection(company);
  if (toolkit::IsBlank(source.server) || toolkit::IsBlank(source.database)) return false;
  if (CreateDBConnection(context, connection, source.server, source.database, source.login,
                         source.password)) {
    return true;
  }
  if (showMessage) {
    context.dialogs.Message(toolkit::Icon::Critical,
                            fmt::format("Não foi possível estabelecer ligação com a empresa {}!\n[{}]",
                                        source.database, context.session.gErroDescricao));
  }
  return false;
}

void ShowConnectionError(const Context& context) {
  context.dialogs.Message(toolkit::Icon::Critical,
                          fmt::format("{}\n{}", context.session.gErroDescricao, context.session.gErroNumero));
}

}  // namespace korvel::session
