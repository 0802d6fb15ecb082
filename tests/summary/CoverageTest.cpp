#include "summary/Coverage.h"

#include <gtest/gtest.h>

#include <string>

namespace {

struct SpanCase {
  std::string name;
  std::string firstDay;
  std::string lastDay;
  bool tooFew;
};

class Span : public testing::TestWithParam<SpanCase> {};

TEST_P(Span, IsStillComingInBelowFourHundredDays) {
  const auto& [name, first, last, tooFew] = GetParam();
  EXPECT_EQ(Coverage::ofDays({.typeCount = 1, .first = first, .last = last}).backfilling, tooFew);
  EXPECT_FALSE(Coverage::ofDays({.typeCount = 0, .first = first, .last = last}).backfilling);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, Span,
    testing::Values(SpanCase{"OneDay", "2024-03-01", "2024-03-01", true},
                    SpanCase{"ThreeHundredNinetyNineDays", "2022-01-01", "2023-02-04", true},
                    SpanCase{"FourHundredDays", "2022-01-01", "2023-02-05", false},
                    SpanCase{"NoDays", "", "", true}),
    [](const auto& test) { return test.param.name; });

}  // namespace
