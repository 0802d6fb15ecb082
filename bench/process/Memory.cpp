#include "bench/process/Memory.h"
#include "bench/AddedWorkout.h"
#include "bench/Days.h"
#include "bench/process/Child.h"
#include "bench/process/Requests.h"
#include "examples/Examples.h"

#include <nlohmann/json.hpp>

#include <optional>
#include <set>
#include <span>
#include <stdexcept>

namespace {

using Json = nlohmann::json;

struct Request {
  std::string what;
  std::string line;
};

Json only(std::string_view reply, const char* list) {
  return Requests::resultOf(reply).at(list).at(0);
}

/// The identifier of the long workout, obtained by a tool call.
std::string longWorkout(const std::vector<std::string>& server) {
  Child child(server);
  const char* day = AddedWorkouts::longest.day;
  const std::string request =
      Requests::call("get_workouts", {{"from", day}, {"to", day}, {"format", "json"}});
  const std::string text = only(child.answer(request), "content").at("text");
  child.finish();
  const Json workouts = Json::parse(text).at("workouts");
  if (workouts.empty()) throw std::runtime_error("larkspur_bench has not been run on this data");
  return workouts.at(0).at("workout_id");
}

std::string overviewURI(const std::vector<std::string>& server) {
  Child child(server);
  const std::string uri =
      only(child.answer(Requests::line("resources/list", Json::object())), "resources").at("uri");
  child.finish();
  return uri;
}

/// The calls with the most rows and the longest answers. The heart rate has the default size of a
/// page.
std::vector<Example> largeCalls(const std::string& workoutID) {
  return {{"get_trend",
           "get_trend",
           {{"metric", "heart_rate"}, {"from", Days::beforeAll}, {"to", Days::last}}},
          {"get_trend, all nights",
           "get_trend",
           {{"metric", "sleep"}, {"from", Days::beforeAll}, {"to", Days::last}}},
          {"compare_periods",
           "compare_periods",
           {{"metric", "heart_rate"},
            {"a_from", Days::beforeAll},
            {"a_to", "2022-12-31"},
            {"b_from", "2023-01-01"},
            {"b_to", Days::last}}},
          {"get_day", "get_day", {{"date", Days::ordinary}}},
          {"get_workouts",
           "get_workouts",
           {{"from", Days::beforeAll}, {"to", Days::last}, {"limit", 200}, {"format", "json"}}},
          {"get_workout_heart_rate", "get_workout_heart_rate", {{"workout_id", workoutID}}}};
}

/// A call of every tool, a large one if there is one, and of the resource.
std::vector<Request> requests(const std::string& workoutID, const std::string& uri) {
  const std::vector<Example> large = largeCalls(workoutID);
  std::set<std::string> called;
  for (const Example& call : large) called.insert(call.tool);
  const Json days{{"from", Days::beforeAll}, {"to", Days::last}, {"date", Days::ordinary}};

  std::vector<Request> all;
  for (const Example& example : Examples::ofToolsBut(called)) {
    all.push_back({example.name, Requests::call(example.tool, example.argumentsWith(days))});
  }
  for (const Example& call : large) {
    all.push_back({call.name, Requests::call(call.tool, call.arguments)});
  }
  all.push_back({"resources/read", Requests::line("resources/read", {{"uri", uri}})});
  return all;
}

Measurement peak(const std::string& what, const std::vector<std::string>& server,
                 std::span<const Request> asked, std::optional<double> target) {
  constexpr double mebibyte = 1024 * 1024;
  Child child(server);
  for (const Request& request : asked) Requests::resultOf(child.answer(request.line));
  return {.what = "memory, " + what,
          .ours = static_cast<double>(child.finish()) / mebibyte,
          .floor = std::nullopt,
          .target = target,
          .unit = "MiB"};
}

}  // namespace

std::vector<Measurement> Memory::peaks(const std::vector<std::string>& server) {
  constexpr double target = 24;
  const std::string workoutID = longWorkout(server);
  const std::vector<Request> all = requests(workoutID, overviewURI(server));
  std::vector<Measurement> measurements;
  for (const Request& request : all) {
    measurements.push_back(peak(request.what, server, {&request, 1}, target));
  }
  measurements.push_back(peak("all of these in one process", server, all, target));
  const Request largest{
      "get_workout_heart_rate, a page of 5000 out of 20000",
      Requests::call("get_workout_heart_rate", {{"workout_id", workoutID}, {"limit", 5000}})};
  measurements.push_back(peak(largest.what, server, {&largest, 1}, std::nullopt));
  return measurements;
}
