#pragma once

#include <string_view>
#include <utility>

#include "session/connections.h"

/// Members that report by their result: what the server refuses goes to the error outputs.
namespace korvel::databases {

inline constexpr std::string_view kNoPermission = "Sem Permissão para executar esta operação";

/// Sets `gErroNumero` and `gErroDescricao`; a missing right is told in the words of kNoPermission.
void KeepError(session::SessionRecord& session, const data::Error& error);
/// Whether the error outputs tell of a missing right.
bool LacksRight(const session::SessionRecord& session);

/// Runs `work()`; false when it throws data::Error, which is kept.
template <typename Work>
bool Attempt(const session::Context& context, Work&& work) {
  try {
    std::forward<Work>(work)();
    return true;
  } catch (const data::Error& error) {
    KeepError(context.session, error);
    return false;
  }
}

/// Opens a database as the session's user and runs `work(connection)` on it; false when either fails.
template <typename Work>
bool AttemptOn(const session::Context& context, std::string_view database, Work&& work) {
  session::ConnectionPtr connection;
  return session::OpenSessionDatabase(context, connection, database) &&
         Attempt(context, [&] { std::forward<Work>(work)(*connection); });
}

}  // namespace korvel::databases
