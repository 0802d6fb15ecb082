// Calls every tool on a large household, and the bare queries beside it:
//
//   larkspur_bench [benchmark options] <data root>
//
// The data root is one that larkspur-sample writes with --members 1; its last day is in lastDay
// below.

#include "Floor.h"
#include "RatioReporter.h"
#include "platform/AppleFormat.h"
#include "platform/Logger.h"
#include "roster/Roster.h"
#include "store/HealthStore.h"
#include "tools/Tools.h"

#include <benchmark/benchmark.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace {

constexpr double now = 1795176000;  // noon of the last day, UTC
constexpr const char* lastDay = "2026-11-20";
constexpr const char* ninetyDaysBefore = "2026-08-22";
constexpr const char* longAgo = "1900-01-01";
constexpr const char* someDay = "2026-10-10";

/// The household under test and its only member.
struct Subject {
  explicit Subject(const std::filesystem::path& dataRoot)
      : clock([] { return now; }),
        log(std::nullopt, Logger::Level::error, false, clock),
        roster(dataRoot / "members.json", log, clock) {
    roster.load();
    path = roster.members().at(0).dbPath;
  }

  std::string answer(const std::string& tool, const nlohmann::json& arguments) {
    return Tools::answer(tool, {arguments, roster, log, SummaryLang::en, clock});
  }

  Clock clock;
  Logger log;
  Roster roster;
  std::string path;
};

/// One row of the table: a call and the queries that its answer cannot do without.
struct Comparison {
  std::string what;
  std::string tool;
  nlohmann::json arguments;
  std::vector<BareQuery> floor;
  double target;  ///< times the floor
};

std::vector<BareQuery> daySeeks(Subject& subject) {
  std::vector<BareQuery> queries{Floor::count()};
  const HealthStore store(subject.path, {}, subject.log);
  for (const std::string& type : store.presentTypes()) {
    queries.push_back(Floor::dayOf(type, someDay));
  }
  return queries;
}

/// The workout with the most to read: the longest of the last ninety days.
WorkoutEntry longestWorkout(Subject& subject) {
  const HealthStore store(subject.path, {}, subject.log);
  const std::vector<WorkoutEntry> workouts = store.workoutDetails(ninetyDaysBefore, lastDay);
  return *std::ranges::max_element(workouts, {}, &WorkoutEntry::duration_min);
}

/// The queries behind the heart rate of a workout: days that lie two days around it.
std::vector<BareQuery> heartRateRows(const WorkoutEntry& workout) {
  const CivilDay day = AppleFormat::dayParser.parse(workout.start.substr(0, 10)).value();
  const auto shifted = [day](int count) {
    return AppleFormat::dayParser.text(AppleFormat::daysBefore(day, count));
  };
  return {Floor::count(), Floor::workoutKeys(), Floor::heartRates(shifted(2), shifted(-2))};
}

std::vector<Comparison> comparisons(Subject& subject) {
  const WorkoutEntry workout = longestWorkout(subject);
  return {
      {"get_trend, steps of 90 days",
       "get_trend",
       {{"metric", "steps"}},
       {Floor::count(), Floor::sums("StepCount", ninetyDaysBefore, lastDay)},
       1.25},
      {"get_trend, all heart rate",
       "get_trend",
       {{"metric", "heart_rate"}, {"from", longAgo}},
       {Floor::count(), Floor::values("HeartRate", longAgo, lastDay)},
       1.25},
      {"compare_periods, two quarters of steps",
       "compare_periods",
       {{"metric", "steps"},
        {"a_from", "2026-01-01"},
        {"a_to", "2026-03-31"},
        {"b_from", "2025-01-01"},
        {"b_to", "2025-03-31"}},
       {Floor::count(),
        Floor::sums("StepCount", "2026-01-01", "2026-03-31"),
        Floor::sums("StepCount", "2025-01-01", "2025-03-31")},
       1.25},
      {"get_day", "get_day", {{"date", someDay}}, daySeeks(subject), 1.25},
      {"get_workouts, 90 days",
       "get_workouts",
       nlohmann::json::object(),
       {Floor::count(), Floor::workouts(ninetyDaysBefore, lastDay)},
       1.25},
      {"get_workout_heart_rate, 1000 on the page",
       "get_workout_heart_rate",
       {{"workout_id", workout.workout_id()}},
       heartRateRows(workout),
       1.25},
      {"get_overview",
       "get_overview",
       nlohmann::json::object(),
       {Floor::countsByDay(), Floor::sums("StepCount", longAgo, "2999-12-31")},
       1.1},
      {"list_persons, one member", "list_persons", nlohmann::json::object(), {Floor::count()}, 1.2},
  };
}

void registerPair(Subject& subject, const Comparison& comparison) {
  const auto ours = [&subject, comparison](benchmark::State& state) {
    for (auto _ : state) {
      benchmark::DoNotOptimize(subject.answer(comparison.tool, comparison.arguments));
    }
  };
  const auto floor = [&subject, comparison](benchmark::State& state) {
    for (auto _ : state) {
      benchmark::DoNotOptimize(Floor::stepped(subject.path, comparison.floor));
    }
  };
  for (auto* registered :
       {benchmark::RegisterBenchmark((comparison.what + "/ours").c_str(), ours),
        benchmark::RegisterBenchmark((comparison.what + "/floor").c_str(), floor)}) {
    registered->Iterations(1)->Repetitions(20)->Unit(benchmark::kMillisecond)->UseRealTime();
  }
}

}  // namespace

int main(int count, char* words[]) {
  benchmark::Initialize(&count, words);
  if (count != 2) {
    std::fputs("usage: larkspur_bench [benchmark options] <data root>\n", stderr);
    return 2;
  }
  Subject subject(words[1]);
  std::map<std::string, double> targets;
  for (const Comparison& comparison : comparisons(subject)) {
    targets[comparison.what] = comparison.target;
    registerPair(subject, comparison);
  }
  RatioReporter reporter(targets);
  benchmark::RunSpecifiedBenchmarks(&reporter);
  return 0;
}
