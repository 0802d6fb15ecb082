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
  return AppleFormat::dayParser.text(CivilDay{first + std::chrono::days{seconds / 86400}}) + clock;
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
    const std::string start = stampAfter(600 * number);
    const std::string day = start.substr(0, 10);
    text += "<Workout workoutActivityType=\"HKWorkoutActivityTypeRunning\" duration=\"30\"";
    text += " durationUnit=\"min\" sourceName=\"Ann\u2019s Watch\" startDate=\"" + start + "\"";
    text += " endDate=\"" + stampAfter(600 * number + 1800) + "\"/>\n";
    text += "<ActivitySummary dateComponents=\"" + day + "\" activeEnergyBurned=\"300\"";
    text += " activeEnergyBurnedUnit=\"kcal\"/>\n";
  }
  return text + "</HealthData>\n";
}
