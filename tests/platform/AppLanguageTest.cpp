#include "platform/AppLanguage.h"
#include "support/EnvironmentGuard.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

struct MatchCase {
  std::string name;
  std::string tag;
  std::optional<SummaryLang> language;
};

class Match : public testing::TestWithParam<MatchCase> {};

TEST_P(Match, FindsTheLanguageOfATag) {
  EXPECT_EQ(AppLanguage::match(GetParam().tag), GetParam().language);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, Match,
    testing::Values(MatchCase{"Chinese", "zh", SummaryLang::zh},
                    MatchCase{"ChineseOfAPlace", "zh-Hans-CN", SummaryLang::zh},
                    MatchCase{"ChineseLocale", "zh_CN.UTF-8", SummaryLang::zh},
                    MatchCase{"ChineseInCapitals", "ZH-HANT", SummaryLang::zh},
                    MatchCase{"English", "en", SummaryLang::en},
                    MatchCase{"EnglishInMixedCase", "EN_gb", SummaryLang::en},
                    MatchCase{"EnglishOfAPlace", "en-US", SummaryLang::en},
                    MatchCase{"French", "fr-FR", {}}, MatchCase{"LongerThanChinese", "zha", {}},
                    MatchCase{"LongerThanEnglish", "eng", {}},
                    MatchCase{"AnotherSeparator", "en.UTF-8", {}},
                    MatchCase{"ShorterThanALanguage", "e", {}},
                    MatchCase{"LeadingBlank", " en", {}}, MatchCase{"PlainCLocale", "C", {}},
                    MatchCase{"Empty", "", {}}),
    [](const auto& test) { return test.param.name; });

struct ResolveCase {
  std::string name;
  std::vector<std::string> bundleLocalizations;
  std::vector<std::string> bundlePreferred;
  std::vector<std::string> system;
  SummaryLang language;
};

class Resolve : public testing::TestWithParam<ResolveCase> {};

TEST_P(Resolve, ChoosesTheLanguageToSpeak) {
  const auto& [name, bundleLocalizations, bundlePreferred, system, language] = GetParam();
  EXPECT_EQ(AppLanguage::resolve(bundleLocalizations, bundlePreferred, system), language);
}

INSTANTIATE_TEST_SUITE_P(
    WithoutABundle, Resolve,
    testing::Values(ResolveCase{"Chinese", {}, {}, {"zh-Hans-CN"}, SummaryLang::zh},
                    ResolveCase{"English", {}, {}, {"EN_gb"}, SummaryLang::en},
                    ResolveCase{"SecondChoice", {}, {}, {"fr-FR", "zh-Hant"}, SummaryLang::zh},
                    ResolveCase{"FirstOfBothWins", {}, {}, {"fr", "en", "zh"}, SummaryLang::en},
                    ResolveCase{"ChineseBeforeEnglish", {}, {}, {"zh", "en"}, SummaryLang::zh},
                    ResolveCase{"NeitherIsEnglish", {}, {}, {"fr-FR"}, SummaryLang::en},
                    ResolveCase{"NothingIsEnglish", {}, {}, {}, SummaryLang::en},
                    ResolveCase{
                        "PreferredWithoutLocalizations", {}, {"zh"}, {"en"}, SummaryLang::en}),
    [](const auto& test) { return test.param.name; });

INSTANTIATE_TEST_SUITE_P(
    WithABundle, Resolve,
    testing::Values(
        ResolveCase{"BundleBeforeSystem", {"en", "zh-Hans"}, {"zh-Hans"}, {"en"}, SummaryLang::zh},
        ResolveCase{"OneMatchIsEnough", {"fr", "en"}, {"zh"}, {"en"}, SummaryLang::zh},
        ResolveCase{"TranslatedIntoNeither", {"fr", "de"}, {"zh"}, {"en"}, SummaryLang::en},
        ResolveCase{"NothingPreferred", {"en", "zh"}, {}, {"zh"}, SummaryLang::zh},
        ResolveCase{
            "OnlyTheFirstPreferredCounts", {"en", "zh"}, {"fr", "en"}, {"zh"}, SummaryLang::zh}),
    [](const auto& test) { return test.param.name; });

TEST(IsChinese, FollowsTheLanguagesOfTheUser) {
  const EnvironmentGuard chinese{{"LANGUAGE", std::nullopt}, {"LC_ALL", "zh_CN.UTF-8"}};
  EXPECT_TRUE(AppLanguage::isChinese());
  const EnvironmentGuard english{{"LC_ALL", "en_US.UTF-8"}};
  EXPECT_FALSE(AppLanguage::isChinese());
}

}  // namespace
