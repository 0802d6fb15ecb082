#include "support/MemorySource.h"
#include "platform/AppleFormat.h"
#include "platform/ReceiverError.h"

#include <algorithm>
#include <utility>

namespace {

bool within(std::string_view day, std::string_view from, std::string_view to) {
  return from <= day && day <= to;
}

}  // namespace

void MemorySource::addTotals(const std::string& type, std::string_view first, int count,
                             double total) {
  for (const std::string& day : daysFrom(first, count)) totals[type][day] = total;
}

void MemorySource::addSamples(const std::string& type, std::string_view first, int count,
                              double value) {
  for (const std::string& day : daysFrom(first, count)) samples.push_back({type, day, value});
}

RecordedDays MemorySource::recordedDays() const {
  failIf(Operation::recordedDays, "recordedDays");
  return {.typeCount = covered.typeCount, .first = covered.firstDay, .last = covered.lastDay};
}

std::vector<std::string> MemorySource::devices() const {
  failIf(Operation::devices, "devices");
  return covered.devices;
}

std::set<std::string> MemorySource::presentTypes() const {
  failIf(Operation::presentTypes, "presentTypes");
  return types;
}

std::int64_t MemorySource::recordCount() const {
  failIf(Operation::recordCount, "recordCount");
  return covered.records;
}

RecordCounts MemorySource::yearlyCounts() const {
  failIf(Operation::yearlyCounts, "yearlyCounts");
  RecordCounts counts{.byYear = years, .withoutYear = 0};
  counts.withoutYear = covered.records - counts.total();
  return counts;
}

std::map<std::string, double> MemorySource::dailyTotals(std::string_view type,
                                                        std::string_view from,
                                                        std::string_view to) const {
  failIf(Operation::dailyTotals, "dailyTotals");
  std::map<std::string, double> found;
  const auto ofType = totals.find(std::string(type));
  if (ofType == totals.end()) return found;
  for (const auto& [day, total] : ofType->second) {
    if (within(day, from, to)) found[day] = total;
  }
  return found;
}

std::vector<double> MemorySource::values(std::string_view type, std::string_view from,
                                         std::string_view to) const {
  failIf(Operation::values, "values");
  std::vector<double> found;
  for (const Sample& sample : samples) {
    if (sample.type == type && within(sample.day, from, to)) found.push_back(sample.value);
  }
  return found;
}

std::optional<DailyValue> MemorySource::latestValue(std::string_view type) const {
  failIf(Operation::latestValue, "latestValue");
  std::optional<DailyValue> latest;
  for (const Sample& sample : samples) {
    if (sample.type == type) latest = {sample.day, sample.value};
  }
  return latest;
}

std::vector<SleepSegment> MemorySource::sleepSegments(std::string_view from,
                                                      std::string_view to) const {
  failIf(Operation::sleepSegments, "sleepSegments");
  std::vector<SleepSegment> found;
  for (const SleepSegment& segment : sleep) {
    if (within(segment.start.substr(0, 10), from, to)) found.push_back(segment);
  }
  return found;
}

WorkoutStats MemorySource::workoutStats(std::string_view from, std::string_view to) const {
  failIf(Operation::workoutStats, "workoutStats");
  WorkoutStats stats;
  std::map<std::string, std::int64_t> counts;
  for (const Workout& workout : trained) {
    if (!within(workout.day, from, to)) continue;
    ++stats.count;
    stats.minutes += workout.minutes;
    ++counts[workout.code];
  }
  stats.byType.assign(counts.begin(), counts.end());
  std::ranges::stable_sort(
      stats.byType, std::ranges::greater(), [](const auto& activity) { return activity.second; });
  return stats;
}

void MemorySource::failIf(Operation operation, const char* name) const {
  if (failing.contains(operation)) throw ReceiverError(std::string(name) + " fails");
}

std::vector<std::string> daysFrom(std::string_view first, int count) {
  const CivilDay start = AppleFormat::dayParser.parse(first).value();
  std::vector<std::string> days;
  for (int day = 0; day < count; ++day) {
    days.push_back(AppleFormat::dayText(AppleFormat::daysAfter(start, day)));
  }
  return days;
}
