#include "platform/ReceiverError.h"
#include "summary/Insights.h"
#include "summary/SummaryEngine.h"
#include "summary/SummaryOfAnn.h"
#include "support/MemorySource.h"
#include "support/SummaryPrinters.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

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

// --- figures

TEST(AverageDaily, IsTheMeanOfTheDaysThatHaveData) {
  MemorySource source;
  source.totals["StepCount"] = {{"2024-03-14", 1000}, {"2024-03-15", 2000}, {"2024-03-17", 6000}};

  const SummaryEngine engine(source, noon, SummaryLang::en, {});

  EXPECT_EQ(engine.averageDaily("StepCount", {"2024-03-15", "2024-03-17"}), (Figure{4000, 2}));
}

TEST(AverageDaily, IsAbsentWithoutData) {
  const MemorySource source;

  const SummaryEngine engine(source, noon, SummaryLang::en, {});

  EXPECT_EQ(engine.averageDaily("StepCount", engine.lastDays(30)), std::nullopt);
}

TEST(AverageDaily, IsAbsentWhenTheTotalsCannotBeRead) {
  MemorySource source;
  source.totals["StepCount"] = {{"2024-03-17", 6000}};
  source.failing = {Operation::dailyTotals};

  const SummaryEngine engine(source, noon, SummaryLang::en, {});

  EXPECT_EQ(engine.averageDaily("StepCount", engine.lastDays(30)), std::nullopt);
}

TEST(MedianValue, CountsTheValuesItRestsOn) {
  MemorySource source;
  for (const double value : {4.0, 1.0, 3.0, 2.0}) {
    source.samples.push_back({"RestingHeartRate", "2024-03-17", value});
  }
  source.samples.push_back({"RestingHeartRate", "2024-03-18", 100});
  source.samples.push_back({"HeartRate", "2024-03-17", 100});

  const SummaryEngine engine(source, noon, SummaryLang::en, {});

  EXPECT_EQ(engine.medianValue("RestingHeartRate", engine.lastDays(90)), (Figure{2.5, 4}));
}

TEST(MedianValue, IsAbsentWithoutValues) {
  const MemorySource source;

  const SummaryEngine engine(source, noon, SummaryLang::en, {});

  EXPECT_EQ(engine.medianValue("RestingHeartRate", engine.lastDays(90)), std::nullopt);
}

TEST(MedianValue, IsAbsentWhenTheValuesCannotBeRead) {
  MemorySource source;
  source.addSamples("RestingHeartRate", "2024-03-17", 1, 60);
  source.failing = {Operation::values};

  const SummaryEngine engine(source, noon, SummaryLang::en, {});

  EXPECT_EQ(engine.medianValue("RestingHeartRate", engine.lastDays(90)), std::nullopt);
}

TEST(LatestValue, ComesWithItsDay) {
  MemorySource source;
  source.addSamples("BodyMass", "2019-05-01", 2, 70);

  const SummaryEngine engine(source, noon, SummaryLang::en, {});

  EXPECT_EQ(engine.latestValue("BodyMass"), (DailyValue{"2019-05-02", 70}));
  EXPECT_EQ(engine.latestValue("BodyMassIndex"), std::nullopt);
}

TEST(LatestValue, IsAbsentWhenItCannotBeRead) {
  MemorySource source;
  source.addSamples("BodyMass", "2019-05-01", 1, 70);
  source.failing = {Operation::latestValue};

  const SummaryEngine engine(source, noon, SummaryLang::en, {});

  EXPECT_EQ(engine.latestValue("BodyMass"), std::nullopt);
}

TEST(WorkoutStats, AreThereEvenWithoutWorkouts) {
  const MemorySource source;

  const SummaryEngine engine(source, noon, SummaryLang::en, {});

  EXPECT_EQ(engine.workoutStats(engine.lastDays(90)), WorkoutStats());
}

TEST(WorkoutStats, AreAbsentOnlyWhenTheyCannotBeRead) {
  MemorySource source;
  source.failing = {Operation::workoutStats};

  const SummaryEngine engine(source, noon, SummaryLang::en, {});

  EXPECT_EQ(engine.workoutStats(engine.lastDays(90)), std::nullopt);
}

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
      SummaryEngine(source, noon + 0.25, SummaryLang::en, {}).build("p1", "Ann", 1710000000.5, {});

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

TEST(Summary, GroupsDigitsAsItIsTold) {
  MemorySource source = sourceOf(1234567, "2024-03-01", "2024-03-14");
  source.addTotals("StepCount", "2024-03-01", 14, 5000);

  const SummaryEngine engine(source, noon, SummaryLang::en, {.separator = ".", .sizes = "\3"});
  const HealthSummary summary = engine.build("p1", "Ann", std::nullopt, std::nullopt);

  EXPECT_EQ(summary.cards.at(0).metrics.at(0).text, "1.234.567");
  EXPECT_EQ(summary.cards.at(1).metrics.at(0).text, "5.000");
}

TEST(Summary, EndsWithTheInsights) {
  MemorySource source = sourceOf(14, "2024-03-01", "2024-03-14");
  source.addTotals("StepCount", "2024-03-01", 14, 5000);

  const SummaryEngine engine(source, noon, SummaryLang::zh, {});
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
  EXPECT_EQ(failureOf(Operation::recordedDays), "recordedDays fails");
  EXPECT_EQ(failureOf(Operation::devices), "devices fails");
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

TEST(Summary, CountsTheRecordsByAddingUpTheirYears) {
  MemorySource source = sourceOf(7, "2023-03-17", "2024-03-17");
  source.years = {{"2023", 2}, {"2024", 4}};
  source.failing = {Operation::recordCount};

  EXPECT_EQ(summaryOf(source).coverage.records, 7);
}

TEST(Summary, HasNoYearsWhenTheyCannotBeCounted) {
  MemorySource source = sourceOf(1, "2024-03-17", "2024-03-17");
  source.years = {{"2024", 1}};
  source.failing = {Operation::yearlyCounts};

  const SummaryCoverage coverage = summaryOf(source).coverage;

  EXPECT_THAT(coverage.yearly, IsEmpty());
  EXPECT_EQ(coverage.records, 1);
}

TEST(Summary, AsksForTheTypesBeforeItCountsTheRecords) {
  MemorySource source = sourceOf(1, "2024-03-17", "2024-03-17");
  source.failing = {Operation::presentTypes, Operation::yearlyCounts, Operation::recordCount};

  try {
    summaryOf(source);
    FAIL() << "made a summary";
  } catch (const ReceiverError& error) {
    EXPECT_EQ(error.message, "presentTypes fails");
  }
}

TEST(Summary, CannotBeMadeWhenNothingCanBeCounted) {
  MemorySource source = sourceOf(1, "2024-03-17", "2024-03-17");
  source.failing = {Operation::yearlyCounts, Operation::recordCount};

  EXPECT_THROW(summaryOf(source), ReceiverError);
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

struct ShownNumberCase {
  std::string name;
  double number;
};

void PrintTo(const ShownNumberCase& number, std::ostream* stream) { *stream << number.name; }

class SummaryOfStrangeNumbers : public testing::TestWithParam<ShownNumberCase> {};

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

INSTANTIATE_TEST_SUITE_P(Cases, SummaryOfStrangeNumbers,
                         testing::Values(ShownNumberCase{"Infinity", infinity},
                                         ShownNumberCase{"MinusInfinity", -infinity},
                                         ShownNumberCase{"NotANumber", notANumber},
                                         ShownNumberCase{"Largest", 1.7e308},
                                         ShownNumberCase{"BeyondInt64", 0x1p63},
                                         ShownNumberCase{"BelowInt64", -0x1.1p63},
                                         ShownNumberCase{"Smallest", 5e-324},
                                         ShownNumberCase{"Zero", 0}),
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

}  // namespace
