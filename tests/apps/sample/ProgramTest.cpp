// The built program from outside: its exit statuses and what it says.

#include "platform/Files.h"
#include "support/ChildProcess.h"
#include "support/EnvironmentGuard.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace {

ChildProcess::Ending run(const std::vector<std::string>& arguments, const TemporaryFolder& folder) {
  return ChildProcess(LARKSPUR_SAMPLE_PROGRAM, arguments, folder.path()).finished();
}

TEST(SampleProgram, WritesAHouseholdAndOneLineAMember) {
  const TemporaryFolder folder;

  const ChildProcess::Ending ending =
      run({"--out", "root", "--years", "1", "--records", "2000", "--today", "2026-11-20"}, folder);

  EXPECT_EQ(ending.status, 0);
  EXPECT_THAT(ending.output,
              testing::MatchesRegex("Ann \\(ann-01\\): [0-9,]+ records, [0-9]+ workouts\n"
                                    "Ben \\(ben-02\\): [0-9,]+ records, [0-9]+ workouts\n"
                                    "小美 \\(mei-03\\): 0 records, 0 workouts\n"));
  EXPECT_EQ(ending.errors, "");
  EXPECT_TRUE(std::filesystem::exists(folder / "root/members.json"));
}

TEST(SampleProgram, ExportsOneMemberAndSaysHowMuch) {
  const TemporaryFolder folder;
  const std::vector<std::string> size{"--years", "1", "--records", "2000", "--today", "2026-11-20"};
  const auto with = [&size](std::vector<std::string> arguments) {
    arguments.insert(arguments.end(), size.begin(), size.end());
    return arguments;
  };

  const ChildProcess::Ending household = run(with({"--out", "root", "--members", "1"}), folder);
  const ChildProcess::Ending zip = run(with({"--export", "e.zip"}), folder);
  const ChildProcess::Ending xml = run(with({"--export", "export.xml", "--member", "Ann"}), folder);

  EXPECT_EQ(zip, household);
  EXPECT_EQ(xml, household);
  EXPECT_EQ(fileContents(folder / "e.zip").value().substr(0, 4), "PK\3\4");
  EXPECT_THAT(fileContents(folder / "export.xml").value(), testing::StartsWith("<?xml "));
  using std::filesystem::perms;
  EXPECT_EQ(std::filesystem::status(folder / "e.zip").permissions(),
            perms::owner_read | perms::owner_write);
}

TEST(SampleProgram, LeavesAnExistingExportAlone) {
  const TemporaryFolder folder;
  folder.write("e.zip", "precious");

  const ChildProcess::Ending ending = run({"--export", "e.zip", "--years", "1"}, folder);

  EXPECT_EQ(ending.status, 1);
  EXPECT_EQ(ending.errors,
            "larkspur-sample: e.zip exists already, and an export is never written over: remove it"
            " or give --export another name\n");
  EXPECT_EQ(fileContents(folder / "e.zip"), "precious");
}

TEST(SampleProgram, ExplainsItselfWhenAskedForAStrangersExport) {
  const TemporaryFolder folder;

  const ChildProcess::Ending ending = run({"--export", "e.zip", "--member", "Zoe"}, folder);

  EXPECT_EQ(ending.status, 2);
  EXPECT_THAT(ending.errors, testing::HasSubstr("--member names nobody among the first 3: Zoe"));
  EXPECT_FALSE(std::filesystem::exists(folder / "e.zip"));
}

TEST(SampleProgram, ListsTheFlawsInTheLanguageOfTheMachine) {
  const TemporaryFolder folder;
  for (const auto& [language, first] :
       {std::pair("en_US.UTF-8", "WorkoutStatistics with startDate twice"),
        std::pair("zh_CN.UTF-8", "WorkoutStatistics 里 startDate 写了两次")}) {
    const EnvironmentGuard guard{{"LANGUAGE", std::nullopt}, {"LC_ALL", language}};

    const ChildProcess::Ending ending = run({"--flaw", "list"}, folder);

    EXPECT_EQ(ending.status, 0);
    EXPECT_THAT(ending.output, testing::StartsWith(std::string("repeated-attributes   ") + first));
    EXPECT_EQ(ending.errors, "");
  }
}

TEST(SampleProgram, SaysWhichFlawsItsExportHas) {
  const TemporaryFolder folder;

  const ChildProcess::Ending ending = run({"--export",
                                           "e.zip",
                                           "--years",
                                           "1",
                                           "--records",
                                           "2000",
                                           "--flaw",
                                           "no-me",
                                           "--flaw",
                                           "zip64"},
                                          folder);

  EXPECT_EQ(ending.status, 0) << ending.errors;
  EXPECT_THAT(ending.output, testing::EndsWith(" workouts; flaws: no-me, zip64\n"));
}

TEST(SampleProgram, NamesTheListWhenItKnowsNoSuchFlaw) {
  const TemporaryFolder folder;

  const ChildProcess::Ending ending = run({"--export", "e.zip", "--flaw", "warts"}, folder);

  EXPECT_EQ(ending.status, 2);
  EXPECT_THAT(ending.errors,
              testing::HasSubstr("--flaw knows no \"warts\"; --flaw list tells the names\n\n"));
}

TEST(SampleProgram, TakesTheMachinesDayWhenNoneIsGiven) {
  const TemporaryFolder folder;

  const ChildProcess::Ending ending =
      run({"--out", "root", "--members", "1", "--years", "1", "--records", "1000"}, folder);

  EXPECT_EQ(ending.status, 0) << ending.errors;
}

TEST(SampleProgram, RefusesADirectoryThatIsADataRootAlready) {
  const TemporaryFolder folder;
  folder.write("root/members.json", "precious");

  const ChildProcess::Ending ending = run({"--out", "root"}, folder);

  EXPECT_EQ(ending.status, 1);
  EXPECT_EQ(ending.output, "");
  EXPECT_THAT(ending.errors, testing::HasSubstr("members.json exists already"));
}

TEST(SampleProgram, ExplainsItselfWhenMisused) {
  const TemporaryFolder folder;

  const ChildProcess::Ending ending = run({"--years", "none"}, folder);

  EXPECT_EQ(ending.status, 2);
  EXPECT_EQ(ending.output, "");
  EXPECT_THAT(ending.errors, testing::HasSubstr("--years wants a whole number from 1 to 30\n\n"));
  EXPECT_THAT(ending.errors, testing::HasSubstr("larkspur-sample --out DIR"));
}

TEST(SampleProgram, ExplainsItselfWhenAsked) {
  const TemporaryFolder folder;

  const ChildProcess::Ending ending = run({"--help"}, folder);

  EXPECT_EQ(ending.status, 0);
  EXPECT_THAT(ending.output, testing::StartsWith("larkspur-sample --out DIR"));
  EXPECT_EQ(ending.errors, "");
}

}  // namespace
