#include "summary/Cards.h"
#include "support/MemorySource.h"
#include "support/Moment.h"
#include "support/SummaryPrinters.h"
#include "support/ZoneGuard.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace {

using Operation = MemorySource::Operation;
using testing::ElementsAre;

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr std::optional<std::int64_t> uncounted = std::nullopt;

const char* const unauthorized = "no data received (permission may be off; unconfirmed)";
const char* const noWatch = "not collected (no Apple Watch detected)";
const char* const fillingIn = "history still filling in";
const char* const noComparison = "no comparable period yet";

/// A row with a figure.
Metric figure(const std::string& label, double value, const std::string& unit,
              std::optional<std::int64_t> samples, const std::string& text) {
  return {label, value, unit, samples, text, DataState::present};
}

/// A row without one.
Metric gap(const std::string& label, const std::string& text, DataState state) {
  return {label, std::nullopt, "", std::nullopt, text, state};
}

/// Cards about one member at noon of 17 March 2024, whose history is long and complete unless a
/// test says otherwise. "The last 90 days" begin on 18 December 2023, "the last 30" on 16 February
/// 2024; a year ago they ended on 17 March 2023.
class CardsTest : public testing::Test {
protected:
  CardsTest() {
    source.covered.records = 1000;
    source.covered.firstDay = "2015-01-01";
    source.covered.lastDay = "2024-03-17";
    source.covered.typeCount = 1;
  }

  SummaryCard card(const std::string& key, SummaryLang lang = SummaryLang::en) const {
    const SummaryEngine engine(source, moment("2024-03-17 12:00:00 +0000"), lang);
    for (const SummaryCard& card : Cards::all({engine, source.covered, source.types, hasWatch})) {
      if (card.key == key) return card;
    }
    ADD_FAILURE() << "no card " << key;
    return {};
  }

  MemorySource source;
  bool hasWatch = false;
};

// --- states

Metric inState(DataState state) { return gap("", "", state); }

TEST(CardState, IsTheFirstStateThatARowHas) {
  const Metric present = inState(DataState::present);
  const Metric expected = inState(DataState::absentExpected);
  const Metric suspicious = inState(DataState::absentSuspicious);
  const Metric backfilling = inState(DataState::backfilling);

  EXPECT_EQ(Cards::cardState(std::vector{backfilling, expected, suspicious, present}),
            DataState::present);
  EXPECT_EQ(Cards::cardState(std::vector{backfilling, expected, suspicious}),
            DataState::absentSuspicious);
  EXPECT_EQ(Cards::cardState(std::vector{backfilling, expected}), DataState::absentExpected);
  EXPECT_EQ(Cards::cardState(std::vector{backfilling}), DataState::backfilling);
  EXPECT_EQ(Cards::cardState({}), DataState::backfilling);
}

TEST(StateText, SaysWhyThereIsNoFigure) {
  using enum DataState;
  EXPECT_EQ(Cards::stateText(present, true, SummaryLang::en), "");
  EXPECT_EQ(Cards::stateText(present, false, SummaryLang::zh), "");
  EXPECT_EQ(Cards::stateText(absentExpected, true, SummaryLang::en), noWatch);
  EXPECT_EQ(Cards::stateText(absentExpected, true, SummaryLang::zh),
            "未采集(未检测到 Apple Watch)");
  EXPECT_EQ(Cards::stateText(absentExpected, false, SummaryLang::en), "not collected");
  EXPECT_EQ(Cards::stateText(absentExpected, false, SummaryLang::zh), "未采集");
  EXPECT_EQ(Cards::stateText(absentSuspicious, true, SummaryLang::en), unauthorized);
  EXPECT_EQ(Cards::stateText(absentSuspicious, false, SummaryLang::zh),
            "未收到数据(可能未授权,用户尚未确认)");
  EXPECT_EQ(Cards::stateText(backfilling, true, SummaryLang::en), fillingIn);
  EXPECT_EQ(Cards::stateText(backfilling, false, SummaryLang::zh), "历史补全中");
}

// --- overview

class OverviewCard : public CardsTest {};

TEST_F(OverviewCard, CountsWhatThereIs) {
  source.covered.records = 1234567;
  source.covered.typeCount = 42;
  source.covered.devices = {"Ann's Apple Watch", "", " \t ", "iPhone"};

  const SummaryCard overview = card("overview");

  EXPECT_THAT(overview.metrics,
              ElementsAre(figure("Records", 1234567, "", uncounted, "1,234,567"),
                          gap("Date range", "2015-01-01 ~ 2024-03-17", DataState::present),
                          figure("Data types", 42, "", uncounted, "42"),
                          gap("Devices seen", "Ann's Apple Watch、iPhone", DataState::present)));
  EXPECT_EQ(overview.state, DataState::present);
  EXPECT_EQ(overview.needsDevice, std::nullopt);
}

TEST_F(OverviewCard, IsWrittenInChinese) {
  source.covered.records = 1;
  source.covered.devices = {"安的 Apple Watch"};

  EXPECT_THAT(card("overview", SummaryLang::zh).metrics,
              ElementsAre(figure("记录数", 1, "", uncounted, "1"),
                          gap("时间跨度", "2015-01-01 ~ 2024-03-17", DataState::present),
                          figure("数据类型数", 1, "", uncounted, "1"),
                          gap("检测到的设备", "安的 Apple Watch", DataState::present)));
}

TEST_F(OverviewCard, HasADashForADateRangeOrDevicesThatAreUnknown) {
  source.covered.firstDay = "";
  source.covered.lastDay = "";
  source.covered.devices = {"", "  "};

  const SummaryCard overview = card("overview");

  EXPECT_EQ(overview.metrics[1], gap("Date range", "—", DataState::present));
  EXPECT_EQ(overview.metrics[3], gap("Devices seen", "—", DataState::present));
}

TEST_F(OverviewCard, SuspectsRecordsOfNoType) {
  source.covered.typeCount = 0;

  const Metric types = card("overview").metrics[2];

  EXPECT_EQ(types.state, DataState::absentSuspicious);
  EXPECT_EQ(types.value, 0);
}

TEST_F(OverviewCard, IsOneSuspiciousRowWithoutRecords) {
  source.covered = {};

  const SummaryCard overview = card("overview");

  EXPECT_THAT(overview.metrics,
              ElementsAre(gap("Records", unauthorized, DataState::absentSuspicious)));
  EXPECT_EQ(overview.state, DataState::absentSuspicious);
}

// --- activity

class ActivityCard : public CardsTest {};

TEST_F(ActivityCard, AveragesTheDaysThatHaveSteps) {
  source.types = {"StepCount"};
  source.addTotals("StepCount", "2023-12-17", 1, 99999);  // a day too old
  source.addTotals("StepCount", "2023-12-18", 1, 5000);
  source.addTotals("StepCount", "2024-02-15", 1, 7000);
  source.addTotals("StepCount", "2024-02-16", 1, 12001);
  source.addTotals("StepCount", "2024-03-17", 1, 12000);
  source.addTotals("StepCount", "2024-03-18", 1, 99999);  // tomorrow
  source.addTotals("StepCount", "2023-02-14", 1, 99999);
  source.addTotals("StepCount", "2023-02-15", 1, 800);
  source.addTotals("StepCount", "2023-03-17", 1, 900);
  source.addTotals("StepCount", "2023-03-18", 1, 99999);

  const SummaryCard activity = card("activity");

  EXPECT_THAT(activity.metrics,
              ElementsAre(figure("Daily steps · last 30 days", 12000.5, "", 2, "12,001"),
                          figure("Daily steps · last 90 days", 9000.25, "", 4, "9,000"),
                          figure("Daily steps · same period last year", 850, "", 2, "850")));
  EXPECT_EQ(activity.state, DataState::present);
  EXPECT_EQ(activity.needsDevice, std::nullopt);
}

TEST_F(ActivityCard, IsWrittenInChinese) {
  source.addTotals("StepCount", "2024-03-17", 1, 12345);
  source.addTotals("StepCount", "2023-03-17", 1, 999);

  EXPECT_THAT(card("activity", SummaryLang::zh).metrics,
              ElementsAre(figure("日均步数 · 近 30 天", 12345, " 步", 1, "12,345 步"),
                          figure("日均步数 · 近 90 天", 12345, " 步", 1, "12,345 步"),
                          figure("日均步数 · 去年同期", 999, " 步", 1, "999 步")));
}

TEST_F(ActivityCard, SaysNothingWhereStepsAreOnlyOlder) {
  source.types = {"StepCount"};

  const SummaryCard activity = card("activity");

  EXPECT_THAT(
      activity.metrics,
      ElementsAre(
          gap("Daily steps · last 30 days", "", DataState::present),
          gap("Daily steps · last 90 days", "", DataState::present),
          gap("Daily steps · same period last year", noComparison, DataState::absentExpected)));
  EXPECT_EQ(activity.state, DataState::present);
}

TEST_F(ActivityCard, SaysNothingWhereStepsAreOnlyOlderEvenWhileHistoryFillsIn) {
  source.types = {"StepCount"};
  source.covered.backfilling = true;

  EXPECT_THAT(
      card("activity").metrics,
      ElementsAre(gap("Daily steps · last 30 days", "", DataState::present),
                  gap("Daily steps · last 90 days", "", DataState::present),
                  gap("Daily steps · same period last year", fillingIn, DataState::backfilling)));
}

TEST_F(ActivityCard, WaitsForStepsWhileHistoryFillsIn) {
  source.covered.backfilling = true;

  const SummaryCard activity = card("activity");

  EXPECT_THAT(
      activity.metrics,
      ElementsAre(gap("Daily steps · last 30 days", fillingIn, DataState::backfilling),
                  gap("Daily steps · last 90 days", fillingIn, DataState::backfilling),
                  gap("Daily steps · same period last year", fillingIn, DataState::backfilling)));
  EXPECT_EQ(activity.state, DataState::backfilling);
}

TEST_F(ActivityCard, SuspectsAHistoryWithoutSteps) {
  const SummaryCard activity = card("activity");

  EXPECT_THAT(
      activity.metrics,
      ElementsAre(
          gap("Daily steps · last 30 days", unauthorized, DataState::absentSuspicious),
          gap("Daily steps · last 90 days", unauthorized, DataState::absentSuspicious),
          gap("Daily steps · same period last year", noComparison, DataState::absentExpected)));
  EXPECT_EQ(activity.state, DataState::absentSuspicious);
}

TEST_F(ActivityCard, SuspectsAMemberWithoutRecordsWhateverElseIsSaid) {
  source.covered = {};
  source.covered.backfilling = true;
  source.types = {"StepCount"};

  const SummaryCard activity = card("activity");

  EXPECT_EQ(activity.metrics[0],
            gap("Daily steps · last 30 days", unauthorized, DataState::absentSuspicious));
  EXPECT_EQ(activity.metrics[1],
            gap("Daily steps · last 90 days", unauthorized, DataState::absentSuspicious));
}

TEST_F(ActivityCard, TakesStepsThatCannotBeReadForMissingOnes) {
  source.addTotals("StepCount", "2024-03-17", 1, 12345);
  source.failing = {Operation::dailyTotals};

  EXPECT_THAT(
      card("activity").metrics,
      ElementsAre(
          gap("Daily steps · last 30 days", unauthorized, DataState::absentSuspicious),
          gap("Daily steps · last 90 days", unauthorized, DataState::absentSuspicious),
          gap("Daily steps · same period last year", noComparison, DataState::absentExpected)));
}

TEST_F(ActivityCard, ShowsADayOfZeroStepsAsAFigure) {
  source.addTotals("StepCount", "2024-03-17", 1, 0);

  EXPECT_EQ(card("activity").metrics[0], figure("Daily steps · last 30 days", 0, "", 1, "0"));
}

// --- heart

class HeartCard : public CardsTest {
protected:
  /// One resting heart rate of these 90 days and one of the 90 days a year ago.
  void beat(std::optional<double> now, std::optional<double> before) {
    if (now) source.addSamples("RestingHeartRate", "2024-03-01", 1, *now);
    if (before) source.addSamples("RestingHeartRate", "2023-03-01", 1, *before);
  }
};

const std::string labelNow = "Median resting HR · last 90 days";
const std::string labelBefore = "Median resting HR · same period last year";
const std::string labelDelta = "Change vs last year";

TEST_F(HeartCard, ComparesTheMediansOfNinetyDays) {
  source.addSamples("RestingHeartRate", "2022-12-16", 1, 200);
  source.addSamples("RestingHeartRate", "2022-12-17", 1, 61);
  source.addSamples("RestingHeartRate", "2023-03-17", 1, 60.2);
  source.addSamples("RestingHeartRate", "2023-03-18", 1, 200);
  source.addSamples("RestingHeartRate", "2023-12-17", 1, 200);
  source.addSamples("RestingHeartRate", "2023-12-18", 1, 57);
  source.addSamples("RestingHeartRate", "2024-03-17", 2, 59);
  source.addSamples("RestingHeartRate", "2024-03-17", 1, 58.7);

  const SummaryCard heart = card("heart");

  const double before = (61 + 60.2) * 0.5;
  EXPECT_THAT(heart.metrics,
              ElementsAre(figure(labelNow, 58.7, " bpm", 3, "59 bpm"),
                          figure(labelBefore, before, " bpm", 2, "61 bpm"),
                          figure(labelDelta, 58.7 - before, " bpm", uncounted, "-1.9 bpm")));
  EXPECT_EQ(heart.state, DataState::present);
  EXPECT_EQ(heart.needsDevice, std::nullopt);
}

TEST_F(HeartCard, IsWrittenInChinese) {
  beat(62, 60);

  EXPECT_THAT(card("heart", SummaryLang::zh).metrics,
              ElementsAre(figure("静息心率中位 · 近 90 天", 62, " 次/分", 1, "62 次/分"),
                          figure("静息心率中位 · 去年同期", 60, " 次/分", 1, "60 次/分"),
                          figure("与去年同期之差", 2, " 次/分", uncounted, "+2.0 次/分")));
}

TEST_F(HeartCard, ShowsNoDifferenceWithoutASign) {
  beat(60, 60);

  EXPECT_EQ(card("heart").metrics[2], figure(labelDelta, 0, " bpm", uncounted, "0.0 bpm"));
}

TEST_F(HeartCard, NeedsAWatchWhereNeitherAWatchNorItsDataWasEverSeen) {
  const SummaryCard heart = card("heart");

  EXPECT_THAT(heart.metrics,
              ElementsAre(gap(labelNow, noWatch, DataState::absentExpected),
                          gap(labelBefore, noComparison, DataState::absentExpected),
                          gap(labelDelta, "", DataState::absentExpected)));
  EXPECT_EQ(heart.state, DataState::absentExpected);
  EXPECT_EQ(heart.needsDevice, noWatch);
}

TEST_F(HeartCard, NeedsAWatchEvenWhileHistoryFillsIn) {
  source.covered.backfilling = true;

  const SummaryCard heart = card("heart");

  EXPECT_THAT(heart.metrics,
              ElementsAre(gap(labelNow, noWatch, DataState::absentExpected),
                          gap(labelBefore, fillingIn, DataState::backfilling),
                          gap(labelDelta, "", DataState::absentExpected)));
  EXPECT_EQ(heart.state, DataState::absentExpected);
  EXPECT_EQ(heart.needsDevice, noWatch);
}

TEST_F(HeartCard, SaysThatItNeedsAWatchInChinese) {
  EXPECT_EQ(card("heart", SummaryLang::zh).needsDevice, "未采集(未检测到 Apple Watch)");
}

TEST_F(HeartCard, SuspectsAWatchThatGivesNoHeartRate) {
  hasWatch = true;

  const SummaryCard heart = card("heart");

  EXPECT_THAT(heart.metrics,
              ElementsAre(gap(labelNow, unauthorized, DataState::absentSuspicious),
                          gap(labelBefore, noComparison, DataState::absentExpected),
                          gap(labelDelta, "", DataState::absentSuspicious)));
  EXPECT_EQ(heart.state, DataState::absentSuspicious);
  EXPECT_EQ(heart.needsDevice, std::nullopt);
}

TEST_F(HeartCard, TakesStoredHeartDataForProofOfASensor) {
  for (const char* type : {"RestingHeartRate", "HeartRateVariabilitySDNN"}) {
    source.types = {type};

    EXPECT_EQ(card("heart").metrics[0], gap(labelNow, unauthorized, DataState::absentSuspicious))
        << type;
  }
}

TEST_F(HeartCard, TakesNoOtherTypeForProofOfASensor) {
  source.types = {"HeartRate", "StepCount", "SleepAnalysis", "restingheartrate"};

  EXPECT_EQ(card("heart").metrics[0], gap(labelNow, noWatch, DataState::absentExpected));
}

TEST_F(HeartCard, WaitsForTheWatchsDataWhileHistoryFillsIn) {
  hasWatch = true;
  source.covered.backfilling = true;

  const SummaryCard heart = card("heart");

  EXPECT_THAT(heart.metrics,
              ElementsAre(gap(labelNow, fillingIn, DataState::backfilling),
                          gap(labelBefore, fillingIn, DataState::backfilling),
                          gap(labelDelta, "", DataState::backfilling)));
  EXPECT_EQ(heart.state, DataState::backfilling);
  EXPECT_EQ(heart.needsDevice, std::nullopt);
}

TEST_F(HeartCard, GivesTheDifferenceTheStateOfTheMissingYear) {
  beat(60, std::nullopt);

  EXPECT_THAT(card("heart").metrics,
              ElementsAre(figure(labelNow, 60, " bpm", 1, "60 bpm"),
                          gap(labelBefore, noComparison, DataState::absentExpected),
                          gap(labelDelta, "", DataState::absentExpected)));
}

TEST_F(HeartCard, GivesTheDifferenceTheStateOfAYearThatIsStillComing) {
  beat(60, std::nullopt);
  source.covered.backfilling = true;

  EXPECT_THAT(card("heart").metrics,
              ElementsAre(figure(labelNow, 60, " bpm", 1, "60 bpm"),
                          gap(labelBefore, fillingIn, DataState::backfilling),
                          gap(labelDelta, "", DataState::backfilling)));
}

TEST_F(HeartCard, GivesTheDifferenceTheStateOfTheMissingPresent) {
  beat(std::nullopt, 60);
  source.types = {"RestingHeartRate"};

  EXPECT_THAT(card("heart").metrics,
              ElementsAre(gap(labelNow, unauthorized, DataState::absentSuspicious),
                          figure(labelBefore, 60, " bpm", 1, "60 bpm"),
                          gap(labelDelta, "", DataState::absentSuspicious)));
}

TEST_F(HeartCard, TakesValuesThatCannotBeReadForMissingOnes) {
  beat(60, 60);
  source.types = {"RestingHeartRate"};
  source.failing = {Operation::values};

  EXPECT_THAT(card("heart").metrics,
              ElementsAre(gap(labelNow, unauthorized, DataState::absentSuspicious),
                          gap(labelBefore, noComparison, DataState::absentExpected),
                          gap(labelDelta, "", DataState::absentSuspicious)));
}

// --- sleep

class SleepCard : public CardsTest {
protected:
  void sleep(const std::string& start, const std::string& end) {
    source.sleep.push_back({start, end, "HKCategoryValueSleepAnalysisAsleepUnspecified"});
  }
};

TEST_F(SleepCard, AveragesTheNights) {
  sleep("2024-03-14 23:30:00 +0000", "2024-03-15 07:00:00 +0000");
  sleep("2024-03-16 00:30:00 +0000", "2024-03-16 07:10:30 +0000");

  const SummaryCard card = this->card("sleep");

  EXPECT_THAT(card.metrics,
              ElementsAre(figure("Average sleep", (450 + 400.5) / 2, "", 2, "7h 5m"),
                          figure("Bedtime (median)", 360, "", 2, "00:00"),
                          figure("Wake time (median)", 425, "", 2, "07:05")));
  EXPECT_EQ(card.state, DataState::present);
  EXPECT_EQ(card.needsDevice, std::nullopt);
}

TEST_F(SleepCard, IsWrittenInChinese) {
  sleep("2024-03-15 23:00:00 +0000", "2024-03-16 07:05:00 +0000");

  EXPECT_THAT(card("sleep", SummaryLang::zh).metrics,
              ElementsAre(figure("平均睡眠时长", 485, "", 1, "8 小时 5 分"),
                          figure("入睡时间(中位)", 300, "", 1, "23:00"),
                          figure("起床时间(中位)", 425, "", 1, "07:05")));
}

TEST_F(SleepCard, RoundsTheMeanToWholeMinutesBeforeItSplitsIt) {
  sleep("2024-03-15 23:00:00 +0000", "2024-03-16 06:59:30 +0000");

  EXPECT_EQ(card("sleep").metrics[0], figure("Average sleep", 479.5, "", 1, "8h 0m"));
}

TEST_F(SleepCard, TakesTheMedianOfTheClocks) {
  sleep("2024-03-10 22:00:00 +0000", "2024-03-11 06:00:00 +0000");
  sleep("2024-03-12 01:00:00 +0000", "2024-03-12 06:30:00 +0000");
  sleep("2024-03-13 05:00:00 +0000", "2024-03-13 13:00:00 +0000");

  const SummaryCard card = this->card("sleep");

  EXPECT_EQ(card.metrics[1], figure("Bedtime (median)", 420, "", 3, "01:00"));
  EXPECT_EQ(card.metrics[2], figure("Wake time (median)", 390, "", 3, "06:30"));
}

TEST_F(SleepCard, ShowsTheMachinesTime) {
  const ZoneGuard zone("America/New_York");
  sleep("2024-03-09 23:00:00 -0500", "2024-03-10 07:00:00 -0400");

  EXPECT_THAT(card("sleep").metrics,
              ElementsAre(figure("Average sleep", 420, "", 1, "7h 0m"),
                          figure("Bedtime (median)", 300, "", 1, "23:00"),
                          figure("Wake time (median)", 420, "", 1, "07:00")));
}

TEST_F(SleepCard, CountsNightsAndNotSegments) {
  sleep("2024-03-15 23:00:00 +0000", "2024-03-16 01:00:00 +0000");
  sleep("2024-03-16 01:30:00 +0000", "2024-03-16 05:00:00 +0000");
  sleep("2024-03-16 23:00:00 +0000", "2024-03-17 00:59:00 +0000");  // too short for a night

  EXPECT_EQ(card("sleep").metrics[0], figure("Average sleep", 330, "", 1, "5h 30m"));
}

TEST_F(SleepCard, LooksBackNinetyDays) {
  sleep("2023-12-17 22:00:00 +0000", "2023-12-18 10:00:00 +0000");
  sleep("2023-12-18 22:00:00 +0000", "2023-12-19 04:00:00 +0000");
  sleep("2024-03-17 01:00:00 +0000", "2024-03-17 09:00:00 +0000");

  EXPECT_EQ(card("sleep").metrics[0], figure("Average sleep", 420, "", 2, "7h 0m"));
}

TEST_F(SleepCard, NeedsAWatchWhereNeitherAWatchNorSleepWasEverSeen) {
  source.covered.backfilling = true;
  source.types = {"RestingHeartRate"};

  const SummaryCard card = this->card("sleep");

  EXPECT_THAT(card.metrics,
              ElementsAre(gap("Average sleep", noWatch, DataState::absentExpected),
                          gap("Bedtime (median)", noWatch, DataState::absentExpected),
                          gap("Wake time (median)", noWatch, DataState::absentExpected)));
  EXPECT_EQ(card.state, DataState::absentExpected);
  EXPECT_EQ(card.needsDevice, noWatch);
}

TEST_F(SleepCard, SuspectsAWatchOrAHistoryThatGivesNoSleep) {
  const auto expectSuspicion = [this] {
    const SummaryCard card = this->card("sleep");
    EXPECT_THAT(card.metrics,
                ElementsAre(gap("Average sleep", unauthorized, DataState::absentSuspicious),
                            gap("Bedtime (median)", unauthorized, DataState::absentSuspicious),
                            gap("Wake time (median)", unauthorized, DataState::absentSuspicious)));
    EXPECT_EQ(card.state, DataState::absentSuspicious);
    EXPECT_EQ(card.needsDevice, std::nullopt);
  };

  hasWatch = true;
  expectSuspicion();
  hasWatch = false;
  source.types = {"SleepAnalysis"};
  expectSuspicion();
}

TEST_F(SleepCard, WaitsForTheWatchsDataWhileHistoryFillsIn) {
  hasWatch = true;
  source.covered.backfilling = true;

  const SummaryCard card = this->card("sleep");

  EXPECT_THAT(card.metrics,
              ElementsAre(gap("Average sleep", fillingIn, DataState::backfilling),
                          gap("Bedtime (median)", fillingIn, DataState::backfilling),
                          gap("Wake time (median)", fillingIn, DataState::backfilling)));
  EXPECT_EQ(card.state, DataState::backfilling);
}

TEST_F(SleepCard, TakesSleepThatCannotBeReadForMissing) {
  sleep("2024-03-15 23:00:00 +0000", "2024-03-16 07:00:00 +0000");
  source.types = {"SleepAnalysis"};
  source.failing = {Operation::sleepSegments};

  EXPECT_EQ(card("sleep").metrics[0],
            gap("Average sleep", unauthorized, DataState::absentSuspicious));
}

// --- workouts

class WorkoutsCard : public CardsTest {
protected:
  void train(const std::string& code, int count, double minutes = 30) {
    for (int workout = 0; workout < count; ++workout) {
      source.trained.push_back({"2024-03-01", code, minutes});
    }
  }
};

TEST_F(WorkoutsCard, CountsTheWorkoutsOfNinetyDays) {
  train("Running", 2, 45.25);
  train("Yoga", 1, 29.9);
  source.trained.push_back({"2023-12-17", "Running", 1000});
  source.trained.push_back({"2023-12-18", "Running", 1});
  source.trained.push_back({"2024-03-17", "Running", 1});
  source.trained.push_back({"2024-03-18", "Running", 1000});

  const SummaryCard workouts = card("workouts");

  EXPECT_EQ(workouts.metrics[0], figure("Workouts · last 90 days", 5, "", uncounted, "5"));
  EXPECT_DOUBLE_EQ(workouts.metrics[1].value.value_or(0), 122.4);
  EXPECT_EQ(workouts.metrics[1].text, "2h 2m");
  EXPECT_EQ(workouts.metrics[1].samples, uncounted);
  EXPECT_EQ(workouts.metrics[2], gap("Main activities", "Running×4、Yoga×1", DataState::present));
  EXPECT_EQ(workouts.state, DataState::present);
  EXPECT_EQ(workouts.needsDevice, std::nullopt);
}

TEST_F(WorkoutsCard, IsWrittenInChinese) {
  train("TraditionalStrengthTraining", 2, 30);
  train("UnknownCode", 1, 5);

  EXPECT_THAT(card("workouts", SummaryLang::zh).metrics,
              ElementsAre(figure("训练次数 · 近 90 天", 3, " 次", uncounted, "3 次"),
                          figure("总时长", 65, "", uncounted, "1 小时 5 分"),
                          gap("主要运动类型", "力量训练×2、UnknownCode×1", DataState::present)));
}

TEST_F(WorkoutsCard, NamesThreeActivitiesAtMostByTheirNumberThenTheirCode) {
  train("Yoga", 2);
  train("Walking", 2);
  train("Running", 1);
  train("HighIntensityIntervalTraining", 3);

  EXPECT_EQ(card("workouts").metrics[2].text,
            "High Intensity Interval Training×3、Walking×2、Yoga×2");
}

TEST_F(WorkoutsCard, KeepsTheOrderThatTheDataSourceGives) {
  // A source that breaks its own rule shows that nothing is sorted here.
  struct Unsorted final : SummaryDataSource {
    SummaryCoverage coverage() const override { return {}; }
    std::set<std::string> presentTypes() const override { return {}; }
    std::map<std::string, std::int64_t> yearlyCounts() const override { return {}; }
    std::map<std::string, double> dailyTotals(std::string_view, std::string_view,
                                              std::string_view) const override {
      return {};
    }
    std::vector<double> values(std::string_view, std::string_view,
                               std::string_view) const override {
      return {};
    }
    std::optional<DatedValue> latestValue(std::string_view) const override { return {}; }
    std::vector<SleepSegment> sleepSegments(std::string_view, std::string_view) const override {
      return {};
    }
    WorkoutStats workoutStats(std::string_view, std::string_view) const override {
      return {.count = 10, .minutes = 59.6, .byType = {{"B", 1}, {"A", 5}, {"C", 2}, {"D", 2}}};
    }
  };
  const Unsorted unsorted;
  const SummaryEngine engine(unsorted, 0, SummaryLang::en);

  const SummaryCard workouts = Cards::all({engine, {}, {}, false})[4];

  EXPECT_EQ(workouts.metrics[1].text, "1h 0m");
  EXPECT_EQ(workouts.metrics[2].text, "B×1、A×5、C×2");
}

TEST_F(WorkoutsCard, LeavesOutTheHoursBelowOne) {
  train("Running", 1, 59.4);

  EXPECT_EQ(card("workouts").metrics[1], figure("Total time", 59.4, "", uncounted, "59m"));
  EXPECT_EQ(card("workouts", SummaryLang::zh).metrics[1].text, "59 分");
}

TEST_F(WorkoutsCard, IsMadeOfTimesThatAreNoTimes) {
  train("Running", 1, infinity);

  EXPECT_EQ(card("workouts").metrics[1].state, DataState::present);
}

TEST_F(WorkoutsCard, SaysThatThereWereNone) {
  const SummaryCard workouts = card("workouts");

  EXPECT_THAT(
      workouts.metrics,
      ElementsAre(
          gap("Workouts · last 90 days", "", DataState::absentExpected),
          gap("Total time", "", DataState::absentExpected),
          gap("Main activities", "no workouts in the last 90 days", DataState::absentExpected)));
  EXPECT_EQ(workouts.state, DataState::absentExpected);
  EXPECT_EQ(workouts.needsDevice, std::nullopt);
  EXPECT_EQ(card("workouts", SummaryLang::zh).metrics[2].text, "近 90 天没有训练记录");
}

TEST_F(WorkoutsCard, WaitsForWorkoutsWhileHistoryFillsIn) {
  source.covered.backfilling = true;

  const SummaryCard workouts = card("workouts");

  EXPECT_THAT(
      workouts.metrics,
      ElementsAre(
          gap("Workouts · last 90 days", "", DataState::backfilling),
          gap("Total time", "", DataState::backfilling),
          gap("Main activities", "no workouts in the last 90 days", DataState::backfilling)));
  EXPECT_EQ(workouts.state, DataState::backfilling);
}

TEST_F(WorkoutsCard, DoesNotClaimThatThereWereNoneWhenTheyCannotBeRead) {
  train("Running", 1);
  source.failing = {Operation::workoutStats};

  const SummaryCard workouts = card("workouts");

  EXPECT_THAT(workouts.metrics,
              ElementsAre(gap("Workouts · last 90 days", "", DataState::absentSuspicious),
                          gap("Total time", "", DataState::absentSuspicious),
                          gap("Main activities", unauthorized, DataState::absentSuspicious)));
  EXPECT_EQ(workouts.state, DataState::absentSuspicious);
}

TEST_F(WorkoutsCard, DoesNotClaimThatUnreadableWorkoutsAreStillToCome) {
  source.covered.backfilling = true;
  source.failing = {Operation::workoutStats};

  EXPECT_EQ(card("workouts").metrics[2],
            gap("Main activities", unauthorized, DataState::absentSuspicious));
}

// --- body

class BodyCard : public CardsTest {};

TEST_F(BodyCard, ShowsTheNewestOfBothHoweverOld) {
  source.samples = {{"BodyMass", "2016-01-01", 80},
                    {"BodyMass", "2016-02-01", 71.25},
                    {"BodyMassIndex", "2015-01-01", 22.449}};

  const SummaryCard body = card("body");

  EXPECT_THAT(body.metrics,
              ElementsAre(figure("Weight", 71.25, " kg", uncounted, "71.2 kg"),
                          figure("BMI", 22.449, "", uncounted, "22.4")));
  EXPECT_EQ(body.state, DataState::present);
  EXPECT_EQ(body.needsDevice, std::nullopt);
}

TEST_F(BodyCard, IsWrittenInChinese) {
  source.samples = {{"BodyMass", "2016-01-01", 80}, {"BodyMassIndex", "2015-01-01", 22}};

  EXPECT_THAT(card("body", SummaryLang::zh).metrics,
              ElementsAre(figure("体重", 80, " kg", uncounted, "80.0 kg"),
                          figure("BMI", 22, "", uncounted, "22.0")));
}

TEST_F(BodyCard, HasOnlyTheRowThatExists) {
  source.samples = {{"BodyMass", "2016-01-01", 80}};
  EXPECT_THAT(card("body").metrics, ElementsAre(figure("Weight", 80, " kg", uncounted, "80.0 kg")));

  source.samples = {{"BodyMassIndex", "2016-01-01", 22}};
  EXPECT_THAT(card("body").metrics, ElementsAre(figure("BMI", 22, "", uncounted, "22.0")));
}

TEST_F(BodyCard, SaysWhatItNeedsWithoutEither) {
  const SummaryCard body = card("body");

  EXPECT_THAT(body.metrics,
              ElementsAre(gap("Weight",
                              "not collected (needs manual entry or a smart scale)",
                              DataState::absentExpected)));
  EXPECT_EQ(body.state, DataState::absentExpected);
  EXPECT_EQ(body.needsDevice, std::nullopt);
  EXPECT_EQ(card("body", SummaryLang::zh).metrics[0].text, "未采集(需要手动记录或体脂秤)");
}

TEST_F(BodyCard, TakesValuesThatCannotBeReadForMissingOnes) {
  source.samples = {{"BodyMass", "2016-01-01", 80}, {"BodyMassIndex", "2015-01-01", 22}};
  source.failing = {Operation::latestValue};

  EXPECT_THAT(card("body").metrics,
              ElementsAre(gap("Weight",
                              "not collected (needs manual entry or a smart scale)",
                              DataState::absentExpected)));
}

}  // namespace
