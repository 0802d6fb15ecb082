// The card of the resting heart rate.

#include "summary/CardsTest.h"
#include "support/MemorySource.h"
#include "support/SummaryPrinters.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <string>

namespace {

using Operation = MemorySource::Operation;
using testing::ElementsAre;

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

}  // namespace
