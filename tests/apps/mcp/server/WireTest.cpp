#include "mcp/server/Wire.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <optional>
#include <string>

namespace {

using namespace std::string_literals;
using OrderedJson = nlohmann::ordered_json;

struct DecodedCase {
  std::string name;
  std::string line;
};

class Undecodable : public testing::TestWithParam<DecodedCase> {};

TEST_P(Undecodable, IsNoMessage) { EXPECT_EQ(Wire::decoded(GetParam().line), std::nullopt); }

INSTANTIATE_TEST_SUITE_P(
    Values, Undecodable,
    testing::Values(DecodedCase{"Array", "[]"},
                    DecodedCase{"Batch", R"([{"jsonrpc":"2.0","id":1,"method":"ping"}])"},
                    DecodedCase{"Number", "1"}, DecodedCase{"Text", R"("{}")"},
                    DecodedCase{"True", "true"}, DecodedCase{"Null", "null"}),
    [](const auto& test) { return test.param.name; });

INSTANTIATE_TEST_SUITE_P(
    Syntax, Undecodable,
    testing::Values(
        DecodedCase{"Nothing", ""}, DecodedCase{"Blanks", "  "}, DecodedCase{"Word", "hello"},
        DecodedCase{"OpenObject", R"({"id":1)"}, DecodedCase{"OpenText", R"({"id":"1})"},
        DecodedCase{"TwoObjects", "{}{}"}, DecodedCase{"TextBehind", "{} x"},
        DecodedCase{"CommaAtTheEnd", R"({"id":1,})"}, DecodedCase{"NoQuotes", "{id:1}"},
        DecodedCase{"SingleQuotes", "{'id':1}"}, DecodedCase{"Comment", "{/* id */}"},
        DecodedCase{"NotANumber", R"({"id":NaN})"}, DecodedCase{"LeadingZero", R"({"id":01})"},
        DecodedCase{"LineFeedInText", "{\"id\":\"a\nb\"}"},
        DecodedCase{"ZeroByteInText", "{\"id\":\"a\0\"}"s}, DecodedCase{"ZeroByteBehind", "{}\0"s},
        DecodedCase{"ClosedTooOften", "{}}"}, DecodedCase{"ClosedWrongly", R"({"a":[1}])"}),
    [](const auto& test) { return test.param.name; });

INSTANTIATE_TEST_SUITE_P(
    Encoding, Undecodable,
    testing::Values(DecodedCase{"LoneByte", "{\"id\":\"\xFF\"}"},
                    DecodedCase{"CutCharacter", "{\"id\":\"\xE6\xAD\"}"},
                    DecodedCase{"Overlong", "{\"id\":\"\xC0\xAF\"}"},
                    DecodedCase{"EncodedSurrogate", "{\"id\":\"\xED\xA0\x80\"}"},
                    DecodedCase{"InAKey", "{\"\xFF\":1}"}, DecodedCase{"BetweenTokens", "{\xFF}"},
                    DecodedCase{"LoneHighSurrogate", R"({"id":"\ud83d"})"},
                    DecodedCase{"LoneLowSurrogate", R"({"id":"\ude00"})"},
                    DecodedCase{"SurrogatesSwapped", R"({"id":"\ude00\ud83d"})"}),
    [](const auto& test) { return test.param.name; });

TEST(Decoded, TakesWhiteSpaceAroundTheObject) {
  EXPECT_EQ(Wire::decoded(" \t{ \"id\" : 1 }\r "), (nlohmann::json{{"id", 1}}));
}

TEST(Decoded, LetsTheLastOfTwoKeysCount) {
  EXPECT_EQ(Wire::decoded(R"({"id":1,"params":{"a":[1]},"params":{"b":2},"id":"x"})"),
            nlohmann::json::parse(R"({"id":"x","params":{"b":2}})"));
}

TEST(Decoded, JoinsSurrogatePairs) {
  EXPECT_EQ(Wire::decoded(R"({"id":"\ud83d\ude00"})"), (nlohmann::json{{"id", "\U0001F600"}}));
}

/// An object with `depth - 1` arrays in each other.
std::string nested(std::size_t depth, const std::string& innermost = "") {
  return R"({"a":)" + std::string(depth - 1, '[') + innermost + std::string(depth - 1, ']') + "}";
}

TEST(Decoded, TakesNestingUpTo512) {
  EXPECT_TRUE(Wire::decoded(nested(512)));
  EXPECT_FALSE(Wire::decoded(nested(513)));
  EXPECT_FALSE(Wire::decoded(nested(5000000)));
}

TEST(Decoded, CountsObjectsAsArrays) {
  std::string objects;
  for (int depth = 1; depth < 513; ++depth) objects += R"({"a":)";

  EXPECT_TRUE(Wire::decoded(objects + "1" + std::string(512, '}')));
  EXPECT_FALSE(Wire::decoded(objects + "{}" + std::string(512, '}')));
}

TEST(Decoded, CountsNoBracketsInTexts) {
  const std::string brackets(600, '[');

  EXPECT_TRUE(Wire::decoded(R"({"a":")" + brackets + R"("})"));
  EXPECT_TRUE(Wire::decoded(R"({"a":"\"\\\")" + brackets + R"("})"));
  EXPECT_TRUE(Wire::decoded(R"({"a\\":")" + brackets + R"("})"));
  EXPECT_TRUE(Wire::decoded(nested(512, R"("]\"[[")")));
  EXPECT_FALSE(Wire::decoded(R"({"\\":)" + brackets + std::string(600, ']') + "}"));
}

TEST(Decoded, CountsDepthNotBrackets) {
  std::string flat = R"({"a":[)";
  for (int count = 0; count < 2000; ++count) flat += "[],";

  EXPECT_TRUE(Wire::decoded(flat + "[]]}"));
}

TEST(Encoded, IsOneCompactLineInTheOrderOfTheKeys) {
  const OrderedJson message{
      {"jsonrpc", "2.0"}, {"id", 1}, {"result", {{"b", 1.5}, {"a", {1, nullptr}}}}};

  EXPECT_EQ(Wire::encoded(message),
            "{\"jsonrpc\":\"2.0\",\"id\":1,\"result\":{\"b\":1.5,\"a\":[1,null]}}\n");
}

TEST(Encoded, WritesLineFeedsAndControlsAsEscapes) {
  EXPECT_EQ(Wire::encoded({{"a", "1\n2\r3\t4\x01\"\\"}}),
            "{\"a\":\"1\\n2\\r3\\t4\\u0001\\\"\\\\\"}\n");
}

TEST(Encoded, WritesOtherCharactersAsTheyAre) {
  EXPECT_EQ(Wire::encoded({{"步", "数 · \U0001F600/"}}), "{\"步\":\"数 · \U0001F600/\"}\n");
}

TEST(Encoded, EscapesTheTwoLineSeparators) {
  EXPECT_EQ(Wire::encoded({{"a\u2028", "\u2028\u2029\u2028b\u2029"}}),
            "{\"a\\u2028\":\"\\u2028\\u2029\\u2028b\\u2029\"}\n");
}

TEST(Encoded, LeavesTheNeighboursOfTheLineSeparators) {
  EXPECT_EQ(Wire::encoded({{"a", "\u2027\u202A\u2018\u2068\u20A8"}}),
            "{\"a\":\"\u2027\u202A\u2018\u2068\u20A8\"}\n");
}

TEST(Encoded, EscapesManyLineSeparatorsOfOneText) {
  constexpr std::size_t count = 200000;
  std::string text;
  std::string escaped;
  for (std::size_t index = 0; index < count; ++index) {
    text += "\u2028";
    escaped += "\\u2028";
  }

  EXPECT_TRUE(Wire::encoded({{"a", text}}) == "{\"a\":\"" + escaped + "\"}\n");
}

TEST(Encoded, ReplacesWhatIsNoUTF8) {
  EXPECT_EQ(Wire::encoded({{"a", "x\xFFy\xE6\xAD"}}), "{\"a\":\"x\uFFFDy\uFFFD\"}\n");
  EXPECT_EQ(Wire::encoded({{"a", "\xE2\x80"}}), "{\"a\":\"\uFFFD\"}\n");
}

/// An object that holds `count` values, itself and the array in it included.
std::string objectOf(std::size_t count) {
  std::string line = R"({"a":[0)";
  for (std::size_t value = 3; value < count; ++value) line += ",0";
  return line + "]}";
}

TEST(Decoded, TakesAHundredThousandValuesAndNoMore) {
  EXPECT_TRUE(Wire::decoded(objectOf(100000)));
  EXPECT_FALSE(Wire::decoded(objectOf(100001)));
}

TEST(Decoded, CountsNoValuesInsideTexts) {
  EXPECT_TRUE(Wire::decoded("{\"a\":\"" + std::string(200000, ',') + "\"}"));
  EXPECT_TRUE(Wire::decoded(R"({"a":"\")" + std::string(200000, '[') + "\"}"));
}

}  // namespace
