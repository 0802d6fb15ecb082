#include "platform/AppleFormat.h"
#include "summary/DailySeries.h"
#include "support/ZoneGuard.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

namespace {

struct MedianCase {
  std::string name;
  std::vector<double> values;
  std::optional<double> expected;
};

class Median : public testing::TestWithParam<MedianCase> {};

TEST_P(Median, TakesTheMiddleOfTheSortedValues) {
  std::vector<double> values = GetParam().values;
  EXPECT_EQ(median(values), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(Cases, Median,
                         testing::Values(MedianCase{"NothingHasNone", {}, std::nullopt},
                                         MedianCase{"OneIsItsOwn", {62}, 62},
                                         MedianCase{"OddCountTakesTheMiddle", {100, 60, 70}, 70},
                                         MedianCase{"EvenCountTakesTheMean", {100, 60, 80, 70}, 75},
                                         MedianCase{"TwoTakeTheMean", {3, 2}, 2.5},
                                         MedianCase{"EqualValues", {5, 5, 5, 5}, 5},
                                         MedianCase{"NegativeValues", {-1, -3, 2, -2}, -1.5},
                                         MedianCase{"MiddlePairOnOneSide", {9, 1, 1, 9, 9, 1}, 5},
                                         MedianCase{
                                             "SumWithoutANumber", {1.5e308, 1.7e308}, 1.6e308}),
                         [](const auto& test) { return test.param.name; });

std::int64_t secondsOf(const std::string& stamp) {
  return AppleFormat::stampParser.parse(stamp).value();
}

constexpr const char* asleep = "HKCategoryValueSleepAnalysisAsleepCore";

struct NightCase {
  std::string name;
  std::vector<SleepSegment> segments;
  std::vector<std::pair<std::string, double>> nights;  ///< day and minutes
  std::string zone = "UTC";
};

class SleepNights : public testing::TestWithParam<NightCase> {};

TEST_P(SleepNights, AddUpTheSleepOfEachNight) {
  const ZoneGuard zone(GetParam().zone);
  std::vector<std::pair<std::string, double>> nights;
  for (const SleepNight& night : sleepNights(GetParam().segments)) {
    nights.emplace_back(night.day, night.minutes);
  }
  EXPECT_EQ(nights, GetParam().nights);
}

INSTANTIATE_TEST_SUITE_P(
    Days, SleepNights,
    testing::Values(NightCase{"NoSegmentsNoNights", {}, {}},
                    NightCase{"BeforeMidnightBelongsToTheDayItStarts",
                              {{"2024-03-01 23:30:00 +0000", "2024-03-02 07:00:00 +0000", asleep}},
                              {{"2024-03-01", 450}}},
                    NightCase{"AfterMidnightBelongsToTheDayBefore",
                              {{"2024-03-02 02:00:00 +0000", "2024-03-02 07:00:00 +0000", asleep}},
                              {{"2024-03-01", 300}}},
                    NightCase{"BothSidesOfMidnightAreOneNight",
                              {{"2024-03-02 01:00:00 +0000", "2024-03-02 03:00:00 +0000", asleep},
                               {"2024-03-01 23:00:00 +0000", "2024-03-02 00:30:00 +0000", asleep}},
                              {{"2024-03-01", 210}}},
                    NightCase{"UntilNoonIsTheNightBefore",
                              {{"2024-03-02 11:59:59 +0000", "2024-03-02 14:59:59 +0000", asleep}},
                              {{"2024-03-01", 180}}},
                    NightCase{"FromNoonOnIsTheNewNight",
                              {{"2024-03-02 12:00:00 +0000", "2024-03-02 15:00:00 +0000", asleep}},
                              {{"2024-03-02", 180}}},
                    NightCase{"NightsComeInTheOrderOfTheirDays",
                              {{"2024-03-05 23:00:00 +0000", "2024-03-06 03:00:00 +0000", asleep},
                               {"2023-12-31 23:00:00 +0000", "2024-01-01 02:00:00 +0000", asleep}},
                              {{"2023-12-31", 180}, {"2024-03-05", 240}}},
                    NightCase{"SourcesAreAddedUp",
                              {{"2024-03-01 23:00:00 +0000", "2024-03-02 01:00:00 +0000", asleep},
                               {"2024-03-01 23:00:00 +0000", "2024-03-02 01:00:00 +0000", asleep}},
                              {{"2024-03-01", 240}}}),
    [](const auto& test) { return test.param.name; });

INSTANTIATE_TEST_SUITE_P(
    Lengths, SleepNights,
    testing::Values(NightCase{"HundredAndNineteenMinutesAreNoNight",
                              {{"2024-03-01 23:00:00 +0000", "2024-03-02 00:59:00 +0000", asleep}},
                              {}},
                    NightCase{"OneSecondLessThanTwoHoursIsNoNight",
                              {{"2024-03-01 23:00:00 +0000", "2024-03-02 00:59:59 +0000", asleep}},
                              {}},
                    NightCase{"TwoHoursAreANight",
                              {{"2024-03-01 23:00:00 +0000", "2024-03-02 01:00:00 +0000", asleep}},
                              {{"2024-03-01", 120}}},
                    NightCase{"PiecesMakeANight",
                              {{"2024-03-01 23:00:00 +0000", "2024-03-02 00:00:00 +0000", asleep},
                               {"2024-03-02 02:00:00 +0000", "2024-03-02 03:00:00 +0000", asleep}},
                              {{"2024-03-01", 120}}}),
    [](const auto& test) { return test.param.name; });

/// Three hours of something in the night of 1 March.
NightCase nightOf(const std::string& name, const std::string& value, bool counts) {
  NightCase night{name, {{"2024-03-01 23:00:00 +0000", "2024-03-02 02:00:00 +0000", value}}, {}};
  if (counts) night.nights = {{"2024-03-01", 180}};
  return night;
}

INSTANTIATE_TEST_SUITE_P(
    Stages, SleepNights,
    testing::Values(nightOf("Core", "HKCategoryValueSleepAnalysisAsleepCore", true),
                    nightOf("Deep", "HKCategoryValueSleepAnalysisAsleepDeep", true),
                    nightOf("Rem", "HKCategoryValueSleepAnalysisAsleepREM", true),
                    nightOf("Unspecified", "HKCategoryValueSleepAnalysisAsleepUnspecified", true),
                    nightOf("OlderSystems", "HKCategoryValueSleepAnalysisAsleep", true),
                    nightOf("WordAlone", "Asleep", true),
                    nightOf("InBed", "HKCategoryValueSleepAnalysisInBed", false),
                    nightOf("Awake", "HKCategoryValueSleepAnalysisAwake", false),
                    nightOf("LowerCase", "asleep", false), nightOf("Empty", "", false)),
    [](const auto& test) { return test.param.name; });

INSTANTIATE_TEST_SUITE_P(
    Stamps, SleepNights,
    testing::Values(
        NightCase{"StartThatIsNoStamp", {{"2024-03-01", "2024-03-02 07:00:00 +0000", asleep}}, {}},
        NightCase{"EndThatIsNoStamp", {{"2024-03-01 23:00:00 +0000", "", asleep}}, {}},
        NightCase{"EndBeforeTheStart",
                  {{"2024-03-02 07:00:00 +0000", "2024-03-01 23:00:00 +0000", asleep}},
                  {}},
        NightCase{"EndAtTheStart",
                  {{"2024-03-01 23:00:00 +0000", "2024-03-01 23:00:00 +0000", asleep}},
                  {}},
        NightCase{
            "BrokenOnesDoNotSpoilTheRest",
            {{"", "", asleep}, {"2024-03-01 23:00:00 +0000", "2024-03-02 02:00:00 +0000", asleep}},
            {{"2024-03-01", 180}}},
        NightCase{"ZonesOfTheStampsCount",
                  {{"2024-03-01 23:00:00 -0500", "2024-03-02 07:00:00 +0000", asleep}},
                  {{"2024-03-01", 180}}}),
    [](const auto& test) { return test.param.name; });

// The day of a night is that of the machine's own zone.
INSTANTIATE_TEST_SUITE_P(
    Zones, SleepNights,
    testing::Values(NightCase{"UTC",
                              {{"2024-03-01 14:30:00 +0000", "2024-03-01 22:30:00 +0000", asleep}},
                              {{"2024-03-01", 480}}},
                    NightCase{"Shanghai",
                              {{"2024-03-01 17:30:00 +0000", "2024-03-01 22:30:00 +0000", asleep}},
                              {{"2024-03-01", 300}},
                              "Asia/Shanghai"},
                    NightCase{"NewYork",
                              {{"2024-03-01 14:30:00 +0000", "2024-03-01 22:30:00 +0000", asleep}},
                              {{"2024-02-29", 480}},
                              "America/New_York"},
                    NightCase{"NightInWhichClocksGoForward",
                              {{"2024-03-09 23:00:00 -0500", "2024-03-10 07:00:00 -0400", asleep}},
                              {{"2024-03-09", 420}},
                              "America/New_York"},
                    NightCase{"NightInWhichClocksGoBack",
                              {{"2024-11-02 23:00:00 -0400", "2024-11-03 07:00:00 -0500", asleep}},
                              {{"2024-11-02", 540}},
                              "America/New_York"},
                    NightCase{"HalfADayIsTwelveHoursEvenWhenClocksGoForward",
                              {{"2024-03-10 12:30:00 -0400", "2024-03-10 15:30:00 -0400", asleep}},
                              {{"2024-03-09", 180}},
                              "America/New_York"},
                    NightCase{"HalfADayIsTwelveHoursEvenWhenClocksGoBack",
                              {{"2024-11-03 11:30:00 -0500", "2024-11-03 14:30:00 -0500", asleep}},
                              {{"2024-11-03", 180}},
                              "America/New_York"}),
    [](const auto& test) { return test.param.name; });

TEST(SleepNight, RunsFromTheFirstSleepToTheLast) {
  const std::vector<SleepSegment> segments{
      {"2024-03-02 02:00:00 +0000", "2024-03-02 03:00:00 +0000", asleep},
      {"2024-03-01 22:15:00 +0000", "2024-03-02 00:00:00 +0000", asleep},
      {"2024-03-02 04:00:00 +0000", "2024-03-02 06:45:00 +0000", asleep},
      {"2024-03-01 21:00:00 +0000", "2024-03-02 08:00:00 +0000", "InBed"}};

  EXPECT_EQ(sleepNights(segments),
            (std::vector<SleepNight>{{"2024-03-01",
                                      330,
                                      secondsOf("2024-03-01 22:15:00 +0000"),
                                      secondsOf("2024-03-02 06:45:00 +0000")}}));
}

}  // namespace
