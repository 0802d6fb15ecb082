#include "mcp/tools/WorkoutSelection.h"
#include "platform/Text.h"
#include "summary/ActivityNames.h"

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
    {"duration_min", {"时长", "Duration"}, "min", fieldOf<&WorkoutEntry::duration_min>},
    {"distance_km", {"距离", "Distance"}, "km", fieldOf<&WorkoutEntry::distance_km>},
    {"active_energy_kcal",
     {"活动能量", "Active energy"},
     "kcal",
     fieldOf<&WorkoutEntry::active_energy_kcal>},
    {"basal_energy_kcal",
     {"基础能量", "Basal energy"},
     "kcal",
     fieldOf<&WorkoutEntry::basal_energy_kcal>},
    {"hr_avg", {"平均心率", "Average heart rate"}, "count/min", fieldOf<&WorkoutEntry::hr_avg>},
    {"hr_min", {"最低心率", "Minimum heart rate"}, "count/min", fieldOf<&WorkoutEntry::hr_min>},
    {"hr_max", {"最高心率", "Maximum heart rate"}, "count/min", fieldOf<&WorkoutEntry::hr_max>},
    {"elevation_m", {"爬升", "Elevation"}, "m", fieldOf<&WorkoutEntry::elevation_m>},
    {"avg_mets", {"平均 MET", "Average MET"}, "MET", fieldOf<&WorkoutEntry::avg_mets>},
    {"temp_c", {"温度", "Temperature"}, "°C", fieldOf<&WorkoutEntry::temp_c>},
    {"humidity_pct", {"湿度", "Humidity"}, "%", humidityOf},
}};

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
