#include "summary/DailySeries.h"
#include "platform/AppleFormat.h"

#include <algorithm>
#include <cstddef>
#include <numeric>

std::optional<double> median(std::span<double> values) {
  if (values.empty()) return std::nullopt;
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::ranges::nth_element(values, middle);
  if (values.size() % 2 == 1) return *middle;
  const double below = *std::max_element(values.begin(), middle);
  return std::midpoint(below, *middle);  // their sum may overflow
}

namespace {

/// The first day of the night that contains a sleep from `start` on.
std::string nightOf(std::int64_t start) {
  constexpr std::int64_t halfADay = 43200;
  return AppleFormat::dayText(AppleFormat::localTime(static_cast<double>(start - halfADay)).day);
}

}  // namespace

void SleepNights::add(const SleepSegment& segment) {
  if (segment.value.find("Asleep") == std::string::npos) return;
  const std::optional<std::int64_t> start = AppleFormat::stampParser.parse(segment.start);
  const std::optional<std::int64_t> end = AppleFormat::stampParser.parse(segment.end);
  if (!start || !end || *end <= *start) return;
  const std::string day = nightOf(*start);
  SleepNight& night = byDay.try_emplace(day, SleepNight{day, 0, *start, *end}).first->second;
  night.minutes += static_cast<double>(*end - *start) / 60;
  night.firstStart = std::min(night.firstStart, *start);
  night.lastEnd = std::max(night.lastEnd, *end);
}

std::vector<SleepNight> SleepNights::inOrder() const {
  constexpr double shortestNight = 120;
  std::vector<SleepNight> nights;
  for (const auto& [day, night] : byDay) {
    if (night.minutes >= shortestNight) nights.push_back(night);
  }
  return nights;
}

std::vector<SleepNight> sleepNights(std::span<const SleepSegment> segments) {
  SleepNights nights;
  for (const SleepSegment& segment : segments) nights.add(segment);
  return nights.inOrder();
}
