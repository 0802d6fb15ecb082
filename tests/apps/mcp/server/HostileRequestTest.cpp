// Every JSON type, and what is no JSON, in every place of every request.

#include "apps/mcp/server/HostileValues.h"
#include "mcp/tools/Tools.h"
#include "support/Conversation.h"
#include "support/StandardError.h"
#include "support/WellFormed.h"
#include "support/WorkoutSamples.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <map>
#include <string>
#include <vector>

namespace {

using Json = nlohmann::json;

/// One member with something for every tool.
class HostileRequest : public testing::TestWithParam<std::string> {
protected:
  HostileRequest() {
    household.add("ann", "Ann")
        .addRecords({{.type = "StepCount", .start_day = "2024-03-01", .value_num = 8000},
                     sampleAfter(0),
                     sampleAfter(90)})
        .addWorkout(hourOfRunning());
  }

  Household household;
};

/// A good value for each argument that a tool takes.
const std::map<std::string, Json> goodArguments{
    {"person", "Ann"},
    {"metric", "steps"},
    {"from", "2024-03-01"},
    {"to", "2024-03-02"},
    {"date", "2024-03-01"},
    {"activity_type", "Running"},
    {"environment", "all"},
    {"source", "Watch"},
    {"limit", 10},
    {"offset", 0},
    {"order", "asc"},
    {"format", "json"},
    {"a_from", "2024-03-01"},
    {"a_to", "2024-03-01"},
    {"b_from", "2024-03-02"},
    {"b_to", "2024-03-02"},
    {"workout_id", identifierOf(hourOfRunning())},
};

/// The arguments that the catalogue names, by tool, with the JSON type of each.
const std::map<std::string, std::map<std::string, std::string>>& catalogue() {
  static const auto tools = [] {
    std::map<std::string, std::map<std::string, std::string>> types;
    for (const auto& descriptor : Tools::schemas(SummaryLang::en)) {
      auto& arguments = types[descriptor.at("name")];
      for (const auto& [name, schema] : descriptor.at("inputSchema").at("properties").items()) {
        arguments[name] = schema.at("type");
      }
    }
    return types;
  }();
  return tools;
}

std::vector<std::string> toolNames() {
  std::vector<std::string> names;
  for (const auto& [name, arguments] : catalogue()) names.push_back(name);
  return names;
}

Json goodCall(const std::string& tool) {
  Json arguments = Json::object();
  for (const auto& [name, type] : catalogue().at(tool)) arguments[name] = goodArguments.at(name);
  return {{"jsonrpc", "2.0"},
          {"id", 1},
          {"method", "tools/call"},
          {"params", {{"name", tool}, {"arguments", arguments}}}};
}

/// `request` as a line, with `value` as it stands in the place that `pointer` names.
std::string lineWith(Json request, const std::string& pointer, const std::string& value) {
  const std::string mark = "the place of the value";
  request[Json::json_pointer(pointer)] = mark;
  const std::string line = request.dump();
  const std::string quoted = '"' + mark + '"';
  return std::string(line).replace(line.find(quoted), quoted.size(), value) + "\n";
}

const std::string nextPing = "{\"id\":\"next\",\"method\":\"ping\"}\n";
const std::string nextPong = "{\"jsonrpc\":\"2.0\",\"id\":\"next\",\"result\":{}}\n";

/// The well-formed reply to the request in `line`; a failure when there is another one, or none, or
/// when the next line is not served.
Json replyTo(const Conversation& conversation, const std::string& line) {
  const std::vector<std::string> written = conversation.writes(line + nextPing);
  EXPECT_EQ(written.size(), 2U) << line;
  if (written.size() != 2) return {};
  EXPECT_EQ(written[1], nextPong) << line;
  return checkedReply(Json::parse(line), written[0]);
}

/// Whether a value of a wrong type counts as none, so that the default is taken.
bool fallsBack(const std::string& tool, const std::string& argument) {
  return argument == "person" || (tool == "get_trend" && argument != "metric");
}

bool hasType(const std::string& type, const Json& value) {
  return type == "string" ? value.is_string() : value.is_number();
}

TEST_P(HostileRequest, IsAnsweredWithGoodArguments) {
  EXPECT_NE(textOf(replyTo(Conversation(household), goodCall(GetParam()).dump() + "\n")), "");
}

TEST_P(HostileRequest, IsAnsweredOrRefusedWithAnyValueForAnyArgument) {
  for (const SummaryLang lang : {SummaryLang::en, SummaryLang::zh}) {
    const Conversation conversation(household, lang);
    for (const auto& [argument, type] : catalogue().at(GetParam())) {
      for (const std::string& value : hostileValues) {
        SCOPED_TRACE(argument + " is " + value.substr(0, 100));

        const Json reply = replyTo(
            conversation, lineWith(goodCall(GetParam()), "/params/arguments/" + argument, value));

        const bool refused = reply.contains("error");
        EXPECT_EQ(reply.value("/error/code"_json_pointer, -32602), -32602);
        if (!hasType(type, Json::parse(value))) {
          EXPECT_EQ(refused, !fallsBack(GetParam(), argument)) << reply.dump().substr(0, 200);
        }
      }
    }
  }
}

TEST_P(HostileRequest, IsNoLineWithWhatIsNoJSONForAnyArgument) {
  std::vector<std::string> places{"/id", "/method", "/params", "/params/arguments"};
  for (const auto& [argument, type] : catalogue().at(GetParam())) {
    places.push_back("/params/arguments/" + argument);
  }
  const Conversation conversation(household);
  for (const std::string& place : places) {
    for (const std::string& value : undecodableValues) {
      StandardErrorCapture diagnostics;

      const std::vector<std::string> written =
          conversation.writes(lineWith(goodCall(GetParam()), place, value) + nextPing);

      EXPECT_THAT(written, testing::ElementsAre(nextPong)) << place << " is " << value;
      EXPECT_THAT(diagnostics.finished(), testing::EndsWith("! 收到解不开的一行,忽略\n"));
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Tools, HostileRequest, testing::ValuesIn(toolNames()),
                         [](const auto& test) { return test.param; });

/// A request of another kind, and the places in it where a value may stand.
struct RequestShape {
  std::string name;
  Json request;
  std::vector<std::string> places;
};

class HostilePlace : public testing::TestWithParam<RequestShape> {};

TEST_P(HostilePlace, IsAnsweredOrRefusedWithAnyValue) {
  Household household;
  household.add("ann", "Ann");
  const Conversation conversation(household);
  for (const std::string& place : GetParam().places) {
    for (const std::string& value : hostileValues) {
      SCOPED_TRACE(place + " is " + value.substr(0, 100));

      const Json reply = replyTo(conversation, lineWith(GetParam().request, place, value));

      if (reply.contains("error")) {
        EXPECT_THAT(reply["error"]["code"], testing::AnyOf(-32601, -32602));
      }
    }
  }
}

TEST_P(HostilePlace, MayHaveAnyValueBesideIt) {
  const Household household;
  const Conversation conversation(household);
  const Json plain = replyTo(conversation, GetParam().request.dump() + "\n");
  for (const std::string& value : hostileValues) {
    for (const char* place : {"/jsonrpc", "/more", "/params/more", "/params/_meta"}) {
      EXPECT_EQ(replyTo(conversation, lineWith(GetParam().request, place, value)), plain)
          << place << " is " << value;
    }
  }
}

RequestShape shapeOf(const std::string& name, const std::string& method, const Json& params,
                     std::vector<std::string> places) {
  for (const char* place : {"/id", "/method", "/params"}) places.emplace_back(place);
  return {name, {{"jsonrpc", "2.0"}, {"id", 1}, {"method", method}, {"params", params}}, places};
}

INSTANTIATE_TEST_SUITE_P(
    Methods, HostilePlace,
    testing::Values(
        shapeOf("Initialize", "initialize",
                {{"protocolVersion", "2024-11-05"},
                 {"capabilities", Json::object()},
                 {"clientInfo", {{"name", "desk"}, {"version", "1"}}}},
                {"/params/protocolVersion",
                 "/params/capabilities",
                 "/params/clientInfo",
                 "/params/clientInfo/name",
                 "/params/clientInfo/version"}),
        shapeOf("Ping", "ping", Json::object(), {}),
        shapeOf("ToolsList", "tools/list", {{"cursor", nullptr}}, {"/params/cursor"}),
        shapeOf("ToolsCall", "tools/call",
                {{"name", "list_persons"}, {"arguments", Json::object()}},
                {"/params/name", "/params/arguments"}),
        shapeOf("ResourcesList", "resources/list", {{"cursor", nullptr}}, {"/params/cursor"}),
        shapeOf("ResourcesRead", "resources/read", {{"uri", "larkspur://ann/overview"}},
                {"/params/uri"}),
        shapeOf("PromptsList", "prompts/list", {{"cursor", nullptr}}, {"/params/cursor"}),
        shapeOf("PromptsGet", "prompts/get", {{"name", "how_am_i"}, {"arguments", Json::object()}},
                {"/params/name", "/params/arguments"})),
    [](const auto& test) { return test.param.name; });

}  // namespace
