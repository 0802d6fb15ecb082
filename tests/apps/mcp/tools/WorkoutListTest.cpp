// What get_workouts takes for arguments. The two forms of its answer have tests of their own.

#include "mcp/tools/Tools.h"
#include "platform/ReceiverError.h"
#include "support/ToolCaller.h"
#include "support/WorkoutSamples.h"
#include "support/ZoneGuard.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <chrono>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

namespace {

using Json = nlohmann::json;
using testing::ElementsAre;
using testing::IsEmpty;

struct RefusedCase {
  std::string name;
  Json arguments;
  std::string en;
  std::string zh;
};

void PrintTo(const RefusedCase& refused, std::ostream* stream) { *stream << refused.arguments; }

class RefusedWorkoutList : public testing::TestWithParam<RefusedCase> {};

TEST_P(RefusedWorkoutList, SaysWhyInTheLanguageOfTheProcess) {
  Household household;
  household.add("m1", "Ann");

  EXPECT_EQ(ToolCaller(household).refusal(GetParam().arguments, Tools::workouts),
            (Refusal{-32602, GetParam().en}));
  EXPECT_EQ(ToolCaller(household, SummaryLang::zh).refusal(GetParam().arguments, Tools::workouts),
            (Refusal{-32602, GetParam().zh}));
}

/// A value under `key` that is no text.
RefusedCase noText(const std::string& name, const std::string& key, const Json& value) {
  return {name, {{key, value}}, key + " must be a string.", key + " 必须是字符串。"};
}

INSTANTIATE_TEST_SUITE_P(
    NoText, RefusedWorkoutList,
    testing::Values(noText("FromNumber", "from", 20240301), noText("FromNull", "from", nullptr),
                    noText("ToTrue", "to", true), noText("ToList", "to", Json::array({"x"})),
                    noText("ActivityNumber", "activity_type", 1),
                    noText("ActivityNull", "activity_type", nullptr),
                    noText("SourceObject", "source", Json::object()),
                    noText("EnvironmentTrue", "environment", true),
                    noText("OrderNumber", "order", 1), noText("FormatNull", "format", nullptr)),
    [](const auto& test) { return test.param.name; });

/// A text under `key` that is no date as this tool wants it.
RefusedCase noDate(const std::string& name, const std::string& key, const std::string& text) {
  return {name,
          {{key, text}},
          key + " must be a valid YYYY-MM-DD date.",
          key + " 要是有效的 YYYY-MM-DD 日期。"};
}

INSTANTIATE_TEST_SUITE_P(NoDate, RefusedWorkoutList,
                         testing::Values(noDate("ShortForm", "from", "2024-2-3"),
                                         noDate("ThirtiethOfFebruary", "from", "2024-02-30"),
                                         noDate("LeapDayOfACommonYear", "to", "2023-02-29"),
                                         noDate("Empty", "from", ""), noDate("EmptyTo", "to", ""),
                                         noDate("Word", "to", "today"),
                                         noDate("Blank", "from", " 2024-02-03"),
                                         noDate("BlankBehind", "to", "2024-02-03 "),
                                         noDate("Time", "from", "2024-02-03 08:00"),
                                         noDate("Slashes", "from", "2024/02/03"),
                                         noDate("ShortYear", "from", "24-02-03"),
                                         noDate("LongYear", "from", "02024-02-03")),
                         [](const auto& test) { return test.param.name; });

/// Words of which there are a few only. Said in English in both languages.
RefusedCase noWord(const std::string& name, const std::string& key, const std::string& text,
                   const std::string& message) {
  return {name, {{key, text}}, message, message};
}

const std::string environments = "environment: all / indoor / outdoor / unspecified";

INSTANTIATE_TEST_SUITE_P(
    NoWord, RefusedWorkoutList,
    testing::Values(noWord("EnvironmentUnknown", "environment", "garden", environments),
                    noWord("EnvironmentCapital", "environment", "Indoor", environments),
                    noWord("EnvironmentEmpty", "environment", "", environments),
                    noWord("EnvironmentBlank", "environment", "indoor ", environments),
                    noWord("OrderUnknown", "order", "newest", "order: desc / asc"),
                    noWord("OrderCapitals", "order", "ASC", "order: desc / asc"),
                    noWord("OrderEmpty", "order", "", "order: desc / asc"),
                    noWord("FormatUnknown", "format", "xml", "format: text / json"),
                    noWord("FormatCapitals", "format", "JSON", "format: text / json"),
                    noWord("FormatEmpty", "format", "", "format: text / json")),
    [](const auto& test) { return test.param.name; });

RefusedCase noLimit(const std::string& name, const Json& value) {
  return {name,
          {{"limit", value}},
          "limit must be an integer in 1...200",
          "limit 必须是 1...200 范围内的整数。"};
}

RefusedCase noOffset(const std::string& name, const Json& value) {
  return {name,
          {{"offset", value}},
          "offset must be an integer in 0...2147483647",
          "offset 必须是 0...2147483647 范围内的整数。"};
}

INSTANTIATE_TEST_SUITE_P(
    NoInteger, RefusedWorkoutList,
    testing::Values(noLimit("LimitZero", 0), noLimit("LimitAboveTheLargest", 201),
                    noLimit("LimitFraction", 1.5), noLimit("LimitTrue", true),
                    noLimit("LimitText", "50"), noLimit("LimitNull", nullptr),
                    noLimit("LimitList", Json::array({50})), noLimit("LimitNegative", -1),
                    noLimit("LimitHuge", 1e300), noOffset("OffsetNegative", -1),
                    noOffset("OffsetAboveTheLargest", 2147483648), noOffset("OffsetFalse", false),
                    noOffset("OffsetFraction", 0.5), noOffset("OffsetText", "0"),
                    noOffset("OffsetLargestNumber", UINT64_MAX)),
    [](const auto& test) { return test.param.name; });

INSTANTIATE_TEST_SUITE_P(Range, RefusedWorkoutList,
                         testing::Values(RefusedCase{"Backwards",
                                                     {{"from", "2024-03-02"}, {"to", "2024-03-01"}},
                                                     "from must not be later than to.",
                                                     "from 不能晚于 to。"},
                                         RefusedCase{"FromAfterToday",
                                                     {{"from", "2024-03-18"}},
                                                     "from must not be later than to.",
                                                     "from 不能晚于 to。"},
                                         RefusedCase{"ToBeforeTheDefault",
                                                     {{"to", "2023-12-17"}},
                                                     "from must not be later than to.",
                                                     "from 不能晚于 to。"}),
                         [](const auto& test) { return test.param.name; });

TEST(GetWorkouts, ReportsTheFirstArgumentThatIsWrong) {
  Household household;
  household.addAt("m1", "Ann", household.nowhere());
  ToolCaller caller(household);
  // Each step mends the argument that the step before was refused for.
  const std::vector<std::pair<Json, std::string>> steps{
      {{{"person", "Ann"}}, "No member named \"Ben\". Available: Ann"},
      {{{"from", "2024-03-02"}}, "from must be a valid YYYY-MM-DD date."},
      {{{"to", "2024-03-01"}}, "to must be a valid YYYY-MM-DD date."},
      {{{"to", "2024-03-02"}}, "from must not be later than to."},
      {{{"activity_type", ""}}, "activity_type must be a string."},
      {{{"source", ""}}, "source must be a string."},
      {{{"environment", "all"}}, environments},
      {{{"order", "asc"}}, "order: desc / asc"},
      {{{"format", "json"}}, "format: text / json"},
      {{{"limit", 1}}, "limit must be an integer in 1...200"},
      {{{"offset", 0}}, "offset must be an integer in 0...2147483647"}};
  Json arguments{{"person", "Ben"},
                 {"from", "x"},
                 {"to", "x"},
                 {"activity_type", 1},
                 {"source", 1},
                 {"environment", "x"},
                 {"order", "x"},
                 {"format", "x"},
                 {"limit", 0},
                 {"offset", -1}};

  for (const auto& [mended, message] : steps) {
    EXPECT_EQ(caller.refusal(arguments, Tools::workouts), (Refusal{-32602, message}));
    arguments.update(mended);
  }
}

/// The start days of the workouts that the answer lists.
std::vector<std::string> daysOf(const Household& household, Json arguments, double now = testNow) {
  arguments["format"] = "json";
  const Json answer =
      Json::parse(ToolCaller(household, SummaryLang::en, now).of(arguments, Tools::workouts));
  std::vector<std::string> days;
  for (const Json& workout : answer.at("workouts")) {
    days.push_back(workout.at("start").get<std::string>().substr(0, 10));
  }
  return days;
}

/// A household of one with a workout on each of these days.
void addWorkoutsOn(Household& household, const std::vector<std::string>& days) {
  TestDatabase& database = household.add("m1", "Ann");
  for (const std::string& day : days) database.addWorkout({.start_day = day});
}

TEST(GetWorkouts, AreOfTheLastNinetyDaysUnlessAskedOtherwise) {
  Household household;
  addWorkoutsOn(household, {"2023-12-17", "2023-12-18", "2024-03-17", "2024-03-18"});

  EXPECT_THAT(daysOf(household, Json::object()), ElementsAre("2024-03-17", "2023-12-18"));
}

TEST(GetWorkouts, EndOnTheMachinesDay) {
  Household household;
  addWorkoutsOn(household, {"2024-03-17", "2024-03-18"});
  const double eightHoursLater = testNow + 8 * 3600 + 3600;

  EXPECT_THAT(daysOf(household, Json::object(), eightHoursLater), ElementsAre("2024-03-17"));
  const ZoneGuard zone("Asia/Shanghai");
  EXPECT_THAT(daysOf(household, Json::object(), eightHoursLater),
              ElementsAre("2024-03-18", "2024-03-17"));
}

TEST(GetWorkouts, IncludeBothEndsOfTheRange) {
  Household household;
  addWorkoutsOn(household, {"2024-02-28", "2024-02-29", "2024-03-01", "2024-03-02"});

  EXPECT_THAT(daysOf(household, {{"from", "2024-02-29"}, {"to", "2024-03-01"}}),
              ElementsAre("2024-03-01", "2024-02-29"));
  EXPECT_THAT(daysOf(household, {{"from", "2024-02-29"}, {"to", "2024-02-29"}}),
              ElementsAre("2024-02-29"));
}

TEST(GetWorkouts, TakeTheLargestPage) {
  Household household;
  TestDatabase& database = household.add("m1", "Ann");
  std::vector<TestWorkout> workouts;
  for (int number = 0; number < 205; ++number) {
    workouts.push_back({.start_date = stampAfter(number)});
  }
  database.addWorkouts(workouts);

  EXPECT_EQ(daysOf(household, {{"limit", 200}}).size(), 200U);
  EXPECT_EQ(daysOf(household, {{"limit", 200.0}, {"offset", 200.0}}).size(), 5U);
  EXPECT_EQ(daysOf(household, Json::object()).size(), 50U);
  EXPECT_THAT(daysOf(household, {{"offset", 2147483647}}), IsEmpty());
}

TEST(GetWorkouts, ContinueInTheSameOrder) {
  Household household;
  addWorkoutsOn(household, {"2024-03-01", "2024-03-02", "2024-03-03"});

  EXPECT_THAT(daysOf(household, {{"order", "asc"}, {"limit", 2}}),
              ElementsAre("2024-03-01", "2024-03-02"));
  EXPECT_THAT(daysOf(household, {{"order", "asc"}, {"limit", 2}, {"offset", 2}}),
              ElementsAre("2024-03-03"));
}

TEST(GetWorkouts, TrimTheActivityButNotTheSource) {
  Household household;
  household.add("m1", "Ann").addWorkout({.source_name = "Apple\u00A0Watch"});

  EXPECT_EQ(daysOf(household, {{"activity_type", "\n\u3000running\u00A0 "}}).size(), 1U);
  EXPECT_EQ(daysOf(household, {{"activity_type", " \n\u00A0"}}).size(), 1U);
  EXPECT_EQ(daysOf(household, {{"source", "Apple\u00A0Watch"}}).size(), 1U);
  EXPECT_THAT(daysOf(household, {{"source", "Apple\u00A0Watch "}}), IsEmpty());
  EXPECT_THAT(daysOf(household, {{"source", " "}}), IsEmpty());
  EXPECT_EQ(daysOf(household, {{"source", ""}}).size(), 1U);
}

TEST(GetWorkouts, PassTheErrorOfReadingThem) {
  Household household;
  household.add("m1", "Ann").run("DROP TABLE workouts");

  try {
    ToolCaller(household).of(Json::object(), Tools::workouts);
    FAIL() << "there is no table to read";
  } catch (const ReceiverError& error) {
    EXPECT_STREQ(error.what(), "prepare 失败:no such table: workouts");
  }
}

/// A filter is made ready once, however many workouts and activities it is held against.
TEST(Workouts, TakeAFilterOfMegabytesInTheirStride) {
  Household household;
  TestDatabase& database = household.add("ann", "Ann");
  std::vector<TestWorkout> workouts;
  for (int number = 0; number < 2000; ++number) {
    workouts.push_back({.activity_type = "Running" + std::to_string(number % 100),
                        .start_date = "2024-03-01 08:00:00 +0000 " + std::to_string(number)});
  }
  database.addWorkouts(workouts);
  const std::string text(4 << 20, 'x');
  const auto began = std::chrono::steady_clock::now();

  const std::string answer = ToolCaller(household).of({{"activity_type", text}}, Tools::workouts);

  EXPECT_LT(std::chrono::steady_clock::now() - began, std::chrono::seconds(4));
  EXPECT_THAT(answer, testing::HasSubstr("No workouts match this range and filters."));
}

}  // namespace
