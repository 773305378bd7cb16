#include "data/embedded/execution.h"

#include <fmt/format.h>

#include "data/embedded/errors.h"
#include "data/embedded/procedures.h"
#include "data/embedded/schema_writer.h"

namespace korvel::data::embedded {
namespace {

/// What a kept statement depends on besides its text: the types of its parameters.
std::string KeyOf(std::string_view sql, const ParameterTypes& types) {
  std::string key;
  for (const auto& type : types) key += type ? fmt::format("{},", Pack(*type)) : std::string("-,");
  key += '\n';
  key += sql;
  return key;
}

template <typename... Handlers>
struct Overloaded : Handlers... {
  using Handlers::operator()...;
};
template <typename... Handlers>
Overloaded(Handlers...) -> Overloaded<Handlers...>;

}  // namespace

KeptParameters::KeptParameters(Parameters parameters) {
  values_.reserve(parameters.size());
  for (const Parameter& parameter : parameters) {
    values_.push_back(std::visit(
        [](const auto& held) {
          if constexpr (std::is_same_v<std::decay_t<decltype(held)>, std::string_view>) {
            return Value(std::string(held));
          } else {
            return Value(held);
          }
        },
        static_cast<const Parameter::variant&>(parameter)));
    views_.emplace_back(values_.back());
    types_.push_back(ParameterType(parameter));
  }
}

Execution::Execution(std::shared_ptr<Session> session, std::string_view sql, Parameters parameters)
    : session_(std::move(session)), parameters_(parameters), key_(KeyOf(sql, parameters_.Types())) {
  session_->Current()->Now();
  kept_ = session_->Current()->Find(key_) != nullptr;
  if (!kept_) batch_ = ParseBatch(sql);
  if (!kept_ && static_cast<std::size_t>(batch_.parameters) != parameters.size()) {
    throw Failed(Code::ProcedureArguments,
                 fmt::format("A instrução tem {} parâmetros e foram dados {} valores", batch_.parameters,
                             parameters.size()));
  }
}

Execution::~Execution() {
  Reset();
}

void Execution::Reset() {
  if (rows_) rows_->statement.Reset();
  rows_ = nullptr;
  if (database_) database_->File().ClearDeadline();
}

void Execution::FinishRows() {
  if (!rows_) return;
  while (Step()) {
  }
  session_->Values().rowCount = count_;
  Reset();
}

bool Execution::Step() {
  if (done_) return false;
  // The time limit is for the server's work up to the first row, not for the reader's between rows.
  if (count_ == 0) database_->File().SetDeadline();
  done_ = !rows_->statement.Step();
  if (count_ == 0) database_->File().ClearDeadline();
  if (!done_) ++count_;
  return !done_;
}

bool Execution::NextStatement() {
  FinishRows();
  changed_ = 0;
  if (OpenPending()) return true;
  if (kept_) return next_++ == 0 && RunKept();
  if (next_ >= batch_.statements.size()) return false;
  database_ = session_->Current();
  Run(batch_.statements[next_++]);
  return true;
}

bool Execution::RunKept() {
  database_ = session_->Current();
  const std::shared_ptr<Ready> ready = database_->Find(key_);
  if (ready->translation.fields.empty()) {
    RunWrite(ready);
  } else {
    OpenRows(ready);
  }
  return true;
}

template <typename Tree>
std::shared_ptr<Ready> Execution::Translated(const Tree& tree,
                                             Translation (*translate)(const Tree&, const Surroundings&,
                                                                      const ParameterTypes&)) {
  const std::string key = batch_.statements.size() == 1 ? key_ : std::string();
  return session_->Prepare(translate(tree, session_->Around(), parameters_.Types()), key);
}

void Execution::Run(const Statement& statement) {
  std::visit(Overloaded{
                 [](const Accepted&) {},
                 [this](const QueryPtr& query) { OpenRows(Translated(*query, TranslateQuery)); },
                 [this](const Insert& insert) { RunWrite(Translated(insert, TranslateInsert)); },
                 [this](const Update& update) { RunWrite(Translated(update, TranslateUpdate)); },
                 [this](const Delete& remove) { RunWrite(Translated(remove, TranslateDelete)); },
                 [this](const Use& use) { session_->Use(use.name); },
                 [this](TransactionStep step) { RunStep(step); },
                 [this](const Call& call) { RunCall(call); },
                 [this](const CreateDatabase& create) {
                   session_->RequireNoTransaction("CREATE DATABASE");
                   session_->Host().CreateDatabase(create.name);
                 },
                 [this](const DropDatabase& drop) {
                   session_->RequireNoTransaction("DROP DATABASE");
                   for (const std::string& name : drop.names) session_->Host().DropDatabase(name);
                 },
                 [this, &statement](const auto&) { RunSchema(statement); },
             },
             statement);
}

void Execution::OpenRows(std::shared_ptr<Ready> ready) {
  BindSlots(ready->statement, ready->translation.slots, parameters_.View(), session_->Values(), ready->owned);
  rows_ = std::move(ready);
  done_ = false;
  count_ = 0;
}

void Execution::RunWrite(std::shared_ptr<Ready> ready) {
  Store& file = database_->File();
  BindSlots(ready->statement, ready->translation.slots, parameters_.View(), session_->Values(), ready->owned);
  rows_ = std::move(ready);
  done_ = false;
  count_ = 0;
  Step();
  const bool givesIdentity = rows_->translation.givesIdentity;
  Reset();
  changed_ = file.Changes();
  session_->Values().rowCount = changed_;
  if (givesIdentity && changed_ > 0) session_->Values().identity = file.LastInsertKey();
}

void Execution::RunCall(const Call& call) {
  const Surroundings around = session_->Around();
  const ServerView view{session_->Host(), around.database, *around.catalogue};
  pending_ = RunProcedure(call, *session_, view, parameters_.View());
  nextPending_ = 0;
  OpenPending();
}

bool Execution::OpenPending() {
  if (nextPending_ == pending_.size()) return false;
  OpenRows(session_->Prepare(TranslateRows(pending_[nextPending_++]), ""));
  return true;
}

void Execution::RunSchema(const Statement& statement) {
  SchemaWriter writer(database_->File(), database_->Name());
  std::visit(Overloaded{
                 [&](const CreateView& create) {
                   writer.Apply(create, TranslateQuery(*create.query, session_->Around(), {}));
                 },
                 [&](const auto& change) {
                   if constexpr (requires { writer.Apply(change); }) writer.Apply(change);
                 },
             },
             statement);
}

void Execution::RunStep(TransactionStep step) {
  switch (step) {
    case TransactionStep::Begin:
      return session_->Begin();
    case TransactionStep::Commit:
      return session_->Commit();
    case TransactionStep::Rollback:
      return session_->Rollback();
  }
}

}  // namespace korvel::data::embedded
