#include "summary/SummaryEngine.h"
#include "platform/Text.h"
#include "summary/Cards.h"
#include "summary/Coverage.h"
#include "summary/DailySeries.h"
#include "summary/Insights.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <set>
#include <utility>

SummaryEngine::SummaryEngine(const SummaryDataSource& source, double today, SummaryLang lang,
                             DigitGrouping grouping)
    : source(source), today(today), lang(lang), grouping(std::move(grouping)) {}

namespace {

bool isWatch(std::string_view device) {
  return lowerCased(device).find("watch") != std::string::npos;
}

}  // namespace

HealthSummary SummaryEngine::build(std::string_view personID, std::string_view person,
                                   std::optional<double> lastSyncAt,
                                   const std::optional<BackfillState>& backfill) const {
  HealthSummary summary;
  summary.personID = personID;
  summary.person = person;
  summary.generatedAt = today;

  SummaryCoverage& coverage = summary.coverage;
  coverage = source.coverage();
  const std::set<std::string> presentTypes = source.presentTypes();
  Coverage::addHistory(coverage, source, lastSyncAt, backfill);
  const bool hasWatch = std::ranges::any_of(coverage.devices, isWatch);
  summary.cards = Cards::all({*this, coverage, presentTypes, hasWatch});
  Coverage::addKinds(coverage, summary.cards);
  summary.insights = Insights::all(*this);
  return summary;
}

DayRange SummaryEngine::lastDays(int daysBack) const {
  const CivilDay last = AppleFormat::localTime(today).day;
  return {.from = AppleFormat::dayText(AppleFormat::daysBefore(last, daysBack)),
          .to = AppleFormat::dayText(last)};
}

DayRange SummaryEngine::lastYearWindow(int days) const {
  const CivilDay last = AppleFormat::yearBefore(AppleFormat::localTime(today).day);
  return {.from = AppleFormat::dayText(AppleFormat::daysBefore(last, days)),
          .to = AppleFormat::dayText(last)};
}

std::optional<Figure> SummaryEngine::averageDaily(std::string_view type,
                                                  const DayRange& window) const {
  const auto totals = orNothing([&] { return source.dailyTotals(type, window.from, window.to); });
  if (!totals || totals->empty()) return std::nullopt;
  double sum = 0;
  for (const auto& [day, total] : *totals) sum += total;
  const std::size_t days = totals->size();
  return Figure{sum / static_cast<double>(days), static_cast<std::int64_t>(days)};
}

std::optional<Figure> SummaryEngine::medianValue(std::string_view type,
                                                 const DayRange& window) const {
  auto values = orNothing([&] { return source.values(type, window.from, window.to); });
  if (!values) return std::nullopt;
  const std::optional<double> middle = median(*values);
  if (!middle) return std::nullopt;
  return Figure{*middle, static_cast<std::int64_t>(values->size())};
}

std::optional<DailyValue> SummaryEngine::latestValue(std::string_view type) const {
  return orNothing([&] { return source.latestValue(type); }).value_or(std::nullopt);
}

std::optional<WorkoutStats> SummaryEngine::workoutStats(const DayRange& window) const {
  return orNothing([&] { return source.workoutStats(window.from, window.to); });
}

namespace {

constexpr int evening = 18 * 60;
constexpr int fullDay = 24 * 60;

double minuteOfDay(std::int64_t moment) {
  const LocalTime time = AppleFormat::localTime(static_cast<double>(moment));
  return time.hour * 60 + time.minute;
}

Night nightOf(const SleepNight& sleep) {
  const double bed = minuteOfDay(sleep.firstStart);
  return {.minutes = sleep.minutes,
          .bedMinutes = bed < evening ? bed + (fullDay - evening) : bed - evening,
          .wakeMinutes = minuteOfDay(sleep.lastEnd)};
}

}  // namespace

std::vector<Night> SummaryEngine::nights(int daysBack) const {
  const DayRange window = lastDays(daysBack);
  const auto segments = orNothing([&] { return source.sleepSegments(window.from, window.to); });
  std::vector<Night> nights;
  if (!segments) return nights;
  for (const SleepNight& sleep : sleepNights(*segments)) nights.push_back(nightOf(sleep));
  return nights;
}

std::string signedText(double value, int digits) {
  return (value > 0 ? "+" : "") + fixedDecimals(value, digits);
}

namespace {

std::string clockText(std::int64_t minutes) {
  char text[16];
  std::snprintf(text,
                sizeof text,
                "%02d:%02d",
                static_cast<int>(minutes / 60 % 24),
                static_cast<int>(minutes % 60));
  return text;
}

}  // namespace

std::string clockFromEvening(double minutes) { return clockText(std::llround(minutes) + evening); }

std::string clockFromMidnight(double minutes) { return clockText(std::llround(minutes)); }
