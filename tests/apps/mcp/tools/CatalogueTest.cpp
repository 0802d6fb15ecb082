#include "mcp/tools/Tools.h"
#include "summary/Metrics.h"
#include "support/Golden.h"
#include "support/ToolCaller.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <set>
#include <string>
#include <vector>

namespace {

using OrderedJson = nlohmann::ordered_json;

TEST(GoldenCatalogue, SaysEverythingInEnglish) {
  const std::string catalogue = Tools::schemas(SummaryLang::en).dump(2);
  EXPECT_TRUE(matchesGolden("tools_list/catalogue.en.txt", catalogue));
}

TEST(GoldenCatalogue, SaysEverythingInChinese) {
  const std::string catalogue = Tools::schemas(SummaryLang::zh).dump(2);
  EXPECT_TRUE(matchesGolden("tools_list/catalogue.zh.txt", catalogue));
}

/// The descriptor of the tool called `name`.
OrderedJson descriptorOf(const std::string& name, SummaryLang lang = SummaryLang::en) {
  for (const OrderedJson& descriptor : Tools::schemas(lang)) {
    if (descriptor.at("name") == name) return descriptor;
  }
  return nullptr;
}

std::vector<std::string> namesOf(const OrderedJson& properties) {
  std::vector<std::string> names;
  for (const auto& [name, schema] : properties.items()) names.push_back(name);
  return names;
}

struct SchemaCase {
  std::string tool;
  std::vector<std::string> properties;
  OrderedJson required;  ///< null: the key is not there
};

class ToolSchema : public testing::TestWithParam<SchemaCase> {};

TEST_P(ToolSchema, NamesItsArgumentsInOrderAndWhichMustBeThere) {
  const OrderedJson schema = descriptorOf(GetParam().tool).at("inputSchema");

  EXPECT_EQ(schema.at("type"), "object");
  EXPECT_TRUE(schema.at("properties").is_object());
  EXPECT_EQ(namesOf(schema.at("properties")), GetParam().properties);
  EXPECT_EQ(schema.contains("required"), !GetParam().required.is_null());
  EXPECT_EQ(schema.value("required", OrderedJson()), GetParam().required);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, ToolSchema,
    testing::Values(
        SchemaCase{"list_persons", {}, nullptr}, SchemaCase{"get_overview", {"person"}, nullptr},
        SchemaCase{"get_trend", {"person", "metric", "from", "to"}, OrderedJson::array({"metric"})},
        SchemaCase{"get_day", {"person", "date"}, OrderedJson::array({"date"})},
        SchemaCase{"get_workouts",
                   {"person",
                    "from",
                    "to",
                    "activity_type",
                    "environment",
                    "source",
                    "limit",
                    "offset",
                    "order",
                    "format"},
                   nullptr},
        SchemaCase{"get_workout_heart_rate",
                   {"person", "workout_id", "source", "limit", "offset"},
                   OrderedJson::array({"workout_id"})},
        SchemaCase{"compare_periods",
                   {"person", "metric", "a_from", "a_to", "b_from", "b_to"},
                   OrderedJson::array({"metric", "a_from", "a_to", "b_from", "b_to"})}),
    [](const auto& test) { return test.param.tool; });

TEST(Catalogue, ChoosesMetricsByTheirKeysInBothLanguages) {
  OrderedJson keys = OrderedJson::array();
  for (const MetricInfo& info : metricTable) keys.push_back(info.rawValue);

  for (const SummaryLang lang : {SummaryLang::zh, SummaryLang::en}) {
    for (const char* tool : {"get_trend", "compare_periods"}) {
      const OrderedJson schema = descriptorOf(tool, lang).at("inputSchema");
      EXPECT_EQ(schema.at("properties").at("metric").at("enum"), keys) << tool;
    }
  }
}

/// The texts of all "description" keys in `json`, each with its place.
void collectDescriptions(const OrderedJson& json, const std::string& place,
                         std::vector<std::pair<std::string, std::string>>& found) {
  for (const auto& [key, value] : json.items()) {
    if (key == "description") found.emplace_back(place, value);
    if (value.is_structured()) collectDescriptions(value, place + "/" + key, found);
  }
}

std::vector<std::pair<std::string, std::string>> descriptions(SummaryLang lang) {
  std::vector<std::pair<std::string, std::string>> found;
  for (const OrderedJson& descriptor : Tools::schemas(lang)) {
    collectDescriptions(descriptor, descriptor.at("name"), found);
  }
  return found;
}

TEST(Catalogue, SpeaksBothLanguagesButForThreeHeartRateArguments) {
  const auto chinese = descriptions(SummaryLang::zh);
  const auto english = descriptions(SummaryLang::en);

  std::set<std::string> alike;
  ASSERT_EQ(chinese.size(), english.size());
  for (std::size_t index = 0; index < chinese.size(); ++index) {
    ASSERT_EQ(chinese[index].first, english[index].first);
    if (chinese[index] == english[index]) alike.insert(chinese[index].first);
  }
  EXPECT_THAT(alike,
              testing::ElementsAre("get_workout_heart_rate/inputSchema/properties/limit",
                                   "get_workout_heart_rate/inputSchema/properties/offset",
                                   "get_workout_heart_rate/inputSchema/properties/workout_id"));
}

/// `json` without any description.
OrderedJson withoutTexts(OrderedJson json) {
  if (json.is_object()) json.erase("description");
  if (json.is_structured()) {
    for (OrderedJson& value : json) value = withoutTexts(value);
  }
  return json;
}

TEST(Catalogue, DiffersBetweenTheLanguagesInItsTextsAlone) {
  EXPECT_EQ(withoutTexts(Tools::schemas(SummaryLang::zh)),
            withoutTexts(Tools::schemas(SummaryLang::en)));
}

class UnknownTool : public testing::TestWithParam<std::string> {};

TEST_P(UnknownTool, IsRefusedInChineseInBothLanguages) {
  Household household;
  household.add("ann", "Ann");
  const auto answer = [](const Tools::Call& call) { return Tools::answer(GetParam(), call); };

  for (const SummaryLang lang : {SummaryLang::zh, SummaryLang::en}) {
    EXPECT_EQ(ToolCaller(household, lang).refusal(nlohmann::json::object(), answer),
              (Refusal{-32601, "没有这个工具:" + GetParam()}));
  }
}

INSTANTIATE_TEST_SUITE_P(Names, UnknownTool,
                         testing::Values("get_weather", "", "Get_Trend", " get_trend", "get_trend ",
                                         "get_tren", "{0}"));

}  // namespace
