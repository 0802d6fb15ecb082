#include "Comparison.h"
#include "AddedWorkout.h"
#include "Days.h"
#include "platform/AppleFormat.h"
#include "store/HealthStore.h"
#include "tools/Resources.h"

#include <nlohmann/json.hpp>

#include <utility>

namespace {

// How many times its floor an answer may take.
constexpr double rangeTarget = 1.25;
constexpr double overviewTarget = 1.1;
constexpr double personsTarget = 1.2;
constexpr double largestPageTarget = 3;

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

std::vector<BareQuery> daySeeks(Subject& subject) {
  std::vector<BareQuery> queries{Floor::count()};
  const HealthStore store(subject.member.dbPath, {}, subject.log);
  for (const std::string& type : store.presentTypes()) {
    queries.push_back(Floor::dayOf(type, Days::ordinary));
  }
  return queries;
}

/// The queries behind the heart rate of a workout: days that lie two days around it.
std::vector<BareQuery> heartRateRows(const WorkoutEntry& workout) {
  const CivilDay day = AppleFormat::dayParser.parse(workout.start.substr(0, 10)).value();
  const auto shifted = [day](int count) {
    return AppleFormat::dayParser.text(AppleFormat::daysBefore(day, count));
  };
  return {Floor::count(), Floor::workoutKeys(), Floor::heartRates(shifted(2), shifted(-2))};
}

std::vector<Comparison> seriesComparisons(Subject& subject) {
  return {{"get_trend, steps of 90 days",
           tool(subject, "get_trend", {{"metric", "steps"}}),
           {Floor::count(), Floor::sums("StepCount", Days::ninetyBefore, Days::last)},
           rangeTarget},
          {"get_trend, all heart rate",
           tool(subject, "get_trend", {{"metric", "heart_rate"}, {"from", Days::beforeAll}}),
           {Floor::count(), Floor::values("HeartRate", Days::beforeAll, Days::last)},
           rangeTarget},
          {"compare_periods, two quarters of steps",
           tool(subject,
                "compare_periods",
                {{"metric", "steps"},
                 {"a_from", "2026-01-01"},
                 {"a_to", "2026-03-31"},
                 {"b_from", "2025-01-01"},
                 {"b_to", "2025-03-31"}}),
           {Floor::count(),
            Floor::sums("StepCount", "2026-01-01", "2026-03-31"),
            Floor::sums("StepCount", "2025-01-01", "2025-03-31")},
           rangeTarget}};
}

std::vector<Comparison> dayAndWorkoutComparisons(Subject& subject) {
  const WorkoutEntry hour = AddedWorkouts::hour.entry();
  const WorkoutEntry longest = AddedWorkouts::longest.entry();
  return {{"get_day",
           tool(subject, "get_day", {{"date", Days::ordinary}}),
           daySeeks(subject),
           rangeTarget},
          {"get_workouts, 90 days",
           tool(subject, "get_workouts"),
           {Floor::count(), Floor::workouts(Days::ninetyBefore, Days::last)},
           rangeTarget},
          {"get_workout_heart_rate, 1000 of an hour's 3600",
           tool(subject, "get_workout_heart_rate", {{"workout_id", hour.workout_id()}}),
           heartRateRows(hour),
           rangeTarget},
          {"get_workout_heart_rate, a page of 5000 out of 20000",
           tool(subject,
                "get_workout_heart_rate",
                {{"workout_id", longest.workout_id()}, {"limit", 5000}, {"offset", 10000}}),
           heartRateRows(longest),
           largestPageTarget}};
}

std::vector<Comparison> overviewComparisons(Subject& subject) {
  const std::vector<BareQuery> everything{Floor::countsByDay(),
                                          Floor::sums("StepCount", "", "9999-12-31")};
  return {
      {"get_overview", tool(subject, "get_overview"), everything, overviewTarget},
      {"resources/read", resource(subject), everything, overviewTarget},
      {"list_persons, one member", tool(subject, "list_persons"), {Floor::count()}, personsTarget}};
}

}  // namespace

std::vector<Comparison> comparisons(Subject& subject) {
  std::vector<Comparison> all = seriesComparisons(subject);
  for (const auto& more : {dayAndWorkoutComparisons(subject), overviewComparisons(subject)}) {
    all.insert(all.end(), more.begin(), more.end());
  }
  return all;
}
