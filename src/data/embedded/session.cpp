#include "data/embedded/session.h"

#include "data/embedded/errors.h"
#include "data/embedded/system_tables.h"

namespace korvel::data::embedded {

Session::Session(Server server, std::string_view database) : server_(std::move(server)) {
  values_.login = server_.Login().name;
  values_.sysAdmin = server_.Login().sysAdmin;
  const auto entry = server_.FindDatabase(database.empty() ? kMaster : database);
  if (!entry) {
    throw Failed(Code::CannotOpenDatabase, "Não é possível abrir a base de dados \"" + std::string(database) +
                                               "\" pedida pelo início de sessão");
  }
  Open(*entry);
}

void Session::Open(const DatabaseEntry& entry) {
  current_ = std::make_shared<Database>(entry.name, server_.OpenDatabase(entry));
  values_.database = entry.name;
}

Surroundings Session::Around() {
  Surroundings around;
  around.catalogue = current_->Now();
  around.database = current_->Name();
  around.systemTable = [this, catalogue = around.catalogue](std::string_view database,
                                                            std::string_view name) {
    return SystemTable({server_, values_.database, *catalogue}, database, name);
  };
  return around;
}

void Session::Use(std::string_view database) {
  if (SameName(database, current_->Name())) return;
  const auto entry = server_.FindDatabase(database);
  if (!entry) throw Failed(Code::NoDatabase, "A base de dados '" + std::string(database) + "' não existe");
  if (values_.transactionCount > 0) parked_.push_back(current_);
  for (auto& parked : parked_) {
    if (!SameName(parked->Name(), entry->name)) continue;
    current_ = parked;
    values_.database = entry->name;
    return;
  }
  Open(*entry);
  if (values_.transactionCount > 0) current_->File().Run("BEGIN IMMEDIATE");
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
