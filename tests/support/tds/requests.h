#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "support/tds/values.h"

namespace korvel::tds {

/// What a client asks, read from its messages. Every reader throws WireError for bytes that do not follow the
/// protocol and reads nothing outside the message.

/// The first message: which options the client names. Encryption is not offered, whatever it asks.
struct PreLogin {
  bool asksEncryption = false;
};
PreLogin ReadPreLogin(std::string_view payload);
std::string PreLoginAnswer();

struct Login {
  Version version = Version::V71;
  std::uint32_t packetSize = 0;  // 0: the server's choice
  std::string host;
  std::string user;
  std::string password;
  std::string application;
  std::string server;
  std::string clientLibrary;
  std::string language;
  std::string database;
  bool integratedSecurity = false;
};
Login ReadLogin(std::string_view payload);

/// The text of a batch, without what newer clients put in front of it.
std::string ReadBatch(std::string_view payload, Version version);

/// Procedures that go by a number.
enum class ProcedureId : std::uint16_t {
  None = 0,
  ExecuteSql = 10,
  Prepare = 11,
  Execute = 12,
  PrepExec = 13,
  Unprepare = 15,
};

struct RpcParameter {
  std::string name;  // with its "@"; empty: by position
  bool output = false;
  data::Value value;
};

struct Rpc {
  std::string name;  // as written; that of a number for one of those above
  ProcedureId id = ProcedureId::None;
  std::vector<RpcParameter> parameters;
};
/// The calls of one message, in order.
std::vector<Rpc> ReadRpcs(std::string_view payload, Version version);

enum class TransactionStep : std::uint16_t { Begin = 5, Commit = 7, Rollback = 8, Save = 9 };
struct TransactionRequest {
  TransactionStep step = TransactionStep::Begin;
  std::string name;
  bool beginsNext = false;  // a commit or rollback that starts another transaction
};
TransactionRequest ReadTransaction(std::string_view payload);

}  // namespace korvel::tds
