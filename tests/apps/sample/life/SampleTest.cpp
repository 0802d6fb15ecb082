#include "sample/life/Sample.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <ostream>
#include <string>

namespace {

struct DecimalCase {
  std::string name;
  double value;
  int places;
  std::string expected;
};

void PrintTo(const DecimalCase& value, std::ostream* out) { *out << value.name; }

class DecimalText : public testing::TestWithParam<DecimalCase> {};

TEST_P(DecimalText, IsTheShortestAndReadsBackAsTheNumber) {
  const Decimal decimal = Decimal::nearest(GetParam().value, GetParam().places);

  EXPECT_EQ(decimal.text(), GetParam().expected);
  EXPECT_EQ(std::strtod(decimal.text().c_str(), nullptr), decimal.number());
}

INSTANTIATE_TEST_SUITE_P(Cases, DecimalText,
                         testing::Values(DecimalCase{"Whole", 72.4, 0, "72"},
                                         DecimalCase{"Zero", 0, 2, "0"},
                                         DecimalCase{"Fraction", 0.968, 2, "0.97"},
                                         DecimalCase{"LeadingZerosStay", 1.005, 3, "1.005"},
                                         DecimalCase{"TrailingZerosGo", 2.5, 5, "2.5"},
                                         DecimalCase{"Negative", -1.25, 2, "-1.25"},
                                         DecimalCase{"NegativeBelowOne", -0.5, 1, "-0.5"}),
                         [](const auto& test) { return test.param.name; });

constexpr Stamp end{.moment = 1700000060, .offset = 3600};

TEST(Sample, IsFiledAfterItsSourcesDelayUnlessSaid) {
  const Source phone{.name = "iPhone", .device = "", .delaySeconds = 240};
  Sample sample{.type = "StepCount",
                .source = &phone,
                .unit = "count",
                .start = end,
                .end = end,
                .value = Decimal{1, 0}};
  EXPECT_EQ(sample.created(), end.after(240));

  sample.filed = Stamp{.moment = end.moment + 240, .offset = 0};
  EXPECT_EQ(sample.created(), sample.filed);
}

TEST(Workout, IsFiledAfterAMinuteUnlessSaid) {
  Workout workout;
  workout.end = end;
  EXPECT_EQ(workout.created(), end.after(60));

  workout.filed = Stamp{.moment = end.moment + 60, .offset = 0};
  EXPECT_EQ(workout.created(), workout.filed);
}

}  // namespace
