// Workouts and rings on their way into the database.

#include "apps/import/WriterHarness.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using testing::ElementsAre;

TEST(WriterWorkouts, StoresAWorkoutWithItsHumidityUnderItsIdentifier) {
  const TestDatabase database;
  ExportedWorkout workout = eveningRun();
  workout.entry.humidity = WorkoutHumidity{.raw_value = 6900,
                                           .raw_unit = "%",
                                           .raw_text = {},
                                           .encoding = "xml_percent",
                                           .source_bundle_id = {},
                                           .source_version = "10.1"};

  imported(database, [&](Writer& writer) { writer.add(workout); });

  const std::vector<WorkoutEntry> stored = database.open().workoutDetails({}, {});
  EXPECT_THAT(stored, ElementsAre(workout.entry));
  EXPECT_THAT(rows(database.path(), "SELECT start_day, creation_date FROM workouts", 2),
              ElementsAre("2024-03-02|2024-03-02 18:31:00 +0800"));
}

TEST(WriterWorkouts, KeepsTheStoredWorkoutWhenItComesAgain) {
  const TestDatabase database;
  imported(database, [](Writer& writer) { writer.add(eveningRun()); });
  ExportedWorkout again = eveningRun();
  again.entry.distance_km = 99;

  const RunTally tally = imported(database, [&](Writer& writer) { writer.add(again); });

  EXPECT_EQ(tally.workouts, (Tally{.read = 1, .added = 0}));
  EXPECT_THAT(database.open().workoutDetails({}, {}), ElementsAre(eveningRun().entry));
}

TEST(WriterWorkouts, StoresAWorkoutOfMissingTextsOnce) {
  const TestDatabase database;
  ExportedWorkout bare;
  bare.entry.start = "2024-03-02 18:00:00 +0800";

  const RunTally tally = imported(database, [&](Writer& writer) {
    writer.add(bare);
    writer.add(bare);
  });

  EXPECT_EQ(tally.workouts, (Tally{.read = 2, .added = 1}));
  EXPECT_THAT(rows(database.path(), "SELECT activity_type, source_name, end_date FROM workouts", 3),
              ElementsAre("-|-|-"));
}

TEST(WriterRings, ReplacesTheRingsOfADayByNewerValues) {
  const TestDatabase database;
  imported(database, [](Writer& writer) { writer.add(rings(200)); });

  const RunTally same = imported(database, [](Writer& writer) { writer.add(rings(200)); });
  const RunTally newer = imported(database, [](Writer& writer) { writer.add(rings(450)); });

  EXPECT_EQ(same.activityDays, (Tally{.read = 1, .added = 0}));
  EXPECT_EQ(newer.activityDays, (Tally{.read = 1, .added = 1}));
  EXPECT_THAT(rows(database.path(), "SELECT date, active_energy FROM activity_summary", 2),
              ElementsAre("2024-03-01|450.0"));
}

TEST(WriterRings, KeepsTheRingsOfADayFromAnOlderExport) {
  const TestDatabase database;
  imported(database, [](Writer& writer) { writer.add(rings(450)); });

  const RunTally tally = imported(database,
                                  [](Writer& writer) {
                                    writer.exportedAt("2024-03-01 12:00:00 +0000");
                                    writer.add(rings(200));
                                    ExportedActivityDay unknown = rings(300);
                                    unknown.date = "2024-02-29";
                                    writer.add(unknown);
                                  },
                                  {.lastSyncAt = 1709294401});  // a second later

  EXPECT_EQ(tally.activityDays, (Tally{.read = 2, .added = 1}));
  EXPECT_THAT(
      rows(database.path(), "SELECT date, active_energy FROM activity_summary ORDER BY date", 2),
      ElementsAre("2024-02-29|300.0", "2024-03-01|450.0"));
}

}  // namespace
