#include "sample/life/Random.h"

#include <gtest/gtest.h>

namespace {

TEST(Random, DrawsTheSameFromTheSameSeed) {
  Random first(7);
  Random second(7);

  EXPECT_EQ(first.next(), second.next());
  EXPECT_EQ(first.uniform(), second.uniform());
  EXPECT_NE(first.next(), Random(8).next());
}

// Whatever machine computes them: these numbers are what makes a household the same everywhere.
TEST(Random, DrawsTheseNumbersOnEveryMachine) {
  Random random(1);

  EXPECT_EQ(random.next(), 0x910A2DEC89025CC1U);
  EXPECT_EQ(random.next(), 0xBEEB8DA1658EEC67U);
}

TEST(Random, ForksDifferBySubjectAndNotByWhatWasForkedBefore) {
  const Random random(1);
  Random steps = random.fork("steps");
  const std::uint64_t first = steps.next();

  EXPECT_NE(first, random.fork("sleep").next());
  EXPECT_NE(random.fork(1).next(), random.fork(2).next());
  EXPECT_EQ(first, random.fork("steps").next());
}

TEST(Random, KeepsWithinItsBounds) {
  Random random(3);
  for (int draw = 0; draw < 10000; ++draw) {
    const int whole = random.whole(-2, 2);
    ASSERT_TRUE(whole >= -2 && whole <= 2) << whole;
    const double between = random.between(5, 6);
    ASSERT_TRUE(between >= 5 && between < 6) << between;
    const double bell = random.bell(100, 10);
    ASSERT_TRUE(bell > 65 && bell < 135) << bell;
  }
}

TEST(Random, BellHasTheMeanAndTheSpreadItWasAskedFor) {
  Random random(4);
  constexpr int draws = 100000;
  double sum = 0;
  double squares = 0;
  for (int draw = 0; draw < draws; ++draw) {
    const double value = random.bell(50, 8);
    sum += value;
    squares += (value - 50) * (value - 50);
  }

  EXPECT_NEAR(sum / draws, 50, 0.2);
  EXPECT_NEAR(squares / draws, 64, 2);
}

TEST(Random, NeverAndAlwaysAreChancesToo) {
  Random random(5);
  for (int draw = 0; draw < 1000; ++draw) {
    ASSERT_FALSE(random.chance(0));
    ASSERT_TRUE(random.chance(1));
  }
}

}  // namespace
