// MCPServer as a reader and writer of lines: ids, notifications, and what is no request at all.

#include "mcp/server/MCPServer.h"
#include "support/Conversation.h"
#include "support/StandardError.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <stdexcept>
#include <string>
#include <vector>

namespace {

using Json = nlohmann::json;
using testing::ElementsAre;
using testing::IsEmpty;

const std::string undecodable = "[2024-03-17 12:00:00] ! 收到解不开的一行,忽略\n";

/// The line that answers "ping" under the id that is written `id`.
std::string pongNamed(const std::string& id) {
  return "{\"jsonrpc\":\"2.0\",\"id\":" + id + ",\"result\":{}}\n";
}

std::string pingNamed(const std::string& id) {
  return "{\"jsonrpc\":\"2.0\",\"id\":" + id + ",\"method\":\"ping\"}\n";
}

struct IdCase {
  std::string name;
  std::string sent;
  std::string answered;
};

class RequestId : public testing::TestWithParam<IdCase> {};

TEST_P(RequestId, ComesBackAsItWas) {
  const Household household;

  EXPECT_THAT(Conversation(household).writes(pingNamed(GetParam().sent)),
              ElementsAre(pongNamed(GetParam().answered)));
}

IdCase same(const std::string& name, const std::string& id) { return {name, id, id}; }

INSTANTIATE_TEST_SUITE_P(
    Cases, RequestId,
    testing::Values(same("Text", R"("abc")"), same("EmptyText", R"("")"),
                    same("Chinese", R"("步数")"), same("Escapes", R"("a\n\"\\")"),
                    IdCase{"LineSeparator", "\"a\u2028b\"", R"("a\u2028b")"},
                    IdCase{"EscapedLetter", R"("\u6b65")", R"("步")"}, same("Zero", "0"),
                    same("One", "1"), same("Negative", "-1"),
                    same("Smallest", "-9223372036854775808"),
                    same("LargestSigned", "9223372036854775807"),
                    same("LargestUnsigned", "18446744073709551615"), same("Fraction", "1.5"),
                    same("SmallFraction", "0.001"), same("WholeFraction", "2.0"),
                    same("Null", "null"), same("True", "true"), same("False", "false"),
                    same("Array", R"([1,"a",null])"), same("Object", R"({"a":{"b":[]}})")),
    [](const auto& test) { return test.param.name; });

TEST(Request, OfAnErrorBringsItsIdBackToo) {
  const Household household;

  EXPECT_THAT(Conversation(household).writes("{\"id\":null,\"method\":\"foo/bar\"}\n"),
              ElementsAre("{\"jsonrpc\":\"2.0\",\"id\":null,\"error\":{\"code\":-32601,\"message\":"
                          "\"没有这个方法:foo/bar\"}}\n"));
}

TEST(Request, NeedNotNameTheProtocol) {
  const Household household;

  EXPECT_THAT(Conversation(household).writes("{\"id\":1,\"method\":\"ping\"}\n"
                                             "{\"jsonrpc\":\"1.0\",\"id\":2,\"method\":\"ping\"}\n"
                                             "{\"jsonrpc\":2,\"id\":3,\"method\":\"ping\"}\n"),
              ElementsAre(pongNamed("1"), pongNamed("2"), pongNamed("3")));
}

TEST(Request, OfTwoEqualKeysTakesTheLast) {
  const Household household;

  EXPECT_THAT(Conversation(household).writes(R"({"id":1,"method":"foo","id":2,"method":"ping"})"
                                             "\n"),
              ElementsAre(pongNamed("2")));
}

class Notification : public testing::TestWithParam<std::string> {};

TEST_P(Notification, IsNeverAnswered) {
  Household household;
  household.add("1", "Ann");
  StandardErrorCapture diagnostics;

  const std::vector<std::string> written =
      Conversation(household).writes(GetParam() + "\n" + pingNamed("1"));

  EXPECT_THAT(written, ElementsAre(pongNamed("1")));
  EXPECT_EQ(diagnostics.finished(), "");
}

INSTANTIATE_TEST_SUITE_P(
    Lines, Notification,
    testing::Values(R"({"jsonrpc":"2.0","method":"notifications/initialized"})",
                    R"({"jsonrpc":"2.0","method":"ping"})",
                    R"({"jsonrpc":"2.0","method":"foo/bar"})",
                    R"({"method":"tools/call","params":{"name":"get_trend","arguments":{}}})",
                    R"({"method":7})", R"({"ID":1,"method":"ping"})", R"({})"));

struct LineCase {
  std::string name;
  std::string line;
};

class UnreadableLine : public testing::TestWithParam<LineCase> {};

TEST_P(UnreadableLine, IsLoggedAndNotAnsweredAndTheNextIsServed) {
  const Household household;
  StandardErrorCapture diagnostics;

  const std::vector<std::string> written =
      Conversation(household).writes(GetParam().line + "\n" + pingNamed("1"));

  EXPECT_THAT(written, ElementsAre(pongNamed("1")));
  EXPECT_EQ(diagnostics.finished(), undecodable);
}

/// A request whose id is `depth - 1` arrays in each other.
std::string deepRequest(std::size_t depth) {
  return R"({"method":"ping","id":)" + std::string(depth - 1, '[') + std::string(depth - 1, ']') +
         "}";
}

INSTANTIATE_TEST_SUITE_P(
    Cases, UnreadableLine,
    testing::Values(LineCase{"Batch", R"([{"jsonrpc":"2.0","id":1,"method":"ping"}])"},
                    LineCase{"Number", "1"}, LineCase{"Text", R"("ping")"},
                    LineCase{"Null", "null"}, LineCase{"OpenObject", R"({"id":1,"method":"ping")"},
                    LineCase{"Word", "ping"},
                    LineCase{"TwoObjects", R"({"id":1,"method":"ping"}{"id":2})"},
                    LineCase{"OtherWhiteSpace", "\v"},
                    LineCase{"InvalidUTF8", "{\"id\":\"\xFF\",\"method\":\"ping\"}"},
                    LineCase{"LoneSurrogate", R"({"id":"\ud800","method":"ping"})"},
                    LineCase{"ByteOrderMarkAlone", "\xEF\xBB\xBF"},
                    LineCase{"TooDeep", deepRequest(513)},
                    LineCase{"FarTooDeep", deepRequest(1000000)},
                    LineCase{"Overlong", std::string(LineReader::defaultLimit + 1, ' ')}),
    [](const auto& test) { return test.param.name; });

TEST(Line, MayBeNested512Levels) {
  const Household household;

  EXPECT_THAT(Conversation(household).writes(deepRequest(512) + "\n"),
              ElementsAre(pongNamed(std::string(511, '[') + std::string(511, ']'))));
}

TEST(Line, OfTheGreatestLengthIsServed) {
  const Household household;
  std::string line = pingNamed("1");
  line.insert(1, LineReader::defaultLimit + 1 - line.size(), ' ');

  EXPECT_THAT(Conversation(household).writes(line), ElementsAre(pongNamed("1")));
}

class BlankLine : public testing::TestWithParam<LineCase> {};

TEST_P(BlankLine, IsSkippedWithoutAWord) {
  const Household household;
  StandardErrorCapture diagnostics;

  const std::vector<std::string> written =
      Conversation(household).writes(GetParam().line + pingNamed("1"));

  EXPECT_THAT(written, ElementsAre(pongNamed("1")));
  EXPECT_EQ(diagnostics.finished(), "");
}

INSTANTIATE_TEST_SUITE_P(Cases, BlankLine,
                         testing::Values(LineCase{"Empty", "\n"}, LineCase{"Spaces", "   \n"},
                                         LineCase{"Tabs", "\t \t\n"},
                                         LineCase{"CarriageReturn", "\r\n"},
                                         LineCase{"SpacesAndCarriageReturn", "  \r\n"},
                                         LineCase{"Many", "\n\n \n\r\n"}),
                         [](const auto& test) { return test.param.name; });

TEST(Line, MayEndInCarriageReturnAndLineFeed) {
  const Household household;

  EXPECT_THAT(Conversation(household).writes("{\"id\":1,\"method\":\"ping\"}\r\n" + pingNamed("2")),
              ElementsAre(pongNamed("1"), pongNamed("2")));
}

TEST(Line, MayHaveBlanksAround) {
  const Household household;

  EXPECT_THAT(Conversation(household).writes(" \t{\"id\":1,\"method\":\"ping\"}\t \n"),
              ElementsAre(pongNamed("1")));
}

TEST(Line, NeedsNoEndWhenItIsTheLast) {
  const Household household;

  EXPECT_THAT(Conversation(household).writes("{\"id\":1,\"method\":\"ping\"}"),
              ElementsAre(pongNamed("1")));
}

TEST(Server, IsSilentWithoutInput) {
  const Household household;
  StandardErrorCapture diagnostics;

  EXPECT_THAT(Conversation(household).writes(""), IsEmpty());
  EXPECT_EQ(diagnostics.finished(), "");
}

TEST(Server, TellsATerminalWhenItStartsAndEnds) {
  Household household;
  household.add("1", "Ann");
  household.add("2", "小美");
  StandardErrorCapture terminal(StandardErrorCapture::Kind::terminal);

  Conversation(household).writes("{\"method\":\"notifications/initialized\"}\n[]\n");

  const std::string stamp = "[2024-03-17 12:00:00] ";
  EXPECT_EQ(terminal.finished(),
            stamp + "i 名册:2 个成员\n" + stamp +
                "i Larkspur MCP server 启动 · dataRoot=" + household.dataRoot().string() +
                " · 成员 2\n" + undecodable + stamp + "i stdin 关闭,退出\n");
}

TEST(Server, WritesEachReplyAsOneWholeLine) {
  Household household;
  household.add("1", "Ann").addRecord({.type = "BodyMass", .value_num = 60});
  std::string input;
  for (const char* method :
       {"initialize", "tools/list", "resources/list", "prompts/list", "x\\ny"}) {
    input += std::string(R"({"id":1,"method":")") + method + "\"}\n";
  }
  input +=
      R"({"id":1,"method":"tools/call","params":{"name":"get_trend","arguments":{"metric":"weight"}}})";

  const std::vector<std::string> written = Conversation(household).writes(input);

  ASSERT_EQ(written.size(), 6U);
  for (const std::string& line : written) {
    EXPECT_EQ(line.find('\n'), line.size() - 1) << line;
    EXPECT_EQ(Json::parse(line).at("jsonrpc"), "2.0");
  }
}

TEST(Server, LetsAFailingOutputPass) {
  const Household household;
  std::string input = pingNamed("1");
  MCPServer server(household.dataRoot(),
                   {.lang = SummaryLang::en,
                    .clock = [] { return testNow; },
                    .input = byteSource([&input](std::span<char> buffer) {
                      const std::size_t count = input.copy(buffer.data(), buffer.size());
                      input.erase(0, count);
                      return count;
                    }),
                    .output = [](std::string_view) { throw std::runtime_error("gone"); }});

  EXPECT_THROW(server.run(), std::runtime_error);
}

}  // namespace
