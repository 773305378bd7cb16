#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <optional>
#include <ostream>
#include <vector>

#include "contract/drivers.h"
#include "data/error.h"

namespace korvel::data {

/// How a failed comparison shows a value.
inline void PrintTo(const Value& value, std::ostream* out) {
  *out << (value.IsNull() ? "NULL" : ToText(value));
}

}  // namespace korvel::data

namespace korvel::test {

/// A case that every driver must pass, with an open connection to an empty database.
class Contract : public testing::TestWithParam<const char*> {
 protected:
  void SetUp() override;

  data::Connection& Db() { return *connection_; }
  std::unique_ptr<data::Connection> Another() { return driver_->Open(); }
  Driver& Server() { return *driver_; }
  /// True when the server lacks the feature; the omission is counted and printed.
  bool Lacks(Feature feature) const;

  /// Reads one number or text of the open connection.
  std::int64_t Number(std::string_view sql) { return Db().Query(sql).Integer(std::size_t{0}); }
  std::string Text(std::string_view sql) { return std::string(Db().Query(sql).Text(std::size_t{0})); }

 private:
  std::unique_ptr<Driver> driver_;
  std::unique_ptr<data::Connection> connection_;
};

/// The Error that a call throws; nothing when it throws none.
std::optional<data::Error> ErrorOf(const std::function<void()>& call);
/// Expects that a call fails that way; a native number of 0 is any.
void ExpectFailure(const std::function<void()>& call, data::Failure failure, int native = 0);

inline const auto kAllDrivers = testing::Values("embedded", "odbc-sqlite", "tds", "sqlserver");
std::string DriverName(const testing::TestParamInfo<const char*>& driver);

}  // namespace korvel::test
