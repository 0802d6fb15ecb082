// The order of a workout's samples, their segments, what all of them say, and one page of them.

#include "platform/ReceiverError.h"
#include "store/HealthStore.h"
#include "support/TestDatabase.h"
#include "support/WorkoutSamples.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::int64_t largestOffset = 2147483647;

WorkoutHeartRate pageOf(const TestDatabase& database, std::int64_t limit = 1000,
                        std::int64_t offset = 0) {
  return database.open().workoutHeartRate(
      identifierOf(hourOfRunning()), std::nullopt, limit, offset);
}

/// What `field` is in every sample.
template <typename T>
std::vector<T> allOf(const WorkoutHeartRate& heartRate, T WorkoutHeartRatePoint::*field) {
  std::vector<T> values;
  for (const WorkoutHeartRatePoint& sample : heartRate.samples) values.push_back(sample.*field);
  return values;
}

/// Adds the run with samples after these seconds, in this order.
void addRunWithSamplesAfter(TestDatabase& database, const std::vector<int>& seconds) {
  database.addWorkout(hourOfRunning());
  std::vector<TestRecord> samples;
  for (const int second : seconds) samples.push_back(sampleAfter(second));
  database.addRecords(samples);
}

TEST(WorkoutSampleOrder, IsByTimeWhateverTheRows) {
  TestDatabase database;
  addRunWithSamplesAfter(database, {300, 0, 3599, 30});

  const WorkoutHeartRate heartRate = pageOf(database);

  EXPECT_THAT(allOf(heartRate, &WorkoutHeartRatePoint::elapsed_seconds),
              ElementsAre(0, 30, 300, 3599));
  EXPECT_THAT(allOf(heartRate, &WorkoutHeartRatePoint::record_id), ElementsAre(2, 4, 1, 3));
}

TEST(WorkoutSampleOrder, IsByRowWhereTimesAreEqual) {
  TestDatabase database;
  database.addWorkout(hourOfRunning());
  for (const char* start : {"2024-03-01 16:00:30 +0800",
                            "2024-03-01 08:00:00 +0000",
                            "2024-03-01 08:00:30 +0000",
                            "2024-03-01 03:00:30 -0500"}) {
    TestRecord sample = sampleAfter(0);
    sample.start_date = start;
    database.addRecord(sample);
  }
  database.run("UPDATE records SET rowid = 9 WHERE rowid = 1");

  EXPECT_THAT(allOf(pageOf(database), &WorkoutHeartRatePoint::record_id), ElementsAre(2, 3, 4, 9));
}

struct SegmentCase {
  std::string name;
  std::vector<int> seconds;
  std::vector<std::int64_t> segments;
};

class WorkoutSegments : public testing::TestWithParam<SegmentCase> {};

TEST_P(WorkoutSegments, BreakAtGapsOfMoreThanAMinute) {
  TestDatabase database;
  addRunWithSamplesAfter(database, GetParam().seconds);

  EXPECT_EQ(allOf(pageOf(database), &WorkoutHeartRatePoint::segment), GetParam().segments);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, WorkoutSegments,
    testing::Values(SegmentCase{"None", {}, {}}, SegmentCase{"One", {3000}, {0}},
                    SegmentCase{"Several", {0, 30, 100, 150, 300}, {0, 0, 1, 1, 2}},
                    SegmentCase{"ExactlyAMinute", {0, 60, 120}, {0, 0, 0}},
                    SegmentCase{"ASecondMore", {0, 61, 122}, {0, 1, 2}},
                    SegmentCase{"EqualTimes", {0, 0, 100, 100, 100}, {0, 0, 1, 1, 1}},
                    SegmentCase{"RowsInAnotherOrder", {300, 150, 0, 100, 30}, {0, 0, 1, 1, 2}}),
    [](const auto& test) { return test.param.name; });

TEST(WorkoutSegment, IsTheSameOnEveryPage) {
  TestDatabase database;
  addRunWithSamplesAfter(database, {0, 30, 100, 150, 300});

  EXPECT_THAT(allOf(pageOf(database, 2, 3), &WorkoutHeartRatePoint::segment), ElementsAre(1, 2));
}

TEST(WorkoutSegment, DoesNotBreakAtASampleThatIsLeftOut) {
  TestRecord unreadable = sampleAfter(50);
  unreadable.unit = std::nullopt;
  TestDatabase database;
  database.addWorkout(hourOfRunning())
      .addRecords({sampleAfter(0), unreadable, sampleAfter(61), sampleAfter(62)});

  EXPECT_THAT(allOf(pageOf(database), &WorkoutHeartRatePoint::segment), ElementsAre(0, 1, 1));
}

// --- what all samples say

TEST(WorkoutHeartRateSummary, IsOfAllSamplesNotThePage) {
  TestDatabase database;
  database.addWorkout(hourOfRunning())
      .addRecords({sampleAfter(0, 90), sampleAfter(1, 120.5), sampleAfter(2, 60)});
  const WorkoutHeartRateSummary expected{
      .count = 3, .min_bpm = 60, .max_bpm = 120.5, .sample_mean_bpm = 90.0 / 3 + 120.5 / 3 + 20};

  EXPECT_EQ(pageOf(database).summary, expected);
  EXPECT_EQ(pageOf(database, 1, 1).summary, expected);
  EXPECT_EQ(pageOf(database, 1, 3).summary, expected);
}

TEST(WorkoutHeartRateSummary, IsNotWeightedByTime) {
  TestDatabase database;
  database.addWorkout(hourOfRunning())
      .addRecords({sampleAfter(0, 100), sampleAfter(1, 100), sampleAfter(3000, 40)});

  EXPECT_DOUBLE_EQ(pageOf(database).summary.sample_mean_bpm.value(), 80);
}

TEST(WorkoutHeartRateSummary, AddsSharesSoThatLargeValuesDoNotOverflow) {
  TestDatabase database;
  database.addWorkout(hourOfRunning())
      .addRecords({sampleAfter(0, 1.5e308), sampleAfter(1, 1.5e308)});

  EXPECT_EQ(pageOf(database).summary.sample_mean_bpm, 1.5e308);
}

TEST(WorkoutHeartRateSummary, IsAbsentWithoutSamples) {
  TestDatabase database;
  addRunWithSamplesAfter(database, {});

  const WorkoutHeartRate heartRate = pageOf(database);

  EXPECT_EQ(heartRate.summary, WorkoutHeartRateSummary());
  EXPECT_THAT(heartRate.samples, IsEmpty());
  EXPECT_EQ(heartRate.pagination, (WorkoutHeartRatePagination{0, 0, 1000, 0, false, {}}));
  EXPECT_EQ(heartRate.excluded_candidate_count, 0);
}

// --- pages

struct PageCase {
  std::string name;
  std::int64_t limit;
  std::int64_t offset;
  std::int64_t returned;
  std::optional<std::int64_t> next;
};

class WorkoutPages : public testing::TestWithParam<PageCase> {};

TEST_P(WorkoutPages, HoldWhatLiesBetweenOffsetAndLimit) {
  TestDatabase database;
  addRunWithSamplesAfter(database, std::vector<int>(2500, 7));

  const WorkoutHeartRate heartRate = pageOf(database, GetParam().limit, GetParam().offset);

  EXPECT_EQ(heartRate.pagination,
            (WorkoutHeartRatePagination{.total_count = 2500,
                                        .returned_count = GetParam().returned,
                                        .limit = GetParam().limit,
                                        .offset = GetParam().offset,
                                        .has_more = GetParam().next.has_value(),
                                        .next_offset = GetParam().next}));
  ASSERT_EQ(static_cast<std::int64_t>(heartRate.samples.size()), GetParam().returned);
  if (GetParam().returned > 0) {
    EXPECT_EQ(heartRate.samples.front().record_id, GetParam().offset + 1);
    EXPECT_EQ(heartRate.samples.back().record_id, GetParam().offset + GetParam().returned);
  }
  EXPECT_EQ(heartRate.summary.count, 2500);
}

INSTANTIATE_TEST_SUITE_P(Cases, WorkoutPages,
                         testing::Values(PageCase{"First", 1000, 0, 1000, 1000},
                                         PageCase{"Middle", 1000, 1000, 1000, 2000},
                                         PageCase{"Last", 1000, 2000, 500, {}},
                                         PageCase{"LastThatIsFull", 1250, 1250, 1250, {}},
                                         PageCase{"OneBeforeTheEnd", 2499, 0, 2499, 2499},
                                         PageCase{"Smallest", 1, 2498, 1, 2499},
                                         PageCase{"LastSample", 1, 2499, 1, {}},
                                         PageCase{"JustBeyond", 1, 2500, 0, {}},
                                         PageCase{"Largest", 5000, 0, 2500, {}},
                                         PageCase{"FarBeyond", 5000, largestOffset, 0, {}}),
                         [](const auto& test) { return test.param.name; });

TEST(WorkoutPages, GiveEverySampleOnce) {
  constexpr int count = 12345;
  TestDatabase database;
  std::vector<int> seconds;
  for (int number = 0; number < count; ++number) seconds.push_back(number * 7919 % 3600);
  addRunWithSamplesAfter(database, seconds);

  // A second pass gives the same: each call reads the database anew.
  std::vector<std::vector<std::int64_t>> passes(2);
  for (std::vector<std::int64_t>& records : passes) {
    for (std::optional<std::int64_t> offset = 0; offset;) {
      const WorkoutHeartRate page = pageOf(database, 5000, *offset);
      for (const WorkoutHeartRatePoint& sample : page.samples) records.push_back(sample.record_id);
      offset = page.pagination.next_offset;
    }
  }

  EXPECT_EQ(passes[0], passes[1]);
  EXPECT_EQ(passes[0].size(), static_cast<std::size_t>(count));
  EXPECT_EQ(std::set(passes[0].begin(), passes[0].end()).size(), static_cast<std::size_t>(count));
}

struct OddPageCase {
  std::string name;
  std::int64_t limit;
  std::int64_t offset;
};

class RefusedPage : public testing::TestWithParam<OddPageCase> {};

TEST_P(RefusedPage, SaysThatThePageIsNone) {
  const TestDatabase database;

  // Even where there is no such workout: the page is looked at first.
  try {
    pageOf(database, GetParam().limit, GetParam().offset);
    FAIL() << "there is no such page";
  } catch (const ReceiverError& error) {
    EXPECT_STREQ(error.what(), "心率分页参数无效");
  }
}

INSTANTIATE_TEST_SUITE_P(Cases, RefusedPage,
                         testing::Values(OddPageCase{"NoSamples", 0, 0},
                                         OddPageCase{"TooManySamples", 5001, 0},
                                         OddPageCase{"LessThanNone", -1, 0},
                                         OddPageCase{"SmallestNumber", INT64_MIN, INT64_MIN},
                                         OddPageCase{"BeforeTheFirst", 1, -1},
                                         OddPageCase{"OffsetTooLarge", 1, largestOffset + 1},
                                         OddPageCase{"LargestNumber", INT64_MAX, INT64_MAX}),
                         [](const auto& test) { return test.param.name; });

}  // namespace
