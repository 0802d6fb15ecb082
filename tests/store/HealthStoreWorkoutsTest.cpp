#include "platform/ReceiverError.h"
#include "store/HealthStore.h"
#include "support/RuinedPages.h"
#include "support/TestDatabase.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace {

/// A workout of `activity` on `day`, the `number`th of them so that none is the same as another.
TestWorkout workoutOf(const std::string& activity, const std::string& day,
                      std::optional<double> minutes, int number = 0) {
  return {.activity_type = activity,
          .duration_min = minutes,
          .start_date = day + " 08:00:0" + std::to_string(number) + " +0000",
          .start_day = day};
}

TEST(WorkoutStatsOfAStore, CountWorkoutsAndMinutesByType) {
  TestDatabase database;
  database.addWorkouts({workoutOf("Running", "2024-03-01", 30.5),
                        workoutOf("Yoga", "2024-03-01", 45),
                        workoutOf("Running", "2024-03-02", 20),
                        workoutOf("Walking", "2024-03-02", {}),
                        workoutOf("Cycling", "2024-03-03", 10)});

  EXPECT_EQ(
      database.open().workoutStats("2024-03-01", "2024-03-03"),
      (WorkoutStats{5, 105.5, {{"Running", 2}, {"Cycling", 1}, {"Walking", 1}, {"Yoga", 1}}}));
}

TEST(WorkoutStatsOfAStore, IncludeBothEndsOfTheRange) {
  TestDatabase database;
  for (const char* day : {"2024-02-29", "2024-03-01", "2024-03-02", "2024-03-03", "2024-03-04"}) {
    database.addWorkout(workoutOf("Running", day, 10));
  }

  EXPECT_EQ(database.open().workoutStats("2024-03-01", "2024-03-03"),
            (WorkoutStats{3, 30, {{"Running", 3}}}));
}

TEST(WorkoutStatsOfAStore, AreZeroWithoutWorkouts) {
  const TestDatabase database;
  EXPECT_EQ(database.open().workoutStats("2024-03-01", "2024-03-03"), WorkoutStats());
}

TEST(WorkoutStatsOfAStore, LeaveOutWorkoutsWithoutADay) {
  TestDatabase database;
  database.addWorkout({.start_day = std::nullopt});
  EXPECT_EQ(database.open().workoutStats("", "9999-12-31"), WorkoutStats());
}

TEST(WorkoutStatsOfAStore, ShowAMissingTypeAsAQuestionMark) {
  TestDatabase database;
  database.addWorkout({.activity_type = std::nullopt, .duration_min = 5});
  EXPECT_EQ(database.open().workoutStats("2024-03-01", "2024-03-01"),
            (WorkoutStats{1, 5, {{"?", 1}}}));
}

TEST(WorkoutStatsOfAStore, FailWithoutTheTable) {
  TestDatabase database;
  database.run("DROP TABLE workouts");
  const HealthStore store = database.open();
  try {
    store.workoutStats("2024-03-01", "2024-03-01");
    FAIL() << "there is no table to read";
  } catch (const ReceiverError& error) {
    EXPECT_STREQ(error.what(), "prepare 失败:no such table: workouts");
  }
}

// --- the workouts of a day

/// The message of the ReceiverError that leaves `read`; "" when none does.
template <typename Read>
std::string failureOf(Read read) {
  try {
    read();
  } catch (const ReceiverError& error) {
    return error.what();
  }
  return "";
}

TEST(WorkoutsOfADay, ComeInTheOrderOfTheirStarts) {
  TestDatabase database;
  database.addWorkouts(
      {{.activity_type = "Yoga", .duration_min = 20, .start_date = "2024-03-01 18:00:00 +0000"},
       {.activity_type = "Running",
        .duration_min = 30.5,
        .start_date = "2024-03-01 07:00:00 +0000",
        .distance_km = 5.25,
        .active_energy_kcal = 300},
       {.activity_type = "Walking",
        .duration_min = 10,
        .start_date = "2024-03-01 12:00:00 +0000"}});

  EXPECT_EQ(database.open().workouts("2024-03-01"),
            (std::vector<DayWorkout>{
                {"Running", 30.5, 5.25, 300}, {"Walking", 10, {}, {}}, {"Yoga", 20, {}, {}}}));
}

TEST(WorkoutsOfADay, KeepWhatIsMissingApartFromZero) {
  TestDatabase database;
  database.addWorkouts({{.activity_type = std::nullopt,
                         .duration_min = std::nullopt,
                         .start_date = "2024-03-01 07:00:00 +0000"},
                        {.activity_type = "",
                         .duration_min = 0,
                         .start_date = "2024-03-01 08:00:00 +0000",
                         .distance_km = 0,
                         .active_energy_kcal = 0}});

  EXPECT_EQ(database.open().workouts("2024-03-01"),
            (std::vector<DayWorkout>{{"?", 0, {}, {}}, {"", 0, 0, 0}}));
}

TEST(WorkoutsOfADay, TakeTextForNoNumber) {
  TestDatabase database;
  database.addWorkout({.duration_min = 1, .distance_km = 1, .active_energy_kcal = 1});
  database.run(
      "UPDATE workouts SET duration_min='long', distance_km='5 km', active_energy_kcal=''");

  EXPECT_EQ(database.open().workouts("2024-03-01"),
            (std::vector<DayWorkout>{{"Running", 0, {}, {}}}));
}

TEST(WorkoutsOfADay, AreThoseOfExactlyThatDay) {
  TestDatabase database;
  for (const char* day : {"2024-02-29", "2024-03-02", "2024-03-01x"}) {
    database.addWorkout({.start_day = day});
  }
  database.addWorkout({.start_day = std::nullopt});

  EXPECT_TRUE(database.open().workouts("2024-03-01").empty());
}

TEST(WorkoutsOfADay, FailWithoutTheTable) {
  TestDatabase database;
  database.run("DROP TABLE workouts");
  const HealthStore store = database.open();

  EXPECT_EQ(failureOf([&] { store.workouts("2024-03-01"); }),
            "prepare 失败:no such table: workouts");
}

// --- workouts in full

std::vector<WorkoutEntry> allOf(const TestDatabase& database) {
  return database.open().workoutDetails(std::nullopt, std::nullopt);
}

std::vector<std::string> startsOf(const std::vector<WorkoutEntry>& workouts) {
  std::vector<std::string> starts;
  for (const WorkoutEntry& workout : workouts) starts.push_back(workout.start);
  return starts;
}

TEST(WorkoutDetails, CarryEveryColumn) {
  TestDatabase database;
  database.addWorkout({.activity_type = "Running",
                       .duration_min = 1.5,
                       .source_name = "安的 Apple\u00A0Watch",
                       .start_date = "2024-03-01 07:00:00 +0800",
                       .end_date = "2024-03-01 07:01:30 +0800",
                       .distance_km = 2.5,
                       .active_energy_kcal = 3.5,
                       .basal_energy_kcal = 4.5,
                       .hr_avg = 5.5,
                       .hr_min = 6.5,
                       .hr_max = 7.5,
                       .elevation_m = -8.5,
                       .avg_mets = 9.5,
                       .indoor = 1,
                       .temp_c = -10.5,
                       .humidity_pct = 11.5});

  WorkoutEntry expected;
  expected.activity_type = "Running";
  expected.start = "2024-03-01 07:00:00 +0800";
  expected.end = "2024-03-01 07:01:30 +0800";
  expected.source = "安的 Apple\u00A0Watch";
  expected.duration_min = 1.5;
  expected.distance_km = 2.5;
  expected.active_energy_kcal = 3.5;
  expected.basal_energy_kcal = 4.5;
  expected.hr_avg = 5.5;
  expected.hr_min = 6.5;
  expected.hr_max = 7.5;
  expected.elevation_m = -8.5;
  expected.avg_mets = 9.5;
  expected.indoor = true;
  expected.temp_c = -10.5;
  expected.humidity_pct = 11.5;
  EXPECT_EQ(allOf(database), std::vector{expected});
}

TEST(WorkoutDetails, LeaveOutWhatWasNotStored) {
  TestDatabase database;
  database.addWorkout({.activity_type = std::nullopt,
                       .source_name = std::nullopt,
                       .start_date = "",
                       .end_date = std::nullopt});

  EXPECT_EQ(allOf(database), std::vector{WorkoutEntry()});
}

TEST(WorkoutDetails, TakeTextForNoNumber) {
  TestDatabase database;
  database.addWorkout({.distance_km = 1, .hr_avg = 1, .indoor = 1});
  database.run("UPDATE workouts SET distance_km='far', hr_avg=X'01', indoor='no'");

  const WorkoutEntry workout = allOf(database).at(0);

  EXPECT_EQ(workout.distance_km, std::nullopt);
  EXPECT_EQ(workout.hr_avg, std::nullopt);
  EXPECT_EQ(workout.indoor, std::nullopt);
}

TEST(WorkoutDetails, TellUnrecordedFromOutdoor) {
  TestDatabase database;
  database.addWorkouts({{.start_date = "1", .indoor = std::nullopt},
                        {.start_date = "2", .indoor = 0},
                        {.start_date = "3", .indoor = 1}});

  const std::vector<WorkoutEntry> newestFirst = allOf(database);

  EXPECT_EQ(newestFirst.at(0).indoor, true);
  EXPECT_EQ(newestFirst.at(1).indoor, false);
  EXPECT_EQ(newestFirst.at(2).indoor, std::nullopt);
}

TEST(WorkoutDetails, ComeNewestFirst) {
  TestDatabase database;
  database.addWorkouts({{.start_date = "2024-03-01 09:00:00 +0000", .start_day = "2024-03-01"},
                        {.start_date = "2024-03-03 09:00:00 +0000", .start_day = "2024-03-03"},
                        {.start_date = "2024-03-02 09:00:00 +0000", .start_day = "2024-03-02"}});

  EXPECT_EQ(
      startsOf(allOf(database)),
      (std::vector<std::string>{
          "2024-03-03 09:00:00 +0000", "2024-03-02 09:00:00 +0000", "2024-03-01 09:00:00 +0000"}));
}

TEST(WorkoutDetails, ComeLastInsertedFirstWhereStartsAreEqual) {
  TestDatabase database;
  for (const char* activity : {"Running", "Yoga", "Cycling", "Walking"}) {
    database.addWorkout({.activity_type = activity});
  }

  std::vector<std::string> activities;
  for (const WorkoutEntry& workout : allOf(database)) activities.push_back(workout.activity_type);

  EXPECT_EQ(activities, (std::vector<std::string>{"Walking", "Cycling", "Yoga", "Running"}));
}

TEST(WorkoutDetails, LieBetweenTheBoundsThatAreGiven) {
  TestDatabase database;
  for (const char* day : {"2024-02-29", "2024-03-01", "2024-03-02", "2024-03-03"}) {
    database.addWorkout({.start_date = day, .start_day = day});
  }
  const HealthStore store = database.open();
  const auto starts =
      [&store](std::optional<std::string_view> from, std::optional<std::string_view> to) {
        return startsOf(store.workoutDetails(from, to));
      };
  using Days = std::vector<std::string>;

  EXPECT_EQ(starts("2024-03-01", "2024-03-02"), (Days{"2024-03-02", "2024-03-01"}));
  EXPECT_EQ(starts("2024-03-02", {}), (Days{"2024-03-03", "2024-03-02"}));
  EXPECT_EQ(starts({}, "2024-03-01"), (Days{"2024-03-01", "2024-02-29"}));
  EXPECT_EQ(starts({}, {}), (Days{"2024-03-03", "2024-03-02", "2024-03-01", "2024-02-29"}));
  EXPECT_EQ(starts("2024-03-02", "2024-03-01"), Days());
}

TEST(WorkoutDetails, FailWithoutTheTable) {
  TestDatabase database;
  database.run("DROP TABLE workouts");

  EXPECT_EQ(failureOf([&] { allOf(database); }), "prepare 失败:no such table: workouts");
}

// --- their humidity

const std::string reading = R"({"raw_value":55,"raw_unit":"%","encoding":"healthkit_percent"})";

TEST(WorkoutHumidityOfAStore, BelongsToTheWorkoutOfThatIdentifier) {
  TestDatabase database;
  database.addWorkouts({{.activity_type = "Running"}, {.activity_type = "Yoga"}});
  WorkoutEntry running = allOf(database).at(1);
  ASSERT_EQ(running.activity_type, "Running");
  database.addHumidity(running.workout_id(), reading);
  database.addHumidity("w_0", R"({"raw_value":1,"encoding":"xml_percent"})");

  const std::vector<WorkoutEntry> workouts = allOf(database);

  WorkoutHumidity expected;
  expected.raw_value = 55;
  expected.raw_unit = "%";
  expected.encoding = "healthkit_percent";
  EXPECT_EQ(workouts.at(0).humidity, std::nullopt);
  EXPECT_EQ(workouts.at(1).humidity, expected);
}

TEST(WorkoutHumidityOfAStore, IsLeftOutWhereItDoesNotDecode) {
  for (const char* data : {"",
                           "{",
                           "null",
                           "[]",
                           "55",
                           "{}",
                           R"({"raw_value":55,"raw_unit":"%"})",
                           R"({"encoding":7})",
                           R"({"encoding":"xml_percent","raw_value":"55"})",
                           R"({"encoding":"xml_percent"} and more)"}) {
    TestDatabase database;
    database.addWorkout({.humidity_pct = 60});
    database.addHumidity(allOf(database).at(0).workout_id(), data);

    const WorkoutEntry workout = allOf(database).at(0);

    EXPECT_EQ(workout.humidity, std::nullopt) << data;
    ASSERT_TRUE(workout.humidityReading()) << data;
    EXPECT_EQ(workout.humidityReading()->encoding, "legacy_percent") << data;
  }
}

TEST(WorkoutHumidityOfAStore, IsAbsentInAFileFromBeforeIt) {
  TestDatabase database;
  database.addWorkout({});
  database.run("DROP TABLE workout_humidity");

  EXPECT_EQ(allOf(database).at(0).humidity, std::nullopt);
}

TEST(WorkoutHumidityOfAStore, FailsWithItsOwnWordsWhenItCannotBeRead) {
  TestDatabase database;
  database.addWorkout({});
  database.addHumidity(allOf(database).at(0).workout_id(), reading);
  ASSERT_EQ(ruinPages(database, reading), 1);

  EXPECT_EQ(failureOf([&] { allOf(database); }),
            "读取湿度原值 失败:database disk image is malformed");
}

TEST(WorkoutHumidityOfAStore, FailsWhereTheTableHasNoReadings) {
  TestDatabase database;
  database.addWorkout({});
  database.run("DROP TABLE workout_humidity")
      .run("CREATE TABLE workout_humidity (workout_id TEXT)");

  EXPECT_EQ(failureOf([&] { allOf(database); }), "prepare 失败:no such column: data");
}

TEST(WorkoutHumidityOfAStore, IsFoundByTheIdentifierOfTheRepairedTexts) {
  TestDatabase database;
  database.run(
      "INSERT INTO workouts (activity_type, source_name, start_date, end_date, start_day) VALUES "
      "(CAST(X'52FF' AS TEXT), CAST(X'57C3' AS TEXT), CAST(X'E28031' AS TEXT), "
      "CAST(X'F09F32' AS TEXT), '2024-03-01')");
  WorkoutEntry repaired;
  repaired.activity_type = "R\uFFFD";
  repaired.source = "W\uFFFD";
  repaired.start = "\uFFFD1";
  repaired.end = "\uFFFD2";
  database.addHumidity(repaired.workout_id(), reading);

  const WorkoutEntry workout = allOf(database).at(0);

  EXPECT_EQ(workout.workout_id(), repaired.workout_id());
  EXPECT_EQ(workout.activity_type, repaired.activity_type);
  EXPECT_EQ(workout.source, repaired.source);
  EXPECT_EQ(workout.start, repaired.start);
  EXPECT_EQ(workout.end, repaired.end);
  EXPECT_TRUE(workout.humidity);
}

}  // namespace
