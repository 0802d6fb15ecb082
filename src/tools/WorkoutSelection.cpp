#include "tools/WorkoutSelection.h"
#include "platform/Text.h"

#include <algorithm>
#include <functional>
#include <iterator>

namespace {

template <std::optional<double> WorkoutEntry::*field>
std::optional<double> fieldOf(const WorkoutEntry& workout) {
  return workout.*field;
}

std::optional<double> humidityOf(const WorkoutEntry& workout) { return workout.humidityPercent(); }

using WorkoutSelection::Measure;

constexpr std::array<Measure, 11> table{{
    {"duration_min", {.zh = "时长", .en = "Duration"}, "min", fieldOf<&WorkoutEntry::duration_min>},
    {"distance_km", {.zh = "距离", .en = "Distance"}, "km", fieldOf<&WorkoutEntry::distance_km>},
    {"active_energy_kcal",
     {.zh = "活动能量", .en = "Active energy"},
     "kcal",
     fieldOf<&WorkoutEntry::active_energy_kcal>},
    {"basal_energy_kcal",
     {.zh = "基础能量", .en = "Basal energy"},
     "kcal",
     fieldOf<&WorkoutEntry::basal_energy_kcal>},
    {"hr_avg",
     {.zh = "平均心率", .en = "Average heart rate"},
     "count/min",
     fieldOf<&WorkoutEntry::hr_avg>},
    {"hr_min",
     {.zh = "最低心率", .en = "Minimum heart rate"},
     "count/min",
     fieldOf<&WorkoutEntry::hr_min>},
    {"hr_max",
     {.zh = "最高心率", .en = "Maximum heart rate"},
     "count/min",
     fieldOf<&WorkoutEntry::hr_max>},
    {"elevation_m", {.zh = "爬升", .en = "Elevation"}, "m", fieldOf<&WorkoutEntry::elevation_m>},
    {"avg_mets", {.zh = "平均 MET", .en = "Average MET"}, "MET", fieldOf<&WorkoutEntry::avg_mets>},
    {"temp_c", {.zh = "温度", .en = "Temperature"}, "°C", fieldOf<&WorkoutEntry::temp_c>},
    {"humidity_pct", {.zh = "湿度", .en = "Humidity"}, "%", humidityOf},
}};
static_assert(std::ranges::all_of(table, [](const Measure& measure) {
  return inBothLanguages(measure.label);
}));

bool sameIgnoringCase(std::string_view left, std::string_view right) {
  return lowerCased(left) == lowerCased(right);
}

/// Whether `text` means the activity of this code: the code, or its name in either language.
bool names(std::string_view text, std::string_view code) {
  return sameIgnoringCase(text, code) || text == activityName(code, SummaryLang::zh) ||
         sameIgnoringCase(text, activityName(code, SummaryLang::en));
}

bool passes(const WorkoutEntry& workout, const WorkoutSelection::Filters& filters) {
  return (filters.activityType.empty() || names(filters.activityType, workout.activity_type)) &&
         (filters.source.empty() || workout.source == filters.source) &&
         includes(filters.environment, workout.indoor);
}

void addToTotals(WorkoutSelection::Selection& selection, const WorkoutEntry& workout) {
  for (std::size_t index = 0; index < selection.totals.size(); ++index) {
    const std::optional<double> value = table[index].read(workout);
    if (!value) continue;
    selection.totals[index].sum += *value;
    ++selection.totals[index].count;
  }
}

/// How often each activity occurs, most frequent first, ties by code.
std::vector<WorkoutSelection::ActivityCount> countsOf(const std::vector<WorkoutEntry>& workouts) {
  std::map<std::string, std::int64_t> byCode;
  for (const WorkoutEntry& workout : workouts) ++byCode[workout.activity_type];
  std::vector<WorkoutSelection::ActivityCount> counts(byCode.begin(), byCode.end());
  std::ranges::stable_sort(
      counts, std::ranges::greater(), &WorkoutSelection::ActivityCount::second);
  return counts;
}

}  // namespace

constinit const std::array<Measure, 11> WorkoutSelection::measures = table;

WorkoutSelection::Selection WorkoutSelection::select(std::vector<WorkoutEntry> workouts,
                                                     const Filters& filters, Order order,
                                                     Page page) {
  Selection selection;
  for (const WorkoutEntry& workout : workouts) {
    ++selection.availableActivities[workout.activity_type];
    selection.availableSources.insert(workout.source);
  }

  std::erase_if(workouts, [&](const WorkoutEntry& workout) { return !passes(workout, filters); });
  // Before the order is changed: the last digit of a sum depends on it.
  for (const WorkoutEntry& workout : workouts) addToTotals(selection, workout);
  if (order == Order::asc) std::ranges::reverse(workouts);
  selection.byActivity = countsOf(workouts);

  selection.totalCount = static_cast<std::int64_t>(workouts.size());
  const std::int64_t begin = std::min(page.offset, selection.totalCount);
  const std::int64_t end = std::min(page.offset + page.limit, selection.totalCount);
  if (end < selection.totalCount) selection.nextOffset = end;
  selection.page.assign(std::make_move_iterator(workouts.begin() + begin),
                        std::make_move_iterator(workouts.begin() + end));
  return selection;
}
