#include "summary/Cards.h"
#include "summary/CardsTest.h"
#include "support/MemorySource.h"
#include "support/SummaryPrinters.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <vector>

namespace {

using Operation = MemorySource::Operation;
using testing::ElementsAre;

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
