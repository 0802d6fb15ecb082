#pragma once
// What the summary wants to read of a member. The store provides it; tests provide it from memory.

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

/// A stretch of sleep as it was recorded, texts as stored.
struct SleepSegment {
  std::string start;  ///< stamp, see platform/AppleFormat.h
  std::string end;    ///< stamp
  std::string value;  ///< "...InBed", "...Awake", "...AsleepCore" and their kin

  bool operator==(const SleepSegment&) const = default;
};

/// What days there are records of.
struct RecordedDays {
  std::int64_t typeCount = 0;  ///< types with a record; 0 means that there is none at all
  std::string first;           ///< "" when no record has a day
  std::string last;            ///< "" when no record has a day
};

/// The number of records by year.
struct RecordCounts {
  std::map<std::string, std::int64_t> byYear;  ///< by "yyyy"
  std::int64_t withoutYear = 0;                ///< stored without a day, or with fewer characters

  std::int64_t total() const;

  bool operator==(const RecordCounts&) const = default;
};

/// The workouts of a range in numbers.
struct WorkoutStats {
  std::int64_t count = 0;
  double minutes = 0;
  /// Activity code and number of workouts, most frequent first, ties by code.
  std::vector<std::pair<std::string, std::int64_t>> byType;

  bool operator==(const WorkoutStats&) const = default;
};

/// One member's data. Days are "yyyy-MM-dd", ranges include both ends and compare as text. Every
/// operation throws ReceiverError when the data cannot be read.
class SummaryDataSource {
public:
  virtual ~SummaryDataSource() = default;

  /// The days and types of all records.
  virtual RecordedDays recordedDays() const = 0;

  /// Names of the sources of the records, most recently active first.
  virtual std::vector<std::string> devices() const = 0;

  /// Range, number of types and devices; see summary/Coverage.h. The records are not counted, which
  /// takes long, and the fields that only a summary knows stay empty.
  SummaryCoverage coverage() const;

  /// Number of records.
  virtual std::int64_t recordCount() const = 0;

  /// All record types that were ever stored.
  virtual std::set<std::string> presentTypes() const = 0;

  /// Number of records by year: who has it need not ask for the recordCount.
  virtual RecordCounts yearlyCounts() const = 0;

  /// Day to total of a cumulative type: of each day the largest sum of a single source, at least 0.
  virtual std::map<std::string, double> dailyTotals(std::string_view type, std::string_view from,
                                                    std::string_view to) const = 0;

  /// Every numeric value of a type, in no order.
  virtual std::vector<double> values(std::string_view type, std::string_view from,
                                     std::string_view to) const = 0;

  /// The newest numeric value of a type, by its stamp as text, in the unit it was stored in.
  virtual std::optional<DailyValue> latestValue(std::string_view type) const = 0;

  /// Every recorded stretch of sleep, awake and in bed included, in no order.
  virtual std::vector<SleepSegment> sleepSegments(std::string_view from,
                                                  std::string_view to) const = 0;

  virtual WorkoutStats workoutStats(std::string_view from, std::string_view to) const = 0;
};
