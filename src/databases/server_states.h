#pragma once

#include <string_view>

#include "session/connections.h"

/// States of a database that other users feel, and the processes of those users.
namespace korvel::databases {

/// Goes to single user mode and back: true when the first worked, that is when nobody else is connected.
bool TrySingleUserMode(data::Connection& master, std::string_view database);
void SetSingleUserMode(data::Connection& master, std::string_view database, bool single);

/// A line of progress below the list of companies, while a long task runs from there.
void SetInfoInSelEmpresas(const session::Context& context, std::string_view text);

/// Ends all processes that this machine has in a database, its own apart; each step is told to `progress`. False when
/// the server refuses, with the error outputs set.
bool KillAllProcessesInCurrentMachine(const session::Context& context, std::string_view database);

/// A lock is a table that a process holds changed: another process sees it in the server's list of locks, and it goes
/// with the process. The connection must not be in a transaction and belongs to the lock until it is undone.
void ActivaLock(data::Connection& connection, std::string_view name);
void DesActivaLock(data::Connection& connection, std::string_view name);
bool SQLCheckLock(data::Connection& connection, std::string_view name);

}  // namespace korvel::databases
