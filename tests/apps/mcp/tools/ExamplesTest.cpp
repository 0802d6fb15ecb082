// The table of example calls, beside the catalogue.

#include "examples/Examples.h"
#include "mcp/tools/Tools.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <set>
#include <string>
#include <vector>

namespace {

using OrderedJson = nlohmann::ordered_json;

std::vector<std::string> toolsOfExamples() {
  std::vector<std::string> tools;
  for (const Example& example : Examples::ofToolsBut({})) tools.push_back(example.tool);
  return tools;
}

TEST(Examples, CallEveryToolOfTheCatalogueInItsOrderAndNoOther) {
  std::vector<std::string> tools;
  for (const OrderedJson& descriptor : Tools::schemas(SummaryLang::en))
    tools.push_back(descriptor["name"]);

  EXPECT_EQ(toolsOfExamples(), tools)
      << "examples/calls.json has one row for each tool, in the order of Catalogue.cpp";
}

TEST(Examples, GiveTheArgumentsThatTheSchemasNameAndAllThatAreRequired) {
  for (const OrderedJson& descriptor : Tools::schemas(SummaryLang::en)) {
    const OrderedJson& schema = descriptor.at("inputSchema");
    for (const Example& example : Examples::all()) {
      if (example.tool != descriptor.at("name")) continue;
      for (const auto& [key, value] : example.arguments.items()) {
        EXPECT_TRUE(schema.at("properties").contains(key)) << example.name << ": " << key;
      }
      for (const std::string key : schema.value("required", OrderedJson::array())) {
        EXPECT_TRUE(example.arguments.contains(key)) << example.name << ": " << key;
      }
    }
  }
}

TEST(Examples, AreNamedAfterTheirToolsAndDifferently) {
  std::set<std::string> names;
  for (const Example& example : Examples::all()) {
    EXPECT_TRUE(example.name == example.tool || example.name.starts_with(example.tool + " "))
        << example.name;
    EXPECT_TRUE(names.insert(example.name).second) << example.name;
  }
}

TEST(Examples, OfToolsButSomeAreTheFirstOfEachOther) {
  std::set<std::string> some;
  for (const Example& example : Examples::all()) some.insert(example.tool);
  some.erase("get_trend");
  some.erase("get_day");

  std::vector<std::string> names;
  for (const Example& example : Examples::ofToolsBut(some)) names.push_back(example.name);

  EXPECT_THAT(names, testing::ElementsAre("get_trend steps", "get_day"));
}

TEST(Examples, TakeOtherValuesForTheArgumentsTheyHave) {
  const Example example{"get_day", "get_day", {{"person", "Ann"}, {"date", "2024-03-16"}}};

  EXPECT_EQ(example.argumentsWith({{"person", "Ben"}, {"workout_id", "w_0"}}),
            (OrderedJson{{"person", "Ben"}, {"date", "2024-03-16"}}));
}

}  // namespace
