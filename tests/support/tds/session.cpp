#include "support/tds/session.h"

#include <algorithm>

#include "data/embedded/open.h"
#include "support/tds/markers.h"

namespace korvel::tds {
namespace {

using data::Error;
using data::Failure;

constexpr int kLoginFailed = 18456;
constexpr int kCannotOpenDatabase = 4060;
constexpr std::size_t kFlushBytes = 4096;

/// The client has asked for the end of the answer under way.
struct Cancelled {};

std::vector<data::Parameter> Ordered(const Marked& marked, std::span<const RpcParameter> values) {
  std::vector<data::Parameter> ordered;
  for (const std::size_t index : marked.order) {
    if (index >= values.size())
      throw Error(Failure::Statement, 8178, "42000", "Falta o valor de um parâmetro");
    ordered.emplace_back(values[index].value);
  }
  return ordered;
}

const data::Value& ValueAt(const Rpc& rpc, std::size_t index) {
  if (index >= rpc.parameters.size()) throw Error(Failure::Statement, 201, "42000", "Falta um parâmetro");
  return rpc.parameters[index].value;
}
std::string TextAt(const Rpc& rpc, std::size_t index) {
  return ToText(ValueAt(rpc, index));
}

std::int64_t HandleAt(const Rpc& rpc, std::size_t index) {
  const auto* handle = std::get_if<std::int64_t>(&ValueAt(rpc, index));
  if (handle == nullptr)
    throw Error(Failure::Conversion, 214, "42000", "O número de uma instrução não é inteiro");
  return *handle;
}

std::span<const RpcParameter> ValuesFrom(const Rpc& rpc, std::size_t first) {
  return std::span(rpc.parameters).subspan(std::min(first, rpc.parameters.size()));
}

ProcedureId IdOf(const Rpc& rpc) {
  if (rpc.name == "sp_executesql") return ProcedureId::ExecuteSql;
  if (rpc.name == "sp_prepare") return ProcedureId::Prepare;
  if (rpc.name == "sp_prepexec") return ProcedureId::PrepExec;
  if (rpc.name == "sp_execute") return ProcedureId::Execute;
  if (rpc.name == "sp_unprepare") return ProcedureId::Unprepare;
  return rpc.id;
}

}  // namespace

Session::Session(Channel& channel, const SessionSettings& settings, const Faults& faults)
    : channel_(channel), settings_(settings), faults_(faults), answer_(channel, settings.serverName) {}

void Session::Run() {
  try {
    if (!Greet()) return;
    while (const auto message = Next()) Serve(*message);
  } catch (const Cancelled&) {
    // An attention before the login: there is nothing to be given up but the connection.
  } catch (const Disconnected&) {
    // The client has gone, or a fault asked for has cut it off.
  } catch (const WireError&) {
    // As a server does, the connection is closed: nothing that follows could be understood.
  }
}

std::optional<Message> Session::Next() {
  auto message = channel_.Read();
  if (message && settings_.received) settings_.received(*message);
  if (faults_.cutAfterBytes >= 0) channel_.CutAfter(static_cast<std::size_t>(faults_.cutAfterBytes.load()));
  return message;
}

bool Session::Greet() {
  auto message = Next();
  if (message && message->type == PacketType::PreLogin) {
    ReadPreLogin(message->payload);
    Pause(faults_.answerDelay);
    channel_.Write(PreLoginAnswer());
    channel_.Finish();
    message = Next();
  }
  if (!message) return false;
  if (message->type != PacketType::Login) throw WireError("no login");
  Login login = ReadLogin(message->payload);
  version_ = login.version;
  answer_.Speak(version_);
  Pause(faults_.answerDelay);
  return Enter(login);
}

bool Session::Enter(const Login& login) {
  try {
    OpenDatabase(login);
  } catch (const Error& error) {
    Refuse(error);
    return false;
  }
  if (login.packetSize != 0) channel_.SetPacketSize(login.packetSize);
  Welcome(login);
  Login entered = login;
  entered.password.clear();
  if (settings_.entered) settings_.entered(entered);
  return true;
}

void Session::OpenDatabase(const Login& login) {
  if (faults_.refuseLogins || login.integratedSecurity) {
    throw Error(Failure::WrongLogin, kLoginFailed, "28000", "O início de sessão falhou");
  }
  const data::EmbeddedHost host{settings_.embeddedFolder, settings_.serverName, data::MissingServer::Make};
  const data::ConnectionString wanted{settings_.serverName,
                                      login.database.empty() ? "master" : login.database, login.user, false,
                                      login.application};
  db_ = data::OpenEmbedded(host, wanted, login.password, settings_.timeoutSeconds);
  database_ = db_->Database();
}

void Session::Refuse(const Error& error) {
  answer_.Error(error);
  // As the real server, which says after the reason that the login failed.
  if (error.Native() == kCannotOpenDatabase) {
    answer_.Error(Error(Failure::WrongLogin, kLoginFailed, "28000", "O início de sessão falhou"));
  }
  answer_.End(Done::Batch, done::kError);
  answer_.Send();
  channel_.Finish();
}

void Session::Welcome(const Login& login) {
  constexpr int kDatabaseChanged = 5701;
  constexpr int kLanguageChanged = 5703;
  constexpr std::string_view kLanguage = "us_english";
  answer_.Changed(Environment::Database, database_, "master");
  answer_.Info(kDatabaseChanged, "Base de dados actual: '" + database_ + "'");
  answer_.Collation();
  answer_.Changed(Environment::Language, login.language.empty() ? kLanguage : login.language, "");
  answer_.Info(kLanguageChanged, "Língua actual: '" + std::string(kLanguage) + "'");
  answer_.LoginAck();
  const std::string size = std::to_string(channel_.PacketSize());
  answer_.Changed(Environment::PacketSize, size, size);
  answer_.End(Done::Batch, done::kFinal);
  answer_.Send();
  channel_.Finish();
}

void Session::Serve(const Message& message) {
  switch (message.type) {
    case PacketType::Batch:
      return Answered([&] { RunBatch(ReadBatch(message.payload, version_)); }, Done::Batch);
    case PacketType::Rpc:
      return Answered(
          [&] {
            const std::vector<Rpc> calls = ReadRpcs(message.payload, version_);
            for (const Rpc& rpc : calls) RunRpc(rpc, &rpc == &calls.back());
          },
          Done::Procedure);
    case PacketType::Transaction:
      return Answered([&] { RunTransaction(ReadTransaction(message.payload)); }, Done::Batch);
    case PacketType::Attention:
      return Answered([] { throw Cancelled(); }, Done::Batch);
    default:
      throw WireError("a message out of its place");
  }
}

void Session::Answered(const std::function<void()>& work, Done kind) {
  try {
    Pause(faults_.answerDelay);
    work();
  } catch (const Cancelled&) {
    answer_.End(Done::Batch, done::kAttention);
  } catch (const Error& error) {
    // A session that was killed ends without an answer, as on the real server.
    if (!db_->IsOpen()) throw Disconnected();
    answer_.Error(error);
    answer_.End(kind, done::kError);
  }
  answer_.Send();
  channel_.Finish();
}

void Session::RunBatch(const std::string& sql) {
  Stream(sql, {}, Done::Batch);
}

void Session::RunRpc(const Rpc& rpc, bool last) {
  const std::uint16_t flags = last ? done::kFinal : done::kMore;
  switch (IdOf(rpc)) {
    case ProcedureId::ExecuteSql:
      ExecuteSql(rpc);
      break;
    case ProcedureId::Prepare:
    case ProcedureId::PrepExec:
      Prepare(rpc, IdOf(rpc) == ProcedureId::PrepExec);
      break;
    case ProcedureId::Execute:
      Execute(rpc);
      break;
    case ProcedureId::Unprepare:
      prepared_.erase(HandleAt(rpc, 0));
      answer_.ReturnStatus(0);
      break;
    case ProcedureId::None:
      return RunProcedure(rpc, flags);
  }
  answer_.End(Done::Procedure, flags);
}

void Session::RunProcedure(const Rpc& rpc, std::uint16_t flags) {
  std::vector<data::ProcedureArgument> arguments;
  for (const RpcParameter& parameter : rpc.parameters)
    arguments.push_back({parameter.value, parameter.output});
  answer_.ReturnStatus(db_->Call(rpc.name, arguments));
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    if (arguments[i].output) answer_.ReturnValue(i, rpc.parameters[i].name, arguments[i].value);
  }
  TellDatabase();
  answer_.End(Done::Procedure, flags);
}

void Session::ExecuteSql(const Rpc& rpc) {
  const Prepared statement{
      TextAt(rpc, 0), rpc.parameters.size() > 1 ? DeclaredNames(TextAt(rpc, 1)) : std::vector<std::string>{}};
  RunPrepared(statement, ValuesFrom(rpc, 2), Done::InProcedure);
  answer_.ReturnStatus(0);
}

void Session::Prepare(const Rpc& rpc, bool run) {
  const std::int64_t handle = ++lastHandle_;
  prepared_[handle] = {TextAt(rpc, 2), DeclaredNames(TextAt(rpc, 1))};
  if (run) RunPrepared(prepared_[handle], ValuesFrom(rpc, 3), Done::InProcedure);
  answer_.ReturnStatus(0);
  answer_.ReturnValue(0, "", handle);
}

void Session::Execute(const Rpc& rpc) {
  const auto found = prepared_.find(HandleAt(rpc, 0));
  if (found == prepared_.end()) {
    throw Error(Failure::Statement, 8179, "42000", "Não há instrução preparada com esse número");
  }
  RunPrepared(found->second, ValuesFrom(rpc, 1), Done::InProcedure);
  answer_.ReturnStatus(0);
}

void Session::RunPrepared(const Prepared& prepared, std::span<const RpcParameter> values, Done kind) {
  const Marked marked = MarkParameters(prepared.sql, prepared.names);
  Stream(marked.sql, Ordered(marked, values), kind);
}

void Session::RunTransaction(const TransactionRequest& request) {
  if (request.step == TransactionStep::Save) {
    throw Error(Failure::Statement, 102, "42000", "Este servidor não tem pontos de reposição");
  }
  if (request.step != TransactionStep::Begin) {
    const bool commits = request.step == TransactionStep::Commit;
    db_->Execute(commits ? "commit transaction" : "rollback transaction");
    answer_.TransactionEnded(commits, transaction_);
  }
  if (request.step == TransactionStep::Begin || request.beginsNext) {
    db_->Execute("begin transaction");
    answer_.TransactionBegan(++transaction_);
  }
  answer_.End(Done::Batch, done::kFinal);
}

void Session::Stream(std::string_view sql, data::Parameters parameters, Done kind) {
  const std::uint16_t last = kind == Done::InProcedure ? done::kMore : done::kFinal;
  data::Recordset rows = db_->Query(sql, parameters);
  bool more = !rows.Fields().empty();
  bool counted = false;
  while (more) {
    const std::int64_t count = SendRows(rows);
    try {
      more = rows.NextRecordset();
    } catch (const Error&) {
      answer_.End(kind, done::kMore | done::kCount, count);
      throw;
    }
    counted = !more && rows.Changed() == 0;
    if (!more) TellDatabase();
    answer_.End(kind, static_cast<std::uint16_t>(done::kCount | (counted ? last : done::kMore)), count);
  }
  if (counted) return;
  TellDatabase();
  answer_.End(kind, static_cast<std::uint16_t>(last | done::kCount), rows.Changed());
}

std::int64_t Session::SendRows(data::Recordset& rows) {
  answer_.Columns(rows.Fields());
  std::int64_t count = 0;
  for (; !rows.Eof(); rows.MoveNext(), ++count) {
    Pause(faults_.rowDelay);
    answer_.Row(rows);
    if (count == faults_.cutInRow) {
      answer_.Send();
      channel_.Break();
    }
    if (answer_.Waiting() > kFlushBytes) Breathe();
  }
  return count;
}

/// Sends what is there and looks whether the client still wants the rest.
void Session::Breathe() {
  answer_.Send();
  if (channel_.TakeAttention()) throw Cancelled();
}

void Session::TellDatabase() {
  const std::string now = db_->Database();
  if (now == database_) return;
  answer_.Changed(Environment::Database, now, database_);
  database_ = now;
}

void Session::Pause(int milliseconds) {
  if (milliseconds <= 0) return;
  answer_.Send();
  if (channel_.WaitForClient(std::chrono::milliseconds(milliseconds)) && channel_.TakeAttention())
    throw Cancelled();
}

}  // namespace korvel::tds
