#pragma once
// Exports for tests, as text.

#include "platform/AppleFormat.h"

#include <cstdio>
#include <string>

/// "2024-03-01 00:00:00 +0800" and so many seconds.
inline std::string stampAfter(int seconds) {
  const std::chrono::sys_days first{std::chrono::year{2024} / 3 / 1};
  char clock[32];
  std::snprintf(clock,
                sizeof clock,
                " %02d:%02d:%02d +0800",
                seconds / 3600 % 24,
                seconds / 60 % 60,
                seconds % 60);
  return AppleFormat::dayText(CivilDay{first + std::chrono::days{seconds / 86400}}) + clock;
}

/// A run that begins `seconds` after the first of them, with statistics, humidity and the rest.
inline std::string workoutText(int seconds) {
  const std::string times =
      " startDate=\"" + stampAfter(seconds) + "\" endDate=\"" + stampAfter(seconds + 1800) + "\"";
  const auto statistics = [&](const std::string& type, const std::string& numbers) {
    return "<WorkoutStatistics type=\"HKQuantityTypeIdentifier" + type + "\"" + times + " " +
           numbers + "/>\n";
  };
  const auto metadata = [](const std::string& key, const std::string& value) {
    return "<MetadataEntry key=\"" + key + "\" value=\"" + value + "\"/>\n";
  };
  return "<Workout workoutActivityType=\"HKWorkoutActivityTypeRunning\" duration=\"30\""
         " durationUnit=\"min\" sourceName=\"Ann\u2019s Watch\" sourceVersion=\"10.1\""
         " creationDate=\"" +
         stampAfter(seconds + 1860) + "\"" + times + ">\n" + metadata("HKIndoorWorkout", "0") +
         metadata("HKAverageMETs", "9.5 kcal/hr\u00b7kg") +
         metadata("HKElevationAscended", "41 m") + metadata("HKWeatherTemperature", "12 degC") +
         metadata("HKWeatherHumidity", std::to_string(5000 + seconds / 600) + " %") +
         statistics("HeartRate",
                    "average=\"141\" minimum=\"95\" maximum=\"172\" unit=\"count/min\"") +
         statistics("ActiveEnergyBurned", "sum=\"312.5\" unit=\"kcal\"") +
         statistics("BasalEnergyBurned", "sum=\"40\" unit=\"kcal\"") +
         statistics("DistanceWalkingRunning", "sum=\"5.2\" unit=\"km\"") + "</Workout>\n";
}

/// The rings of one day, all of them.
inline std::string ringsText(const std::string& day) {
  return "<ActivitySummary dateComponents=\"" + day +
         "\" activeEnergyBurned=\"300\" activeEnergyBurnedGoal=\"500\""
         " activeEnergyBurnedUnit=\"kcal\" appleMoveTime=\"20\" appleMoveTimeGoal=\"30\""
         " appleExerciseTime=\"25\" appleExerciseTimeGoal=\"35\" appleStandHours=\"9\""
         " appleStandHoursGoal=\"12\"/>\n";
}

/// An export of `records` heart rates, one every ten minutes, some without a value or an end, with
/// a workout and a day of rings for each hundred of them. A longer one begins like a shorter one.
inline std::string exportText(int records, const std::string& date = "2024-06-01 08:00:00 +0800") {
  std::string text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<HealthData locale=\"en_US\">\n";
  text += "<ExportDate value=\"" + date + "\"/>\n";
  for (int number = 0; number < records; ++number) {
    const std::string start = stampAfter(600 * number);
    text += "<Record type=\"HKQuantityTypeIdentifierHeartRate\" sourceName=\"Ann\u2019s Watch\"";
    text += " unit=\"count/min\" startDate=\"" + start + "\"";
    if (number % 7 != 0) text += " endDate=\"" + start + "\"";
    if (number % 5 != 0) text += " value=\"" + std::to_string(50 + number % 90) + "\"";
    text += "/>\n";
  }
  for (int number = 0; number < records; number += 100) {
    text += workoutText(600 * number);
    text += ringsText(stampAfter(600 * number).substr(0, 10));
  }
  return text + "</HealthData>\n";
}
