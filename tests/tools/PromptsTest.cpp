#include "support/ToolCaller.h"
#include "tools/Prompts.h"

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

}  // namespace
