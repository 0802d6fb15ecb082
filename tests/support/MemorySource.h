#pragma once
// A member's data without a database, for tests of the summary.

#include "summary/SummaryDataSource.h"

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

/// Answers from its fields, which a test fills. Ranges include both ends and compare as text, like
/// those of the store.
struct MemorySource final : SummaryDataSource {
  enum class Operation {
    recordedDays,
    devices,
    recordCount,
    presentTypes,
    yearlyCounts,
    dailyTotals,
    values,
    latestValue,
    sleepSegments,
    workoutStats,
  };

  struct Sample {
    std::string type;
    std::string day;
    double value;
  };

  struct Workout {
    std::string day;
    std::string code;
    double minutes;
  };

  SummaryCoverage covered;  ///< its records missing in `years` have no year
  std::set<std::string> types;
  std::map<std::string, std::int64_t> years;
  std::map<std::string, std::map<std::string, double>> totals;  ///< by type, then by day
  std::vector<Sample> samples;                                  ///< the newest of a type is last
  std::vector<SleepSegment> sleep;                              ///< each on the day of its start
  std::vector<Workout> trained;
  std::set<Operation> failing;  ///< these throw ReceiverError "<operation> fails"

  /// Adds the same total on each of `count` consecutive days from `first` on.
  void addTotals(const std::string& type, std::string_view first, int count, double total);

  /// Adds one sample on each of `count` consecutive days from `first` on.
  void addSamples(const std::string& type, std::string_view first, int count, double value);

  RecordedDays recordedDays() const override;
  std::vector<std::string> devices() const override;
  std::int64_t recordCount() const override;
  std::set<std::string> presentTypes() const override;
  RecordCounts yearlyCounts() const override;
  std::map<std::string, double> dailyTotals(std::string_view type, std::string_view from,
                                            std::string_view to) const override;
  std::vector<double> values(std::string_view type, std::string_view from,
                             std::string_view to) const override;
  std::optional<DailyValue> latestValue(std::string_view type) const override;
  std::vector<SleepSegment> sleepSegments(std::string_view from,
                                          std::string_view to) const override;
  WorkoutStats workoutStats(std::string_view from, std::string_view to) const override;

private:
  void failIf(Operation operation, const char* name) const;
};

/// `count` consecutive days from `first` on.
std::vector<std::string> daysFrom(std::string_view first, int count);
