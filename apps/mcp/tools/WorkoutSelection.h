#pragma once
// Selection of workouts: filters, order, page, totals. Pure: knows neither the store nor the texts.

#include "platform/Phrase.h"
#include "platform/SummaryLang.h"
#include "workouts/Workouts.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace WorkoutSelection {

/// The caller's filters. An empty text is no filter.
struct Filters {
  std::string activityType;  ///< a code or a display name in either language
  WorkoutEnvironment environment = WorkoutEnvironment::all;
  std::string source;  ///< exact match
};

enum class Order { desc, asc };  ///< newest first, oldest first

struct Page {
  std::int64_t limit = 1;   ///< >= 1
  std::int64_t offset = 0;  ///< >= 0
};

/// A measured value of workouts.
struct Measure {
  std::string_view key;  ///< JSON key
  Phrase label;
  std::string_view unit;
  std::optional<double> (*read)(const WorkoutEntry&);
};

/// All measures in display order. The first `totalledMeasures` are also summed.
extern const std::array<Measure, 11> measures;
inline constexpr std::size_t totalledMeasures = 4;

/// The sum of one measure over the workouts that have it.
struct Total {
  double sum = 0;
  std::int64_t count = 0;  ///< workouts with the measure; 0 means not recorded
};

/// An activity code and its number of workouts.
using ActivityCount = std::pair<std::string, std::int64_t>;

struct Selection {
  std::map<std::string, std::int64_t> availableActivities;  ///< of the whole range, by code
  std::set<std::string> availableSources;                   ///< of the whole range
  std::int64_t totalCount = 0;                              ///< workouts that match the filters
  std::array<Total, totalledMeasures> totals;               ///< over all matches, not only the page
  std::vector<ActivityCount> byActivity;   ///< of all matches, most frequent first, ties by code
  std::vector<std::int64_t> pageRows;      ///< row ids of the page's workouts
  std::vector<WorkoutEntry> page;          ///< set by the caller, who reads those rows
  std::optional<std::int64_t> nextOffset;  ///< absent on the last page
};

/// Selects among workouts that are added one by one, because ten years of workouts need much
/// memory.
class Selector {
public:
  explicit Selector(const Filters& filters);

  /// Adds the workout of `row`, which must not be newer than the previous one.
  void add(std::int64_t row, const WorkoutEntry& workout);

  /// The selection among the workouts added so far.
  Selection selected(Order order, Page page) const;

private:
  struct Activity {
    bool meant = false;  ///< selected by the filter
    std::int64_t count = 0;
    std::int64_t passing = 0;
  };

  Activity& activityOf(const std::string& code);

  Filters filters;
  std::string activityInLowerCase;
  std::map<std::string, Activity> activities;
  std::set<std::string> sources;
  std::array<Total, totalledMeasures> totals;
  std::vector<std::int64_t> passing;  ///< rows, newest first
};

}  // namespace WorkoutSelection
