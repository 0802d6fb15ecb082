// What a summary says of data that is missing or still to come.

#include "summary/SummaryOfAnn.h"
#include "support/MemorySource.h"
#include "support/SummaryPrinters.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <optional>
#include <ostream>
#include <string>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

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
