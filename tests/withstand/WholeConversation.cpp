#include "withstand/WholeConversation.h"
#include "examples/Examples.h"

#include <stdexcept>
#include <utility>

using Json = nlohmann::json;

Json toolCall(const std::string& tool, Json arguments) {
  return {{"jsonrpc", "2.0"},
          {"method", "tools/call"},
          {"params", {{"name", tool}, {"arguments", std::move(arguments)}}}};
}

std::vector<Question> questionsAbout(const std::string& member, const std::string& workoutID) {
  std::vector<Question> questions;
  for (const Example& example : Examples::all()) {
    const Json arguments = example.argumentsWith({{"person", member}, {"workout_id", workoutID}});
    questions.push_back({example.name, toolCall(example.tool, arguments)});
  }
  questions.push_back({"resources/read",
                       {{"jsonrpc", "2.0"},
                        {"method", "resources/read"},
                        {"params", {{"uri", "larkspur://" + member + "/overview"}}}}});
  return questions;
}

Names operator+(Names names, const Names& others) {
  names.insert(others.begin(), others.end());
  return names;
}

Names operator-(Names names, const Names& others) {
  for (const std::string& name : others) names.erase(name);
  return names;
}

const Names& allQuestions() {
  static const Names all = [] {
    Names names;
    for (const Question& question : questionsAbout("ann", "")) names.insert(question.name);
    return names;
  }();
  return all;
}

Names questionsTo(const std::string& tool) {
  Names names;
  for (const Example& example : Examples::all()) {
    if (example.tool == tool) names.insert(example.name);
  }
  if (names.empty()) throw std::invalid_argument("no example calls " + tool);
  return names;
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
