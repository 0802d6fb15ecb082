// Resources and prompts through the server, and how large a reply may become.

#include "mcp/tools/Prompts.h"
#include "mcp/tools/Tools.h"
#include "support/Conversation.h"
#include "support/Family.h"
#include "support/WorkoutSamples.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <string>
#include <vector>

namespace {

using Json = nlohmann::json;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(ResourcesList, HasOneResourceAMemberInRosterOrder) {
  const Family family;
  const std::vector<std::string> ids{"ann", "ben", "cleo", "dot"};

  for (const SummaryLang lang : {SummaryLang::zh, SummaryLang::en}) {
    const Json resources = Conversation(family.household(), lang)
                               .reply("resources/list", Json::object())
                               .at("result")
                               .at("resources");
    ASSERT_EQ(resources.size(), ids.size());
    for (std::size_t index = 0; index < ids.size(); ++index) {
      EXPECT_EQ(resources[index].at("uri"), "larkspur://" + ids[index] + "/overview");
    }
    EXPECT_EQ(resources[1].at("name"),
              lang == SummaryLang::zh ? "本 的健康概览" : "本's health overview");
    EXPECT_EQ(resources[1].at("mimeType"), "text/plain");
    EXPECT_EQ(resources[1].size(), 4U);
  }
}

TEST(ResourcesRead, WrapsTheOverview) {
  const Family family;

  for (const SummaryLang lang : {SummaryLang::zh, SummaryLang::en}) {
    const std::string overview =
        ToolCaller(family.household(), lang).of({{"person", "ben"}}, Tools::overview);
    EXPECT_EQ(Conversation(family.household(), lang)
                  .reply("resources/read", {{"uri", "larkspur://ben/overview"}})
                  .at("result"),
              (Json{{"contents",
                     Json::array({{{"uri", "larkspur://ben/overview"},
                                   {"mimeType", "text/plain"},
                                   {"text", overview}}})}}));
  }
}

TEST(ResourcesRead, RepeatsTheUriAsItWasAsked) {
  const Family family;
  const std::string uri = "larkspur://ben//overview/and/more";

  const Json reply = Conversation(family.household()).reply("resources/read", {{"uri", uri}});

  EXPECT_EQ(reply.at("result").at("contents").at(0).at("uri"), uri);
}

struct ReadingCase {
  std::string name;
  std::string uri;
  std::string reader;  ///< whose data the record says is read
};

class ResourceAccess : public testing::TestWithParam<ReadingCase> {};

TEST_P(ResourceAccess, IsRecordedWithItsMemberAndUri) {
  const Family family;
  const Conversation conversation(family.household());

  const Json reply = conversation.reply("resources/read", {{"uri", GetParam().uri}});

  EXPECT_TRUE(reply.contains("result"));
  EXPECT_THAT(conversation.accessMessages(),
              ElementsAre("unknown 读取 " + GetParam().reader + " · 资源 " + GetParam().uri));
}

INSTANTIATE_TEST_SUITE_P(
    Uris, ResourceAccess,
    testing::Values(ReadingCase{"Plain", "larkspur://ann/overview", "Ann"},
                    ReadingCase{"OtherMember", "larkspur://ben/overview", "本"},
                    ReadingCase{"MoreBehind", "larkspur://ann/overview/more", "Ann"},
                    ReadingCase{"SlashesBetween", "larkspur://ann//overview", "Ann"},
                    // The overview is found, but the uri does not begin as the member's does.
                    ReadingCase{"SlashesBefore", "larkspur:////ann/overview", "?"}),
    [](const auto& test) { return test.param.name; });

TEST(ResourceAccesses, NameTheMemberOfTheWholeId) {
  Household household;
  household.add("a", "Short");
  household.add("ab", "Long");
  const Conversation conversation(household);

  conversation.reply("resources/read", {{"uri", "larkspur://ab/overview"}});

  EXPECT_THAT(conversation.accessMessages(),
              ElementsAre("unknown 读取 Long · 资源 larkspur://ab/overview"));
}

TEST(ResourceAccesses, AreNotRecordedWhereTheDatabaseDoesNotOpen) {
  const Family family;
  const Conversation conversation(family.household());

  const Json reply = conversation.reply("resources/read", {{"uri", "larkspur://dot/overview"}});

  EXPECT_EQ(reply.at("error").at("code"), -32603);
  EXPECT_THAT(conversation.accessMessages(), IsEmpty());
}

TEST(ResourcesRead, FindsNoMemberByName) {
  const Family family;

  EXPECT_EQ(Conversation(family.household())
                .reply("resources/read", {{"uri", "larkspur://Ann/overview"}})
                .at("error"),
            (Json{{"code", -32602}, {"message", "不认识的 uri:larkspur://Ann/overview"}}));
}

TEST(PromptsList, IsThatOfTheLanguage) {
  const Household household;

  for (const SummaryLang lang : {SummaryLang::zh, SummaryLang::en}) {
    EXPECT_EQ(Conversation(household, lang).reply("prompts/list", Json::object()).at("result"),
              (Json{{"prompts", Json(Tools::prompts(lang))}}));
  }
}

TEST(PromptsGet, IsTheMessageOfTheLanguage) {
  const Household household;

  for (const SummaryLang lang : {SummaryLang::zh, SummaryLang::en}) {
    for (const char* name : {"how_am_i", "sleep_and_exercise", "doctor_questions"}) {
      EXPECT_EQ(Conversation(household, lang).reply("prompts/get", {{"name", name}}).at("result"),
                Json(Tools::getPrompt(name, lang)));
    }
  }
}

struct DeviceCase {
  std::string name;
  std::string device;
};

class LargestReply : public testing::TestWithParam<DeviceCase> {};

// Clients drop a connection on which a line grows beyond ten mebibytes.
TEST_P(LargestReply, StaysBelowEightMebibytes) {
  ASSERT_EQ(GetParam().device.size(), 300U);
  TestWorkout workout = hourOfRunning();
  workout.source_name = "Ann\u2019s Apple\u00A0Watch Series 9";
  workout.end_date = stampAfter(5000);
  std::vector<TestRecord> samples;
  for (int second = 0; second < 5000; ++second) {
    TestRecord sample = sampleAfter(second, 100.0 + 1.0 / 3 + second);
    sample.source_name = workout.source_name;
    sample.device = GetParam().device;
    sample.end_date = stampAfter(second + 1);
    sample.value = "100.333";
    samples.push_back(sample);
  }
  Household household;
  household.add("9A8B7C6D-0000-4000-8000-123456789ABC", "Ann")
      .addWorkout(workout)
      .addRecords(samples);
  const Json call{{"name", "get_workout_heart_rate"},
                  {"arguments", {{"workout_id", identifierOf(workout)}, {"limit", 5000}}}};
  const Json request{{"id", 1}, {"method", "tools/call"}, {"params", call}};

  const std::vector<std::string> written =
      Conversation(household, SummaryLang::zh).writes(request.dump() + "\n");

  ASSERT_EQ(written.size(), 1U);
  const Json document = Json::parse(
      Json::parse(written[0]).at("result").at("content").at(0).at("text").get<std::string>());
  EXPECT_EQ(document.at("samples").size(), 5000U);
  EXPECT_LT(written[0].size(), 8U * 1024 * 1024);
  RecordProperty("bytes", static_cast<int>(written[0].size()));
}

/// 300 bytes that begin as devices do.
std::string longDevice() {
  std::string device =
      "<<HKDevice: 0x600003a5c0a0>, name:Apple Watch, manufacturer:Apple Inc., model:Watch, "
      "hardware:Watch7,5, software:10.3.1, creation date:2024-01-01 08:00:00 +0000";
  device.resize(299, '-');
  return device + ">";
}

INSTANTIATE_TEST_SUITE_P(Devices, LargestReply,
                         testing::Values(DeviceCase{"Usual", longDevice()},
                                         DeviceCase{"Slashes", std::string(300, '/')},
                                         DeviceCase{"Quotes", std::string(300, '"')}),
                         [](const auto& test) { return test.param.name; });

}  // namespace
