#include "Comparison.h"
#include "AddedWorkout.h"
#include "Days.h"
#include "mcp/tools/Resources.h"
#include "platform/AppleFormat.h"
#include "store/HealthStore.h"

#include <nlohmann/json.hpp>

#include <set>
#include <utility>

namespace {

// The permitted ratio of an answer's time to its baseline.
constexpr double seriesTarget = 1.5;
constexpr double allHeartRateTarget = 1.2;
constexpr double dayTarget = 2.5;
constexpr double documentTarget = 2;
constexpr double overviewTarget = 1.15;
constexpr double personsTarget = 1.1;

using Arguments = nlohmann::json;

std::function<std::string()> tool(Subject& subject, std::string name,
                                  Arguments arguments = Arguments::object()) {
  return [&subject, name = std::move(name), arguments = std::move(arguments)] {
    return Tools::answer(name, subject.call(arguments));
  };
}

std::function<std::string()> resource(Subject& subject) {
  return [&subject, uri = "larkspur://" + subject.member.id + "/overview"] {
    const Arguments none = Arguments::object();
    return Tools::readResource(uri, subject.call(none));
  };
}

std::vector<std::string> typesOf(Subject& subject) {
  const std::set<std::string> types =
      HealthStore(subject.member.dbPath, {}, subject.log).presentTypes();
  return {types.begin(), types.end()};
}

std::vector<std::string> yearsOf(Subject& subject) {
  const HealthStore store(subject.member.dbPath, {}, subject.log);
  std::vector<std::string> years;
  for (const auto& [year, count] : store.yearlyCounts().byYear) years.push_back(year);
  return years;
}

/// The queries of an answer: those of its coverage notice and its own.
std::vector<BareQuery> withDays(Subject& subject, std::vector<BareQuery> own) {
  std::vector<BareQuery> queries = Floor::days(typesOf(subject));
  queries.insert(queries.end(), own.begin(), own.end());
  return queries;
}

/// The queries for the heart rate of a workout, over the days from two before to two after it.
std::vector<BareQuery> heartRateRows(Subject& subject, const WorkoutEntry& workout) {
  const CivilDay day = AppleFormat::dayParser.parse(workout.start.substr(0, 10)).value();
  const auto shifted = [day](int count) {
    return AppleFormat::dayText(AppleFormat::daysAfter(day, count));
  };
  return withDays(subject, {Floor::workoutKeys(), Floor::heartRates(shifted(-2), shifted(2))});
}

Comparison ninetyDays(Subject& subject, const std::string& metric, BareQuery rows) {
  return {.what = "get_trend, " + metric + " of 90 days",
          .ours = tool(subject, "get_trend", {{"metric", metric}}),
          .floor = withDays(subject, {std::move(rows)}),
          .target = seriesTarget,
          .isOfRange = true};
}

std::vector<Comparison> seriesComparisons(Subject& subject) {
  return {
      ninetyDays(
          subject, "steps", Floor::sourceValues("StepCount", Days::ninetyBefore, Days::last)),
      ninetyDays(subject, "heart_rate", Floor::values("HeartRate", Days::ninetyBefore, Days::last)),
      {.what = "get_trend, all heart rate",
       .ours = tool(subject, "get_trend", {{"metric", "heart_rate"}, {"from", Days::beforeAll}}),
       .floor = withDays(subject, {Floor::values("HeartRate", Days::beforeAll, Days::last)}),
       .target = allHeartRateTarget},
      {.what = "compare_periods, two quarters of steps",
       .ours = tool(subject,
                    "compare_periods",
                    {{"metric", "steps"},
                     {"a_from", "2026-04-01"},
                     {"a_to", "2026-06-30"},
                     {"b_from", "2026-01-01"},
                     {"b_to", "2026-03-31"}}),
       .floor = withDays(subject,
                         {Floor::sourceValues("StepCount", "2026-04-01", "2026-06-30"),
                          Floor::sourceValues("StepCount", "2026-01-01", "2026-03-31")}),
       .target = seriesTarget,
       .isOfRange = true}};
}

/// get_workouts, as text or as JSON. In both cases the baseline encodes the JSON.
Comparison workoutList(Subject& subject, const std::string& format) {
  return {.what = "get_workouts, 90 days as " + format,
          .ours = tool(subject, "get_workouts", {{"format", format}}),
          .floor = withDays(subject, {Floor::workouts(Days::ninetyBefore, Days::last)}),
          .target = documentTarget,
          .isOfRange = true,
          .document = tool(subject, "get_workouts", {{"format", "json"}})};
}

Comparison heartRatePage(Subject& subject, const std::string& page, const WorkoutEntry& workout,
                         Arguments arguments) {
  arguments["workout_id"] = workout.workout_id();
  const auto answer = tool(subject, "get_workout_heart_rate", arguments);
  return {.what = "get_workout_heart_rate, " + page,
          .ours = answer,
          .floor = heartRateRows(subject, workout),
          .target = documentTarget,
          .document = answer};
}

std::vector<Comparison> dayAndWorkoutComparisons(Subject& subject) {
  return {{.what = "get_day",
           .ours = tool(subject, "get_day", {{"date", Days::ordinary}}),
           .floor = withDays(subject, {Floor::recordsOf(typesOf(subject), Days::ordinary)}),
           .target = dayTarget,
           .isOfRange = true},
          workoutList(subject, "text"),
          workoutList(subject, "json"),
          heartRatePage(
              subject, "1000 of an hour's 3600", AddedWorkouts::hour.entry(), Arguments::object()),
          heartRatePage(subject,
                        "a page of 5000 out of 20000",
                        AddedWorkouts::longest.entry(),
                        {{"limit", 5000}, {"offset", 10000}})};
}

std::vector<Comparison> overviewComparisons(Subject& subject) {
  const std::vector<BareQuery> everything =
      withDays(subject,
               {Floor::countsByYear(typesOf(subject), yearsOf(subject)),
                Floor::sourceValues("StepCount", "", "9999-12-31")});
  return {{.what = "get_overview",
           .ours = tool(subject, "get_overview"),
           .floor = everything,
           .target = overviewTarget},
          {.what = "resources/read",
           .ours = resource(subject),
           .floor = everything,
           .target = overviewTarget},
          {.what = "list_persons, one member",
           .ours = tool(subject, "list_persons"),
           .floor = {Floor::count()},
           .target = personsTarget}};
}

}  // namespace

std::vector<Comparison> comparisons(Subject& subject) {
  std::vector<Comparison> all = seriesComparisons(subject);
  for (const auto& more : {dayAndWorkoutComparisons(subject), overviewComparisons(subject)}) {
    all.insert(all.end(), more.begin(), more.end());
  }
  return all;
}
