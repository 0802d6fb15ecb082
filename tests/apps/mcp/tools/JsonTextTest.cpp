#include "mcp/tools/JsonText.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <limits>
#include <string>

namespace {

using Json = nlohmann::json;
using Tools::documentText;

TEST(DocumentText, IsCompactWithKeysInOrderAtEveryLevel) {
  const Json document = Json::parse(R"({"b": [{"z": 1, "a": 2}], "a": {"y": null, "x": true}})");

  EXPECT_EQ(documentText(document), R"({"a":{"x":true,"y":null},"b":[{"a":2,"z":1}]})");
}

TEST(DocumentText, EscapesSlashesInValuesAndKeys) {
  const Json document{{"count/min", "a//b/"}, {"list", {"/"}}};

  const std::string text = documentText(document);

  EXPECT_EQ(text, R"({"count\/min":"a\/\/b\/","list":["\/"]})");
  EXPECT_EQ(Json::parse(text), document);
}

TEST(DocumentText, KeepsASlashApartFromABackslashBeforeIt) {
  const Json document{{"path", R"(\/)"}};

  const std::string text = documentText(document);

  EXPECT_EQ(text, R"({"path":"\\\/"})");
  EXPECT_EQ(Json::parse(text), document);
}

TEST(DocumentText, KeepsTextsAsTheyAre) {
  const Json document{{"text", "Ann\u2019s Apple\u00A0Watch \"3\" 步数\n\u0001"}};

  EXPECT_EQ(documentText(document),
            "{\"text\":\"Ann\u2019s Apple\u00A0Watch \\\"3\\\" 步数\\n\\u0001\"}");
}

TEST(DocumentText, WritesNumbersInFull) {
  const Json document{0.1, 61.1235, 1e-7, 1e22, -0.0, 3, 9007199254740993, 1234567.890625};

  EXPECT_EQ(documentText(document),
            "[0.1,61.1235,1e-07,1e+22,-0.0,3,9007199254740993,1234567.890625]");
}

TEST(DocumentText, WritesNullForANumberThatJsonCannotCarry) {
  constexpr double infinity = std::numeric_limits<double>::infinity();
  const Json document{infinity, -infinity, std::numeric_limits<double>::quiet_NaN(), 1};

  EXPECT_EQ(documentText(document), "[null,null,null,1]");
}

TEST(DocumentText, KeepsEmptyValues) {
  EXPECT_EQ(documentText({{"a", Json::array()}, {"b", Json::object()}, {"c", ""}}),
            R"({"a":[],"b":{},"c":""})");
}

TEST(Boundary, IsTheSentenceOfBothLanguages) {
  EXPECT_EQ(Tools::boundary.in(SummaryLang::en),
            "Returns raw measurements, not a diagnosis; a gap means not collected.");
  EXPECT_EQ(Tools::boundary.in(SummaryLang::zh),
            "本工具提供原始测量数据,不构成诊断;缺失仅代表未采集。");
}

}  // namespace
