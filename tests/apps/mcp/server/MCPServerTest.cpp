// MCPServer as an answerer: methods, refusals, and the start.

#include "mcp/server/Instructions.h"
#include "mcp/server/MCPServer.h"
#include "mcp/tools/Tools.h"
#include "platform/Files.h"
#include "platform/ReceiverError.h"
#include "support/Conversation.h"
#include "support/StandardError.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace {

using Json = nlohmann::json;
using testing::ElementsAre;
using testing::HasSubstr;

struct UnknownCase {
  std::string name;
  std::string request;  ///< without its id
  int code;
  std::string message;
};

class RefusedRequest : public testing::TestWithParam<UnknownCase> {};

TEST_P(RefusedRequest, SaysSoInChineseInBothLanguages) {
  Household household;
  household.add("1", "Ann");
  const Json request = Json::parse(R"({"id":1,)" + GetParam().request + "}");
  const Json expected{{"jsonrpc", "2.0"},
                      {"id", 1},
                      {"error", {{"code", GetParam().code}, {"message", GetParam().message}}}};

  for (const SummaryLang lang : {SummaryLang::zh, SummaryLang::en}) {
    EXPECT_THAT(Conversation(household, lang).replies({request}), ElementsAre(expected));
  }
}

INSTANTIATE_TEST_SUITE_P(
    Methods, RefusedRequest,
    testing::Values(UnknownCase{"Unknown", R"("method":"foo/bar")", -32601, "没有这个方法:foo/bar"},
                    UnknownCase{"LetterCase", R"("method":"Ping")", -32601, "没有这个方法:Ping"},
                    UnknownCase{"Blank", R"("method":"ping ")", -32601, "没有这个方法:ping "},
                    UnknownCase{"Empty", R"("method":"")", -32601, "没有这个方法:"},
                    UnknownCase{"Missing", R"("params":{})", -32601, "没有这个方法:"},
                    UnknownCase{"Number", R"("method":7)", -32601, "没有这个方法:"},
                    UnknownCase{"Null", R"("method":null)", -32601, "没有这个方法:"},
                    UnknownCase{"Object", R"("method":{"a":1})", -32601, "没有这个方法:"},
                    UnknownCase{"Array", R"("method":["ping"])", -32601, "没有这个方法:"},
                    UnknownCase{"Reply", R"("result":{})", -32601, "没有这个方法:"},
                    UnknownCase{"NotificationWithId",
                                R"("method":"notifications/initialized")",
                                -32601,
                                "没有这个方法:notifications/initialized"}),
    [](const auto& test) { return test.param.name; });

/// A request with `params` that name nothing.
UnknownCase nameless(const std::string& name, const std::string& params) {
  return {name, R"("method":"tools/call","params":)" + params, -32601, "没有这个工具:"};
}

INSTANTIATE_TEST_SUITE_P(
    Tools, RefusedRequest,
    testing::Values(UnknownCase{"Unknown",
                                R"("method":"tools/call","params":{"name":"get_weather"})",
                                -32601,
                                "没有这个工具:get_weather"},
                    UnknownCase{"NoParams", R"("method":"tools/call")", -32601, "没有这个工具:"},
                    nameless("ParamsNull", "null"), nameless("ParamsNumber", "1"),
                    nameless("ParamsFraction", "1.5"), nameless("ParamsText", R"("get_trend")"),
                    nameless("ParamsTrue", "true"),
                    nameless("ParamsArray", R"([{"name":"get_trend"}])"),
                    nameless("ParamsEmpty", "{}"), nameless("NameNull", R"({"name":null})"),
                    nameless("NameNumber", R"({"name":1})"),
                    nameless("NameTrue", R"({"name":true})"),
                    nameless("NameArray", R"({"name":["get_trend"]})"),
                    nameless("NameObject", R"({"name":{"name":"get_trend"}})")),
    [](const auto& test) { return test.param.name; });

INSTANTIATE_TEST_SUITE_P(
    ResourcesAndPrompts, RefusedRequest,
    testing::Values(UnknownCase{"Uri",
                                R"("method":"resources/read","params":{"uri":"larkspur://2/x"})",
                                -32602,
                                "不认识的 uri:larkspur://2/x"},
                    UnknownCase{"NoUri", R"("method":"resources/read")", -32602, "不认识的 uri:"},
                    UnknownCase{"UriNumber",
                                R"("method":"resources/read","params":{"uri":1})",
                                -32602,
                                "不认识的 uri:"},
                    UnknownCase{"UriParamsArray",
                                R"("method":"resources/read","params":["larkspur://1/overview"])",
                                -32602,
                                "不认识的 uri:"},
                    UnknownCase{"Prompt",
                                R"("method":"prompts/get","params":{"name":"How_am_i"})",
                                -32602,
                                "没有这个预设:How_am_i"},
                    UnknownCase{"NoPrompt", R"("method":"prompts/get")", -32602, "没有这个预设:"},
                    UnknownCase{"PromptNumber",
                                R"("method":"prompts/get","params":{"name":1})",
                                -32602,
                                "没有这个预设:"}),
    [](const auto& test) { return test.param.name; });

class OddArguments : public testing::TestWithParam<Json> {};

TEST_P(OddArguments, CountAsNone) {
  Household household;
  household.add("1", "Ann");

  const Json reply = Conversation(household).called("get_trend", GetParam());

  EXPECT_EQ(reply["error"]["code"], -32602);
  EXPECT_THAT(reply["error"]["message"].get<std::string>(),
              testing::StartsWith("metric is required. One of: steps(count), "));
}

INSTANTIATE_TEST_SUITE_P(Values, OddArguments,
                         testing::Values(Json(nullptr), Json(1), Json(1.5), Json(true),
                                         Json("steps"), Json::array({"metric", "steps"}),
                                         Json::object()));

class ParamsOfPing : public testing::TestWithParam<Json> {};

TEST_P(ParamsOfPing, DoNotMatter) {
  const Household household;

  EXPECT_EQ(Conversation(household).reply("ping", GetParam()),
            Json::parse(R"({"jsonrpc":"2.0","id":1,"result":{}})"));
}

INSTANTIATE_TEST_SUITE_P(Values, ParamsOfPing,
                         testing::Values(Json(nullptr), Json(1), Json(true), Json("x"),
                                         Json::array(), Json::object(), Json{{"a", 1}}));

TEST(Initialize, IntroducesTheServerInTheLanguageOfTheProcess) {
  const Household household;

  for (const SummaryLang lang : {SummaryLang::zh, SummaryLang::en}) {
    const Json expected{
        {"protocolVersion", "2024-11-05"},
        {"capabilities",
         {{"tools", Json::object()}, {"resources", Json::object()}, {"prompts", Json::object()}}},
        {"serverInfo", {{"name", "larkspur"}, {"version", "0.1"}}},
        {"instructions", instructions.in(lang)}};
    EXPECT_EQ(Conversation(household, lang).reply("initialize", Json::object())["result"],
              expected);
  }
}

TEST(Initialize, NamesItsOwnProtocolWhateverTheClientAsksFor) {
  const Household household;

  const Json reply = Conversation(household).reply(
      "initialize", {{"protocolVersion", "2030-01-01"}, {"capabilities", {{"x", 1}}}});

  EXPECT_EQ(reply["result"]["protocolVersion"], "2024-11-05");
}

TEST(ToolsList, IsTheCatalogueOfTheLanguage) {
  const Household household;

  for (const SummaryLang lang : {SummaryLang::zh, SummaryLang::en}) {
    EXPECT_EQ(Conversation(household, lang).reply("tools/list", Json::object())["result"],
              (Json{{"tools", Json(Tools::schemas(lang))}}));
  }
}

TEST(ResourcesList, IsEmptyWithoutMembers) {
  const Household household;

  EXPECT_EQ(Conversation(household).reply("resources/list", Json::object())["result"],
            Json::parse(R"({"resources":[]})"));
}

TEST(ToolsCall, WrapsTheTextOfTheTool) {
  Household household;
  household.add("1", "Ann").addRecord({.type = "BodyMass", .value_num = 60});

  for (const SummaryLang lang : {SummaryLang::zh, SummaryLang::en}) {
    const std::string text = ToolCaller(household, lang).of({{"metric", "weight"}}, Tools::trend);
    EXPECT_EQ(Conversation(household, lang).called("get_trend", {{"metric", "weight"}})["result"],
              (Json{{"content", Json::array({{{"type", "text"}, {"text", text}}})}}));
  }
}

TEST(ToolsCall, RefusesInTheLanguageOfTheProcess) {
  const Household household;
  const Json arguments{{"metric", "steps"}};

  EXPECT_EQ(Conversation(household, SummaryLang::en).called("get_trend", arguments)["error"],
            (Json{{"code", -32602},
                  {"message",
                   "No members on this Mac yet — the user has to pair an iPhone in Larkspur "
                   "first."}}));
  EXPECT_EQ(
      Conversation(household, SummaryLang::zh).called("get_trend", arguments)["error"],
      (Json{{"code", -32602},
            {"message", "这台电脑上还没有任何成员 —— 用户需要先在 Larkspur 里配对 iPhone。"}}));
}

TEST(ToolsCall, SaysThatADatabaseIsMissing) {
  Household household;
  household.addAt("1", "Ann", household.nowhere());
  const std::string folder = household.nowhere().parent_path().string();

  EXPECT_EQ(Conversation(household).called("get_trend", {{"metric", "steps"}})["error"],
            (Json{{"code", -32603},
                  {"message", "打不开 Ann 的数据:数据目录不可用(盘没挂载?):" + folder}}));
}

TEST(ToolsCall, TurnsAFailingQueryIntoAnInternalErrorAndGoesOn) {
  Household household;
  household.add("1", "Ann").run("DROP TABLE records");
  household.add("2", "Bob").replaceFile(std::string(4096, 'x'));
  const Json first{{"name", "get_trend"}, {"arguments", {{"metric", "steps"}, {"person", "1"}}}};
  const Json second{{"name", "get_trend"}, {"arguments", {{"metric", "steps"}, {"person", "2"}}}};

  const std::vector<Json> replies =
      Conversation(household).replies({{{"id", 1}, {"method", "tools/call"}, {"params", first}},
                                       {{"id", 2}, {"method", "tools/call"}, {"params", second}},
                                       {{"id", 3}, {"method", "ping"}}});

  ASSERT_EQ(replies.size(), 3U);
  EXPECT_EQ(replies[0]["error"],
            (Json{{"code", -32603}, {"message", "prepare 失败:no such table: records"}}));
  EXPECT_EQ(replies[1]["error"],
            (Json{{"code", -32603}, {"message", "prepare 失败:file is not a database"}}));
  EXPECT_EQ(replies[2]["result"], Json::object());
}

TEST(ToolsCall, AnswersInValidTextWhateverTheDatabaseHolds) {
  Household household;
  household.add("1", "Ann")
      .run(
          "INSERT INTO records (type, start_date, start_day, value_num) VALUES"
          " ('BodyMass', 'x', CAST(X'323032342D30332D3031FFE2A8' AS TEXT), 60)");

  // Reading the reply back fails on text that is not valid.
  const Json reply = Conversation(household).called("get_trend", {{"metric", "weight"}});

  EXPECT_THAT(reply["result"]["content"][0]["text"].get<std::string>(),
              HasSubstr("\n2024-03-01\uFFFD\uFFFD  60\n"));
}

TEST(ToolsCall, EscapesLineSeparatorsOfAName) {
  Household household;
  household.add("1", "Ann\u2028Lee\u2029");
  const Json request{{"id", 1},
                     {"method", "tools/call"},
                     {"params", {{"name", "get_trend"}, {"arguments", {{"metric", "steps"}}}}}};

  EXPECT_THAT(Conversation(household).writes(request.dump()),
              ElementsAre(HasSubstr(R"("text":"Member: Ann\u2028Lee\u2029 (person=1)\nMetric: )")));
}

TEST(Start, OpensNoDatabase) {
  Household household;
  const std::string nowhere = household.nowhere().string();
  for (const std::string& path :
       {nowhere, std::string(), std::string("relative.sqlite"), household.dataRoot().string()}) {
    household.addAt(path, "Ann", path);
  }

  const std::vector<Json> replies = Conversation(household).replies(
      {{{"id", 1}, {"method", "initialize"}}, {{"id", 2}, {"method", "tools/list"}}});

  ASSERT_EQ(replies.size(), 2U);
  EXPECT_TRUE(replies[0].contains("result"));
  EXPECT_TRUE(replies[1].contains("result"));
}

TEST(Start, ReadsTheRosterOnce) {
  Household household;
  household.add("1", "Ann");
  const std::string request =
      R"({"id":1,"method":"tools/call","params":{"name":"get_trend","arguments":{"person":"Bob"}}})";
  std::vector<std::string> written;
  bool added = false;
  MCPServer server(household.dataRoot(),
                   {.lang = SummaryLang::en,
                    .clock = [] { return testNow; },
                    .input = byteSource([&](std::span<char> buffer) -> std::size_t {
                      if (added) return 0;
                      household.add("2", "Bob");
                      added = true;
                      return request.copy(buffer.data(), buffer.size());
                    }),
                    .output = [&](std::string_view line) { written.emplace_back(line); }});

  server.run();

  EXPECT_THAT(written, ElementsAre(HasSubstr(R"(No member named \"Bob\". Available: Ann)")));
}

const std::string ping = "{\"jsonrpc\":\"2.0\",\"id\":1,\"method\":\"ping\"}\n";
const std::string pong = "{\"jsonrpc\":\"2.0\",\"id\":1,\"result\":{}}\n";

TEST(Start, MovesABrokenRosterAsideAndFails) {
  const Household household;
  std::ofstream(household.rosterFile()) << "{\"version\":1";
  const std::string backup = household.rosterFile().string() + ".broken-1710676800";
  StandardErrorCapture diagnostics;

  EXPECT_THROW(Conversation(household).writes(ping), ReceiverError);

  EXPECT_THAT(
      diagnostics.finished(),
      testing::StartsWith("[2024-03-17 12:00:00] ! 名册解析失败(已备份到 " + backup + "):"));
  EXPECT_FALSE(std::filesystem::exists(household.rosterFile()));
  EXPECT_EQ(fileContents(backup), "{\"version\":1");
  EXPECT_THAT(Conversation(household).writes(ping), ElementsAre(pong));
}

}  // namespace
