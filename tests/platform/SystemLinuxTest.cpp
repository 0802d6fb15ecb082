// Languages and digits where the environment and files say them; on macOS the system itself does.

#include "platform/System.h"
#include "platform/Text.h"
#include "support/EnvironmentGuard.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <locale.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

// glibc forgets to free the list it makes of LOCPATH, which the tests below set and users hardly
// do.
extern "C" const char* __lsan_default_suppressions();
extern "C" const char* __lsan_default_suppressions() { return "leak:argz_add_sep\n"; }

namespace {

struct LanguagesCase {
  std::string name;
  Environment variables;
  std::vector<std::string> languages;
};

/// All variables that say something about languages and digits, not set.
Environment noLocale() {
  return {{"LANGUAGE", std::nullopt},
          {"LC_ALL", std::nullopt},
          {"LC_MESSAGES", std::nullopt},
          {"LC_NUMERIC", std::nullopt},
          {"LANG", std::nullopt},
          {"LOCPATH", std::nullopt}};
}

class PreferredLanguages : public testing::TestWithParam<LanguagesCase> {};

TEST_P(PreferredLanguages, AreReadFromTheEnvironment) {
  const TemporaryFolder etc;
  etc.write("locale.conf", "LANG=it_IT.UTF-8\n");
  const EnvironmentGuard none(noLocale());
  const EnvironmentGuard some(GetParam().variables);

  EXPECT_EQ(System::preferredLanguages(etc.path()), GetParam().languages);
}

INSTANTIATE_TEST_SUITE_P(
    Environments, PreferredLanguages,
    testing::Values(
        LanguagesCase{"Lang", {{"LANG", "zh_CN.UTF-8"}}, {"zh_CN.UTF-8"}},
        LanguagesCase{"MessagesOverLang",
                      {{"LC_MESSAGES", "zh_CN.UTF-8"}, {"LANG", "en_US.UTF-8"}},
                      {"zh_CN.UTF-8"}},
        LanguagesCase{"AllOverMessages",
                      {{"LC_ALL", "fr_FR"}, {"LC_MESSAGES", "zh_CN"}, {"LANG", "en_US"}},
                      {"fr_FR"}},
        LanguagesCase{"ListBeforeTheLocale",
                      {{"LANGUAGE", "zh_CN:en"}, {"LANG", "de_DE.UTF-8"}},
                      {"zh_CN", "en", "de_DE.UTF-8"}},
        LanguagesCase{"ListAlone", {{"LANGUAGE", "zh_TW"}}, {"zh_TW"}},
        LanguagesCase{"ListWithGaps", {{"LANGUAGE", ":zh_TW::en:"}}, {"zh_TW", "en"}},
        LanguagesCase{
            "EmptyListAndLocale", {{"LANGUAGE", ""}, {"LC_ALL", ""}, {"LANG", "en_GB"}}, {"en_GB"}},
        LanguagesCase{"EmptyMessages", {{"LC_MESSAGES", ""}, {"LANG", "en_GB"}}, {"en_GB"}},
        LanguagesCase{"OtherCategoriesSayNothing", {{"LC_NUMERIC", "de_DE"}}, {"it_IT.UTF-8"}},
        LanguagesCase{"PlainCLocale", {{"LANG", "C.UTF-8"}}, {"C.UTF-8"}},
        LanguagesCase{"AllEmpty",
                      {{"LANGUAGE", ""}, {"LC_ALL", ""}, {"LC_MESSAGES", ""}, {"LANG", ""}},
                      {"it_IT.UTF-8"}}),
    [](const auto& test) { return test.param.name; });

struct SettingsCase {
  std::string name;
  std::string file;
  std::string contents;
  std::vector<std::string> languages;
};

class MachineLanguages : public testing::TestWithParam<SettingsCase> {};

TEST_P(MachineLanguages, AreReadFromTheSettings) {
  const TemporaryFolder etc;
  etc.write(GetParam().file, GetParam().contents);
  const EnvironmentGuard none(noLocale());

  EXPECT_EQ(System::preferredLanguages(etc.path()), GetParam().languages);
}

INSTANTIATE_TEST_SUITE_P(
    Files, MachineLanguages,
    testing::Values(
        SettingsCase{"Plain", "locale.conf", "LANG=zh_CN.UTF-8\n", {"zh_CN.UTF-8"}},
        SettingsCase{"NoFeedAtTheEnd", "locale.conf", "LANG=zh_CN.UTF-8", {"zh_CN.UTF-8"}},
        SettingsCase{"DoubleQuotes", "locale.conf", "LANG=\"zh_CN.UTF-8\"\n", {"zh_CN.UTF-8"}},
        SettingsCase{"SingleQuotes", "locale.conf", "LANG='zh_CN.UTF-8'\n", {"zh_CN.UTF-8"}},
        SettingsCase{"LoneQuoteStays", "locale.conf", "LANG=\"\n", {"\""}},
        SettingsCase{"ListBeforeTheLocale",
                     "locale.conf",
                     "# set by hand\nLANG=de_DE.UTF-8\nLANGUAGE=zh_CN:en\n",
                     {"zh_CN", "en", "de_DE.UTF-8"}},
        SettingsCase{"OtherNames", "locale.conf", "LC_TIME=zh_CN\nLANGX=fr\nXLANG=it\n", {}},
        SettingsCase{"CommentedOut", "locale.conf", "#LANG=zh_CN.UTF-8\n", {}},
        SettingsCase{"EmptyValue", "locale.conf", "LANG=\n", {}},
        SettingsCase{"EmptyQuotes", "locale.conf", "LANG=\"\"\n", {}},
        SettingsCase{"EmptyFile", "locale.conf", "", {}},
        SettingsCase{"LastOfEqualLines",
                     "locale.conf",
                     "LANG=fr_FR.UTF-8\nLANGUAGE=it\nLANG=zh_CN.UTF-8\nLANGUAGE=en:zh\n",
                     {"en", "zh", "zh_CN.UTF-8"}},
        SettingsCase{"LastOfEqualLinesIsEmpty", "locale.conf", "LANG=zh_CN.UTF-8\nLANG=\n", {}},
        SettingsCase{"TheOtherPlace", "default/locale", "LANG=zh_TW.UTF-8\n", {"zh_TW.UTF-8"}},
        SettingsCase{"NeitherPlace", "elsewhere", "LANG=zh_TW.UTF-8\n", {}}),
    [](const auto& test) { return test.param.name; });

TEST(MachineLanguages, OfTheFirstPlaceGoBeforeThoseOfTheOther) {
  const TemporaryFolder etc;
  etc.write("locale.conf", "LANG=zh_CN.UTF-8\n");
  etc.write("default/locale", "LANG=en_US.UTF-8\n");
  const EnvironmentGuard none(noLocale());

  EXPECT_EQ(System::preferredLanguages(etc.path()), std::vector<std::string>{"zh_CN.UTF-8"});
}

TEST(MachineLanguages, OfTheOtherPlaceCountWhenTheFirstSaysNothing) {
  const EnvironmentGuard none(noLocale());
  for (const char* silent : {"", "LC_TIME=de_DE.UTF-8\n", "LANG=\n", "#LANG=de_DE.UTF-8\n"}) {
    const TemporaryFolder etc;
    etc.write("locale.conf", silent);
    etc.write("default/locale", "LANG=zh_TW.UTF-8\nLANGUAGE=zh_TW:en\n");

    EXPECT_EQ(System::preferredLanguages(etc.path()),
              (std::vector<std::string>{"zh_TW", "en", "zh_TW.UTF-8"}))
        << silent;
  }
}

struct DefaultGroupingCase {
  std::string name;
  Environment variables;
};

class DefaultGrouping : public testing::TestWithParam<DefaultGroupingCase> {};

TEST_P(DefaultGrouping, IsByCommasEveryThreeDigits) {
  const EnvironmentGuard none(noLocale());
  const EnvironmentGuard some(GetParam().variables);

  EXPECT_EQ(System::digitGrouping(), (DigitGrouping{.separator = ",", .sizes = "\3"}));
}

INSTANTIATE_TEST_SUITE_P(
    Environments, DefaultGrouping,
    testing::Values(DefaultGroupingCase{"NothingSet", {}},
                    DefaultGroupingCase{"C", {{"LANG", "C"}}},
                    DefaultGroupingCase{"Posix", {{"LC_ALL", "POSIX"}}},
                    DefaultGroupingCase{"CWithUTF8", {{"LANG", "C.UTF-8"}}},
                    DefaultGroupingCase{"CWithUtf8", {{"LC_NUMERIC", "C.utf8"}}},
                    DefaultGroupingCase{"NotInstalled", {{"LANG", "tlh_QO.UTF-8"}}},
                    DefaultGroupingCase{"AllOverNumeric",
                                        {{"LC_ALL", "C"}, {"LC_NUMERIC", "tlh_QO.UTF-8"}}}),
    [](const auto& test) { return test.param.name; });

/// How digits are written in a locale made for a test.
struct Digits {
  std::string characters;  ///< "UTF-8" or "ISO-8859-1"
  std::string separator;   ///< "<U002E>"
  std::string groups;      ///< "3;3"; -1 ends the grouping
};

/// Compiles a locale that has nothing but `digits` into `folder`, under `name`; false where the
/// machine has no compiler for locales.
bool compileLocale(const TemporaryFolder& folder, const std::string& name, const Digits& digits) {
  const std::filesystem::path source = folder.write(name + ".source",
                                                    "comment_char %\n"
                                                    "escape_char /\n"
                                                    "LC_CTYPE\n"
                                                    "END LC_CTYPE\n"
                                                    "LC_NUMERIC\n"
                                                    "decimal_point \"<U002C>\"\n"
                                                    "thousands_sep \"" +
                                                        digits.separator +
                                                        "\"\n"
                                                        "grouping " +
                                                        digits.groups +
                                                        "\n"
                                                        "END LC_NUMERIC\n");
  const std::filesystem::path compiled = folder / name;
  const std::string command = "localedef -c -i '" + source.string() + "' -f " + digits.characters +
                              " '" + compiled.string() + "' >/dev/null 2>&1";
  // Its exit status tells of every category that is left out, so the result is looked at instead.
  static_cast<void>(std::system(command.c_str()) == 0);
  return std::filesystem::exists(compiled / "LC_NUMERIC");
}

constexpr const char* noCompiler = "localedef, or the character maps it reads, are not installed";

struct UserGroupingCase {
  std::string name;
  Digits digits;
  std::string text;  ///< of 1234567
};

class UserGrouping : public testing::TestWithParam<UserGroupingCase> {};

TEST_P(UserGrouping, IsThatOfTheNumericLocale) {
  const TemporaryFolder locales;
  ASSERT_TRUE(compileLocale(locales, "xx_XX", GetParam().digits)) << noCompiler;
  const EnvironmentGuard none(noLocale());
  const EnvironmentGuard some{{"LOCPATH", locales.path().string()}, {"LANG", "xx_XX"}};

  EXPECT_EQ(grouped(1234567, System::digitGrouping()), GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(
    Locales, UserGrouping,
    testing::Values(
        UserGroupingCase{"Points", {"ISO-8859-1", "<U002E>", "3;3"}, "1.234.567"},
        UserGroupingCase{"HundredsAfterThousands", {"ISO-8859-1", "<U002C>", "3;2"}, "12,34,567"},
        UserGroupingCase{"ThousandsOnly", {"ISO-8859-1", "<U002C>", "3;-1"}, "1234,567"},
        UserGroupingCase{"NoGroups", {"ISO-8859-1", "<U002E>", "-1"}, "1234567"},
        UserGroupingCase{"SeparatorOfOneForeignByte",
                         {"ISO-8859-1", "<U00A0>", "3;3"},
                         "1\xC2\xA0"
                         "234\xC2\xA0"
                         "567"},
        UserGroupingCase{"SeparatorOfThreeBytes",
                         {"UTF-8", "<U202F>", "3;3"},
                         "1\xE2\x80\xAF"
                         "234\xE2\x80\xAF"
                         "567"}),
    [](const auto& test) { return test.param.name; });

TEST(DigitGrouping, FollowsTheStrongestVariableThatIsSet) {
  const TemporaryFolder locales;
  ASSERT_TRUE(compileLocale(locales, "aa_AA", {"ISO-8859-1", "<U002E>", "3;3"})) << noCompiler;
  ASSERT_TRUE(compileLocale(locales, "bb_BB", {"ISO-8859-1", "<U0027>", "3;3"})) << noCompiler;
  ASSERT_TRUE(compileLocale(locales, "cc_CC", {"ISO-8859-1", "<U0020>", "3;3"})) << noCompiler;
  const EnvironmentGuard none(noLocale());
  const EnvironmentGuard place{{"LOCPATH", locales.path().string()}, {"LC_ALL", ""}};

  const EnvironmentGuard lang{{"LANG", "aa_AA"}};
  EXPECT_EQ(System::digitGrouping().separator, ".");
  const EnvironmentGuard numeric{{"LC_NUMERIC", "bb_BB"}};
  EXPECT_EQ(System::digitGrouping().separator, "'");
  const EnvironmentGuard all{{"LC_ALL", "cc_CC"}};
  EXPECT_EQ(System::digitGrouping().separator, " ");
}

TEST(DigitGrouping, LeavesTheProcessInItsOwnLocale) {
  const TemporaryFolder locales;
  ASSERT_TRUE(compileLocale(locales, "aa_AA", {"ISO-8859-1", "<U002E>", "3;3"})) << noCompiler;
  const EnvironmentGuard none(noLocale());
  const EnvironmentGuard some{{"LOCPATH", locales.path().string()}, {"LC_ALL", "aa_AA"}};

  ASSERT_EQ(System::digitGrouping().separator, ".");

  EXPECT_EQ(fixedDecimals(1.5, 1), "1.5");
  EXPECT_STREQ(setlocale(LC_ALL, nullptr), "C");
}

}  // namespace
