#include "platform/ControlProtocol.h"
#include "support/EnvironmentGuard.h"

#include <gtest/gtest.h>

namespace {

TEST(DefaultDataRoot, LiesInTheHomeDirectoryOfTheFirstUse) {
  const EnvironmentGuard first{{"HOME", "/home/kim"}};
  EXPECT_EQ(ControlProtocol::defaultDataRoot(), "/home/kim/Library/Application Support/Larkspur");
  const EnvironmentGuard second{{"HOME", "/home/lee"}};
  EXPECT_EQ(ControlProtocol::defaultDataRoot(), "/home/kim/Library/Application Support/Larkspur");
}

}  // namespace
