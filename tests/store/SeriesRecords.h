#pragma once
// Records of the metrics that the tests of series use most.

#include "support/TestDatabase.h"

#include <string>

/// A last day that lies behind those of all records.
inline constexpr const char* always = "9999-12-31";

inline TestRecord steps(const std::string& day, double count, const std::string& source = "Watch") {
  return {.type = "StepCount", .source_name = source, .start_day = day, .value_num = count};
}

inline TestRecord heartRate(const std::string& day, double bpm) {
  return {.type = "HeartRate", .start_day = day, .value_num = bpm};
}

inline TestRecord sleep(const std::string& day, const std::string& start, const std::string& end,
                        const std::string& value = "HKCategoryValueSleepAnalysisAsleepCore") {
  return {.type = "SleepAnalysis",
          .start_date = start,
          .start_day = day,
          .end_date = end,
          .value = value};
}

/// A record of `type` whose `value_num` is the SQL literal `value`.
inline std::string rawRecord(const std::string& type, const std::string& day,
                             const std::string& value) {
  return "INSERT INTO records (type, source_name, start_date, start_day, value_num) VALUES ('" +
         type + "', 'Watch', '" + day + " 09:00:00 +0000', '" + day + "', " + value + ")";
}
