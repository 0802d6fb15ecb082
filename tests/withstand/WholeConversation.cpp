#include "withstand/WholeConversation.h"

#include <utility>

using Json = nlohmann::json;

Json toolCall(const std::string& tool, Json arguments) {
  return {{"jsonrpc", "2.0"},
          {"method", "tools/call"},
          {"params", {{"name", tool}, {"arguments", std::move(arguments)}}}};
}

std::vector<Question> questionsAbout(const std::string& member, const std::string& workoutID) {
  const Json range{{"person", member}, {"from", "2024-02-01"}, {"to", "2024-03-17"}};
  const auto trend = [&range](const char* metric) {
    Json arguments = range;
    arguments["metric"] = metric;
    return toolCall("get_trend", arguments);
  };
  Json asJson = range;
  asJson["format"] = "json";
  return {{"list_persons", toolCall("list_persons", Json::object())},
          {"get_overview", toolCall("get_overview", {{"person", member}})},
          {"get_trend steps", trend("steps")},
          {"get_trend heart_rate", trend("heart_rate")},
          {"get_trend sleep", trend("sleep")},
          {"get_day", toolCall("get_day", {{"person", member}, {"date", "2024-03-16"}})},
          {"get_workouts text", toolCall("get_workouts", range)},
          {"get_workouts json", toolCall("get_workouts", asJson)},
          {"get_workout_heart_rate",
           toolCall("get_workout_heart_rate", {{"person", member}, {"workout_id", workoutID}})},
          {"compare_periods",
           toolCall("compare_periods",
                    {{"person", member},
                     {"metric", "resting_heart_rate"},
                     {"a_from", "2024-03-01"},
                     {"a_to", "2024-03-17"},
                     {"b_from", "2024-02-01"},
                     {"b_to", "2024-02-29"}})},
          {"resources/read",
           {{"jsonrpc", "2.0"},
            {"method", "resources/read"},
            {"params", {{"uri", "larkspur://" + member + "/overview"}}}}}};
}

std::vector<Json> generalRequests() {
  const auto request = [](const char* method, Json params) {
    return Json{{"jsonrpc", "2.0"}, {"method", method}, {"params", std::move(params)}};
  };
  return {request("initialize", {{"clientInfo", {{"name", "desk"}}}}),
          request("notifications/initialized", Json::object()),
          request("ping", Json::object()),
          request("tools/list", Json::object()),
          request("resources/list", Json::object()),
          request("prompts/list", Json::object()),
          request("prompts/get", {{"name", "how_am_i"}})};
}

std::vector<Json> numbered(std::vector<Json> requests) {
  int id = 0;
  for (Json& request : requests) {
    ++id;
    if (request["method"] != "notifications/initialized") request["id"] = id;
  }
  return requests;
}

std::string asLines(const std::vector<Json>& requests) {
  std::string lines;
  for (const Json& request : requests) lines += request.dump() + "\n";
  return lines;
}
