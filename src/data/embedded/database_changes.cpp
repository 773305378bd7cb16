#include "data/embedded/database_changes.h"

#include <algorithm>
#include <chrono>
#include <thread>

#include <fmt/format.h>

#include "data/embedded/errors.h"

namespace korvel::data::embedded {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::seconds kLongestWait{1};
constexpr std::chrono::milliseconds kStep{20};

bool IsPlaced(const DatabaseEntry& entry, DatabaseState state) {
  switch (state) {
    case DatabaseState::ReadOnly:
      return entry.readOnly;
    case DatabaseState::ReadWrite:
      return !entry.readOnly;
    case DatabaseState::SingleUser:
      return entry.singleUser;
    case DatabaseState::MultiUser:
      return !entry.singleUser;
  }
  return true;
}

void Place(DatabaseList databases, std::int64_t id, DatabaseState state) {
  if (state == DatabaseState::ReadOnly || state == DatabaseState::ReadWrite) {
    databases.SetReadOnly(id, state == DatabaseState::ReadOnly);
  } else {
    databases.SetSingleUser(id, state == DatabaseState::SingleUser);
  }
}

/// False while others have the database open.
bool TryPlace(Session& session, std::string_view database, DatabaseState state) {
  const ProcessSlot::Gate gate(session.Processes());
  const DatabaseEntry entry = session.GetDatabase(database);
  if (IsPlaced(entry, state)) return true;
  if (!session.Processes().OthersIn(static_cast<int>(entry.id)).empty()) return false;
  Place(session.Host().States(), entry.id, state);
  return true;
}

Error NotPlaced(const SetDatabaseState& change, DatabaseState state) {
  if (state == DatabaseState::MultiUser) {
    return Failed(
        Code::SingleUserConnected,
        fmt::format("A base de dados '{}' está em modo de utilizador único e tem um utilizador ligado",
                    change.database));
  }
  const Code code = change.wait == StateWait::None ? Code::StateInUse : Code::StateNotPlaced;
  return Failed(
      code, fmt::format("O estado da base de dados '{}' não pode mudar enquanto outros utilizadores a usam",
                        change.database));
}

void EndOthers(Session& session, std::string_view database) {
  const DatabaseEntry entry = session.GetDatabase(database);
  for (const ProcessEntry& other : session.Processes().OthersIn(static_cast<int>(entry.id)))
    session.Processes().Kill(other.spid);
}

void Place(const SetDatabaseState& change, DatabaseState state, Session& session) {
  const auto wait = std::min(kLongestWait, std::chrono::seconds(session.Host().TimeoutSeconds()));
  const auto end = Clock::now() + (change.wait == StateWait::None ? std::chrono::seconds(0) : wait);
  while (true) {
    if (change.wait == StateWait::EndOthers) EndOthers(session, change.database);
    if (TryPlace(session, change.database, state)) return;
    if (Clock::now() >= end) throw NotPlaced(change, state);
    std::this_thread::sleep_for(kStep);
  }
}

}  // namespace

void Apply(const SetDatabaseState& change, Session& session) {
  session.RequireNoTransaction("ALTER DATABASE");
  const DatabaseEntry entry = session.GetDatabase(change.database);
  session.RequireOver(Right::AlterDatabase, entry);
  if (entry.IsMaster()) {
    throw Failed(Code::BadOption, "A opção não pode ser definida na base de dados 'master'");
  }
  for (const DatabaseState state : change.states) Place(change, state, session);
}

void Apply(const KillProcess& kill, Session& session) {
  session.Require(Right::EndProcesses);
  if (kill.spid == session.Processes().Spid()) {
    throw Failed(Code::KillOneself, "Não é possível terminar o próprio processo");
  }
  if (!session.Processes().Kill(static_cast<int>(kill.spid))) {
    throw Failed(Code::NoProcessToKill, fmt::format("O processo {} não está activo", kill.spid));
  }
}

}  // namespace korvel::data::embedded
