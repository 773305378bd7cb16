#include "databases/version.h"

#include <gtest/gtest.h>

namespace korvel::databases {
namespace {

TEST(Version, DigitsCompareAsTextInTheOrderOfVersions) {
  const std::pair<const char*, const char*> cases[] = {
      {"3.0.560", "000300000560"}, {"1.0.0", "000100000000"}, {"12.345.6789", "001203456789"},
      {"2.5", "000200050000"},     {"", "000000000000"},      {"1.0.0.7", "000100000000"},
  };
  for (const auto& [version, digits] : cases) EXPECT_EQ(VersionDigits(version), digits) << version;
  EXPECT_LT(VersionDigits("3.9.0"), VersionDigits("3.10.0"));
}

}  // namespace
}  // namespace korvel::databases
