#include "data/embedded/session.h"

#include <algorithm>

#include <fmt/format.h>

#include "data/embedded/errors.h"
#include "data/embedded/roles.h"
#include "data/embedded/server_facts.h"
#include "data/embedded/system_tables.h"
#include "data/embedded/users.h"
#include "data/embedded/watch.h"

namespace korvel::data::embedded {
namespace {

Error CannotOpen(std::string_view database) {
  return Failed(
      Code::CannotOpenDatabase,
      fmt::format("Não é possível abrir a base de dados \"{}\" pedida pelo início de sessão", database));
}

Error NoSuchDatabase(std::string_view database) {
  return Failed(Code::NoDatabase, fmt::format("A base de dados '{}' não existe", database));
}

Error NotAllowedIn(std::string_view login, std::string_view database) {
  return Failed(Code::NoRightToDatabase,
                fmt::format("O início de sessão '{}' não tem acesso à base de dados '{}'", login, database));
}

Error TakenBySingleUser(std::string_view database) {
  return Failed(
      Code::SingleUserTaken,
      fmt::format("A base de dados '{}' já está aberta e só pode ter um utilizador de cada vez", database));
}

}  // namespace

Session::Session(Server server, const ConnectionString& wanted)
    : server_(std::move(server)),
      processes_(
          server_.ProcessFile(),
          {server_.Login().name, server_.Login().windows ? server_.Login().name : "", wanted.application}) {
  values_.login = server_.Login().name;
  const std::string& first = wanted.database.empty() ? server_.Login().database : wanted.database;
  const auto entry = server_.FindDatabase(first);
  if (!entry) throw CannotOpen(first);
  Open(*entry, Way::Login);
}

/// Takes its place in a database, unless somebody else is its single user.
void Session::Enter(const DatabaseEntry& entry, Way way) {
  const ProcessSlot::Gate gate(processes_);
  const auto now = server_.FindDatabase(entry.name);
  const bool there = now && now->id == entry.id;
  const bool taken = there && now->singleUser && !processes_.OthersIn(static_cast<int>(entry.id)).empty();
  if (way == Way::Login && (!there || taken)) throw CannotOpen(entry.name);
  if (!there) throw NoSuchDatabase(entry.name);
  if (taken) throw TakenBySingleUser(entry.name);
  ShowDatabases(static_cast<int>(entry.id));
}

void Session::Open(const DatabaseEntry& entry, Way way) {
  Enter(entry, way);
  try {
    auto opened = std::make_shared<Database>(entry.name, entry.id, server_.OpenDatabase(entry));
    const Access access = AccessIn(entry, opened->File());
    if (!access.inside)
      throw way == Way::Login ? CannotOpen(entry.name) : NotAllowedIn(values_.login, entry.name);
    current_ = std::move(opened);
  } catch (...) {
    ShowDatabases(0);
    throw;
  }
  current_->File().StopWhen([this] { return processes_.Killed(); });
  current_->File().Functions().serverFact = [this](std::string_view fact, std::string_view first,
                                                   std::string_view second) {
    return ServerFact(*this, fact, first, second);
  };
  values_.database = entry.name;
  databaseVersion_ = -1;
  ShowDatabases(0);
}

/// What others see of it: the database that it enters (0: none), the current one, those of its transaction.
void Session::ShowDatabases(int entering) {
  std::vector<int> shown;
  if (entering != 0) shown.push_back(entering);
  if (current_) shown.push_back(static_cast<int>(current_->Id()));
  for (const auto& parked : parked_) shown.push_back(static_cast<int>(parked->Id()));
  std::vector<int> once;
  for (const int id : shown) {
    if (std::count(once.begin(), once.end(), id) == 0) once.push_back(id);
  }
  processes_.SetDatabases(once);
}

Access Session::AccessIn(const DatabaseEntry& entry, Store& file) {
  Access access;
  const auto roles = server_.RolesNow();
  access.serverRoles = roles.value_or(0);
  access.owner =
      (access.serverRoles & server_role::kSysAdmin) != 0 || (roles && entry.owner == server_.Login().sid);
  access.inside = access.owner || entry.IsMaster();
  access.readOnly = entry.readOnly;
  access.user = access.owner ? kOwnerUser : kGuest;
  access.number = access.owner ? kOwnerNumber : kGuestNumber;
  if (access.owner || !roles) return access;
  if (const auto user = UserList(file).FindSid(server_.Login().sid)) {
    access.inside = true;
    access.user = user->name;
    access.number = user->number;
    access.databaseRoles = user->roles;
  }
  return access;
}

const Access& Session::Now() {
  const std::int64_t changes = server_.Changes();
  const std::int64_t version = current_->Now()->Version();
  if (changes != serverChanges_ || version != databaseVersion_) {
    access_ = AccessIn(GetDatabase(current_->Name()), current_->File());
    serverChanges_ = changes;
    databaseVersion_ = version;
  }
  if (!access_.inside) throw NotAllowedIn(values_.login, current_->Name());
  return access_;
}

Access Session::AccessTo(const DatabaseEntry& entry) {
  if (entry.id == current_->Id()) return AccessIn(entry, current_->File());
  const auto file = server_.OpenDatabase(entry);
  return AccessIn(entry, *file);
}

void Session::Require(Right right, std::string_view object) {
  embedded::Require(right, Now(), object, current_->Name());
}

void Session::RequireOver(Right right, const DatabaseEntry& entry) {
  // A sysadmin need not open the file, which may be damaged.
  const unsigned roles = server_.RolesNow().value_or(0);
  if ((roles & server_role::kSysAdmin) != 0) return;
  embedded::Require(right, AccessTo(entry), entry.name, entry.name);
}

void Session::RequireFor(const Translation& translation, bool covered) {
  const ObjectUse& written = translation.writes;
  if (translation.reads.id == 0 && written.id == 0) return;
  Access access = Now();
  if (covered) access.owner = true;
  if (translation.reads.id != 0)
    embedded::Require(Right::Select, access, translation.reads.name, current_->Name());
  if (written.id == 0) return;
  embedded::Require(Right::Write, access, written.name, current_->Name());
  MarkChanged(written.id);
}

void Session::RequireFor(const Statement& statement) {
  const SchemaNeed need = NeedOf(statement);
  Require(need.right, need.object);
  if (const Object* object = FindObject(need.changed, Around())) MarkChanged(object->id);
}

/// Others see in the list of locks what a transaction has changed.
void Session::MarkChanged(std::int64_t object) {
  if (values_.transactionCount == 0) return;
  processes_.AddChanged({static_cast<std::int32_t>(current_->Id()), static_cast<std::int32_t>(object)});
}

Surroundings Session::Around() {
  Surroundings around;
  around.catalogue = current_->Now();
  around.database = current_->Name();
  around.systemTable = [this, catalogue = around.catalogue](std::string_view database,
                                                            std::string_view name) {
    return SystemTable({server_, values_.database, *catalogue, *this}, database, name);
  };
  return around;
}

DatabaseEntry Session::GetDatabase(std::string_view database) {
  if (auto entry = server_.FindDatabase(database)) return std::move(*entry);
  throw NoSuchDatabase(database);
}

/// What a transaction has begun in stays open until its end.
void Session::Park() {
  const bool known = std::find(parked_.begin(), parked_.end(), current_) != parked_.end();
  if (values_.transactionCount > 0 && !known) parked_.push_back(current_);
}

void Session::Use(std::string_view database) {
  if (SameName(database, current_->Name())) return;
  const DatabaseEntry entry = GetDatabase(database);
  Park();
  for (auto& parked : parked_) {
    if (parked->Id() != entry.id) continue;
    current_ = parked;
    values_.database = entry.name;
    databaseVersion_ = -1;
    return ShowDatabases(0);
  }
  Open(entry, Way::Use);
  if (values_.transactionCount > 0) current_->File().Run("BEGIN IMMEDIATE");
}

void Session::CreateDatabase(std::string_view database) {
  RequireNoTransaction("CREATE DATABASE");
  Require(Right::CreateDatabase, "CREATE DATABASE");
  const ProcessSlot::Gate gate(processes_);
  server_.CreateDatabase(database);
}

void Session::DropDatabase(std::string_view database) {
  RequireNoTransaction("DROP DATABASE");
  // From here on nobody else makes or drops one of its name.
  const ProcessSlot::Gate gate(processes_);
  const auto entry = server_.FindDatabase(database);
  if (!entry || entry->IsMaster()) {
    throw Failed(Code::NoObjectToDrop,
                 fmt::format("Não é possível eliminar a base de dados '{}', porque não existe", database));
  }
  RequireOver(Right::DropDatabase, *entry);
  if (entry->id == current_->Id() || !processes_.OthersIn(static_cast<int>(entry->id)).empty()) {
    throw Failed(Code::InUse,
                 fmt::format("A base de dados '{}' está a ser usada e não pode ser eliminada", database));
  }
  server_.DropDatabase(*entry);
}

template <typename Step>
void Session::OnEachOpen(Step step) {
  for (auto& database : parked_) {
    if (database != current_) step(*database);
  }
  step(*current_);
}

void Session::Begin() {
  if (values_.transactionCount == 0) current_->File().Run("BEGIN IMMEDIATE");
  ++values_.transactionCount;
  Watch::Add(*this);
  processes_.SetTransactions(static_cast<int>(values_.transactionCount));
}

void Session::Commit() {
  if (values_.transactionCount == 0) {
    throw Failed(Code::NotInTransaction,
                 "O pedido COMMIT TRANSACTION não tem BEGIN TRANSACTION correspondente");
  }
  if (values_.transactionCount == 1) {
    OnEachOpen([](Database& database) { database.File().Run("COMMIT"); });
    parked_.clear();
  }
  --values_.transactionCount;
  processes_.SetTransactions(static_cast<int>(values_.transactionCount));
  if (values_.transactionCount > 0) return;
  Watch::Remove(*this);
  ShowDatabases(0);
}

void Session::Rollback() {
  if (values_.transactionCount == 0) {
    throw Failed(Code::NotInTransaction,
                 "O pedido ROLLBACK TRANSACTION não tem BEGIN TRANSACTION correspondente");
  }
  values_.transactionCount = 0;
  OnEachOpen([](Database& database) {
    // A full disk or a lost file may have rolled it back already.
    if (database.File().InTransaction()) database.File().Run("ROLLBACK");
    database.Forget();
  });
  parked_.clear();
  Watch::Remove(*this);
  processes_.SetTransactions(0);
  ShowDatabases(0);
}

Session::~Session() {
  Watch::Remove(*this);
}

void Session::UndoIfIdle() noexcept {
  const std::scoped_lock lock(use_);
  if (leases_ == 0) Undo();
}

void Session::Undo() noexcept {
  values_.transactionCount = 0;
  OnEachOpen([](Database& database) {
    try {
      if (database.File().InTransaction()) database.File().Run("ROLLBACK");
    } catch (const Error&) {
      // What cannot be rolled back now is when its file closes.
    }
  });
}

void Session::Die() {
  Watch::Remove(*this);
  Undo();
  parked_.clear();
  throw KilledError();
}

void Session::RequireNoTransaction(std::string_view statement) const {
  if (values_.transactionCount == 0) return;
  throw Failed(Code::NotInsideTransaction,
               std::string(statement) + " não é permitida dentro de uma transacção");
}

std::shared_ptr<Ready> Session::Prepare(Translation translation, const std::string& key) {
  auto ready = std::make_shared<Ready>();
  ready->statement = current_->File().Prepare(translation.sql);
  ready->translation = std::move(translation);
  if (!key.empty() && !ready->translation.once) current_->Keep(key, ready);
  return ready;
}

}  // namespace korvel::data::embedded
