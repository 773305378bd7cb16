#include "contract/contract.h"

#include <algorithm>
#include <iostream>
#include <map>

namespace korvel::test {
namespace {

/// What was left out, told again at the end of the run.
class Omissions : public testing::Environment {
 public:
  void Add(const std::string& line) {
    if (lines_[line]++ == 0) std::cerr << line << '\n';
  }
  void TearDown() override {
    for (const auto& [line, count] : lines_) std::cerr << "[ IGNORADO ] " << count << "x " << line << '\n';
  }

 private:
  std::map<std::string, int> lines_;
};

Omissions& Omitted() {
  static auto* omissions = static_cast<Omissions*>(testing::AddGlobalTestEnvironment(new Omissions));
  return *omissions;
}

/// Made before the first case, so that its end is told of.
[[maybe_unused]] const Omissions& kRegistered = Omitted();

}  // namespace

void Contract::SetUp() {
  driver_ = MakeDriver(GetParam());
  if (driver_ == nullptr) {
    Omitted().Add("SQL Server: ignorado (KORVEL_SQLSERVER não definida)");
    GTEST_SKIP() << "KORVEL_SQLSERVER";
  }
  connection_ = driver_->Open();
}

bool Contract::Lacks(Feature feature) const {
  if (driver_->Has(feature)) return false;
  Omitted().Add(std::string(GetParam()) + " não tem " + std::string(NameOf(feature)));
  return true;
}

std::optional<data::Error> ErrorOf(const std::function<void()>& call) {
  try {
    call();
  } catch (const data::Error& error) {
    return error;
  }
  return std::nullopt;
}

void ExpectFailure(const std::function<void()>& call, data::Failure failure, int native) {
  const auto error = ErrorOf(call);
  ASSERT_TRUE(error) << "it succeeded";
  EXPECT_EQ(error->Kind(), failure) << error->what();
  if (native != 0) {
    EXPECT_EQ(error->Native(), native) << error->what();
  }
}

std::string DriverName(const testing::TestParamInfo<const char*>& driver) {
  std::string name = driver.param;
  std::replace(name.begin(), name.end(), '-', '_');
  return name;
}

}  // namespace korvel::test
