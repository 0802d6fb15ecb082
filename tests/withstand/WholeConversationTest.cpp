#include "mcp/tools/Tools.h"
#include "withstand/WholeConversation.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

namespace {

TEST(WholeConversation, LeavesOutNoTool) {
  std::set<std::string> called;
  for (const Question& question : questionsAbout("ann", "w_0")) {
    const nlohmann::json& params = question.request.at("params");
    if (params.contains("name")) called.insert(params.at("name").get<std::string>());
  }

  std::set<std::string> offered;
  for (const auto& tool : Tools::schemas(SummaryLang::en)) offered.insert(tool.at("name"));
  EXPECT_EQ(called, offered);
}

}  // namespace
