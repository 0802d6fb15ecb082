// Texts with the character U+0000 inside, which ends a text only where C reads it.

#include "support/Conversation.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <string>

namespace {

using namespace std::string_literals;
using Json = nlohmann::json;

const std::string odd = "a\0b"s;

Member memberOf(const std::string& name, const std::string& dbPath) {
  Member member;
  member.id = "1";
  member.name = name;
  member.dbPath = dbPath;
  return member;
}

Json errorOf(int code, const std::string& message) {
  return {{"code", code}, {"message", message}};
}

TEST(ZeroCharacter, LeavesTheRefusalOfANameWhole) {
  Household household;
  household.add("1", "Ann");
  const Conversation conversation(household);

  EXPECT_EQ(conversation.reply(odd, Json::object()).at("error"),
            errorOf(-32601, "没有这个方法:" + odd));
  EXPECT_EQ(conversation.called(odd, Json::object()).at("error"),
            errorOf(-32601, "没有这个工具:" + odd));
  EXPECT_EQ(conversation.reply("resources/read", {{"uri", odd}}).at("error"),
            errorOf(-32602, "不认识的 uri:" + odd));
  EXPECT_EQ(conversation.reply("prompts/get", {{"name", odd}}).at("error"),
            errorOf(-32602, "没有这个预设:" + odd));
}

TEST(ZeroCharacter, LeavesTheRefusalOfAnArgumentWhole) {
  Household household;
  household.add("1", "Ann");
  const Conversation conversation(household);

  EXPECT_EQ(conversation.called("get_overview", {{"person", odd}}).at("error"),
            errorOf(-32602, "No member named \"" + odd + "\". Available: Ann"));
  const Json refusal = conversation.called("get_trend", {{"metric", odd}}).at("error");
  EXPECT_EQ(refusal.at("code"), -32602);
  const std::string beginning = "Unknown metric \"" + odd + "\". One of: steps";
  EXPECT_EQ(refusal.at("message").get<std::string>().substr(0, beginning.size()), beginning);
}

TEST(ZeroCharacter, LeavesTheMessageAboutADatabaseWhole) {
  Household household;
  const std::string path = (household.dataRoot() / "missing.sqlite").string();
  household.add(memberOf(odd, path));

  EXPECT_EQ(Conversation(household).called("get_overview", Json::object()).at("error"),
            errorOf(-32603, "打不开 " + odd + " 的数据:库文件不存在:" + path));
}

TEST(ZeroCharacter, LeavesThePathInTheMessageWhole) {
  Household household;
  const std::string path = (household.dataRoot() / ("missing" + odd)).string();
  household.add(memberOf("Ann", path));

  EXPECT_EQ(Conversation(household).called("get_overview", Json::object()).at("error"),
            errorOf(-32603, "打不开 Ann 的数据:库文件不存在:" + path));
}

}  // namespace
