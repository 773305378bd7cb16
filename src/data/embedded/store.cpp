#include "data/embedded/store.h"

#include <algorithm>
#include <thread>
#include <utility>

#include <fmt/format.h>
#include <sqlite3.h>

#include "data/embedded/errors.h"
#include "data/embedded/sql_functions.h"

namespace korvel::data::embedded {
namespace {

constexpr int kProgressSteps = 50'000;

/// How the engine words a view's table that has gone: names in statements are checked before they reach it.
constexpr std::string_view kMissingTable = "no such table: main.";

/// A commit is on the disk before it is reported: the program must not lose data. The page cache and the sorters
/// together stay within the memory that a desktop program may take.
constexpr const char* kPragmas =
    "PRAGMA synchronous=FULL;"
    "PRAGMA cache_size=-16384;"
    "PRAGMA temp_store=FILE;"
    "PRAGMA secure_delete=OFF;"
    "PRAGMA threads=1;"
    "PRAGMA journal_size_limit=67108864;";

int FlagsOf(OpenMode mode) {
  return SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX | (mode == OpenMode::Create ? SQLITE_OPEN_CREATE : 0);
}

}  // namespace

void Prepared::Finalize::operator()(sqlite3_stmt* statement) const {
  sqlite3_finalize(statement);
}

Prepared::Prepared(Store& store, std::string_view sql) : store_(&store) {
  sqlite3_stmt* raw = nullptr;
  const int result =
      sqlite3_prepare_v3(store.Raw(), sql.data(), static_cast<int>(sql.size()), 0, &raw, nullptr);
  statement_.reset(raw);
  if (result != SQLITE_OK) store.Fail(result);
}

void Prepared::Bind(int parameter, const Stored& value) {
  if (const auto* text = std::get_if<std::string_view>(&value)) return BindText(parameter, *text);
  int result = SQLITE_OK;
  if (const auto* units = std::get_if<std::int64_t>(&value)) {
    result = sqlite3_bind_int64(statement_.get(), parameter, *units);
  } else if (const auto* number = std::get_if<double>(&value)) {
    result = sqlite3_bind_double(statement_.get(), parameter, *number);
  } else {
    result = sqlite3_bind_null(statement_.get(), parameter);
  }
  if (result != SQLITE_OK) store_->Fail(result);
}

void Prepared::BindText(int parameter, std::string_view text) {
  // A view of nothing has no address, which the store would read as NULL.
  const char* data = text.data() == nullptr ? "" : text.data();
  const int result =
      sqlite3_bind_text64(statement_.get(), parameter, data, text.size(), SQLITE_STATIC, SQLITE_UTF8);
  if (result != SQLITE_OK) store_->Fail(result);
}

bool Prepared::Step() {
  const int result = sqlite3_step(statement_.get());
  if (result == SQLITE_ROW) return true;
  if (result != SQLITE_DONE) store_->Fail(result);
  return false;
}

void Prepared::Reset() {
  sqlite3_reset(statement_.get());
}

void Prepared::Run() {
  while (Step()) {
  }
  Reset();
}

bool Prepared::IsNull(int column) const {
  return sqlite3_column_type(Raw(), column) == SQLITE_NULL;
}
std::int64_t Prepared::Integer(int column) const {
  return sqlite3_column_int64(Raw(), column);
}

std::string_view Prepared::Text(int column) const {
  const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(Raw(), column));
  if (text == nullptr) return {};
  return {text, static_cast<std::size_t>(sqlite3_column_bytes(Raw(), column))};
}

Stored ReadColumn(sqlite3_stmt* statement, int column, const ColumnType& type) {
  if (sqlite3_column_type(statement, column) == SQLITE_NULL) return Null{};
  if (IsText(type)) {
    const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement, column));
    return std::string_view(text, static_cast<std::size_t>(sqlite3_column_bytes(statement, column)));
  }
  if (type.base == Type::Float) return sqlite3_column_double(statement, column);
  return sqlite3_column_int64(statement, column);
}

void Store::Close::operator()(sqlite3* handle) const {
  sqlite3_close_v2(handle);
}

Store::Store(const std::filesystem::path& file, std::string name, OpenMode mode, int timeoutSeconds)
    : name_(std::move(name)), timeoutSeconds_(timeoutSeconds) {
  sqlite3* raw = nullptr;
  const int result = sqlite3_open_v2(file.string().c_str(), &raw, FlagsOf(mode), nullptr);
  handle_.reset(raw);
  if (result != SQLITE_OK) Fail(result);
  sqlite3_busy_handler(raw, &Store::OnBusy, this);
  sqlite3_progress_handler(raw, kProgressSteps, &Store::OnProgress, this);
  // A name between double quotes is a name, and never a text when no such column is there.
  sqlite3_db_config(raw, SQLITE_DBCONFIG_DQS_DML, 0, nullptr);
  sqlite3_db_config(raw, SQLITE_DBCONFIG_DQS_DDL, 0, nullptr);
  RegisterFunctions(*this);
  Run(kPragmas);
}

Store::~Store() = default;

void Store::Run(std::string_view sql) {
  const int result = sqlite3_exec(handle_.get(), std::string(sql).c_str(), nullptr, nullptr, nullptr);
  if (result != SQLITE_OK) Fail(result);
}

std::int64_t Store::Number(std::string_view sql) {
  Prepared statement(*this, sql);
  return statement.Step() ? statement.Integer(0) : 0;
}

std::int64_t Store::Changes() const {
  return sqlite3_changes64(handle_.get());
}
std::int64_t Store::LastInsertKey() const {
  return sqlite3_last_insert_rowid(handle_.get());
}
bool Store::InTransaction() const {
  return sqlite3_get_autocommit(handle_.get()) == 0;
}

void Store::SetDeadline() {
  deadline_ = timeoutSeconds_ <= 0 ? std::chrono::steady_clock::time_point{}
                                   : std::chrono::steady_clock::now() + std::chrono::seconds(timeoutSeconds_);
}

int Store::OnProgress(void* self) {
  if (static_cast<Store*>(self)->Killed()) return 1;
  const auto deadline = static_cast<Store*>(self)->deadline_;
  const bool late =
      deadline != std::chrono::steady_clock::time_point{} && std::chrono::steady_clock::now() > deadline;
  return late ? 1 : 0;
}

/// Waits for a lock a little longer each time, up to the connection's time-out.
int Store::OnBusy(void* self, int tries) {
  Store& store = *static_cast<Store*>(self);
  const auto now = std::chrono::steady_clock::now();
  if (tries == 0) store.waitStart_ = now;
  if (store.Killed() || now - store.waitStart_ >= std::chrono::seconds(store.timeoutSeconds_)) return 0;
  constexpr int kLongest = 50;
  std::this_thread::sleep_for(std::chrono::milliseconds(std::min(tries + 1, kLongest)));
  return 1;
}

void Store::Fail(int result) {
  if (functions_.raised) std::rethrow_exception(std::exchange(functions_.raised, nullptr));
  throw Translate(result);
}

Error Store::Translate(int result) {
  if (Killed()) return KilledError();
  const int extended = handle_ ? sqlite3_extended_errcode(handle_.get()) : result;
  const std::string words = handle_ ? sqlite3_errmsg(handle_.get()) : sqlite3_errstr(result);
  switch (result & 0xFF) {
    case SQLITE_CONSTRAINT:
      if (duplicate_ && extended != SQLITE_CONSTRAINT_NOTNULL) return duplicate_(words);
      return Failed(Code::NullRefused, "Não é possível inserir o valor NULL na tabela: " + words);
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
      return Failed(Code::LockTimeout,
                    fmt::format("Tempo esgotado à espera da base de dados {}, que está a ser "
                                "escrita por outra ligação",
                                name_));
    case SQLITE_INTERRUPT:
      return OutOfTime();
    case SQLITE_NOTADB:
    case SQLITE_CORRUPT:
      return Failed(Code::Damaged, fmt::format("O ficheiro da base de dados {} está danificado", name_));
    case SQLITE_FULL:
      return Failed(Code::DiskFull, fmt::format("Não há espaço em disco para a base de dados {}", name_));
    case SQLITE_READONLY:
      return Failed(Code::ReadOnly, fmt::format("A base de dados {} só pode ser lida", name_));
    case SQLITE_CANTOPEN:
    case SQLITE_IOERR:
    case SQLITE_PERM:
      return Failed(Code::Input,
                    fmt::format("O ficheiro da base de dados {} não pôde ser lido nem escrito", name_));
    case SQLITE_ERROR:
      if (words == "integer overflow") {
        return Failed(Code::ArithmeticOverflow, "Erro de excesso aritmético numa soma");
      }
      if (words.starts_with(kMissingTable)) {
        return Failed(Code::NoTable,
                      fmt::format("Nome de objecto inválido: '{}'", words.substr(kMissingTable.size())));
      }
      [[fallthrough]];
    default:
      return Failed(Code::Syntax, fmt::format("A instrução falhou na base de dados {}: {}", name_, words));
  }
}

AtomicWrite::AtomicWrite(Store& store) : store_(store), nested_(store.InTransaction()) {
  store_.Run(nested_ ? "SAVEPOINT korvel" : "BEGIN IMMEDIATE");
}

AtomicWrite::~AtomicWrite() {
  if (!open_) return;
  try {
    store_.Run(nested_ ? "ROLLBACK TO korvel; RELEASE korvel" : "ROLLBACK");
  } catch (const Error&) {
    // A failed statement may have rolled the whole transaction back already: nothing is left to undo then.
  }
}

void AtomicWrite::Keep() {
  store_.Run(nested_ ? "RELEASE korvel" : "COMMIT");
  open_ = false;
}

Snapshot::Snapshot(Store& store) : store_(store) {
  store_.Run("SAVEPOINT korvel_reading");
}

Snapshot::~Snapshot() {
  try {
    store_.Run("RELEASE korvel_reading");
  } catch (const Error&) {
    // Nothing was written: a snapshot that a failure has ended already leaves nothing to release.
  }
}

std::string QuoteName(std::string_view name) {
  std::string quoted = "\"";
  for (const char c : name) quoted.append(c == '"' ? 2 : 1, c);
  return quoted + '"';
}

std::string QuoteText(std::string_view text) {
  if (text.find('\0') != std::string_view::npos) {
    std::string bytes = "CAST(x'";
    for (const char c : text) bytes += fmt::format("{:02x}", static_cast<unsigned char>(c));
    return bytes + "' AS TEXT)";
  }
  std::string quoted = "'";
  for (const char c : text) quoted.append(c == '\'' ? 2 : 1, c);
  return quoted + '\'';
}

}  // namespace korvel::data::embedded
