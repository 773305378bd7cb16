#pragma once

#include <string>
#include <vector>

#include "data/connection.h"

namespace korvel::data::odbc {

/// A batch that sends many rows as the literals of one INSERT, which a SQL Server takes several times faster than
/// bound rows, and which its limit of 2,100 parameters does not touch.
class LiteralBatch final : public BatchInsert {
 public:
  LiteralBatch(Connection& connection, std::string_view table, std::span<const std::string_view> columns);

  void Add(Parameters row) override;
  void Finish() override;

 private:
  void Append(const Parameter& value);

  Connection& connection_;
  std::size_t columns_;
  std::string head_;
  std::string sql_;
  /// Texts that no literal carries unchanged: they travel bound.
  std::vector<std::string> bound_;
  std::size_t rows_ = 0;
};

}  // namespace korvel::data::odbc
