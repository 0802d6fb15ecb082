#include "platform/JsonFields.h"
#include "workouts/Workouts.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <limits>
#include <optional>
#include <string>
#include <vector>

namespace {

using nlohmann::json;
using nlohmann::ordered_json;

constexpr double infiniteValue = std::numeric_limits<double>::infinity();

/// A workout of which nothing optional was recorded.
WorkoutEntry bareWorkout() {
  WorkoutEntry workout;
  workout.activity_type = "Running";
  workout.start = "2024-03-01 06:54:32 +0800";
  workout.end = "2024-03-01 07:30:00 +0800";
  workout.source = "Watch";
  return workout;
}

WorkoutEntry fullWorkout() {
  WorkoutEntry workout = bareWorkout();
  workout.duration_min = 35.5;
  workout.distance_km = 6.25;
  workout.active_energy_kcal = 410;
  workout.basal_energy_kcal = 45.5;
  workout.hr_avg = 151.5;
  workout.hr_min = 98;
  workout.hr_max = 178;
  workout.elevation_m = 42;
  workout.avg_mets = 9.5;
  workout.indoor = false;
  workout.temp_c = 18.5;
  workout.humidity_pct = 60;
  workout.humidity = WorkoutHumidity{55, "%", {}, "healthkit_percent", "com.apple.Workout", "10.3"};
  return workout;
}

constexpr const char* fullText =
    R"({"activity_type":"Running","start":"2024-03-01 06:54:32 +0800",)"
    R"("end":"2024-03-01 07:30:00 +0800","source":"Watch","duration_min":35.5,"distance_km":6.25,)"
    R"("active_energy_kcal":410.0,"basal_energy_kcal":45.5,"hr_avg":151.5,"hr_min":98.0,)"
    R"("hr_max":178.0,"elevation_m":42.0,"avg_mets":9.5,"indoor":false,"temp_c":18.5,)"
    R"("humidity_pct":60.0,"humidity":{"raw_value":55.0,"raw_unit":"%",)"
    R"("encoding":"healthkit_percent","source_bundle_id":"com.apple.Workout",)"
    R"("source_version":"10.3"}})";

struct IdCase {
  std::string name;
  std::string activity;
  std::string source;
  std::string start;
  std::string end;
  std::string id;
};

class WorkoutId : public testing::TestWithParam<IdCase> {};

// The identifiers were computed by another program from the same definition.
TEST_P(WorkoutId, IsTheHashOfTheFourTexts) {
  WorkoutEntry workout;
  workout.activity_type = GetParam().activity;
  workout.source = GetParam().source;
  workout.start = GetParam().start;
  workout.end = GetParam().end;

  EXPECT_EQ(workout.workout_id(), GetParam().id);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, WorkoutId,
    testing::Values(IdCase{"Usual",
                           "Running",
                           "Watch",
                           "2024-03-01 06:54:32 +0800",
                           "2024-03-01 07:30:00 +0800",
                           "w_76dfdf7da03890748360176be15e9e473ee1d6e74c2e70de4f8f76b9b86890f5"},
                    IdCase{"AllEmpty",
                           "",
                           "",
                           "",
                           "",
                           "w_8538098a725acce2a400276987f134753b5125003e70c7d36420d4e1e50a036c"},
                    IdCase{"SourceWithANoBreakSpace",
                           "Running",
                           "Kim’s Apple\xC2\xA0Watch",
                           "2024-03-01 06:54:32 +0800",
                           "2024-03-01 07:30:00 +0800",
                           "w_642da8d44ceadb703657e1949b7ca433fc35eadd0fcaa446f39ac4499835eb4f"},
                    IdCase{"LongText",
                           std::string(1000, 'A'),
                           "",
                           "",
                           "",
                           "w_2bc19bdb242e7c29374adfa13f05cf52b5b57ab9b83d2620567df5315ae37c8c"}),
    [](const auto& test) { return test.param.name; });

TEST(WorkoutId, TellsTextsApartThatJoinToTheSame) {
  WorkoutEntry one;
  one.source = "ab";
  one.start = "c";
  WorkoutEntry other;
  other.source = "a";
  other.start = "bc";

  EXPECT_NE(one.workout_id(), other.workout_id());
}

TEST(WorkoutId, TellsSourceAndStartApart) {
  WorkoutEntry workout = bareWorkout();
  std::swap(workout.source, workout.start);
  EXPECT_NE(workout.workout_id(), bareWorkout().workout_id());
}

TEST(WorkoutId, ChangesWithEveryByteOfItsTexts) {
  const std::string id = bareWorkout().workout_id();
  for (std::string WorkoutEntry::*const text : {&WorkoutEntry::activity_type,
                                                &WorkoutEntry::source,
                                                &WorkoutEntry::start,
                                                &WorkoutEntry::end}) {
    WorkoutEntry changed = bareWorkout();
    changed.*text += ' ';
    EXPECT_NE(changed.workout_id(), id);
  }
}

TEST(WorkoutId, DependsOnNothingElse) {
  EXPECT_EQ(fullWorkout().workout_id(), bareWorkout().workout_id());
}

TEST(WorkoutDigestOfAnIdentifier, IsTheHashThatTheIdentifierSpells) {
  const WorkoutEntry workout = bareWorkout();

  EXPECT_EQ(workoutDigestOf(workout.workout_id()),
            workoutDigest(workout.activity_type, workout.source, workout.start, workout.end));
}

TEST(WorkoutDigestOfAnIdentifier, TakesTheDigitsInPairs) {
  const std::optional<WorkoutDigest> digest =
      workoutDigestOf("w_0123456789abcdef" + std::string(46, '0') + "ff");

  ASSERT_TRUE(digest);
  EXPECT_EQ(digest->at(0), 0x01);
  EXPECT_EQ(digest->at(7), 0xEF);
  EXPECT_EQ(digest->at(8), 0);
  EXPECT_EQ(digest->at(31), 0xFF);
}

TEST(WorkoutDigestOfAnIdentifier, IsAbsentForAnyOtherText) {
  const std::string digits(64, 'a');
  for (const std::string& text : {std::string(),
                                  std::string("w_"),
                                  digits,
                                  "w-" + digits,
                                  "W_" + digits,
                                  "w_" + digits + "a",
                                  "w_" + digits.substr(1),
                                  "aa" + digits,
                                  "w_" + std::string(64, 'A'),
                                  "w_" + std::string(64, 'g'),
                                  "w_" + std::string(63, 'a') + " ",
                                  "w_" + std::string(1, '\0') + std::string(63, 'a')}) {
    EXPECT_EQ(workoutDigestOf(text), std::nullopt) << text;
  }
}

TEST(HumidityReading, IsTheStoredOneBeforeTheOldColumn) {
  EXPECT_EQ(fullWorkout().humidityReading(), fullWorkout().humidity);
  EXPECT_EQ(fullWorkout().humidityPercent(), 55);
}

TEST(HumidityReading, IsMadeOfTheOldColumn) {
  WorkoutEntry workout = bareWorkout();
  workout.humidity_pct = 60;

  EXPECT_EQ(workout.humidityReading(), (WorkoutHumidity{60, "%", {}, "legacy_percent", {}, {}}));
  EXPECT_EQ(workout.humidityReading()->status(), "legacy_unverified");
  EXPECT_EQ(workout.humidityPercent(), std::nullopt);
}

struct NotFiniteCase {
  std::string name;
  double value;
  std::string text;
};

class HumidityThatIsNotFinite : public testing::TestWithParam<NotFiniteCase> {};

TEST_P(HumidityThatIsNotFinite, IsKeptAsText) {
  WorkoutEntry workout = bareWorkout();
  workout.humidity_pct = GetParam().value;

  EXPECT_EQ(workout.humidityReading(),
            (WorkoutHumidity{{}, "%", GetParam().text, "legacy_percent", {}, {}}));
  EXPECT_EQ(workout.humidityReading()->status(), "invalid_value");
  EXPECT_EQ(workout.humidityPercent(), std::nullopt);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, HumidityThatIsNotFinite,
    testing::Values(NotFiniteCase{"Infinite", infiniteValue, "inf"},
                    NotFiniteCase{"MinusInfinite", -infiniteValue, "-inf"},
                    NotFiniteCase{"NotANumber", std::numeric_limits<double>::quiet_NaN(), "nan"}),
    [](const auto& test) { return test.param.name; });

TEST(HumidityReading, IsAbsentWhenNothingWasRecorded) {
  EXPECT_EQ(bareWorkout().humidityReading(), std::nullopt);
  EXPECT_EQ(bareWorkout().humidityPercent(), std::nullopt);
}

TEST(HumidityPercent, IsAbsentWhenTheReadingIsNotBelieved) {
  WorkoutEntry workout = fullWorkout();
  workout.humidity->raw_value = 100.5;
  EXPECT_EQ(workout.humidityPercent(), std::nullopt);
  workout.humidity->raw_value = 100;
  EXPECT_EQ(workout.humidityPercent(), 100);
  workout.humidity->source_bundle_id = "com.example.running";
  EXPECT_EQ(workout.humidityPercent(), std::nullopt);
}

TEST(WorkoutEncoding, KeepsTheOrderOfTheFields) {
  EXPECT_EQ(ordered_json(fullWorkout()).dump(), fullText);
}

TEST(WorkoutEncoding, LeavesOutWhatIsAbsent) {
  EXPECT_EQ(ordered_json(bareWorkout()).dump(),
            R"({"activity_type":"Running","start":"2024-03-01 06:54:32 +0800",)"
            R"("end":"2024-03-01 07:30:00 +0800","source":"Watch"})");
}

TEST(WorkoutEncoding, LeavesOutWhatIsNoNumber) {
  const std::vector<std::optional<double> WorkoutEntry::*> measures{
      &WorkoutEntry::duration_min,
      &WorkoutEntry::distance_km,
      &WorkoutEntry::active_energy_kcal,
      &WorkoutEntry::basal_energy_kcal,
      &WorkoutEntry::hr_avg,
      &WorkoutEntry::hr_min,
      &WorkoutEntry::hr_max,
      &WorkoutEntry::elevation_m,
      &WorkoutEntry::avg_mets,
      &WorkoutEntry::temp_c,
      &WorkoutEntry::humidity_pct};
  for (const double value : {std::numeric_limits<double>::infinity(),
                             -std::numeric_limits<double>::infinity(),
                             std::numeric_limits<double>::quiet_NaN()}) {
    WorkoutEntry workout = bareWorkout();
    for (const auto measure : measures) workout.*measure = value;
    EXPECT_EQ(ordered_json(workout).dump(), ordered_json(bareWorkout()).dump()) << value;
  }
}

TEST(WorkoutDecoding, ReadsWhatWasWritten) {
  EXPECT_EQ(json::parse(fullText).get<WorkoutEntry>(), fullWorkout());
  EXPECT_EQ(json::parse(ordered_json(bareWorkout()).dump()).get<WorkoutEntry>(), bareWorkout());
}

/// The message with which `value` fails to be a workout; "" when it is one.
std::string messageFor(const json& value) {
  try {
    value.get<WorkoutEntry>();
  } catch (const DecodingError& error) {
    return error.what();
  }
  return "";
}

TEST(WorkoutDecoding, NeedsTheFourTexts) {
  for (const std::string key : {"activity_type", "start", "end", "source"}) {
    json without = json::parse(fullText);
    without.erase(key);
    EXPECT_EQ(messageFor(without), key + " is missing");

    json wrong = json::parse(fullText);
    wrong[key] = 7;
    EXPECT_EQ(messageFor(wrong), key + " is not a string");
  }
}

TEST(WorkoutDecoding, TakesEveryOtherFieldForOptional) {
  for (const std::string key : {"duration_min",
                                "distance_km",
                                "active_energy_kcal",
                                "basal_energy_kcal",
                                "hr_avg",
                                "hr_min",
                                "hr_max",
                                "elevation_m",
                                "avg_mets",
                                "indoor",
                                "temp_c",
                                "humidity_pct",
                                "humidity"}) {
    json without = json::parse(fullText);
    without.erase(key);
    json null = json::parse(fullText);
    null[key] = nullptr;
    EXPECT_EQ(json::parse(ordered_json(null.get<WorkoutEntry>()).dump()), without) << key;

    json wrong = json::parse(fullText);
    wrong[key] = "text";
    EXPECT_NE(messageFor(wrong).find(key), std::string::npos) << key;
  }
}

TEST(WorkoutDecoding, RefusesABrokenReading) {
  json broken = json::parse(fullText);
  broken["humidity"].erase("encoding");
  EXPECT_EQ(messageFor(broken), "humidity.encoding is missing");
}

struct EnvironmentCase {
  std::string name;
  std::optional<WorkoutEnvironment> environment;
};

class EnvironmentName : public testing::TestWithParam<EnvironmentCase> {};

TEST_P(EnvironmentName, IsReadExactly) {
  EXPECT_EQ(workoutEnvironmentNamed(GetParam().name), GetParam().environment);
  if (GetParam().environment) {
    EXPECT_EQ(rawValue(*GetParam().environment), GetParam().name);
  }
}

INSTANTIATE_TEST_SUITE_P(
    Names, EnvironmentName,
    testing::Values(EnvironmentCase{"all", WorkoutEnvironment::all},
                    EnvironmentCase{"indoor", WorkoutEnvironment::indoor},
                    EnvironmentCase{"outdoor", WorkoutEnvironment::outdoor},
                    EnvironmentCase{"unspecified", WorkoutEnvironment::unspecified},
                    EnvironmentCase{"Indoor", {}}, EnvironmentCase{"indoors", {}},
                    EnvironmentCase{" all", {}}, EnvironmentCase{"", {}}));

TEST(WorkoutEnvironments, IncludesTheWorkoutsOfItsKind) {
  const std::vector<std::optional<bool>> flags{true, false, std::nullopt};
  const auto included = [&](WorkoutEnvironment environment) {
    std::vector<bool> answers;
    for (const std::optional<bool> indoor : flags) answers.push_back(includes(environment, indoor));
    return answers;
  };

  EXPECT_EQ(included(WorkoutEnvironment::all), (std::vector{true, true, true}));
  EXPECT_EQ(included(WorkoutEnvironment::indoor), (std::vector{true, false, false}));
  EXPECT_EQ(included(WorkoutEnvironment::outdoor), (std::vector{false, true, false}));
  EXPECT_EQ(included(WorkoutEnvironment::unspecified), (std::vector{false, false, true}));
}

}  // namespace
