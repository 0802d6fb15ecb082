#include "platform/System.h"
#include "support/EnvironmentGuard.h"

#include <gtest/gtest.h>
#include <pwd.h>
#include <unistd.h>

#include <string>
#include <vector>

namespace {

std::string homeOfTheAccount() {
  const passwd* account = getpwuid(getuid());
  return account == nullptr ? "/" : account->pw_dir;
}

TEST(HomeDirectory, IsWhatTheEnvironmentSays) {
  const EnvironmentGuard home{{"HOME", "/home/kim"}};
  EXPECT_EQ(System::homeDirectory(), "/home/kim");
}

TEST(HomeDirectory, IsThatOfTheAccountWhenTheEnvironmentHasNone) {
  const EnvironmentGuard home{{"HOME", std::nullopt}};
  EXPECT_EQ(System::homeDirectory(), homeOfTheAccount());
}

TEST(HomeDirectory, IsThatOfTheAccountWhenTheEnvironmentsIsNotAbsolute) {
  const EnvironmentGuard relative{{"HOME", "home/kim"}};
  EXPECT_EQ(System::homeDirectory(), homeOfTheAccount());
  const EnvironmentGuard empty{{"HOME", ""}};
  EXPECT_EQ(System::homeDirectory(), homeOfTheAccount());
}

TEST(LanguageVariable, GoesBeforeAllElseThatNamesLanguages) {
  const EnvironmentGuard language{{"LANGUAGE", ":zh_TW::en:"}};

  const std::vector<std::string> languages = System::preferredLanguages();

  ASSERT_GE(languages.size(), 2U);
  EXPECT_EQ(languages[0], "zh_TW");
  EXPECT_EQ(languages[1], "en");
}

TEST(Bundle, IsNothingThisProgramLiesIn) {
  EXPECT_TRUE(System::bundleLocalizations().empty());
  EXPECT_TRUE(System::bundlePreferredLocalizations().empty());
}

}  // namespace
