// The workouts of an export as the reader tells them.

#include "apps/import/CollectingSink.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <string>

namespace {

using testing::Pair;
using testing::UnorderedElementsAre;

constexpr std::string_view statistics =
    "<WorkoutStatistics type=\"HKQuantityTypeIdentifierHeartRate\" average=\"141.5\""
    " minimum=\"90\" maximum=\"171\" unit=\"count/min\"/>"
    "<WorkoutStatistics type=\"HKQuantityTypeIdentifierActiveEnergyBurned\" sum=\"1255.2\""
    " unit=\"kJ\"/>"
    "<WorkoutStatistics type=\"HKQuantityTypeIdentifierBasalEnergyBurned\" sum=\"60\""
    " unit=\"Cal\"/>"
    "<WorkoutStatistics type=\"HKQuantityTypeIdentifierDistanceWalkingRunning\" sum=\"5000\""
    " unit=\"m\"/>";

/// What workoutOf() makes of no attributes and no parts.
WorkoutEntry emptyRun() {
  WorkoutEntry entry;
  entry.activity_type = "Running";
  entry.start = "2024-03-01 08:00:00 +0100";
  return entry;
}

TEST(ExportedWorkouts, TakeTheirFiguresFromTheirStatistics) {
  const ExportedWorkout workout = workoutOf(
      "duration=\"1800\" durationUnit=\"s\" sourceName=\"Ann’s Watch\" sourceVersion=\"10.3\""
      " creationDate=\"2024-03-01 08:31:00 +0100\" endDate=\"2024-03-01 08:30:00 +0100\""
      " totalDistance=\"9\" totalDistanceUnit=\"km\" totalEnergyBurned=\"9\""
      " totalEnergyBurnedUnit=\"kcal\"",
      statistics);

  WorkoutEntry expected = emptyRun();
  expected.end = "2024-03-01 08:30:00 +0100";
  expected.source = "Ann’s Watch";
  expected.duration_min = 30;
  expected.distance_km = 5;
  expected.active_energy_kcal = 300;
  expected.basal_energy_kcal = 60;
  expected.hr_avg = 141.5;
  expected.hr_min = 90;
  expected.hr_max = 171;
  EXPECT_EQ(workout.entry, expected);
  EXPECT_EQ(workout.creationDate, "2024-03-01 08:31:00 +0100");
  EXPECT_TRUE(workout.converted);
  EXPECT_FALSE(workout.unknownUnit);
}

TEST(ExportedWorkouts, TakeThemFromTheTotalsInOlderExports) {
  const ExportedWorkout workout = workoutOf(
      "duration=\"30\" durationUnit=\"min\" totalDistance=\"3\" totalDistanceUnit=\"mi\""
      " totalEnergyBurned=\"1255.2\" totalEnergyBurnedUnit=\"kJ\"",
      "");

  EXPECT_EQ(workout.entry.duration_min, 30);
  ASSERT_TRUE(workout.entry.distance_km);
  EXPECT_DOUBLE_EQ(*workout.entry.distance_km, 4.828032);
  EXPECT_EQ(workout.entry.active_energy_kcal, 300);
  EXPECT_EQ(workout.entry.basal_energy_kcal, std::nullopt);
  EXPECT_TRUE(workout.converted);
}

TEST(ExportedWorkouts, TakeEachFigureWhereItIs) {
  const ExportedWorkout workout = workoutOf(
      "totalDistance=\"3\" totalDistanceUnit=\"km\" totalEnergyBurned=\"9\""
      " totalEnergyBurnedUnit=\"kcal\"",
      "<WorkoutStatistics type=\"HKQuantityTypeIdentifierActiveEnergyBurned\" sum=\"300\""
      " unit=\"kcal\"/>");

  EXPECT_EQ(workout.entry.distance_km, 3);
  EXPECT_EQ(workout.entry.active_energy_kcal, 300);
  EXPECT_FALSE(workout.converted);
}

TEST(ExportedWorkouts, AddUpTheirWaysOfMoving) {
  const ExportedWorkout workout =
      workoutOf("",
                "<WorkoutStatistics type=\"HKQuantityTypeIdentifierDistanceSwimming\" sum=\"750\" "
                "unit=\"m\"/>"
                "<WorkoutStatistics type=\"HKQuantityTypeIdentifierDistanceCycling\" sum=\"20\" "
                "unit=\"km\"/>");

  EXPECT_EQ(workout.entry.distance_km, 20.75);
}

TEST(ExportedWorkouts, KeepTheFirstOfEachHeartRateThatIsThere) {
  const ExportedWorkout workout =
      workoutOf("",
                "<WorkoutStatistics type=\"HKQuantityTypeIdentifierHeartRate\" average=\"141.5\""
                " maximum=\"171\" unit=\"count/min\"/>"
                "<WorkoutStatistics type=\"HKQuantityTypeIdentifierHeartRate\" average=\"2\""
                " minimum=\"1.5\" maximum=\"3\" unit=\"count/s\"/>"
                "<WorkoutStatistics type=\"HKQuantityTypeIdentifierHeartRate\"/>");

  EXPECT_EQ(workout.entry.hr_avg, 141.5);
  EXPECT_EQ(workout.entry.hr_min, 90);
  EXPECT_EQ(workout.entry.hr_max, 171);
}

TEST(ExportedWorkouts, DoNotCountAUnitOfAFigureThatIsNotTaken) {
  const ExportedWorkout workout = workoutOf(
      "",
      "<WorkoutStatistics type=\"HKQuantityTypeIdentifierHeartRate\" average=\"141.5\""
      " unit=\"count/min\"/>"
      "<WorkoutStatistics type=\"HKQuantityTypeIdentifierHeartRate\" average=\"2\""
      " unit=\"count/s\"/>"
      "<WorkoutStatistics type=\"HKQuantityTypeIdentifierHeartRate\" average=\"2\" unit=\"?\"/>");

  EXPECT_FALSE(workout.converted);
  EXPECT_FALSE(workout.unknownUnit);
}

TEST(ExportedWorkouts, KeepTheFirstOfTwoMetadataEntriesThatIsThere) {
  const ExportedWorkout workout =
      workoutOf("",
                "<MetadataEntry key=\"HKIndoorWorkout\" value=\"?\"/>"
                "<MetadataEntry key=\"HKIndoorWorkout\" value=\"1\"/>"
                "<MetadataEntry key=\"HKIndoorWorkout\" value=\"0\"/>"
                "<MetadataEntry key=\"HKElevationAscended\" value=\"418 cm\"/>"
                "<MetadataEntry key=\"HKElevationAscended\" value=\"9 furlong\"/>"
                "<MetadataEntry key=\"HKWeatherTemperature\" value=\"12 degC\"/>"
                "<MetadataEntry key=\"HKWeatherTemperature\" value=\"13 degC\"/>"
                "<MetadataEntry key=\"HKAverageMETs\" value=\"4.5 kcal/hr·kg\"/>"
                "<MetadataEntry key=\"HKAverageMETs\" value=\"4 ?\"/>"
                "<MetadataEntry key=\"HKWeatherHumidity\" value=\"\"/>"
                "<MetadataEntry key=\"HKWeatherHumidity\" value=\"6900 %\"/>"
                "<MetadataEntry key=\"HKWeatherHumidity\" value=\"\"/>");

  EXPECT_EQ(workout.entry.indoor, true);
  EXPECT_EQ(workout.entry.elevation_m, 4.18);
  EXPECT_EQ(workout.entry.temp_c, 12);
  EXPECT_EQ(workout.entry.avg_mets, 4.5);
  ASSERT_TRUE(workout.entry.humidity);
  EXPECT_EQ(workout.entry.humidity->raw_value, 6900);
}

TEST(ExportedWorkouts, LeaveTheStatisticsOfAnActivityToIt) {
  const ExportedWorkout workout = workoutOf(
      "",
      "<WorkoutActivity uuid=\"A\" duration=\"9\" durationUnit=\"min\">"
      "<WorkoutStatistics type=\"HKQuantityTypeIdentifierHeartRate\" average=\"99\""
      " unit=\"count/min\"/><MetadataEntry key=\"HKIndoorWorkout\" value=\"1\"/></WorkoutActivity>"
      "<WorkoutRoute><MetadataEntry key=\"HKElevationAscended\" value=\"9 m\"/></WorkoutRoute>");

  EXPECT_EQ(workout.entry, emptyRun());
}

TEST(ExportedWorkouts, LeaveOutAFigureWhoseUnitIsMissingOrUnknown) {
  const ExportedWorkout workout =
      workoutOf("duration=\"30\" totalDistance=\"3\" totalDistanceUnit=\"furlong\"",
                "<MetadataEntry key=\"HKWeatherTemperature\" value=\"12 deg\"/>");

  EXPECT_EQ(workout.entry.duration_min, std::nullopt);
  EXPECT_EQ(workout.entry.distance_km, std::nullopt);
  EXPECT_EQ(workout.entry.temp_c, std::nullopt);
  EXPECT_TRUE(workout.unknownUnit);
}

TEST(ExportedWorkouts, TakeWhatTheirMetadataSays) {
  const ExportedWorkout workout =
      workoutOf("",
                "<MetadataEntry key=\"HKIndoorWorkout\" value=\"0\"/>"
                "<MetadataEntry key=\"HKAverageMETs\" value=\"4.5 kcal/hr·kg\"/>"
                "<MetadataEntry value=\"418 cm\" key=\"HKElevationAscended\"/>"
                "<MetadataEntry key=\"HKWeatherTemperature\" value=\"47.75 degF\"/>"
                "<MetadataEntry key=\"HKTimeZone\" value=\"Europe/Berlin\"/>");

  EXPECT_EQ(workout.entry.indoor, false);
  EXPECT_EQ(workout.entry.avg_mets, 4.5);
  EXPECT_EQ(workout.entry.elevation_m, 4.18);
  EXPECT_EQ(workout.entry.temp_c, 8.75);
}

std::optional<bool> indoorOf(const std::string& value) {
  return workoutOf("", "<MetadataEntry key=\"HKIndoorWorkout\" value=\"" + value + "\"/>")
      .entry.indoor;
}

TEST(ExportedWorkouts, AreIndoorOnlyWhenTheExportSaysSo) {
  EXPECT_EQ(indoorOf("1"), true);
  EXPECT_EQ(indoorOf("0"), false);
  EXPECT_EQ(indoorOf("2"), std::nullopt);
  EXPECT_EQ(indoorOf(""), std::nullopt);
}

std::optional<WorkoutHumidity> humidityOf(const std::string& value) {
  const ExportedWorkout workout =
      workoutOf("sourceVersion=\"10.3\"",
                "<MetadataEntry key=\"HKWeatherHumidity\" value=\"" + value + "\"/>");
  EXPECT_EQ(workout.entry.humidity_pct, std::nullopt);
  return workout.entry.humidity;
}

WorkoutHumidity rawHumidity() {
  WorkoutHumidity humidity;
  humidity.raw_unit = "%";
  humidity.encoding = "xml_percent";
  humidity.source_version = "10.3";
  return humidity;
}

TEST(ExportedWorkouts, KeepTheirHumidityRaw) {
  const std::optional<WorkoutHumidity> humidity = humidityOf("6900 %");

  WorkoutHumidity expected = rawHumidity();
  expected.raw_value = 6900;
  EXPECT_EQ(humidity, expected);
  EXPECT_EQ(expected.status(), "unverified_scale");
}

TEST(ExportedWorkouts, KeepAHumidityThatIsNoNumberAsText) {
  const std::optional<WorkoutHumidity> humidity = humidityOf("dry %");

  WorkoutHumidity expected = rawHumidity();
  expected.raw_text = "dry %";
  EXPECT_EQ(humidity, expected);
}

TEST(ExportedWorkouts, HaveTheirHumidityInPercentThoughTheSignIsMissing) {
  WorkoutHumidity expected = rawHumidity();
  expected.raw_value = 6900;

  EXPECT_EQ(humidityOf("6900"), expected);
}

TEST(ExportedWorkouts, KeepAHumidityInAnotherUnitAsText) {
  WorkoutHumidity expected = rawHumidity();
  expected.raw_text = "12 g/m";

  EXPECT_EQ(humidityOf("12 g/m"), expected);
}

TEST(ExportedWorkouts, HaveNoReadingOfAnEmptyHumidity) { EXPECT_EQ(humidityOf(""), std::nullopt); }

TEST(ExportedWorkouts, CountTheirPartsThatHaveNoPlace) {
  const CollectingSink sink = sinkOf(
      exportOf("<Workout startDate=\"2024-03-01 08:00:00 +0100\"><WorkoutEvent/><WorkoutEvent/>"
               "<WorkoutRoute><FileReference path=\"a.gpx\"/></WorkoutRoute></Workout>"));

  ASSERT_EQ(sink.workouts.size(), 1U);
  EXPECT_EQ(sink.workouts.front().entry.activity_type, "");
  EXPECT_THAT(sink.others, UnorderedElementsAre(Pair("WorkoutEvent", 2), Pair("WorkoutRoute", 1)));
}

}  // namespace
