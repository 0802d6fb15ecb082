#include "summary/ShownValues.h"
#include "support/EnvironmentGuard.h"

#include <gtest/gtest.h>

#include <clocale>
#include <limits>
#include <string>
#include <vector>

namespace {

using Limits = std::numeric_limits<double>;

const DigitGrouping byThrees;

struct NumberCase {
  std::string name;
  double value;
  std::string text;
};

class Fmt : public testing::TestWithParam<NumberCase> {};

TEST_P(Fmt, ShowsAsManyDecimalsAsMatter) {
  EXPECT_EQ(fmt(GetParam().value, byThrees), GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(Thousands, Fmt,
                         testing::Values(NumberCase{"Exactly", 1000, "1,000"},
                                         NumberCase{"HalfGoesAwayFromZero", 1234.5, "1,235"},
                                         NumberCase{"EvenHalfToo", 1002.5, "1,003"},
                                         NumberCase{"BelowTheHalf", 1234.49, "1,234"},
                                         NumberCase{"NegativeHalf", -1234.5, "-1,235"},
                                         NumberCase{"NegativeExactly", -1000, "-1,000"},
                                         NumberCase{"Millions", 1234567.8, "1,234,568"}),
                         [](const auto& test) { return test.param.name; });

INSTANTIATE_TEST_SUITE_P(Hundreds, Fmt,
                         testing::Values(NumberCase{"Exactly", 100, "100"},
                                         NumberCase{"OneDecimal", 123.44, "123.4"},
                                         NumberCase{"ZeroAtTheEnd", 100.04, "100"},
                                         NumberCase{"JustBelowAThousand", 999.94, "999.9"},
                                         // Stored a little above 999.95, so printf rounds it up.
                                         NumberCase{"HalfAsItIsStored", 999.95, "1000"},
                                         NumberCase{"RoundedUpStaysUngrouped", 999.96, "1000"},
                                         NumberCase{"Negative", -999.96, "-1000"}),
                         [](const auto& test) { return test.param.name; });

INSTANTIATE_TEST_SUITE_P(Ones, Fmt,
                         testing::Values(NumberCase{"Exactly", 1, "1"},
                                         NumberCase{"WholeNumber", 12.0, "12"},
                                         NumberCase{"Ten", 10, "10"},
                                         NumberCase{"OneDecimal", 12.5, "12.5"},
                                         NumberCase{"TwoDecimals", 12.34, "12.34"},
                                         NumberCase{"ThirdDecimalIsRounded", 12.346, "12.35"},
                                         // Stored a little above 99.995.
                                         NumberCase{"JustBelowAHundred", 99.995, "100"},
                                         NumberCase{"JustAboveNinetyNine", 99.994, "99.99"},
                                         NumberCase{"Negative", -12.50, "-12.5"}),
                         [](const auto& test) { return test.param.name; });

INSTANTIATE_TEST_SUITE_P(BelowOne, Fmt,
                         testing::Values(NumberCase{"Zero", 0, "0"},
                                         NumberCase{"NegativeZero", -0.0, "0"},
                                         NumberCase{"ThreeDecimals", 0.1234, "0.123"},
                                         NumberCase{"TwoDecimals", 0.97, "0.97"},
                                         // Stored a little above 0.0005.
                                         NumberCase{"HalfOfTheLastPlace", 0.0005, "0.001"},
                                         NumberCase{"BelowTheLastPlace", 0.00049, "0"},
                                         NumberCase{"NegativeBelowTheLastPlace", -0.0001, "0"},
                                         NumberCase{"Negative", -0.25, "-0.25"},
                                         NumberCase{"JustBelowOne", 0.9996, "1"},
                                         NumberCase{"Smallest", Limits::denorm_min(), "0"}),
                         [](const auto& test) { return test.param.name; });

INSTANTIATE_TEST_SUITE_P(
    Extremes, Fmt,
    testing::Values(NumberCase{"EveryWholeNumberUpToHere", 0x1p53, "9,007,199,254,740,992"},
                    NumberCase{"LastBeforeTwoToThe63", 0x1p63 - 1024, "9,223,372,036,854,774,784"},
                    NumberCase{"TwoToThe63", 0x1p63, "9223372036854775808"},
                    NumberCase{"MinusTwoToThe63", -0x1p63, "-9223372036854775808"},
                    NumberCase{"Infinite", Limits::infinity(), "inf"},
                    NumberCase{"MinusInfinite", -Limits::infinity(), "-inf"},
                    NumberCase{"NoNumber", Limits::quiet_NaN(), "nan"}),
    [](const auto& test) { return test.param.name; });

TEST(Fmt, WritesTheLargestNumbersInFull) {
  const std::string text = fmt(1e300, byThrees);

  EXPECT_EQ(text.size(), 301U);
  EXPECT_EQ(std::stod(text), 1e300);
  EXPECT_EQ(fmt(Limits::max(), byThrees).size(), 309U);
}

TEST(Fmt, KeepsItsDecimalPointWhateverTheEnvironmentSays) {
  const EnvironmentGuard german({{"LC_ALL", "de_DE.UTF-8"}, {"LC_NUMERIC", "de_DE.UTF-8"}});

  EXPECT_EQ(fmt(12.34, byThrees), "12.34");
  EXPECT_EQ(fmt(123.44, byThrees), "123.4");
  EXPECT_STREQ(std::setlocale(LC_NUMERIC, nullptr), "C");
}

TEST(Fmt, GroupsDigitsAsItIsTold) {
  EXPECT_EQ(fmt(1234567, {.separator = ".", .sizes = "\3"}), "1.234.567");
  EXPECT_EQ(fmt(12.5, {.separator = ".", .sizes = "\3"}), "12.5");
}

TEST(Shown, TurnsFractionsIntoPercentAndNothingElse) {
  const std::vector<DailyValue> half{{"2024-03-01", 0.5}};

  EXPECT_EQ(shown(half, HealthMetric::oxygenSaturation),
            (std::vector<DailyValue>{{"2024-03-01", 50}}));
  EXPECT_EQ(shown(half, HealthMetric::bodyFat), (std::vector<DailyValue>{{"2024-03-01", 50}}));
  EXPECT_EQ(shown(half, HealthMetric::weight), half);
  EXPECT_EQ(shown(0.97, "%"), 0.97 * 100);
  EXPECT_EQ(shown(0.97, ""), 0.97);
}

TEST(Mean, IsTheSumOverTheNumberOfDays) {
  EXPECT_EQ(mean(std::vector<DailyValue>{{"2024-03-01", 1}, {"2024-03-02", 2}, {"2024-03-04", 6}}),
            3);
  EXPECT_EQ(mean(std::vector<DailyValue>{{"2024-03-01", -7.5}}), -7.5);
}

}  // namespace
