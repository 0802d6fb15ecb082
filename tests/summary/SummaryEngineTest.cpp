#include "platform/ControlProtocol.h"
#include "summary/Insights.h"
#include "summary/SummaryEngine.h"
#include "support/MemorySource.h"
#include "support/Moment.h"
#include "support/SummaryPrinters.h"
#include "support/ZoneGuard.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <optional>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

namespace {

using Operation = MemorySource::Operation;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

const double noon = moment("2024-03-17 12:00:00 +0000");

/// A member with `records` samples from `firstDay` to `lastDay`.
MemorySource sourceOf(std::int64_t records, const std::string& firstDay,
                      const std::string& lastDay) {
  MemorySource source;
  source.covered.records = records;
  source.covered.firstDay = firstDay;
  source.covered.lastDay = lastDay;
  source.covered.typeCount = 1;
  return source;
}

HealthSummary summaryOf(const MemorySource& source,
                        const std::optional<BackfillState>& backfill = std::nullopt,
                        SummaryLang lang = SummaryLang::en) {
  return SummaryEngine(source, noon, lang).build("p1", "Ann", std::nullopt, backfill);
}

// --- periods

struct WindowCase {
  std::string name;
  std::string zone;
  std::string now;
  int days;
  DayWindow expected;
};

void PrintTo(const WindowCase& window, std::ostream* stream) { *stream << window.name; }

class LastDays : public testing::TestWithParam<WindowCase> {};

TEST_P(LastDays, EndTodayAndBeginThatManyCalendarDaysBefore) {
  const ZoneGuard zone(GetParam().zone);
  const MemorySource source;

  const SummaryEngine engine(source, moment(GetParam().now), SummaryLang::en);

  EXPECT_EQ(engine.lastDays(GetParam().days), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, LastDays,
    testing::Values(
        WindowCase{"AMonth", "UTC", "2024-03-17 12:00:00 +0000", 30, {"2024-02-16", "2024-03-17"}},
        WindowCase{"NoDays", "UTC", "2024-03-17 12:00:00 +0000", 0, {"2024-03-17", "2024-03-17"}},
        WindowCase{"AcrossTheLeapDay",
                   "UTC",
                   "2024-03-01 00:00:00 +0000",
                   1,
                   {"2024-02-29", "2024-03-01"}},
        WindowCase{"AcrossTheYearsEnd",
                   "UTC",
                   "2024-01-01 00:00:00 +0000",
                   90,
                   {"2023-10-03", "2024-01-01"}},
        WindowCase{"LastSecondOfTheYear",
                   "UTC",
                   "2023-12-31 23:59:59 +0000",
                   1,
                   {"2023-12-30", "2023-12-31"}},
        WindowCase{"ShanghaiIsADayAhead",
                   "Asia/Shanghai",
                   "2024-03-16 16:00:00 +0000",
                   1,
                   {"2024-03-16", "2024-03-17"}},
        WindowCase{"ShanghaiBeforeItsMidnight",
                   "Asia/Shanghai",
                   "2024-03-16 15:59:59 +0000",
                   1,
                   {"2024-03-15", "2024-03-16"}},
        WindowCase{"ShanghaiNewYear",
                   "Asia/Shanghai",
                   "2023-12-31 16:00:00 +0000",
                   1,
                   {"2023-12-31", "2024-01-01"}},
        WindowCase{"NewYorkIsADayBehind",
                   "America/New_York",
                   "2024-03-17 03:59:59 +0000",
                   1,
                   {"2024-03-15", "2024-03-16"}},
        WindowCase{"NewYorkDayOfTwentyThreeHours",
                   "America/New_York",
                   "2024-03-11 00:30:00 -0400",
                   1,
                   {"2024-03-10", "2024-03-11"}},
        WindowCase{"NewYorkDayOfTwentyFiveHours",
                   "America/New_York",
                   "2024-11-03 23:30:00 -0500",
                   1,
                   {"2024-11-02", "2024-11-03"}}),
    [](const auto& test) { return test.param.name; });

class LastYearWindow : public testing::TestWithParam<WindowCase> {};

TEST_P(LastYearWindow, EndsOneCalendarYearBeforeToday) {
  const ZoneGuard zone(GetParam().zone);
  const MemorySource source;

  const SummaryEngine engine(source, moment(GetParam().now), SummaryLang::en);

  EXPECT_EQ(engine.lastYearWindow(GetParam().days), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, LastYearWindow,
    testing::Values(
        WindowCase{"AMonth", "UTC", "2024-03-17 12:00:00 +0000", 30, {"2023-02-15", "2023-03-17"}},
        WindowCase{
            "AQuarter", "UTC", "2024-03-17 12:00:00 +0000", 90, {"2022-12-17", "2023-03-17"}},
        WindowCase{"LeapDayHasNoAnniversary",
                   "UTC",
                   "2024-02-29 12:00:00 +0000",
                   30,
                   {"2023-01-29", "2023-02-28"}},
        WindowCase{"AfterALeapDayAYearAgo",
                   "UTC",
                   "2025-03-01 12:00:00 +0000",
                   1,
                   {"2024-02-29", "2024-03-01"}},
        WindowCase{"LastDayOfTheYear",
                   "America/New_York",
                   "2025-01-01 04:30:00 +0000",
                   30,
                   {"2023-12-01", "2023-12-31"}},
        WindowCase{"FirstDayOfTheYear",
                   "Asia/Shanghai",
                   "2023-12-31 16:30:00 +0000",
                   90,
                   {"2022-10-03", "2023-01-01"}},
        WindowCase{"DayOnWhichClocksChange",
                   "America/New_York",
                   "2024-03-10 23:30:00 -0400",
                   30,
                   {"2023-02-08", "2023-03-10"}}),
    [](const auto& test) { return test.param.name; });

// --- figures

TEST(AverageDaily, IsTheMeanOfTheDaysThatHaveData) {
  MemorySource source;
  source.totals["StepCount"] = {{"2024-03-14", 1000}, {"2024-03-15", 2000}, {"2024-03-17", 6000}};

  const SummaryEngine engine(source, noon, SummaryLang::en);

  EXPECT_EQ(engine.averageDaily("StepCount", {"2024-03-15", "2024-03-17"}), (Figure{4000, 2}));
}

TEST(AverageDaily, IsAbsentWithoutData) {
  const MemorySource source;

  const SummaryEngine engine(source, noon, SummaryLang::en);

  EXPECT_EQ(engine.averageDaily("StepCount", engine.lastDays(30)), std::nullopt);
}

TEST(AverageDaily, IsAbsentWhenTheTotalsCannotBeRead) {
  MemorySource source;
  source.totals["StepCount"] = {{"2024-03-17", 6000}};
  source.failing = {Operation::dailyTotals};

  const SummaryEngine engine(source, noon, SummaryLang::en);

  EXPECT_EQ(engine.averageDaily("StepCount", engine.lastDays(30)), std::nullopt);
}

TEST(MedianValue, CountsTheValuesItRestsOn) {
  MemorySource source;
  for (const double value : {4.0, 1.0, 3.0, 2.0}) {
    source.samples.push_back({"RestingHeartRate", "2024-03-17", value});
  }
  source.samples.push_back({"RestingHeartRate", "2024-03-18", 100});
  source.samples.push_back({"HeartRate", "2024-03-17", 100});

  const SummaryEngine engine(source, noon, SummaryLang::en);

  EXPECT_EQ(engine.medianValue("RestingHeartRate", engine.lastDays(90)), (Figure{2.5, 4}));
}

TEST(MedianValue, IsAbsentWithoutValues) {
  const MemorySource source;

  const SummaryEngine engine(source, noon, SummaryLang::en);

  EXPECT_EQ(engine.medianValue("RestingHeartRate", engine.lastDays(90)), std::nullopt);
}

TEST(MedianValue, IsAbsentWhenTheValuesCannotBeRead) {
  MemorySource source;
  source.addSamples("RestingHeartRate", "2024-03-17", 1, 60);
  source.failing = {Operation::values};

  const SummaryEngine engine(source, noon, SummaryLang::en);

  EXPECT_EQ(engine.medianValue("RestingHeartRate", engine.lastDays(90)), std::nullopt);
}

TEST(LatestValue, ComesWithItsDay) {
  MemorySource source;
  source.addSamples("BodyMass", "2019-05-01", 2, 70);

  const SummaryEngine engine(source, noon, SummaryLang::en);

  EXPECT_EQ(engine.latestValue("BodyMass"), (DatedValue{"2019-05-02", 70}));
  EXPECT_EQ(engine.latestValue("BodyMassIndex"), std::nullopt);
}

TEST(LatestValue, IsAbsentWhenItCannotBeRead) {
  MemorySource source;
  source.addSamples("BodyMass", "2019-05-01", 1, 70);
  source.failing = {Operation::latestValue};

  const SummaryEngine engine(source, noon, SummaryLang::en);

  EXPECT_EQ(engine.latestValue("BodyMass"), std::nullopt);
}

TEST(WorkoutStats, AreThereEvenWithoutWorkouts) {
  const MemorySource source;

  const SummaryEngine engine(source, noon, SummaryLang::en);

  EXPECT_EQ(engine.workoutStats(engine.lastDays(90)), WorkoutStats());
}

TEST(WorkoutStats, AreAbsentOnlyWhenTheyCannotBeRead) {
  MemorySource source;
  source.failing = {Operation::workoutStats};

  const SummaryEngine engine(source, noon, SummaryLang::en);

  EXPECT_EQ(engine.workoutStats(engine.lastDays(90)), std::nullopt);
}

// --- nights

SleepSegment asleep(const std::string& start, const std::string& end) {
  return {start, end, "HKCategoryValueSleepAnalysisAsleepCore"};
}

std::vector<Night> nightsOf(const std::vector<SleepSegment>& segments,
                            double now = moment("2024-03-17 12:00:00 +0000")) {
  MemorySource source;
  source.sleep = segments;
  return SummaryEngine(source, now, SummaryLang::en).nights(90);
}

TEST(Nights, ReachFromTheFirstSleepToTheLastWaking) {
  EXPECT_THAT(nightsOf({asleep("2024-03-16 02:00:00 +0000", "2024-03-16 06:45:00 +0000"),
                        asleep("2024-03-15 23:10:00 +0000", "2024-03-16 01:40:00 +0000"),
                        asleep("2024-03-16 00:00:00 +0000", "2024-03-16 01:00:00 +0000")}),
              ElementsAre(Night{150 + 285 + 60, 310, 405}));
}

TEST(Nights, ComeInTheOrderOfTheirDays) {
  EXPECT_THAT(nightsOf({asleep("2024-03-16 23:00:00 +0000", "2024-03-17 06:00:00 +0000"),
                        asleep("2024-03-11 22:00:00 +0000", "2024-03-12 04:00:00 +0000"),
                        asleep("2024-03-14 01:00:00 +0000", "2024-03-14 09:00:00 +0000")}),
              ElementsAre(Night{360, 240, 240}, Night{480, 420, 540}, Night{420, 300, 360}));
}

TEST(Nights, AreTwoHoursAtLeast) {
  EXPECT_THAT(nightsOf({asleep("2024-03-15 23:00:00 +0000", "2024-03-16 00:59:00 +0000")}),
              IsEmpty());
  EXPECT_THAT(nightsOf({asleep("2024-03-15 23:00:00 +0000", "2024-03-16 01:00:00 +0000")}),
              ElementsAre(Night{120, 300, 60}));
}

TEST(Nights, AreMadeOfSleepAlone) {
  EXPECT_THAT(nightsOf({{"2024-03-15 22:00:00 +0000",
                         "2024-03-16 08:00:00 +0000",
                         "HKCategoryValueSleepAnalysisInBed"},
                        {"2024-03-16 03:00:00 +0000",
                         "2024-03-16 04:00:00 +0000",
                         "HKCategoryValueSleepAnalysisAwake"},
                        {"2024-03-15 20:00:00 +0000", "2024-03-16 09:00:00 +0000", "asleep"},
                        {"2024-03-15 20:00:00 +0000", "2024-03-16 09:00:00 +0000", ""},
                        asleep("2024-03-15 23:00:00 +0000", "2024-03-16 07:00:00 +0000")}),
              ElementsAre(Night{480, 300, 420}));
}

TEST(Nights, LeaveOutSegmentsWithoutALengthOrAReadableStamp) {
  EXPECT_THAT(nightsOf({asleep("2024-03-15 23:00:00 +0000", "2024-03-15 23:00:00 +0000"),
                        asleep("2024-03-15 23:00:00 +0000", "2024-03-15 20:00:00 +0000"),
                        asleep("2024-03-15 23:00:00 +0000", ""),
                        asleep("2024-03-15", "2024-03-16 07:00:00 +0000"),
                        asleep("2024-03-15 23:00:00 +0000", "2024-03-16 07:00:00 CET")}),
              IsEmpty());
}

TEST(Nights, AreThoseOfTheLastDaysOnly) {
  EXPECT_THAT(nightsOf({asleep("2023-12-17 23:00:00 +0000", "2023-12-18 07:00:00 +0000"),
                        asleep("2023-12-18 23:00:00 +0000", "2023-12-19 05:00:00 +0000"),
                        asleep("2024-03-18 01:00:00 +0000", "2024-03-18 07:00:00 +0000")}),
              ElementsAre(Night{360, 300, 300}));
}

TEST(Nights, AreNoneWhenTheSleepCannotBeRead) {
  MemorySource source;
  source.sleep = {asleep("2024-03-15 23:00:00 +0000", "2024-03-16 07:00:00 +0000")};
  source.failing = {Operation::sleepSegments};

  EXPECT_THAT(SummaryEngine(source, noon, SummaryLang::en).nights(90), IsEmpty());
}

struct NightCase {
  std::string name;
  std::string zone;
  std::string start;
  std::string end;
  Night expected;
};

void PrintTo(const NightCase& night, std::ostream* stream) { *stream << night.name; }

class NightClock : public testing::TestWithParam<NightCase> {};

TEST_P(NightClock, ShowsTheMachinesOwnTime) {
  const ZoneGuard zone(GetParam().zone);
  const double nextNoon = moment(GetParam().end) + 43200;

  const std::vector<Night> nights = nightsOf({asleep(GetParam().start, GetParam().end)}, nextNoon);

  EXPECT_THAT(nights, ElementsAre(GetParam().expected));
}

INSTANTIATE_TEST_SUITE_P(Cases, NightClock,
                         testing::Values(NightCase{"FromSixInTheEvening",
                                                   "UTC",
                                                   "2024-03-15 18:00:00 +0000",
                                                   "2024-03-16 00:00:00 +0000",
                                                   {360, 0, 0}},
                                         NightCase{"FromAMinuteBeforeSix",
                                                   "UTC",
                                                   "2024-03-15 17:59:00 +0000",
                                                   "2024-03-15 23:59:00 +0000",
                                                   {360, 1439, 1439}},
                                         NightCase{"SecondsDoNotCount",
                                                   "UTC",
                                                   "2024-03-15 23:00:59 +0000",
                                                   "2024-03-16 07:00:59 +0000",
                                                   {480, 300, 420}},
                                         NightCase{"FromMidnight",
                                                   "UTC",
                                                   "2024-03-16 00:00:00 +0000",
                                                   "2024-03-16 06:00:00 +0000",
                                                   {360, 360, 360}},
                                         NightCase{"AcrossTheYearsEnd",
                                                   "UTC",
                                                   "2023-12-31 23:30:00 +0000",
                                                   "2024-01-01 08:00:00 +0000",
                                                   {510, 330, 480}},
                                         NightCase{"OfTheLeapDay",
                                                   "UTC",
                                                   "2024-02-29 23:30:00 +0000",
                                                   "2024-03-01 07:30:00 +0000",
                                                   {480, 330, 450}},
                                         NightCase{"StampOfAnotherZone",
                                                   "UTC",
                                                   "2024-03-15 23:00:00 +0800",
                                                   "2024-03-16 07:00:00 +0800",
                                                   {480, 1260, 1380}},
                                         NightCase{"InShanghai",
                                                   "Asia/Shanghai",
                                                   "2024-03-15 23:00:00 +0800",
                                                   "2024-03-16 07:00:00 +0800",
                                                   {480, 300, 420}},
                                         NightCase{"InShanghaiWhenClocksWentForward",
                                                   "Asia/Shanghai",
                                                   "1990-04-14 23:00:00 +0800",
                                                   "1990-04-15 07:00:00 +0900",
                                                   {420, 300, 420}},
                                         NightCase{"InNewYorkWhenClocksGoForward",
                                                   "America/New_York",
                                                   "2024-03-09 23:00:00 -0500",
                                                   "2024-03-10 07:00:00 -0400",
                                                   {420, 300, 420}},
                                         NightCase{"InNewYorkWhenClocksGoBack",
                                                   "America/New_York",
                                                   "2024-11-02 23:00:00 -0400",
                                                   "2024-11-03 07:00:00 -0500",
                                                   {540, 300, 420}}),
                         [](const auto& test) { return test.param.name; });

// --- texts

TEST(SignedText, HasAPlusAboveZeroOnly) {
  EXPECT_EQ(signedText(0, 0), "0");
  EXPECT_EQ(signedText(2.4, 0), "+2");
  EXPECT_EQ(signedText(-3, 0), "-3");
  EXPECT_EQ(signedText(0, 1), "0.0");
  EXPECT_EQ(signedText(0.26, 1), "+0.3");
  EXPECT_EQ(signedText(-12.34, 1), "-12.3");
}

TEST(ClockFromEvening, CountsFromSixAndWrapsAtMidnight) {
  EXPECT_EQ(clockFromEvening(0), "18:00");
  EXPECT_EQ(clockFromEvening(5), "18:05");
  EXPECT_EQ(clockFromEvening(359.4), "23:59");
  EXPECT_EQ(clockFromEvening(359.5), "00:00");
  EXPECT_EQ(clockFromEvening(360), "00:00");
  EXPECT_EQ(clockFromEvening(1439), "17:59");
  EXPECT_EQ(clockFromEvening(1439.5), "18:00");
}

TEST(ClockFromMidnight, CountsFromMidnightAndWrapsAfterADay) {
  EXPECT_EQ(clockFromMidnight(0), "00:00");
  EXPECT_EQ(clockFromMidnight(425), "07:05");
  EXPECT_EQ(clockFromMidnight(59.5), "01:00");
  EXPECT_EQ(clockFromMidnight(1439.4), "23:59");
  EXPECT_EQ(clockFromMidnight(1439.5), "00:00");
}

// --- the whole summary

TEST(Summary, SaysWhoseItIsAndWhenItWasMade) {
  const MemorySource source = sourceOf(1, "2024-03-17", "2024-03-17");

  const HealthSummary summary =
      SummaryEngine(source, noon + 0.25, SummaryLang::en).build("p1", "Ann", 1710000000.5, {});

  EXPECT_EQ(summary.personID, "p1");
  EXPECT_EQ(summary.person, "Ann");
  EXPECT_EQ(summary.generatedAt, noon + 0.25);
  EXPECT_EQ(summary.coverage.lastSyncAt, 1710000000.5);
}

TEST(Summary, HasNoLastSyncBeforeTheFirst) {
  EXPECT_EQ(summaryOf(sourceOf(1, "2024-03-17", "2024-03-17")).coverage.lastSyncAt, std::nullopt);
}

TEST(Summary, HasSixCardsInOrderInBothLanguages) {
  using Titles = std::vector<std::pair<std::string, std::string>>;
  const auto titles = [](SummaryLang lang) {
    Titles all;
    for (const SummaryCard& card : summaryOf(MemorySource(), std::nullopt, lang).cards) {
      all.emplace_back(card.key, card.title);
    }
    return all;
  };

  EXPECT_EQ(titles(SummaryLang::en),
            (Titles{{"overview", "Overview"},
                    {"activity", "Activity"},
                    {"heart", "Heart rate"},
                    {"sleep", "Sleep"},
                    {"workouts", "Workouts"},
                    {"body", "Body"}}));
  EXPECT_EQ(titles(SummaryLang::zh),
            (Titles{{"overview", "数据总览"},
                    {"activity", "活动"},
                    {"heart", "心率"},
                    {"sleep", "睡眠"},
                    {"workouts", "训练"},
                    {"body", "身体数据"}}));
}

TEST(Summary, EndsWithTheInsights) {
  MemorySource source = sourceOf(14, "2024-03-01", "2024-03-14");
  source.addTotals("StepCount", "2024-03-01", 14, 5000);

  const SummaryEngine engine(source, noon, SummaryLang::zh);
  const HealthSummary summary = engine.build("p1", "Ann", std::nullopt, std::nullopt);

  EXPECT_EQ(summary.insights.size(), 1u);
  EXPECT_EQ(summary.insights, Insights::all(engine));
}

TEST(Summary, KeepsTheCoverageOfTheSource) {
  MemorySource source = sourceOf(12345, "2020-01-01", "2024-03-17");
  source.covered.typeCount = 7;
  source.covered.devices = {"Ann's iPhone", "Scale"};
  source.years = {{"2020", 2345}, {"2024", 10000}};

  const SummaryCoverage coverage = summaryOf(source).coverage;

  EXPECT_EQ(coverage.firstDay, "2020-01-01");
  EXPECT_EQ(coverage.lastDay, "2024-03-17");
  EXPECT_EQ(coverage.records, 12345);
  EXPECT_EQ(coverage.typeCount, 7);
  EXPECT_THAT(coverage.devices, ElementsAre("Ann's iPhone", "Scale"));
  EXPECT_EQ(coverage.yearly, source.years);
}

/// What leaves `build` when `operation` fails; "" when the summary is made all the same.
std::string failureOf(Operation operation) {
  MemorySource source = sourceOf(1, "2024-03-17", "2024-03-17");
  source.years = {{"2024", 1}};
  source.failing = {operation};
  try {
    summaryOf(source);
    return "";
  } catch (const ReceiverError& error) {
    return error.what();
  }
}

TEST(Summary, CannotBeMadeWithoutItsCoverageOrItsTypes) {
  EXPECT_EQ(failureOf(Operation::coverage), "coverage fails");
  EXPECT_EQ(failureOf(Operation::presentTypes), "presentTypes fails");
}

TEST(Summary, IsMadeWhateverElseCannotBeRead) {
  for (const Operation operation : {Operation::yearlyCounts,
                                    Operation::dailyTotals,
                                    Operation::values,
                                    Operation::latestValue,
                                    Operation::sleepSegments,
                                    Operation::workoutStats}) {
    EXPECT_EQ(failureOf(operation), "");
  }
}

TEST(Summary, HasNoYearsWhenTheyCannotBeCounted) {
  MemorySource source = sourceOf(1, "2024-03-17", "2024-03-17");
  source.years = {{"2024", 1}};
  source.failing = {Operation::yearlyCounts};

  EXPECT_THAT(summaryOf(source).coverage.yearly, IsEmpty());
}

TEST(Summary, HasAllItsCardsWhenNoFigureCanBeRead) {
  MemorySource source = sourceOf(100, "2020-01-01", "2024-03-17");
  source.types = {"StepCount", "RestingHeartRate", "SleepAnalysis", "BodyMass"};
  source.addTotals("StepCount", "2024-01-01", 77, 5000);
  source.addSamples("RestingHeartRate", "2024-01-01", 77, 60);
  source.addSamples("BodyMass", "2024-01-01", 1, 70);
  source.failing = {Operation::yearlyCounts,
                    Operation::dailyTotals,
                    Operation::values,
                    Operation::latestValue,
                    Operation::sleepSegments,
                    Operation::workoutStats};

  const HealthSummary summary = summaryOf(source);

  EXPECT_EQ(summary.cards.size(), 6u);
  EXPECT_THAT(summary.insights, IsEmpty());
  for (const SummaryCard& card : summary.cards) {
    if (card.key == "overview") continue;
    for (const Metric& metric : card.metrics) EXPECT_EQ(metric.value, std::nullopt) << metric.label;
  }
}

struct NumberCase {
  std::string name;
  double number;
};

void PrintTo(const NumberCase& number, std::ostream* stream) { *stream << number.name; }

class SummaryOfStrangeNumbers : public testing::TestWithParam<NumberCase> {};

TEST_P(SummaryOfStrangeNumbers, IsMade) {
  const double number = GetParam().number;
  MemorySource source = sourceOf(500, "2020-01-01", "2024-03-17");
  source.types = {"StepCount", "RestingHeartRate", "BodyMass", "BodyMassIndex"};
  source.addTotals("StepCount", "2022-12-01", 473, number);
  source.addSamples("RestingHeartRate", "2022-12-01", 473, number);
  source.addSamples("BodyMass", "2024-03-01", 1, number);
  source.addSamples("BodyMassIndex", "2024-03-01", 1, number);
  source.trained = {{"2024-03-01", "Running", number}};

  const HealthSummary summary = summaryOf(source);

  EXPECT_EQ(summary.cards.size(), 6u);
  for (const SummaryCard& card : summary.cards) {
    const bool hasData = card.key != "sleep";
    EXPECT_EQ(card.state == DataState::present, hasData) << card.key;
  }
}

INSTANTIATE_TEST_SUITE_P(
    Cases, SummaryOfStrangeNumbers,
    testing::Values(NumberCase{"Infinity", infinity}, NumberCase{"MinusInfinity", -infinity},
                    NumberCase{"NotANumber", notANumber}, NumberCase{"Largest", 1.7e308},
                    NumberCase{"BeyondInt64", 0x1p63}, NumberCase{"BelowInt64", -0x1.1p63},
                    NumberCase{"Smallest", 5e-324}, NumberCase{"Zero", 0}),
    [](const auto& test) { return test.param.name; });

// --- watches

struct DeviceCase {
  std::string name;
  std::vector<std::string> devices;
  bool hasWatch;
};

void PrintTo(const DeviceCase& device, std::ostream* stream) { *stream << device.name; }

class WatchDetection : public testing::TestWithParam<DeviceCase> {};

TEST_P(WatchDetection, LooksForTheWordInAnyLetterCase) {
  MemorySource source = sourceOf(1, "2020-01-01", "2024-03-17");
  source.covered.devices = GetParam().devices;

  const SummaryCard heart = summaryOf(source).cards[2];

  // Without figures, the heart card tells a member who wears a watch from one who does not.
  EXPECT_EQ(heart.metrics[0].state,
            GetParam().hasWatch ? DataState::absentSuspicious : DataState::absentExpected);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, WatchDetection,
    testing::Values(DeviceCase{"AppleWatch", {"Ann's Apple Watch"}, true},
                    DeviceCase{"Capitals", {"APPLE WATCH"}, true},
                    DeviceCase{"SmallLetters", {"my watch"}, true},
                    DeviceCase{"MixedLetters", {"wAtCh"}, true},
                    DeviceCase{"InsideAWord", {"SmartwatchSync"}, true},
                    DeviceCase{"AmongOthers", {"iPhone", "安的 Apple\u00A0Watch", ""}, true},
                    DeviceCase{"PhoneAlone", {"Ann's iPhone"}, false},
                    DeviceCase{"AlmostTheWord", {"Watc", "h", "wat ch"}, false},
                    DeviceCase{"NoDevice", {}, false}),
    [](const auto& test) { return test.param.name; });

// --- backfill

TEST(SummaryBackfill, IsGuessedFromAHistoryOfFewerThanFourHundredDays) {
  // From the first day to the last it is 399 days, then 400.
  EXPECT_TRUE(summaryOf(sourceOf(1, "2023-02-12", "2024-03-17")).coverage.backfilling);
  EXPECT_FALSE(summaryOf(sourceOf(1, "2023-02-11", "2024-03-17")).coverage.backfilling);
}

TEST(SummaryBackfill, IsNotGuessedWithoutRecords) {
  const SummaryCoverage coverage = summaryOf(MemorySource()).coverage;

  EXPECT_FALSE(coverage.backfilling);
  EXPECT_EQ(coverage.completeFrom, "");
  EXPECT_EQ(coverage.backfillFrontier, "");
}

TEST(SummaryBackfill, IsGuessedWhenRecordsHaveNoDays) {
  EXPECT_TRUE(summaryOf(sourceOf(1, "", "")).coverage.backfilling);
}

struct BackfillCase {
  std::string name;
  std::int64_t records;
  BackfillState state;
  bool backfilling;
  std::string completeFrom;
  std::string frontier;
};

constexpr std::nullopt_t absent = std::nullopt;

void PrintTo(const BackfillCase& backfill, std::ostream* stream) { *stream << backfill.name; }

class KnownBackfill : public testing::TestWithParam<BackfillCase> {};

TEST_P(KnownBackfill, DecidesInsteadOfTheLengthOfTheHistory) {
  // A history so short that it would count as unfinished, then one so long that it would not.
  for (const char* firstDay : {"2024-03-01", "2015-01-01"}) {
    const MemorySource source = sourceOf(GetParam().records, firstDay, "2024-03-17");

    const SummaryCoverage coverage = summaryOf(source, GetParam().state).coverage;

    EXPECT_EQ(coverage.backfilling, GetParam().backfilling) << firstDay;
    EXPECT_EQ(coverage.completeFrom, GetParam().completeFrom) << firstDay;
    EXPECT_EQ(coverage.backfillFrontier, GetParam().frontier) << firstDay;
  }
}

INSTANTIATE_TEST_SUITE_P(
    Cases, KnownBackfill,
    testing::Values(
        BackfillCase{"JustBegun", 10, {absent, absent, false, absent}, true, "", ""},
        BackfillCase{"UnderWay",
                     10,
                     {"2021-05-01", "2015-01-01", false, "2021-05-02"},
                     true,
                     "2021-05-02",
                     "2021-05-01"},
        BackfillCase{
            "WithoutRecords", 0, {"2021-05-01", absent, false, absent}, false, "", "2021-05-01"},
        BackfillCase{"Done",
                     10,
                     {"2015-01-01", "2015-01-01", true, "2021-05-02"},
                     false,
                     "2015-01-01",
                     "2015-01-01"},
        BackfillCase{"DoneWithoutAnEarliestDay",
                     10,
                     {absent, absent, true, "2021-05-02"},
                     false,
                     "2021-05-02",
                     ""},
        BackfillCase{"DoneAndNothingKnown", 10, {absent, absent, true, absent}, false, "", ""}),
    [](const auto& test) { return test.param.name; });

// --- lists of kinds

TEST(SummaryLists, FileEveryCardButTheOverviewUnderItsState) {
  MemorySource source = sourceOf(100, "2020-01-01", "2024-03-17");
  source.covered.devices = {"iPhone"};
  source.types = {"SleepAnalysis", "BodyMass"};
  source.addSamples("BodyMass", "2024-03-01", 1, 70);

  const SummaryCoverage coverage = summaryOf(source).coverage;

  EXPECT_THAT(coverage.collected, ElementsAre("Body"));
  EXPECT_THAT(coverage.absentExpected, ElementsAre("Heart rate", "Workouts"));
  EXPECT_THAT(coverage.suspicious, ElementsAre("Activity", "Sleep"));
}

TEST(SummaryLists, AreInTheSummarysLanguage) {
  MemorySource source = sourceOf(100, "2020-01-01", "2024-03-17");
  source.addTotals("StepCount", "2024-03-01", 1, 5000);
  source.types = {"StepCount"};

  const SummaryCoverage coverage = summaryOf(source, std::nullopt, SummaryLang::zh).coverage;

  EXPECT_THAT(coverage.collected, ElementsAre("活动"));
  EXPECT_THAT(coverage.absentExpected, ElementsAre("心率", "睡眠", "训练", "身体数据"));
  EXPECT_THAT(coverage.suspicious, IsEmpty());
}

TEST(SummaryLists, LeaveOutCardsThatAreStillFillingIn) {
  MemorySource source = sourceOf(100, "2024-03-01", "2024-03-17");
  source.covered.devices = {"Watch"};

  const SummaryCoverage coverage = summaryOf(source).coverage;

  EXPECT_THAT(coverage.collected, IsEmpty());
  EXPECT_THAT(coverage.absentExpected, ElementsAre("Body"));
  EXPECT_THAT(coverage.suspicious, IsEmpty());
}

TEST(SummaryLists, StayEmptyWithoutRecords) {
  const SummaryCoverage coverage = summaryOf(MemorySource()).coverage;

  EXPECT_THAT(coverage.collected, IsEmpty());
  EXPECT_THAT(coverage.absentExpected, IsEmpty());
  EXPECT_THAT(coverage.suspicious, IsEmpty());
}

}  // namespace
