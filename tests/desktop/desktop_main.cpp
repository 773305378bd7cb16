#include <gtest/gtest.h>

#include "gateways/guarded_application.h"

/// The windows are real, the screen is memory.
int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  ::testing::InitGoogleTest(&argc, argv);
  const korvel::desktop::GuardedApplication application(argc, argv);
  return RUN_ALL_TESTS();
}
