#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "data/error.h"
#include "data/recordset.h"
#include "support/tds/channel.h"
#include "support/tds/values.h"

namespace korvel::tds {

/// Ends of results: of a statement in a batch, of a statement in a procedure, of a procedure.
enum class Done : std::uint8_t { Batch = 0xFD, Procedure = 0xFE, InProcedure = 0xFF };

/// Flags of such an end.
namespace done {
inline constexpr std::uint16_t kFinal = 0, kMore = 1, kError = 2, kCount = 0x10, kAttention = 0x20;
}

/// What the environment of a session changes to.
enum class Environment : std::uint8_t { Database = 1, Language = 2, PacketSize = 4 };

/// Writes an answer, token by token. Whole tokens go to the channel with Send, so that an answer may be broken off
/// between any two of them.
class Answer {
 public:
  Answer(Channel& channel, std::string serverName) : channel_(channel), serverName_(std::move(serverName)) {}

  void Speak(Version version) { version_ = version; }

  void LoginAck();
  void Changed(Environment what, std::string_view now, std::string_view before);
  void Collation();
  /// A transaction that began, or that ended by a commit or rollback.
  void TransactionBegan(std::uint64_t number);
  void TransactionEnded(bool committed, std::uint64_t number);

  void Info(int number, std::string_view text);
  /// Number, class and text as the server gives them. An error without a number goes as 50000.
  void Error(const data::Error& error);

  void Columns(std::span<const data::Field> fields);
  void Row(const data::Recordset& rows);
  void ReturnStatus(std::int64_t status);
  void ReturnValue(std::size_t ordinal, std::string_view name, const data::Value& value);
  void End(Done kind, std::uint16_t flags, std::int64_t count = 0);

  void Send() { channel_.Write(out_.Take()); }
  std::size_t Waiting() const { return out_.Size(); }

 private:
  void Message(std::uint8_t token, int number, std::uint8_t severity, std::string_view text);
  void UserTypeAndFlags();

  Channel& channel_;
  std::string serverName_;
  Version version_ = Version::V74;
  WireWriter out_;
};

}  // namespace korvel::tds
