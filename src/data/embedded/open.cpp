#include "data/embedded/open.h"

#include "data/embedded/batch_insert.h"
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

  bool IsOpen() const override { return session_ != nullptr; }
  /// The files close with the last reader, and closing rolls back.
  void Close() noexcept override { session_ = nullptr; }
  std::string Database() const override { return session_ ? session_->Values().database : std::string(); }

 protected:
  std::unique_ptr<Cursor> DoQuery(std::string_view sql, Parameters parameters) override {
    return std::make_unique<BatchCursor>(Start(sql, parameters));
  }

  std::int64_t DoExecute(std::string_view sql, Parameters parameters) override {
    const auto execution = Start(sql, parameters);
    std::int64_t changed = 0;
    while (execution->NextStatement()) changed = execution->Changed();
    return changed;
  }

  std::int64_t DoCall(std::string_view procedure, std::span<ProcedureArgument>) override {
    throw Error(Failure::Statement, "O procedimento " + std::string(procedure) + " não pode ser chamado");
  }

  std::unique_ptr<BatchInsert> DoOpenBatch(std::string_view table,
                                           std::span<const std::string_view> columns) override {
    auto batch = std::make_unique<EmbeddedBatch>(OpenSession(), table, columns);
    Sent(batch->Statement());
    return batch;
  }

  void DoBegin() override { OpenSession()->Begin(); }
  void DoCommit() override { OpenSession()->Commit(); }
  void DoRollback() override { OpenSession()->Rollback(); }

 private:
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

std::unique_ptr<Connection> OpenEmbedded(const std::filesystem::path& serversFolder,
                                         std::string_view serverName, const ConnectionString& wanted,
                                         std::string_view password, int timeoutSeconds,
                                         MissingServer missing) {
  Server server(serversFolder, serverName, wanted, password, timeoutSeconds, missing);
  return std::make_unique<EmbeddedConnection>(std::make_shared<Session>(std::move(server), wanted.database));
}

}  // namespace korvel::data
