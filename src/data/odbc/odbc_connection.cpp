#include "data/odbc/odbc_connection.h"

#include "data/odbc/link.h"
#include "data/odbc/literal_batch.h"
#include "data/odbc/odbc_cursor.h"
#include "data/odbc/procedure_call.h"
#include "data/odbc/statement.h"

namespace korvel::data::odbc {
namespace {

class OdbcConnection final : public Connection {
 public:
  OdbcConnection(const std::string& text, int timeoutSeconds)
      : link_(std::make_shared<Link>(text, timeoutSeconds)) {}
  ~OdbcConnection() override { link_->Close(); }

  bool IsOpen() const override { return link_->IsOpen(); }
  void Close() noexcept override { link_->Close(); }
  std::string Database() const override { return link_->Database(); }

 protected:
  std::unique_ptr<Cursor> DoQuery(std::string_view sql, Parameters parameters) override {
    Sent(sql);
    auto statement = std::make_unique<Statement>(link_);
    statement->Execute(sql, parameters);
    return std::make_unique<OdbcCursor>(std::move(statement));
  }

  std::int64_t DoExecute(std::string_view sql, Parameters parameters) override {
    Sent(sql);
    Statement statement(link_);
    statement.Execute(sql, parameters);
    std::int64_t changed = 0;
    do {
      // A result without a count, such as the end of a procedure, takes nothing from the statement before it.
      changed = statement.Columns() == 0 ? statement.RowsChanged().value_or(changed) : 0;
    } while (statement.NextResult());
    return changed;
  }

  std::int64_t DoCall(std::string_view procedure, std::span<ProcedureArgument> arguments) override {
    ProcedureCall call(arguments);
    Sent(call.Text(procedure));
    Statement statement(link_);
    statement.Run(procedure, call);
    call.ReadOutputs(arguments);
    return call.Result();
  }

  std::unique_ptr<BatchInsert> DoOpenBatch(std::string_view table,
                                           std::span<const std::string_view> columns) override {
    return std::make_unique<LiteralBatch>(*this, table, columns);
  }

  void DoBegin() override { link_->SetAutocommit(false); }
  void DoCommit() override { link_->End(SQL_COMMIT); }
  void DoRollback() override { link_->End(SQL_ROLLBACK); }

 private:
  std::shared_ptr<Link> link_;
};

}  // namespace

std::unique_ptr<Connection> OpenText(const std::string& connectionText, int timeoutSeconds) {
  return std::make_unique<OdbcConnection>(connectionText, timeoutSeconds);
}

}  // namespace korvel::data::odbc
