#include "platform/SummaryLang.h"

#include <gtest/gtest.h>

namespace {

TEST(SummaryLangName, IsReadExactly) {
  EXPECT_EQ(rawValue(SummaryLang::zh), "zh");
  EXPECT_EQ(rawValue(SummaryLang::en), "en");
  EXPECT_EQ(summaryLangNamed("zh"), SummaryLang::zh);
  EXPECT_EQ(summaryLangNamed("en"), SummaryLang::en);
  for (const char* other : {"", "ZH", "en ", "fr", "zh-Hans"}) {
    EXPECT_EQ(summaryLangNamed(other), std::nullopt) << other;
  }
}

}  // namespace
