// What holds for every tool that is about a person, asked by the example calls.

#include "mcp/tools/Tools.h"
#include "platform/ReceiverError.h"
#include "support/ExampleNames.h"
#include "support/ToolCaller.h"
#include "support/WorkoutSamples.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <array>
#include <filesystem>
#include <string>
#include <vector>

namespace {

using Json = nlohmann::json;
using testing::HasSubstr;
using testing::Not;

constexpr std::array languages{SummaryLang::en, SummaryLang::zh};

std::vector<Example> aboutAPerson() {
  std::vector<Example> examples;
  for (const Example& example : Examples::all()) {
    if (example.arguments.contains("person")) examples.push_back(example);
  }
  return examples;
}

class EveryTool : public testing::TestWithParam<Example> {
protected:
  /// The example's arguments, about hourOfRunning() where they are about a workout.
  static Json arguments() {
    return GetParam().argumentsWith({{"workout_id", identifierOf(hourOfRunning())}});
  }

  static Json argumentsWithoutPerson() {
    Json others = arguments();
    others.erase("person");
    return others;
  }

  static std::string answerOf(const Household& household, const Json& arguments,
                              SummaryLang lang = SummaryLang::en) {
    return ToolCaller(household, lang).of(arguments, [](const Tools::Call& call) {
      return Tools::answer(GetParam().tool, call);
    });
  }

  /// The error of the call as a client gets it, where one of the store is an internal one.
  static Refusal errorOf(const Household& household, const Json& arguments,
                         SummaryLang lang = SummaryLang::en) {
    try {
      return {0, "answered: " + answerOf(household, arguments, lang)};
    } catch (const MCPError& error) {
      return {error.code, error.what()};
    } catch (const ReceiverError& error) {
      return {-32603, error.what()};
    }
  }

  /// The error that the store's `message` becomes. The heart-rate tool alone gives it the code of a
  /// wrong argument, and does not say whose data does not open.
  static Refusal storeError(const std::string& message, const std::string& prefix = "") {
    if (GetParam().tool == "get_workout_heart_rate") return {-32602, message};
    return {-32603, prefix + message};
  }

  static void expectStoreError(const Household& household, const Refusal& expected) {
    for (const SummaryLang lang : languages) {
      EXPECT_EQ(errorOf(household, arguments(), lang), expected);
    }
  }

  static constexpr const char* opening = "打不开 Ann 的数据:";
};

TEST_P(EveryTool, RefusesAnUnknownPerson) {
  Household household;
  household.add("m1", "Ann");
  Json unknown = arguments();
  unknown["person"] = "Ben";

  EXPECT_EQ(errorOf(household, unknown, SummaryLang::en),
            (Refusal{-32602, "No member named \"Ben\". Available: Ann"}));
  EXPECT_EQ(errorOf(household, unknown, SummaryLang::zh),
            (Refusal{-32602, "没有叫「Ben」的成员。可选:Ann"}));
}

TEST_P(EveryTool, RequiresAPersonAmongSeveral) {
  Household household;
  household.add("m1", "Ann");
  household.add("m2", "Ben");

  EXPECT_EQ(errorOf(household, argumentsWithoutPerson()),
            (Refusal{-32602,
                     "This Mac has 2 members, so person is required (there is no 'all members' "
                     "option). Call list_persons first. Available: Ann, Ben"}));
}

TEST_P(EveryTool, TakesTheOnlyMemberWhenNobodyIsNamed) {
  Household household;
  household.add("m1", "Ann").addWorkout(hourOfRunning()).addRecord(sampleAfter(0));

  EXPECT_EQ(answerOf(household, argumentsWithoutPerson()), answerOf(household, arguments()));
}

TEST_P(EveryTool, ChecksThePersonBeforeItOpensTheDatabase) {
  Household household;
  household.addAt("m1", "Ann", household.nowhere());
  Json unknown = arguments();
  unknown["person"] = "Ben";

  EXPECT_EQ(errorOf(household, unknown).message, "No member named \"Ben\". Available: Ann");
}

TEST_P(EveryTool, RefusesADatabaseThatIsNotThereInChineseAlways) {
  Household household;
  const std::filesystem::path file = household.dataRoot() / "lost.sqlite";
  household.addAt("m1", "Ann", file);

  expectStoreError(household, storeError("库文件不存在:" + file.string(), opening));

  EXPECT_FALSE(std::filesystem::exists(file));
}

TEST_P(EveryTool, RefusesADatabaseWhoseFolderIsNotThereInChineseAlways) {
  Household household;
  household.addAt("m1", "Ann", household.nowhere());
  const std::string folder = household.nowhere().parent_path().string();

  expectStoreError(household, storeError("数据目录不可用(盘没挂载?):" + folder, opening));
}

TEST_P(EveryTool, RefusesAFileThatIsNoDatabase) {
  Household household;
  household.add("m1", "Ann").replaceFile(std::string(4096, 'x'));

  expectStoreError(household, storeError("prepare 失败:file is not a database"));
}

TEST_P(EveryTool, PassesTheErrorOfAQuery) {
  Household household;
  household.add("m1", "Ann").addWorkout(hourOfRunning()).run("DROP TABLE records");

  expectStoreError(household, storeError("prepare 失败:no such table: records"));
}

TEST_P(EveryTool, TakesAHistoryOfFourHundredDaysForComplete) {
  const std::string fillingIn = "History is still being filled in";
  Household shorter;
  shorter.add("m1", "Ann")
      .addWorkout(hourOfRunning())
      .addRecords({{.start_day = "2023-01-01", .value_num = 1},
                   {.start_day = "2024-02-04", .value_num = 1}});
  Household longer;
  longer.add("m1", "Ann")
      .addWorkout(hourOfRunning())
      .addRecords({{.start_day = "2023-01-01", .value_num = 1},
                   {.start_day = "2024-02-05", .value_num = 1}});

  EXPECT_THAT(answerOf(shorter, arguments()), HasSubstr(fillingIn));
  EXPECT_THAT(answerOf(longer, arguments()), Not(HasSubstr(fillingIn)));
}

/// The tool has a word for the day, or does as if none was given, but never takes another day.
TEST_P(EveryTool, TakesNoDayThatTheCalendarDoesNotHave) {
  Household household;
  household.add("m1", "Ann").addWorkout(hourOfRunning()).addRecord(sampleAfter(0));
  const Json given = arguments();
  for (const auto& [key, value] : given.items()) {
    if (!value.is_string() || !value.get<std::string>().starts_with("2024-")) continue;
    Json noDay = given;
    noDay[key] = "2024-02-30";
    Json absent = given;
    absent.erase(key);

    const Refusal error = errorOf(household, noDay);

    if (error.code == 0) {
      EXPECT_EQ(error, errorOf(household, absent));
    } else {
      EXPECT_EQ(error.code, -32602);
      EXPECT_THAT(error.message, testing::StartsWith(key));
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Examples, EveryTool, testing::ValuesIn(aboutAPerson()),
                         [](const auto& test) { return suffixOf(test.param); });

}  // namespace
