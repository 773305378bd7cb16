#include "data/embedded/execution.h"

#include <optional>

#include <fmt/format.h>

#include "data/embedded/database_changes.h"
#include "data/embedded/errors.h"
#include "data/embedded/principal_changes.h"
#include "data/embedded/procedures.h"
#include "data/embedded/schema_writer.h"
#include "data/embedded/storage_changes.h"

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

/// A procedure's argument as text, nothing for NULL.
std::optional<std::string> TextOf(const Variable& value) {
  if (std::holds_alternative<Null>(value.value)) return std::nullopt;
  std::string scratch;
  const Stored text =
      Convert(View(value.value), value.type, ColumnType{Type::Text}, ConvertMode::Cast, -1, scratch);
  return std::string(std::get<std::string_view>(text));
}

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
  auto batch = std::make_shared<const Batch>(kept_ ? Batch() : ParseBatch(sql));
  if (!kept_ && static_cast<std::size_t>(batch->parameters) != parameters.size()) {
    throw Failed(Code::ProcedureArguments,
                 fmt::format("A instrução tem {} parâmetros e foram dados {} valores", batch->parameters,
                             parameters.size()));
  }
  std::vector<Variable> variables;
  for (const VariableDefinition& variable : batch->variables) variables.push_back({variable.type, Null{}});
  frames_.push_back({std::move(batch), 0, std::move(variables), {}, -1});
}

Execution::Execution(std::shared_ptr<Session> session, std::shared_ptr<const Batch> program,
                     std::vector<Variable> variables)
    : session_(std::move(session)), parameters_(Parameters()) {
  frames_.push_back({std::move(program), 0, std::move(variables), {}, -1});
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

template <typename Work>
bool Execution::Watched(Work work) {
  try {
    return work();
  } catch (const Error& failure) {
    session_->Values().lastError = failure.Native();
    session_->RequireAlive();
    throw;
  }
}

bool Execution::Step() {
  return Watched([this] { return NextRow(); });
}

bool Execution::NextRow() {
  session_->RequireAlive();
  if (done_) return false;
  // The time limit is for the server's work up to the first row, not for the reader's between rows.
  if (count_ == 0) database_->File().SetDeadline();
  done_ = !rows_->statement.Step();
  if (count_ == 0) database_->File().ClearDeadline();
  if (!done_) ++count_;
  return !done_;
}

bool Execution::NextStatement() {
  started_ = std::chrono::steady_clock::now();
  const bool more = Watched([this] { return RunNext(); });
  session_->Values().lastError = 0;
  return more;
}

bool Execution::RunNext() {
  FinishRows();
  changed_ = 0;
  if (OpenPending()) return true;
  if (kept_) return Top().next++ == 0 && RunKept();
  while (const Statement* statement = Fetch()) {
    database_ = session_->Current();
    if (!Steer(*statement)) {
      Run(*statement);
      return true;
    }
    session_->Values().lastError = 0;
  }
  return false;
}

/// The statement to run now, nullptr behind the last. Leaves the procedures that are at their end.
const Statement* Execution::Fetch() {
  while (Top().next == Top().program->statements.size()) {
    if (frames_.size() == 1) return nullptr;
    Leave({kInt, std::int64_t{0}});
  }
  return &Top().program->statements[Top().next++];
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
  const Batch& program = *Top().program;
  const bool alone = frames_.size() == 1 && program.statements.size() == 1 && program.variables.empty();
  return session_->Prepare(translate(tree, session_->Around(), parameters_.Types()),
                           alone ? key_ : std::string());
}

void Execution::Run(const Statement& statement) {
  std::visit(
      Overloaded{
          [](const Accepted&) {},
          [this](const QueryPtr& query) { OpenRows(Translated(*query, TranslateQuery)); },
          [this](const Insert& insert) { RunWrite(Translated(insert, TranslateInsert)); },
          [this](const Update& update) { RunWrite(Translated(update, TranslateUpdate)); },
          [this](const Delete& remove) { RunWrite(Translated(remove, TranslateDelete)); },
          [this](const Use& use) { session_->Use(use.name); },
          [this](TransactionStep step) { RunStep(step); },
          [this](const Call& call) { RunCall(call); },
          [this](const CreateDatabase& create) { session_->CreateDatabase(create.name); },
          [this](const DropDatabase& drop) {
            for (const std::string& name : drop.names) session_->DropDatabase(name);
          },
          [this](const CreateLogin& create) { Apply(create, *session_); },
          [this](const AlterLogin& alter) { Apply(alter, *session_); },
          [this](const DropLogin& drop) { Apply(drop, *session_); },
          [this](const SetDatabaseState& change) { Apply(change, *session_); },
          [this](const KillProcess& kill) { Apply(kill, *session_); },
          [this](const BackUpDatabase& backup) { Apply(backup, FileOf(backup.target), *session_); },
          [this](const RestoreDatabase& restore) { Apply(restore, FileOf(restore.target), *session_); },
          [this](const Dbcc& dbcc) { Apply(dbcc, *session_); },
          [this, &statement](const auto&) { RunSchema(statement); },
      },
      statement);
}

void Execution::OpenRows(std::shared_ptr<Ready> ready) {
  session_->RequireFor(ready->translation, frames_.size() > 1);
  BindSlots(ready->statement, ready->translation.slots, Inputs(), ready->owned);
  rows_ = std::move(ready);
  done_ = false;
  count_ = 0;
}

void Execution::RunWrite(std::shared_ptr<Ready> ready) {
  session_->RequireFor(ready->translation, frames_.size() > 1);
  Store& file = database_->File();
  BindSlots(ready->statement, ready->translation.slots, Inputs(), ready->owned);
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

/// A procedure of the server itself.
void Execution::RunCall(const Call& call) {
  std::vector<GivenArgument> arguments;
  for (const Argument& argument : call.arguments) {
    if (argument.value) arguments.push_back({argument.name, TextOf(Evaluate(*argument.value))});
  }
  const Surroundings around = session_->Around();
  const ServerView view{session_->Host(), around.database, *around.catalogue, *session_};
  pending_ = RunProcedure(call.procedure, arguments, *session_, view);
  nextPending_ = 0;
  if (call.result >= 0)
    Assign(Top().variables[static_cast<std::size_t>(call.result)], {kInt, std::int64_t{0}});
  OpenPending();
}

std::string Execution::FileOf(const BackupTarget& target) {
  return target.file ? TextOf(Evaluate(*target.file)).value_or("") : std::string();
}

bool Execution::OpenPending() {
  if (nextPending_ == pending_.size()) return false;
  OpenRows(session_->Prepare(TranslateRows(pending_[nextPending_++]), ""));
  return true;
}

void Execution::RunSchema(const Statement& statement) {
  session_->RequireFor(statement);
  SchemaWriter writer(*database_);
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
