#include "data/embedded/open.h"

#include "data/embedded/batch_insert.h"
#include "data/embedded/call.h"
#include "data/embedded/cursor.h"
#include "data/embedded/errors.h"
#include "data/embedded/execution.h"

namespace korvel::data {
namespace {

using namespace embedded;

class EmbeddedConnection : public Connection {
 public:
  explicit EmbeddedConnection(std::shared_ptr<Session> session) : session_(std::move(session)) {}
  ~EmbeddedConnection() override { Close(); }

  bool IsOpen() const override { return session_ && !session_->Processes().Killed(); }
  /// The files close with the last reader, and closing rolls back.
  void Close() noexcept override { session_ = nullptr; }
  std::string Database() const override { return session_ ? session_->Values().database : std::string(); }

 protected:
  std::unique_ptr<Cursor> DoQuery(std::string_view sql, Parameters parameters) override {
    const Work work(*OpenSession());
    return std::make_unique<BatchCursor>(Start(sql, parameters));
  }

  std::int64_t DoExecute(std::string_view sql, Parameters parameters) override {
    const Work work(*OpenSession());
    const auto execution = Start(sql, parameters);
    std::int64_t changed = 0;
    while (execution->NextStatement()) changed = execution->Changed();
    return changed;
  }

  std::int64_t DoCall(std::string_view procedure, std::span<ProcedureArgument> arguments) override {
    const Work work(*OpenSession());
    Sent("exec " + std::string(procedure));
    return CallProcedure(OpenSession(), procedure, arguments);
  }

  std::unique_ptr<BatchInsert> DoOpenBatch(std::string_view table,
                                           std::span<const std::string_view> columns) override {
    const Work work(*OpenSession());
    auto batch = std::make_unique<EmbeddedBatch>(OpenSession(), table, columns);
    Sent(batch->Statement());
    return batch;
  }

  void DoBegin() override { Step(&Session::Begin); }
  void DoCommit() override { Step(&Session::Commit); }
  void DoRollback() override { Step(&Session::Rollback); }

 private:
  void Step(void (Session::*step)()) {
    const Work work(*OpenSession());
    (*session_.*step)();
  }

  const std::shared_ptr<Session>& OpenSession() const {
    if (!session_) throw Error(Failure::NoServer, "A ligação está fechada");
    return session_;
  }

  std::unique_ptr<Execution> Start(std::string_view sql, Parameters parameters) {
    auto execution = std::make_unique<Execution>(OpenSession(), sql, parameters);
    Sent(sql);
    return execution;
  }

  std::shared_ptr<Session> session_;
};

}  // namespace

bool IsMissing(const EmbeddedHost& host) {
  return embedded::IsMissing(host);
}

std::unique_ptr<Connection> OpenEmbedded(const EmbeddedHost& host, const ConnectionString& wanted,
                                         std::string_view password, int timeoutSeconds) {
  Server server(host, wanted, password, timeoutSeconds);
  return std::make_unique<EmbeddedConnection>(std::make_shared<Session>(std::move(server), wanted));
}

}  // namespace korvel::data
