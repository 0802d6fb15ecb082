#include "examples/Examples.h"
#include "support/Conversation.h"
#include "support/Golden.h"
#include "support/WorkoutSamples.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <set>
#include <string>
#include <vector>

namespace {

using OrderedJson = nlohmann::ordered_json;

/// What a client sends when it meets the server: greetings, two readings, two mistakes, a good-bye.
const std::vector<std::string> firstMeeting{
    R"({"jsonrpc":"2.0","id":0,"method":"initialize","params":{"protocolVersion":"2024-11-05","capabilities":{},"clientInfo":{"name":"desk","version":"1.0"}}})",
    R"({"jsonrpc":"2.0","method":"notifications/initialized"})",
    R"({"jsonrpc":"2.0","id":1,"method":"tools/list"})",
    R"({"jsonrpc":"2.0","id":"a","method":"tools/call","params":{"name":"get_trend","arguments":{"person":"Ann","metric":"steps","from":"2024-03-01","to":"2024-03-07"}}})",
    R"({"jsonrpc":"2.0","id":"b","method":"tools/call","params":{"name":"get_trend","arguments":{"person":"小美","metric":"sleep"}}})",
    R"({"jsonrpc":"2.0","id":2,"method":"tools/call","params":{"name":"get_trend","arguments":{"metric":"steps"}}})",
    R"({"jsonrpc":"2.0","id":3,"method":"tools/call","params":{"name":"get_weather","arguments":{"person":"Ann"}}})",
    R"({"jsonrpc":"2.0","id":4,"method":"ping"})"};

/// Ann walks, 小美 sleeps.
void fill(Household& household) {
  household.add("ann", "Ann")
      .addRecords({{.type = "StepCount",
                    .source_name = "Watch",
                    .start_day = "2024-03-01",
                    .value_num = 8000},
                   {.type = "StepCount",
                    .source_name = "iPhone",
                    .start_day = "2024-03-01",
                    .value_num = 7500},
                   {.type = "StepCount",
                    .source_name = "Watch",
                    .start_day = "2024-03-02",
                    .value_num = 640.5},
                   {.type = "StepCount",
                    .source_name = "Watch",
                    .start_day = "2022-03-02",
                    .value_num = 1}});
  household.add("mei", "小美")
      .addRecords({{.type = "SleepAnalysis",
                    .start_date = "2024-03-01 23:30:00 +0000",
                    .start_day = "2024-03-01",
                    .end_date = "2024-03-02 07:00:00 +0000",
                    .value = "HKCategoryValueSleepAnalysisAsleepCore"},
                   {.type = "SleepAnalysis",
                    .start_date = "2024-03-03 01:00:00 +0000",
                    .start_day = "2024-03-03",
                    .end_date = "2024-03-03 06:45:00 +0000",
                    .value = "HKCategoryValueSleepAnalysisAsleepDeep"}});
}

/// The first meeting and the records that the access log has of it.
std::string firstMeetingIn(SummaryLang lang) {
  Household household;
  fill(household);
  const Conversation conversation(household, lang);
  const std::string transcript = conversation.transcript(firstMeeting);
  std::string log = conversation.accessLog();
  log.pop_back();
  return transcript + "\n" + log;
}

TEST(GoldenConversation, GoesWellInEnglish) {
  EXPECT_TRUE(matchesGolden("conversation/first_meeting.en.txt", firstMeetingIn(SummaryLang::en)));
}

TEST(GoldenConversation, GoesWellInChinese) {
  EXPECT_TRUE(matchesGolden("conversation/first_meeting.zh.txt", firstMeetingIn(SummaryLang::zh)));
}

// --- every method and every tool once

/// The request of that call, whose id is the call's name.
std::string lineOf(const Example& call) {
  OrderedJson request{{"jsonrpc", "2.0"}, {"id", call.name}, {"method", "tools/call"}};
  request["params"] = {{"name", call.tool}, {"arguments", call.arguments}};
  return request.dump();
}

TestWorkout morningRun() {
  return {.activity_type = "Running",
          .duration_min = 30,
          .source_name = "Ann\u2019s Apple\u00A0Watch",
          .start_date = "2024-03-10 08:00:00 +0100",
          .start_day = "2024-03-10",
          .end_date = "2024-03-10 08:30:00 +0100",
          .distance_km = 5.25,
          .indoor = 0};
}

void addRunner(Household& household) {
  household.add("ann", "Ann")
      .addRecords({{.type = "StepCount",
                    .source_name = "iPhone",
                    .unit = "count",
                    .start_day = "2024-03-10",
                    .value_num = 9000},
                   {.type = "StepCount",
                    .source_name = "iPhone",
                    .unit = "count",
                    .start_day = "2024-03-03",
                    .value_num = 6000},
                   {.type = "HeartRate",
                    .source_name = "Ann\u2019s Apple\u00A0Watch",
                    .device = "<<HKDevice>, name:Apple Watch>",
                    .unit = "count/min",
                    .start_date = "2024-03-10 07:00:05 +0000",
                    .start_day = "2024-03-10",
                    .end_date = "2024-03-10 07:00:05 +0000",
                    .value = "121.5",
                    .value_num = 121.5}})
      .addWorkout(morningRun());
}

/// As a client calls them in a household of one: without the person, or without the days.
const std::vector<Example> callsOfTools{
    {"who", "list_persons", OrderedJson::object()},
    {"overview", "get_overview", {{"person", "Ann"}}},
    {"trend", "get_trend", {{"metric", "steps"}}},
    {"day", "get_day", {{"date", "2024-03-10"}}},
    {"workouts", "get_workouts", {{"activity_type", "running"}}},
    {"workouts again", "get_workouts", {{"format", "json"}, {"limit", 1}}},
    {"beats", "get_workout_heart_rate", {{"workout_id", identifierOf(morningRun())}}},
    {"compare",
     "compare_periods",
     {{"metric", "steps"},
      {"a_from", "2024-03-01"},
      {"a_to", "2024-03-07"},
      {"b_from", "2024-03-08"},
      {"b_to", "2024-03-14"}}}};

/// Those calls, then an example call of each tool that is not among them.
std::vector<std::string> everyToolOnce() {
  std::vector<std::string> calls;
  std::set<std::string> called;
  for (const Example& call : callsOfTools) {
    calls.push_back(lineOf(call));
    called.insert(call.tool);
  }
  for (const Example& example : Examples::ofToolsBut(called)) calls.push_back(lineOf(example));
  return calls;
}

std::vector<std::string> everythingOnce() {
  std::vector<std::string> lines{
      R"({"jsonrpc":"2.0","id":"start","method":"initialize","params":{"clientInfo":{"name":"desk"}}})",
      R"({"jsonrpc":"2.0","method":"notifications/initialized"})",
      R"({"jsonrpc":"2.0","id":"alive","method":"ping"})",
      R"({"jsonrpc":"2.0","id":"tools","method":"tools/list"})"};
  for (const std::string& call : everyToolOnce()) lines.push_back(call);
  lines.insert(
      lines.end(),
      {R"({"jsonrpc":"2.0","id":"resources","method":"resources/list"})",
       R"({"jsonrpc":"2.0","id":"read","method":"resources/read","params":{"uri":"larkspur://ann/overview"}})",
       R"({"jsonrpc":"2.0","id":"prompts","method":"prompts/list"})",
       R"({"jsonrpc":"2.0","id":"prompt","method":"prompts/get","params":{"name":"how_am_i"}})"});
  return lines;
}

/// The conversation, and the records that the access log has of it.
std::string everythingOnceIn(SummaryLang lang) {
  Household household;
  addRunner(household);
  const Conversation conversation(household, lang);
  const std::string transcript = conversation.transcript(everythingOnce());
  std::string log = conversation.accessLog();
  log.pop_back();
  return transcript + "\n" + log;
}

TEST(GoldenConversation, CallsEverythingOnceInEnglish) {
  EXPECT_TRUE(
      matchesGolden("conversation/everything_once.en.txt", everythingOnceIn(SummaryLang::en)));
}

TEST(GoldenConversation, CallsEverythingOnceInChinese) {
  EXPECT_TRUE(
      matchesGolden("conversation/everything_once.zh.txt", everythingOnceIn(SummaryLang::zh)));
}

}  // namespace
