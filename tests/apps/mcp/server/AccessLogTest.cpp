#include "mcp/server/AccessLog.h"
#include "mcp/server/MCPServer.h"
#include "support/Conversation.h"
#include "support/ZoneGuard.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace {

using Json = nlohmann::json;
using testing::ElementsAre;
using testing::IsEmpty;

Json request(const std::string& method, const Json& params) {
  return {{"jsonrpc", "2.0"}, {"id", 1}, {"method", method}, {"params", params}};
}

Json introduction(const std::string& client) {
  return request("initialize", {{"clientInfo", {{"name", client}}}});
}

Json call(const std::string& tool, const Json& arguments) {
  return request("tools/call", {{"name", tool}, {"arguments", arguments}});
}

TEST(AccessLog, IsMadeEmptyWithTheDataRoot) {
  const TemporaryFolder folder;
  const std::filesystem::path dataRoot = folder / "new" / "root";

  const MCPServer server(dataRoot,
                         {.lang = SummaryLang::en,
                          .clock = [] { return testNow; },
                          .input = byteSource([](std::span<char>) { return std::size_t{0}; }),
                          .output = [](std::string_view) {}});

  EXPECT_TRUE(std::filesystem::is_empty(dataRoot / "mcp-access.log"));
}

TEST(AccessLog, GrowsBehindWhatItHolds) {
  const Household household;
  std::ofstream(household.dataRoot() / "mcp-access.log") << "an old record\n";

  const Conversation conversation(household);
  conversation.replies({introduction("desk")});
  conversation.replies({introduction("desk")});

  EXPECT_EQ(
      conversation.accessLog(),
      "an old record\n[2024-03-17 12:00:00] i 连接:desk\n[2024-03-17 12:00:00] i 连接:desk\n");
}

TEST(AccessLog, StampsRecordsInLocalTime) {
  const Household household;
  const ZoneGuard zone("Asia/Shanghai");

  const Conversation conversation(household);
  conversation.replies({introduction("desk")});

  EXPECT_EQ(conversation.accessLog(), "[2024-03-17 20:00:00] i 连接:desk\n");
}

TEST(AccessLog, DropsItsRecordsWhereItCannotBeWritten) {
  const Household household;
  std::filesystem::create_directory(household.dataRoot() / "mcp-access.log");

  EXPECT_TRUE(Conversation(household).reply("initialize", Json::object()).contains("result"));
}

class NamelessClient : public testing::TestWithParam<Json> {};

TEST_P(NamelessClient, IsUnknown) {
  const Household household;
  const Conversation conversation(household);

  EXPECT_TRUE(conversation.reply("initialize", GetParam()).contains("result"));

  EXPECT_THAT(conversation.accessMessages(), ElementsAre("连接:unknown"));
}

INSTANTIATE_TEST_SUITE_P(
    Params, NamelessClient,
    testing::Values(Json(nullptr), Json("desk"), Json::array({"desk"}), Json::object(),
                    Json{{"name", "desk"}}, Json{{"clientInfo", "desk"}},
                    Json{{"clientInfo", Json::array({"desk"})}},
                    Json{{"clientInfo", Json::object()}}, Json{{"clientInfo", {{"name", nullptr}}}},
                    Json{{"clientInfo", {{"name", 7}}}}, Json{{"clientInfo", {{"Name", "desk"}}}}));

TEST(AccessLog, CallsTheClientByItsLatestName) {
  Household household;
  household.add("1", "Ann");
  const Conversation conversation(household);

  conversation.replies({call("get_trend", {{"metric", "steps"}}),
                        introduction("desk"),
                        call("get_trend", {{"metric", "steps"}}),
                        introduction("phone 2"),
                        request("initialize", Json::object()),
                        call("get_trend", {{"metric", "steps"}}),
                        introduction("")});

  EXPECT_THAT(conversation.accessMessages(),
              ElementsAre("unknown 读取 Ann · get_trend metric=steps",
                          "连接:desk",
                          "desk 读取 Ann · get_trend metric=steps",
                          "连接:phone 2",
                          "连接:phone 2",
                          "phone 2 读取 Ann · get_trend metric=steps",
                          "连接:"));
}

TEST(AccessLog, StartsEachConversationWithAnUnknownClient) {
  const Household household;
  const Conversation conversation(household);

  conversation.replies({introduction("desk")});
  conversation.replies({request("initialize", Json::object())});

  EXPECT_THAT(conversation.accessMessages(), ElementsAre("连接:desk", "连接:unknown"));
}

struct AccessCase {
  std::string name;
  std::string tool;
  Json arguments;
  std::string message;
};

class ToolAccess : public testing::TestWithParam<AccessCase> {};

TEST_P(ToolAccess, IsRecordedWithWhomAndHow) {
  Household household;
  household.add("1", "Ann");
  household.add("2", "小美");
  const Conversation conversation(household);

  conversation.called(GetParam().tool, GetParam().arguments);

  EXPECT_THAT(conversation.accessMessages(), ElementsAre(GetParam().message));
}

INSTANTIATE_TEST_SUITE_P(
    Reading, ToolAccess,
    testing::Values(AccessCase{"MemberByItsOwnName",
                               "get_trend",
                               {{"person", "2"}, {"metric", "sleep"}, {"from", "2024-03-01"}},
                               "unknown 读取 小美 · get_trend from=2024-03-01 metric=sleep"},
                    AccessCase{"PersonAndDate",
                               "get_day",
                               {{"person", " 小美 "}, {"date", "2024-03-01"}},
                               "unknown 读取 小美 · get_day date=2024-03-01"},
                    AccessCase{"NoOtherArgument",
                               "get_trend",
                               {{"person", "Ann"}},
                               "unknown 读取 Ann · get_trend "},
                    AccessCase{"FailingCall",
                               "get_trend",
                               {{"person", "Ann"}, {"metric", "none"}},
                               "unknown 读取 Ann · get_trend metric=none"},
                    AccessCase{"UnknownTool",
                               "get_weather",
                               {{"person", "Ann"}, {"city", "Oslo"}},
                               "unknown 读取 Ann · get_weather city=Oslo"}),
    [](const auto& test) { return test.param.name; });

INSTANTIATE_TEST_SUITE_P(
    Calling, ToolAccess,
    testing::Values(
        AccessCase{"UnknownPerson",
                   "get_trend",
                   {{"person", "Bob"}, {"metric", "steps"}},
                   "unknown 调用 get_trend metric=steps"},
        AccessCase{"NoPersonAmongSeveral",
                   "get_trend",
                   {{"metric", "steps"}},
                   "unknown 调用 get_trend metric=steps"},
        AccessCase{"PersonThatIsNoText", "get_trend", {{"person", 1}}, "unknown 调用 get_trend "},
        AccessCase{"AllMembers", "list_persons", Json::object(), "unknown 调用 list_persons "},
        AccessCase{"AllMembersWithAPerson",
                   "list_persons",
                   {{"person", "Ann"}, {"x", 1}},
                   "unknown 调用 list_persons x=1"},
        AccessCase{"UnknownTool", "get_weather", Json::object(), "unknown 调用 get_weather "},
        AccessCase{"NoTool", "", Json::object(), "unknown 调用  "},
        AccessCase{"NoArguments", "get_trend", nullptr, "unknown 调用 get_trend "},
        AccessCase{"ArgumentsThatAreNoObject",
                   "get_trend",
                   Json::array({"Ann"}),
                   "unknown 调用 get_trend "}),
    [](const auto& test) { return test.param.name; });

TEST(AccessLog, RecordsAReadingThatTheDatabaseThenFails) {
  Household household;
  household.add("1", "Ann").run("DROP TABLE records");
  const Conversation conversation(household);

  const Json reply = conversation.called("get_trend", {{"metric", "steps"}});

  EXPECT_EQ(reply["error"]["code"], -32603);
  EXPECT_THAT(conversation.accessMessages(),
              ElementsAre("unknown 读取 Ann · get_trend metric=steps"));
}

TEST(AccessLog, IsWrittenBeforeTheReply) {
  Household household;
  household.add("1", "Ann");
  const Conversation conversation(household);
  std::vector<std::string> logAtReply;
  std::string input = call("get_trend", {{"metric", "steps"}}).dump() + "\n";
  MCPServer server(
      household.dataRoot(),
      {.lang = SummaryLang::en,
       .clock = [] { return testNow; },
       .input = byteSource([&input](std::span<char> buffer) {
         const std::size_t count = input.copy(buffer.data(), buffer.size());
         input.erase(0, count);
         return count;
       }),
       .output = [&](std::string_view) { logAtReply = conversation.accessMessages(); }});

  server.run();

  EXPECT_THAT(logAtReply, ElementsAre("unknown 读取 Ann · get_trend metric=steps"));
}

TEST(AccessLog, SaysNothingOfMethodsThatReadNoData) {
  const Household household;
  const Conversation conversation(household);

  conversation.replies({request("ping", Json::object()),
                        request("tools/list", Json::object()),
                        request("resources/list", Json::object()),
                        request("prompts/list", Json::object()),
                        request("prompts/get", {{"name", "nothing"}}),
                        request("foo/bar", Json::object())});

  EXPECT_THAT(conversation.accessMessages(), IsEmpty());
}

TEST(AccessLog, SaysNothingOfAResourceThatCannotBeRead) {
  Household household;
  household.add("1", "Ann");
  const Conversation conversation(household);

  conversation.replies({request("resources/read", {{"uri", "larkspur://1/nothing"}}),
                        request("resources/read", {{"uri", "larkspur://2/overview"}}),
                        request("resources/read", Json::object())});

  EXPECT_THAT(conversation.accessMessages(), IsEmpty());
}

TEST(AccessLog, SaysNothingOfNotifications) {
  Household household;
  household.add("1", "Ann");
  const Conversation conversation(household);
  Json notification = call("get_trend", {{"metric", "steps"}});
  notification.erase("id");
  Json connection = introduction("desk");
  connection.erase("id");

  conversation.replies({notification, connection, request("initialize", Json::object())});

  EXPECT_THAT(conversation.accessMessages(), ElementsAre("连接:unknown"));
}

struct CompactCase {
  std::string name;
  std::string arguments;
  std::string line;
};

class Compact : public testing::TestWithParam<CompactCase> {};

TEST_P(Compact, PutsKeysInOrderAndValuesAsTheyAre) {
  EXPECT_EQ(compact(Json::parse(GetParam().arguments)), GetParam().line);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, Compact,
    testing::Values(
        CompactCase{"Nothing", "{}", ""}, CompactCase{"Text", R"({"a":"b c"})", "a=b c"},
        CompactCase{"TextKeepsQuotes", R"({"a":"\"b\""})", "a=\"b\""},
        CompactCase{"EmptyText", R"({"a":"","b":"c"})", "a= b=c"},
        CompactCase{"Chinese", R"({"source":"小美的手表"})", "source=小美的手表"},
        CompactCase{"Whole", R"({"limit":50})", "limit=50"},
        CompactCase{"Negative", R"({"limit":-1})", "limit=-1"},
        CompactCase{"Fraction", R"({"limit":1.5})", "limit=1.5"},
        CompactCase{"Largest", R"({"a":18446744073709551615})", "a=18446744073709551615"},
        CompactCase{"Smallest", R"({"a":-9223372036854775808})", "a=-9223372036854775808"},
        CompactCase{"True", R"({"a":true})", "a=true"},
        CompactCase{"False", R"({"a":false})", "a=false"},
        CompactCase{"Null", R"({"a":null})", "a=null"},
        CompactCase{"Array", R"({"a":[1,"b",[null]]})", R"(a=[1,"b",[null]])"},
        CompactCase{"Object", R"({"a":{"c":1,"b":{}}})", R"(a={"b":{},"c":1})"},
        CompactCase{"Order", R"({"to":"2","from":"1","To":"3"})", "To=3 from=1 to=2"},
        CompactCase{"EmptyKey", R"({"":1,"a":2})", "=1 a=2"},
        CompactCase{"PersonAlone", R"({"person":"Ann"})", ""},
        CompactCase{"PersonAmongOthers",
                    R"({"metric":"steps","person":"Ann","to":"2"})",
                    "metric=steps to=2"},
        CompactCase{"PersonOfAnotherType", R"({"a":1,"person":{"b":2}})", "a=1"},
        CompactCase{
            "PersonInOtherLetters", R"({"Person":"Ann","persons":1})", "Person=Ann persons=1"},
        CompactCase{"PersonInsideAnObject", R"({"a":{"person":"Ann"}})", R"(a={"person":"Ann"})"}),
    [](const auto& test) { return test.param.name; });

/// One name would otherwise stand in every later record, and fill the disk.
TEST(AccessLog, HoldsNoMoreOfAnyRecordThanSixteenKibibytes) {
  const Household household;
  const Conversation conversation(household);
  const std::string longText(1024 * 1024, 'x');

  conversation.replies({introduction(longText), call("list_persons", {{"a", longText}})});
  conversation.replies({call("list_persons", {{"a", longText}})});

  std::istringstream records(conversation.accessLog());
  int count = 0;
  for (std::string record; std::getline(records, record); ++count) {
    EXPECT_EQ(record.size() + 1, std::size_t{16 * 1024});
    EXPECT_TRUE(record.ends_with("x…"));
  }
  EXPECT_EQ(count, 3);
}

}  // namespace
