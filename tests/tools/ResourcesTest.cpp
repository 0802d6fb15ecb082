#include "support/ToolCaller.h"
#include "tools/Resources.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <optional>
#include <string>

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

}  // namespace
