#include "summary/Insights.h"
#include "summary/CalendarText.h"
#include "summary/SummaryStrings.h"

#include <array>
#include <chrono>
#include <cmath>
#include <map>
#include <optional>
#include <string>
#include <utility>

namespace {

using Totals = std::map<std::string, double>;

Totals dailySteps(const SummaryEngine& engine, const DayRange& window) {
  return orNothing([&] { return engine.data().dailyTotals("StepCount", window.from, window.to); })
      .value_or(Totals());
}

struct Sum {
  double total = 0;
  int days = 0;

  void add(double value) {
    total += value;
    ++days;
  }
};

/// Sums by weekday, Sunday first.
std::array<Sum, 7> byWeekday(const Totals& totals) {
  std::array<Sum, 7> sums{};
  for (const auto& [text, total] : totals) {
    const std::optional<CivilDay> day = AppleFormat::dayParser.parse(text);
    if (!day) continue;
    sums[std::chrono::weekday(std::chrono::sys_days(*day)).c_encoding()].add(total);
  }
  return sums;
}

std::optional<Insight> weekday(const SummaryEngine& engine, const Totals& steps) {
  constexpr std::size_t fewestDays = 14;
  const DayRange window = engine.lastDays(90);
  const Totals totals(steps.lower_bound(window.from), steps.upper_bound(window.to));
  if (totals.size() < fewestDays) return std::nullopt;
  std::optional<std::pair<int, double>> most;
  std::optional<std::pair<int, double>> least;
  int number = 0;  // 1 is Sunday
  for (const Sum& sum : byWeekday(totals)) {
    ++number;
    if (sum.days == 0) continue;
    const double mean = sum.total / sum.days;
    if (!most || mean > most->second) most = {number, mean};
    if (!least || mean < least->second) least = {number, mean};
  }
  if (!most || !least) return std::nullopt;
  const SummaryLang lang = engine.language();
  return Insight{"weekday",
                 SummaryStrings::in(lang).insightWeekday(weekdayName(most->first, lang),
                                                         weekdayName(least->first, lang))};
}

std::optional<Insight> restingHeartRate(const SummaryEngine& engine, const Totals&) {
  constexpr double smallestDifference = 0.5;
  const auto now = engine.medianValue("RestingHeartRate", engine.lastDays(90));
  const auto before = engine.medianValue("RestingHeartRate", engine.lastYearWindow(90));
  if (!now || !before) return std::nullopt;
  const double delta = now->value - before->value;
  if (std::abs(delta) < smallestDifference) return std::nullopt;
  const SummaryStrings& strings = SummaryStrings::in(engine.language());
  return Insight{"resting_hr", strings.insightRestingHR(std::abs(delta), delta < 0)};
}

std::optional<Insight> bestMonth(const SummaryEngine& engine, const Totals& totals) {
  constexpr std::size_t fewestDays = 60;
  constexpr int fewestDaysOfMonth = 20;
  if (totals.size() < fewestDays) return std::nullopt;
  std::map<std::string, Sum> months;
  for (const auto& [day, total] : totals) months[day.substr(0, 7)].add(total);
  const std::pair<const std::string, Sum>* best = nullptr;
  for (const auto& month : months) {
    if (month.second.days < fewestDaysOfMonth) continue;
    if (best == nullptr || month.second.total > best->second.total) best = &month;
  }
  if (best == nullptr) return std::nullopt;
  const SummaryLang lang = engine.language();
  return Insight{"best_month",
                 SummaryStrings::in(lang).insightBestMonth(monthName(best->first, lang))};
}

}  // namespace

std::vector<Insight> Insights::all(const SummaryEngine& engine) {
  const Totals steps = dailySteps(engine, {.from = "1900-01-01", .to = "2999-12-31"});
  std::vector<Insight> insights;
  for (const auto rule : {weekday, restingHeartRate, bestMonth}) {
    if (std::optional<Insight> insight = rule(engine, steps))
      insights.push_back(std::move(*insight));
  }
  return insights;
}
