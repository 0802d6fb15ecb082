// Which stored days are searched for the heart rate of a workout.

#include "store/HealthStore.h"
#include "support/TestDatabase.h"
#include "support/WorkoutSamples.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

namespace {

using testing::ElementsAre;

std::vector<double> bpmOf(const TestDatabase& database, const TestWorkout& workout) {
  std::vector<double> values;
  const WorkoutHeartRate heartRate =
      database.open().workoutHeartRate(identifierOf(workout), std::nullopt, 1000, 0);
  for (const WorkoutHeartRatePoint& sample : heartRate.samples) values.push_back(sample.bpm);
  return values;
}

/// A sample in the workout, filed under `day`.
TestRecord filedUnder(const std::string& day, double bpm) {
  TestRecord sample = sampleAfter(static_cast<int>(bpm), bpm);
  sample.start_day = day;
  return sample;
}

TEST(HeartRateCandidates, AreFiledTwoDaysFromTheWorkoutAtMost) {
  TestDatabase database;
  database.addWorkout(hourOfRunning())
      .addRecords({filedUnder("2024-02-27", 51),
                   filedUnder("2024-02-28", 52),
                   filedUnder("2024-02-29", 53),
                   filedUnder("2024-03-01", 54),
                   filedUnder("2024-03-02", 55),
                   filedUnder("2024-03-03", 56),
                   filedUnder("2024-03-04", 57)});

  EXPECT_THAT(bpmOf(database, hourOfRunning()), ElementsAre(52, 53, 54, 55, 56));
}

TEST(HeartRateCandidates, ReachToTheLastDayThatCanBeWritten) {
  // Two days behind each of these days lies one that has five digits in its year.
  for (const std::string day : {"9999-12-30", "9999-12-31"}) {
    const TestWorkout workout{.start_date = day + " 21:00:00 +0000",
                              .start_day = day,
                              .end_date = day + " 22:00:00 +0000"};
    TestDatabase database;
    database.addWorkout(workout).addRecord({.type = "HeartRate",
                                            .unit = "count/min",
                                            .start_date = day + " 21:30:00 +0000",
                                            .start_day = day,
                                            .value_num = 61});

    EXPECT_THAT(bpmOf(database, workout), ElementsAre(61)) << day;
  }
}

}  // namespace
