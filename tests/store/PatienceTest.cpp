#include "store/Patience.h"

#include <gtest/gtest.h>

#include <chrono>

namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

TEST(Patience, WaitsNoMomentWithoutAny) {
  EXPECT_FALSE(Patience(milliseconds(0)).wait(0));
  EXPECT_FALSE(Patience(milliseconds(-1)).wait(0));
}

TEST(Patience, IsUsedUpByWaitingForWhateverItIs) {
  constexpr milliseconds inAll(30);
  Patience patience(inAll);
  const steady_clock::time_point began = steady_clock::now();

  int attempts = 0;
  while (patience.wait(attempts % 4)) ++attempts;

  EXPECT_GE(steady_clock::now() - began, inAll);
  EXPECT_GT(attempts, 0);
  EXPECT_FALSE(patience.wait(0));
}

TEST(Patience, IsNotUsedUpByAnythingElse) {
  constexpr milliseconds inAll(5);
  Patience patience(inAll);
  const steady_clock::time_point began = steady_clock::now();
  while (steady_clock::now() - began < 2 * inAll) {
  }

  EXPECT_TRUE(patience.wait(0));
}

}  // namespace
