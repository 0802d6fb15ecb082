#include "mcp/tools/WorkoutSelection.h"
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

}  // namespace

constinit const std::array<Measure, 11> WorkoutSelection::measures = table;

WorkoutSelection::Selector::Selector(const Filters& filters)
    : filters(filters), activityInLowerCase(lowerCased(filters.activityType)) {}

WorkoutSelection::Selector::Activity& WorkoutSelection::Selector::activityOf(
    const std::string& code) {
  const auto [found, isNew] = activities.try_emplace(code);
  Activity& activity = found->second;
  if (isNew) {
    activity.meant = filters.activityType.empty() || activityInLowerCase == lowerCased(code) ||
                     filters.activityType == activityName(code, SummaryLang::zh) ||
                     activityInLowerCase == lowerCased(activityName(code, SummaryLang::en));
  }
  return activity;
}

void WorkoutSelection::Selector::add(std::int64_t row, const WorkoutEntry& workout) {
  Activity& activity = activityOf(workout.activity_type);
  ++activity.count;
  sources.insert(workout.source);
  if (!activity.meant || !includes(filters.environment, workout.indoor)) return;
  if (!filters.source.empty() && workout.source != filters.source) return;
  ++activity.passing;
  passing.push_back(row);
  for (std::size_t index = 0; index < totals.size(); ++index) {
    const std::optional<double> value = table[index].read(workout);
    if (!value) continue;
    totals[index].sum += *value;
    ++totals[index].count;
  }
}

WorkoutSelection::Selection WorkoutSelection::Selector::selected(Order order, Page page) const {
  Selection selection;
  selection.availableSources = sources;
  selection.totals = totals;
  for (const auto& [code, activity] : activities) {
    selection.availableActivities[code] = activity.count;
    if (activity.passing > 0) selection.byActivity.emplace_back(code, activity.passing);
  }
  std::ranges::stable_sort(selection.byActivity, std::ranges::greater(), &ActivityCount::second);

  selection.totalCount = std::ssize(passing);
  const std::int64_t begin = std::min(page.offset, selection.totalCount);
  const std::int64_t end = std::min(page.offset + page.limit, selection.totalCount);
  if (end < selection.totalCount) selection.nextOffset = end;
  if (order == Order::desc) {
    selection.pageRows.assign(passing.begin() + begin, passing.begin() + end);
  } else {
    selection.pageRows.assign(passing.rbegin() + begin, passing.rbegin() + end);
  }
  return selection;
}
