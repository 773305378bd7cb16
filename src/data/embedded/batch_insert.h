#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "data/connection.h"
#include "data/embedded/session.h"

namespace korvel::data::embedded {

/// Rows for one table through one prepared statement, each value fitted to its column before it is bound.
/// Outside a transaction the rows go in transactions of their own, many rows each.
class EmbeddedBatch : public BatchInsert {
 public:
  EmbeddedBatch(std::shared_ptr<Session> session, std::string_view table,
                std::span<const std::string_view> columns);
  ~EmbeddedBatch() override;

  void Add(Parameters row) override;
  void Finish() override;
  const std::string& Statement() const { return text_; }

 private:
  void Bind(std::size_t i, const Parameter& value);
  void BindConverted(std::size_t i, const Parameter& value);
  void BindDefaults();

  std::shared_ptr<Session> session_;
  Lease lease_{*session_};
  std::shared_ptr<Database> database_;
  std::string text_;
  Prepared statement_;
  std::vector<Slot> slots_;
  std::size_t given_ = 0;
  Translation need_;  // what it writes, nothing else of it
  std::vector<OwnedStored> defaults_;
  std::vector<std::string> scratch_;  // one a column, for values that are not text already
  std::size_t pending_ = 0;
};

}  // namespace korvel::data::embedded
