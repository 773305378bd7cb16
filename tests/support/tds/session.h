#pragma once

#include <atomic>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "data/connection.h"
#include "support/tds/answer.h"
#include "support/tds/channel.h"
#include "support/tds/requests.h"

namespace korvel::tds {

/// What a server does wrong when a test asks for it. May be changed at any time, by any thread.
struct Faults {
  std::atomic<int> answerDelay{0};         // milliseconds before each answer, those to the login included
  std::atomic<int> rowDelay{0};            // milliseconds before each row
  std::atomic<std::int64_t> cutInRow{-1};  // the connection breaks inside the row of that number, from 0
  std::atomic<std::int64_t> cutAfterBytes{-1};  // the connection breaks that many bytes into an answer
  std::atomic<bool> refuseLogins{false};
};

/// Where a session finds its databases, and whom it tells of what it does.
struct SessionSettings {
  std::filesystem::path embeddedFolder;
  std::string serverName;
  int timeoutSeconds = 20;
  std::function<void(const Message&)> received;  // each message of a client
  std::function<void(const Login&)> entered;     // each login that succeeded, without its password
};

/// One client's conversation, from its login to its end. Each statement goes to the embedded engine.
class Session {
 public:
  Session(Channel& channel, const SessionSettings& settings, const Faults& faults);

  /// Serves the client until it goes, is cut off, or sends what is not the protocol.
  void Run();

 private:
  struct Prepared {
    std::string sql;
    std::vector<std::string> names;
  };

  std::optional<Message> Next();
  bool Greet();
  bool Enter(const Login& login);
  void OpenDatabase(const Login& login);
  void Welcome(const Login& login);
  void Refuse(const data::Error& error);

  void Serve(const Message& message);
  void Answered(const std::function<void()>& work, Done kind);
  void RunBatch(const std::string& sql);
  void RunRpc(const Rpc& rpc, bool last);
  void RunProcedure(const Rpc& rpc, std::uint16_t flags);
  void RunTransaction(const TransactionRequest& request);

  void ExecuteSql(const Rpc& rpc);
  void Prepare(const Rpc& rpc, bool run);
  void Execute(const Rpc& rpc);
  void RunPrepared(const Prepared& prepared, std::span<const RpcParameter> values, Done kind);

  void Stream(std::string_view sql, data::Parameters parameters, Done kind);
  std::int64_t SendRows(data::Recordset& rows);
  void TellDatabase();
  void Breathe();
  void Pause(int milliseconds);

  Channel& channel_;
  const SessionSettings& settings_;
  const Faults& faults_;
  Answer answer_;
  Version version_ = Version::V74;
  std::unique_ptr<data::Connection> db_;
  std::string database_;
  std::map<std::int64_t, Prepared> prepared_;
  std::int64_t lastHandle_ = 0;
  std::uint64_t transaction_ = 0;
};

}  // namespace korvel::tds
