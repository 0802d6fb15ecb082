#pragma once
// The data that a summary reads of a member. The store implements it; tests implement it in memory.

#include "summary/DailyValue.h"
#include "summary/SummaryModel.h"

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// A stretch of sleep as recorded; texts are as stored.
struct SleepSegment {
  std::string start;  ///< stamp, see platform/AppleFormat.h
  std::string end;    ///< stamp
  std::string value;  ///< "...InBed", "...Awake", "...AsleepCore" and similar

  bool operator==(const SleepSegment&) const = default;
};

/// The days and types of all records.
struct RecordedDays {
  std::int64_t typeCount = 0;  ///< types with a record; 0 means no records
  std::string first;           ///< "" when no record has a day
  std::string last;            ///< "" when no record has a day
};

/// The number of records by year.
struct RecordCounts {
  std::map<std::string, std::int64_t> byYear;  ///< by "yyyy"
  std::int64_t withoutYear = 0;                ///< without a day, or shorter than a year

  std::int64_t total() const;

  bool operator==(const RecordCounts&) const = default;
};

/// Statistics of the workouts of a range.
struct WorkoutStats {
  std::int64_t count = 0;
  double minutes = 0;
  /// Activity codes and their number of workouts, most frequent first, ties by code.
  std::vector<std::pair<std::string, std::int64_t>> byType;

  bool operator==(const WorkoutStats&) const = default;
};

/// One member's data. Days are "yyyy-MM-dd"; ranges include both ends and compare as text. Every
/// operation throws ReceiverError when the data cannot be read.
class SummaryDataSource {
public:
  virtual ~SummaryDataSource() = default;

  /// The days and types of all records.
  virtual RecordedDays recordedDays() const = 0;

  /// Names of the sources of all records, most recently active first.
  virtual std::vector<std::string> devices() const = 0;

  /// Range, number of types and devices; see summary/Coverage.h. Counting all records takes long,
  /// so they are not counted. The fields that only a summary needs stay empty.
  SummaryCoverage coverage() const;

  /// Number of records.
  virtual std::int64_t recordCount() const = 0;

  /// All record types ever stored.
  virtual std::set<std::string> presentTypes() const = 0;

  /// Number of records by year. Their sum replaces a call of recordCount.
  virtual RecordCounts yearlyCounts() const = 0;

  /// Day and total of a cumulative type. The total is the day's largest sum of a single source, at
  /// least 0.
  virtual std::map<std::string, double> dailyTotals(std::string_view type, std::string_view from,
                                                    std::string_view to) const = 0;

  /// All numeric values of a type, unordered.
  virtual std::vector<double> values(std::string_view type, std::string_view from,
                                     std::string_view to) const = 0;

  /// The newest numeric value of a type, by its stamp as text, in its stored unit.
  virtual std::optional<DailyValue> latestValue(std::string_view type) const = 0;

  /// All recorded stretches of sleep, including awake and in bed, unordered.
  virtual std::vector<SleepSegment> sleepSegments(std::string_view from,
                                                  std::string_view to) const = 0;

  virtual WorkoutStats workoutStats(std::string_view from, std::string_view to) const = 0;
};
