#include "mcp/tools/Prompts.h"
#include "support/ToolCaller.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <optional>
#include <string>

namespace {

class UnknownPrompt : public testing::TestWithParam<std::string> {};

TEST_P(UnknownPrompt, IsRefusedInChineseInBothLanguages) {
  const Household household;

  for (const SummaryLang lang : {SummaryLang::zh, SummaryLang::en}) {
    const auto prompt = [lang](const Tools::Call&) { return Tools::getPrompt(GetParam(), lang); };
    EXPECT_EQ(ToolCaller(household, lang).refusal(nlohmann::json::object(), prompt),
              (Refusal{-32602, "没有这个预设:" + GetParam()}));
  }
}

INSTANTIATE_TEST_SUITE_P(Names, UnknownPrompt,
                         testing::Values("how_are_you", "How_am_i", "HOW_AM_I", " how_am_i", ""));

using OrderedJson = nlohmann::ordered_json;

TEST(Prompts, AreThreeInTheOrderOfTheList) {
  EXPECT_EQ(Tools::prompts(SummaryLang::en).dump(),
            R"([{"name":"how_am_i","description":"How have I been lately"},)"
            R"({"name":"sleep_and_exercise",)"
            R"("description":"Look at the relationship between my exercise and sleep"},)"
            R"({"name":"doctor_questions",)"
            R"("description":"Help me prepare questions for my next doctor visit"}])");
  EXPECT_EQ(Tools::prompts(SummaryLang::zh).dump(),
            R"([{"name":"how_am_i","description":"我最近怎么样"},)"
            R"({"name":"sleep_and_exercise","description":"帮我看看运动和睡眠的关系"},)"
            R"({"name":"doctor_questions","description":"帮我准备下次看医生要问的问题"}])");
}

struct PromptCase {
  std::string name;
  std::string en;
  std::string zh;
};

class KnownPrompt : public testing::TestWithParam<PromptCase> {};

TEST_P(KnownPrompt, IsOneMessageOfTheUser) {
  const auto message = [](const std::string& text) {
    return R"({"messages":[{"role":"user","content":{"type":"text","text":")" + text + R"("}}]})";
  };

  EXPECT_EQ(Tools::getPrompt(GetParam().name, SummaryLang::en).dump(), message(GetParam().en));
  EXPECT_EQ(Tools::getPrompt(GetParam().name, SummaryLang::zh).dump(), message(GetParam().zh));
}

INSTANTIATE_TEST_SUITE_P(
    Names, KnownPrompt,
    testing::Values(
        PromptCase{"how_am_i",
                   "Start with get_overview to read my coverage notice and summary, then tell me "
                   "what changed recently. Stick to what the data shows; don't guess at gaps.",
                   "先用 get_overview 读我的数据覆盖说明与摘要,"
                   "然后告诉我最近这段时间有什么值得注意的变化。"
                   "只说数据里看得到的,缺失的项不要猜。"},
        PromptCase{"sleep_and_exercise",
                   "Use get_trend for sleep and exercise_minutes over the last 90 days and see "
                   "whether they move together. Correlation isn't causation — say what's "
                   "uncertain.",
                   "用 get_trend 分别取 sleep 与 exercise_minutes 最近 90 天的序列,"
                   "看看它们有没有同向变化。注意:相关不等于因果,把不确定的地方说出来。"},
        PromptCase{"doctor_questions",
                   "Read get_overview, then list five questions worth asking my doctor. For each, "
                   "name the observation it came from and state the data's limits.",
                   "读 get_overview,然后列出 5 个值得在下次门诊问医生的问题。"
                   "每个问题都要指出它是基于哪个数据观察提出来的,并明确写出数据的局限。"}),
    [](const auto& test) { return test.param.name; });

TEST(Prompts, AllHaveAMessage) {
  for (const SummaryLang lang : {SummaryLang::zh, SummaryLang::en}) {
    for (const OrderedJson& record : Tools::prompts(lang)) {
      const std::string name = record.at("name");
      EXPECT_FALSE(Tools::getPrompt(name, lang)["messages"][0]["content"]["text"].empty()) << name;
    }
  }
}

}  // namespace
