// The card of the nights.

#include "summary/CardsTest.h"
#include "support/MemorySource.h"
#include "support/SummaryPrinters.h"
#include "support/ZoneGuard.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <string>

namespace {

using Operation = MemorySource::Operation;
using testing::ElementsAre;

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

}  // namespace
