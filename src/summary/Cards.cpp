#include "summary/Cards.h"
#include "platform/Locale.h"
#include "platform/Text.h"
#include "summary/ActivityNames.h"
#include "summary/CalendarText.h"
#include "summary/DailySeries.h"
#include "summary/SummaryStrings.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <initializer_list>
#include <optional>

DataState Cards::cardState(std::span<const Metric> metrics) {
  for (const DataState state :
       {DataState::present, DataState::absentSuspicious, DataState::absentExpected}) {
    if (std::ranges::find(metrics, state, &Metric::state) != metrics.end()) return state;
  }
  return DataState::backfilling;
}

std::string_view Cards::stateText(DataState state, bool needsWatch, SummaryLang lang) {
  const SummaryStrings& strings = SummaryStrings::in(lang);
  switch (state) {
    case DataState::present:
      return "";
    case DataState::absentExpected:
      return needsWatch ? strings.needsWatch : strings.notCollected;
    case DataState::absentSuspicious:
      return strings.maybeUnauthorized;
    case DataState::backfilling:
      return strings.backfilling;
  }
  return "";
}

namespace {

using Cards::Context;

const SummaryStrings& stringsOf(const Context& context) {
  return SummaryStrings::in(context.engine.language());
}

Metric row(std::string_view label, std::string_view text, DataState state) {
  return {.label = std::string(label),
          .value = std::nullopt,
          .unit = "",
          .samples = std::nullopt,
          .text = std::string(text),
          .state = state};
}

/// A row with a figure. `number` is the displayed figure without its unit.
Metric figureRow(std::string_view label, double value, const std::string& number,
                 std::string_view unit, std::optional<std::int64_t> samples = std::nullopt) {
  return {.label = std::string(label),
          .value = value,
          .unit = std::string(unit),
          .samples = samples,
          .text = number + std::string(unit),
          .state = DataState::present};
}

SummaryCard card(std::string_view key, std::string_view title, std::vector<Metric> metrics) {
  const DataState state = Cards::cardState(metrics);
  return {.key = std::string(key),
          .title = std::string(title),
          .state = state,
          .metrics = std::move(metrics),
          .needsDevice = std::nullopt};
}

/// A card whose data needs a watch. It says so when its state is absentExpected.
SummaryCard watchCard(std::string_view key, std::string_view title, std::vector<Metric> metrics,
                      const SummaryStrings& strings) {
  SummaryCard made = card(key, title, std::move(metrics));
  if (made.state == DataState::absentExpected) made.needsDevice = std::string(strings.needsWatch);
  return made;
}

/// The non-blank names, joined; "—" when there are none.
std::string deviceNames(std::vector<std::string> devices) {
  std::erase_if(devices, [](const std::string& name) { return trimmedWhitespace(name).empty(); });
  return devices.empty() ? "—" : joined(devices, "、");
}

SummaryCard overviewCard(const Context& context) {
  const SummaryStrings& strings = stringsOf(context);
  const SummaryCoverage& coverage = context.coverage;
  if (coverage.records < 1) {
    return card(Cards::overviewKey,
                strings.cardOverview,
                {row(strings.records, strings.maybeUnauthorized, DataState::absentSuspicious)});
  }
  const std::string span =
      coverage.firstDay.empty() ? "—" : coverage.firstDay + " ~ " + coverage.lastDay;
  Metric types = figureRow(strings.typeCount,
                           static_cast<double>(coverage.typeCount),
                           std::to_string(coverage.typeCount),
                           "");
  if (coverage.typeCount < 1) types.state = DataState::absentSuspicious;
  return card(Cards::overviewKey,
              strings.cardOverview,
              {figureRow(strings.records,
                         static_cast<double>(coverage.records),
                         grouped(coverage.records, context.engine.digitGrouping()),
                         ""),
               row(strings.span, span, DataState::present),
               types,
               row(strings.devices, deviceNames(coverage.devices), DataState::present)});
}

std::string whole(double value) { return fixedDecimals(value, 0); }
std::string oneDecimal(double value) { return fixedDecimals(value, 1); }

/// The row of a figure of the same period one year ago. Without a figure the row says that the
/// period is missing, or not complete yet during a backfill. `written` returns a figure's text
/// without its unit.
template <typename Written>
Metric lastYearRow(const Context& context, std::string_view label,
                   const std::optional<Figure>& figure, Written written, std::string_view unit) {
  const SummaryStrings& strings = stringsOf(context);
  if (figure) return figureRow(label, figure->value, written(figure->value), unit, figure->samples);
  if (context.coverage.backfilling) {
    return row(label, strings.backfilling, DataState::backfilling);
  }
  return row(label, strings.noSamePeriod, DataState::absentExpected);
}

/// Why a step average is missing. If steps are stored, but none in this period, the state is
/// present and the row has no text.
DataState missingStepsState(const Context& context) {
  if (context.coverage.records < 1) return DataState::absentSuspicious;
  if (context.presentTypes.contains("StepCount")) return DataState::present;
  return context.coverage.backfilling ? DataState::backfilling : DataState::absentSuspicious;
}

std::string stepsText(const Context& context, double steps) {
  return groupedWhole(steps, context.engine.digitGrouping());
}

Metric stepsRow(const Context& context, std::string_view label, int daysBack) {
  const SummaryStrings& strings = stringsOf(context);
  const auto average = context.engine.averageDaily("StepCount", context.engine.lastDays(daysBack));
  if (average) {
    return figureRow(label,
                     average->value,
                     stepsText(context, average->value),
                     strings.unitSteps,
                     average->samples);
  }
  const DataState state = missingStepsState(context);
  return row(label, Cards::stateText(state, false, context.engine.language()), state);
}

SummaryCard activityCard(const Context& context) {
  const SummaryStrings& strings = stringsOf(context);
  const auto lastYear = context.engine.averageDaily("StepCount", context.engine.lastYearWindow(30));
  const auto written = [&](double steps) { return stepsText(context, steps); };
  return card("activity",
              strings.cardActivity,
              {stepsRow(context, strings.steps30, 30),
               stepsRow(context, strings.steps90, 90),
               lastYearRow(context, strings.stepsLastYear, lastYear, written, strings.unitSteps)});
}

/// Why a figure from a watch is missing. Any record of `types` proves that a watch or a sleep
/// tracker was in use.
DataState missingWatchState(const Context& context, std::initializer_list<const char*> types) {
  const auto stored = [&](const char* type) { return context.presentTypes.contains(type); };
  if (!context.hasWatch && std::ranges::none_of(types, stored)) return DataState::absentExpected;
  return context.coverage.backfilling ? DataState::backfilling : DataState::absentSuspicious;
}

Metric missingWatchRow(const Context& context, std::string_view label, DataState state) {
  return row(label, Cards::stateText(state, true, context.engine.language()), state);
}

SummaryCard heartCard(const Context& context) {
  const SummaryStrings& strings = stringsOf(context);
  const SummaryEngine& engine = context.engine;
  const auto now = engine.medianValue("RestingHeartRate", engine.lastDays(90));
  const auto before = engine.medianValue("RestingHeartRate", engine.lastYearWindow(90));

  // Heart rate variability needs a sensor on the wrist, so it proves that a watch was worn.
  const DataState missing =
      missingWatchState(context, {"RestingHeartRate", "HeartRateVariabilitySDNN"});
  const Metric nowRow =
      now ? figureRow(
                strings.restingHR90, now->value, whole(now->value), strings.unitBPM, now->samples)
          : missingWatchRow(context, strings.restingHR90, missing);
  const Metric beforeRow =
      lastYearRow(context, strings.restingHRLastYear, before, whole, strings.unitBPM);
  const DataState deltaMissing = now ? beforeRow.state : nowRow.state;
  const Metric deltaRow = now && before ? figureRow(strings.restingHRDelta,
                                                    now->value - before->value,
                                                    signedText(now->value - before->value, 1),
                                                    strings.unitBPM)
                                        : row(strings.restingHRDelta, "", deltaMissing);
  return watchCard("heart", strings.cardHeart, {nowRow, beforeRow, deltaRow}, strings);
}

std::string hoursAndMinutes(const Context& context, double minutes) {
  constexpr double firstBeyondInt64 = 0x1p63;
  if (!(minutes >= 0 && minutes < firstBeyondInt64)) {
    return groupedWhole(minutes, context.engine.digitGrouping()) +
           std::string(stringsOf(context).unitMinutes);
  }
  const std::int64_t wholeMinutes = std::llround(minutes);
  return hoursMinutes(wholeMinutes / 60, wholeMinutes % 60, context.engine.language());
}

double medianOf(const std::vector<Night>& nights, double Night::*field) {
  std::vector<double> values;
  values.reserve(nights.size());
  for (const Night& night : nights) values.push_back(night.*field);
  return median(values).value_or(0);
}

SummaryCard sleepCard(const Context& context) {
  const SummaryStrings& strings = stringsOf(context);
  const std::vector<Night> nights = context.engine.nights(90);
  if (nights.empty()) {
    const DataState missing = missingWatchState(context, {"SleepAnalysis"});
    return watchCard("sleep",
                     strings.cardSleep,
                     {missingWatchRow(context, strings.sleepDuration, missing),
                      missingWatchRow(context, strings.bedtime, missing),
                      missingWatchRow(context, strings.wakeTime, missing)},
                     strings);
  }
  double asleep = 0;
  for (const Night& night : nights) asleep += night.minutes;
  const double mean = asleep / static_cast<double>(nights.size());
  const double bed = medianOf(nights, &Night::bedMinutes);
  const double wake = medianOf(nights, &Night::wakeMinutes);
  const auto count = static_cast<std::int64_t>(nights.size());
  const std::string length = hoursAndMinutes(context, mean);
  return watchCard("sleep",
                   strings.cardSleep,
                   {figureRow(strings.sleepDuration, mean, length, "", count),
                    figureRow(strings.bedtime, bed, clockFromEvening(bed), "", count),
                    figureRow(strings.wakeTime, wake, clockFromMidnight(wake), "", count)},
                   strings);
}

/// The most frequent activities of the workouts, at most three: "Walking×12、Yoga×3".
std::string mainActivities(const WorkoutStats& stats, SummaryLang lang) {
  constexpr std::size_t most = 3;
  const std::span shown = std::span(stats.byType).first(std::min(most, stats.byType.size()));
  return joined(shown, "、", [lang](const auto& activity) {
    return activityName(activity.first, lang) + "×" + std::to_string(activity.second);
  });
}

SummaryCard workoutsCard(const Context& context) {
  const SummaryStrings& strings = stringsOf(context);
  const auto stats = context.engine.workoutStats(context.engine.lastDays(90));
  if (!stats || stats->count < 1) {
    // Unreadable workouts are not the same as no workouts.
    const DataState none =
        context.coverage.backfilling ? DataState::backfilling : DataState::absentExpected;
    const DataState state = stats ? none : DataState::absentSuspicious;
    return card(
        "workouts",
        strings.cardWorkouts,
        {row(strings.workoutCount, "", state),
         row(strings.workoutMinutes, "", state),
         row(strings.workoutTypes, stats ? strings.noWorkouts : strings.maybeUnauthorized, state)});
  }
  return card(
      "workouts",
      strings.cardWorkouts,
      {figureRow(strings.workoutCount,
                 static_cast<double>(stats->count),
                 std::to_string(stats->count),
                 strings.unitTimes),
       figureRow(
           strings.workoutMinutes, stats->minutes, hoursAndMinutes(context, stats->minutes), ""),
       row(strings.workoutTypes,
           mainActivities(*stats, context.engine.language()),
           DataState::present)});
}

SummaryCard bodyCard(const Context& context) {
  const SummaryStrings& strings = stringsOf(context);
  std::vector<Metric> rows;
  if (const auto weight = context.engine.latestValue("BodyMass")) {
    rows.push_back(
        figureRow(strings.weight, weight->value, oneDecimal(weight->value), strings.unitKg));
  }
  if (const auto bmi = context.engine.latestValue("BodyMassIndex")) {
    rows.push_back(figureRow(strings.bmi, bmi->value, oneDecimal(bmi->value), ""));
  }
  if (rows.empty()) rows = {row(strings.weight, strings.noBody, DataState::absentExpected)};
  return card("body", strings.cardBody, std::move(rows));
}

}  // namespace

std::vector<SummaryCard> Cards::all(const Context& context) {
  return {overviewCard(context),
          activityCard(context),
          heartCard(context),
          sleepCard(context),
          workoutsCard(context),
          bodyCard(context)};
}
