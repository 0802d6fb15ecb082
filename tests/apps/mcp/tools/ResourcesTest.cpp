#include "mcp/tools/Resources.h"
#include "support/Family.h"
#include "support/ToolCaller.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <optional>
#include <string>
#include <vector>

namespace {

class UnknownResource : public testing::TestWithParam<std::string> {};

TEST_P(UnknownResource, IsRefusedInChineseInBothLanguages) {
  Household household;
  household.add("id-1", "Ann");
  const auto read = [](const Tools::Call& call) { return Tools::readResource(GetParam(), call); };

  for (const SummaryLang lang : {SummaryLang::zh, SummaryLang::en}) {
    EXPECT_EQ(ToolCaller(household, lang).refusal(nlohmann::json::object(), read),
              (Refusal{-32602, "不认识的 uri:" + GetParam()}));
  }
}

INSTANTIATE_TEST_SUITE_P(Uris, UnknownResource,
                         testing::Values("", "larkspur://", "larkspur://id-1", "larkspur://id-1/",
                                         "larkspur://id-1/Overview", "larkspur://id-1/summary",
                                         "larkspur://id-1/x/overview", "larkspur://overview",
                                         "larkspur://Ann/overview", "larkspur://ID-1/overview",
                                         "larkspur://id-2/overview", "larkspur:/id-1/overview",
                                         "LARKSPUR://id-1/overview", " larkspur://id-1/overview",
                                         "file:///id-1/overview", "id-1/overview"));

TEST(Resources, AreNoneWithoutMembers) {
  for (const SummaryLang lang : {SummaryLang::zh, SummaryLang::en}) {
    EXPECT_EQ(Tools::resources({}, lang), nlohmann::ordered_json::array());
  }
}

struct RecordCase {
  SummaryLang lang;
  std::string name;
  std::string description;
};

class ResourceRecord : public testing::TestWithParam<RecordCase> {};

TEST_P(ResourceRecord, HoldsFourTextsAMember) {
  Member ann;
  ann.id = "ann-01";
  ann.name = "Ann {1}";
  Member mei;
  mei.id = "id 2/3";
  mei.name = "小美";
  const std::vector<Member> members{ann, mei};

  const nlohmann::ordered_json records = Tools::resources(members, GetParam().lang);

  ASSERT_EQ(records.size(), 2U);
  EXPECT_EQ(records[0].dump(),
            R"({"uri":"larkspur://ann-01/overview","name":"Ann {1})" + GetParam().name +
                R"(","mimeType":"text/plain","description":")" + GetParam().description + R"("})");
  EXPECT_EQ(records[1].dump(),
            R"({"uri":"larkspur://id 2/3/overview","name":"小美)" + GetParam().name +
                R"(","mimeType":"text/plain","description":")" + GetParam().description + R"("})");
}

INSTANTIATE_TEST_SUITE_P(
    Languages, ResourceRecord,
    testing::Values(RecordCase{SummaryLang::en,
                               "'s health overview",
                               "Overview plus the data-coverage notice. Read this first."},
                    RecordCase{SummaryLang::zh,
                               " 的健康概览",
                               "数据概览 + 数据覆盖说明。连上先读这个,再决定问什么。"}),
    [](const auto& test) { return std::string(rawValue(test.param.lang)); });

class KnownResource : public testing::TestWithParam<std::string> {};

TEST_P(KnownResource, IsTheOverviewOfItsMember) {
  const Family family;
  const auto read = [](const Tools::Call& call) { return Tools::readResource(GetParam(), call); };

  for (const SummaryLang lang : {SummaryLang::zh, SummaryLang::en}) {
    ToolCaller caller(family.household(), lang);
    const std::string overview = caller.of({{"person", "ann"}}, Tools::overview);
    EXPECT_EQ(caller.of(nlohmann::json::object(), read), overview);
    // Arguments are no part of a reading.
    EXPECT_EQ(caller.of({{"person", "ben"}}, read), overview);
  }
}

INSTANTIATE_TEST_SUITE_P(Uris, KnownResource,
                         testing::Values("larkspur://ann/overview", "larkspur://ann/overview/",
                                         "larkspur://ann//overview", "larkspur:///ann/overview",
                                         "larkspur:////ann///overview//",
                                         "larkspur://ann/overview/more",
                                         "larkspur://ann/overview/more/../and?more#more"));

TEST(Resources, AreFoundByTheIdNotByTheNameOfAnother) {
  Household household;
  household.add("x", "y").addRecord({.type = "BodyMass", .unit = "kg", .value_num = 60});
  household.add("y", "x");
  const auto read = [](const Tools::Call& call) {
    return Tools::readResource("larkspur://y/overview", call);
  };

  EXPECT_EQ(ToolCaller(household).of(nlohmann::json::object(), read),
            ToolCaller(household).of({{"person", "y"}}, [](const Tools::Call& call) {
              return Tools::overviewOf(call.roster.members().at(1), call);
            }));
}

TEST(Resources, OfADatabaseThatDoesNotOpenFailAsTheOverviewDoes) {
  const Family family;
  const auto read = [](const Tools::Call& call) {
    return Tools::readResource("larkspur://dot/overview", call);
  };

  for (const SummaryLang lang : {SummaryLang::zh, SummaryLang::en}) {
    ToolCaller caller(family.household(), lang);
    const std::optional<Refusal> refusal = caller.refusal(nlohmann::json::object(), read);
    ASSERT_TRUE(refusal);
    EXPECT_EQ(refusal->code, -32603);
    EXPECT_TRUE(refusal->message.starts_with("打不开 Dot 的数据:库文件不存在:"));
    EXPECT_EQ(refusal, caller.refusal({{"person", "dot"}}, Tools::overview));
  }
}

}  // namespace
