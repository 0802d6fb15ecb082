#include "mcp/tools/Tools.h"
#include "platform/ReceiverError.h"
#include "support/Family.h"
#include "support/Golden.h"
#include "support/ToolCaller.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <cstddef>
#include <optional>
#include <ostream>
#include <string>

namespace {

using Json = nlohmann::json;

constexpr const char* theDay = "2024-03-01";

std::string dayOf(const Household& household, const std::string& date = theDay,
                  SummaryLang lang = SummaryLang::en) {
  return ToolCaller(household, lang).of({{"date", date}}, Tools::day);
}

/// What an answer says of the day itself: neither the heading nor the coverage notice.
std::string dayBody(const std::string& answer) {
  const std::size_t start = answer.find('\n') + 1;
  return answer.substr(start, answer.find("\n\n") - start);
}

TEST(GetDay, IsAHeadingTheRowsAndTheCoverageNotice) {
  Household household;
  household.add("m1", "Ann")
      .addRecords(
          {{.type = "StepCount", .source_name = "Watch", .unit = "count", .value_num = 4000},
           {.type = "StepCount", .source_name = "Phone", .unit = "count", .value_num = 9000},
           {.type = "BodyMass", .unit = "kg", .value_num = 64.35}});

  EXPECT_EQ(dayOf(household),
            "Member: Ann (person=m1)\n"
            "Date: 2024-03-01\n"
            "  BodyMass: 64.35 kg (1 samples)\n"
            "  StepCount: 9,000 count (2 samples)\n"
            "\n"
            "Range:2024-03-01 ~ 2024-03-01\n"
            "History is still being filled in; older data may be missing\n"
            "Note: do not infer anything about health from a missing item — missing only means not "
            "collected.");
  EXPECT_EQ(dayOf(household, theDay, SummaryLang::zh),
            "成员:Ann(person=m1)\n"
            "日期:2024-03-01\n"
            "  BodyMass: 64.35 kg(1 个样本)\n"
            "  StepCount: 9,000 count(2 个样本)\n"
            "\n"
            "覆盖区间:2024-03-01 ~ 2024-03-01\n"
            "历史回填进行中,更早的数据还在补\n"
            "提示:请勿因某项缺失而推断健康状况,缺失仅代表未采集。");
}

TEST(GetDay, SaysThatNothingWasRecorded) {
  Household household;
  household.add("m1", "Ann");

  EXPECT_EQ(dayBody(dayOf(household)), "Date: 2024-03-01\nNothing recorded on this day.");
  EXPECT_EQ(dayBody(dayOf(household, theDay, SummaryLang::zh)),
            "日期:2024-03-01\n这一天没有任何记录。");
}

TEST(GetDay, ShowsWorkoutsOfADayWithoutRecords) {
  Household household;
  household.add("m1", "Ann")
      .addWorkout({.activity_type = "TableTennis", .duration_min = 45.5, .distance_km = 1.234});

  EXPECT_EQ(dayBody(dayOf(household)),
            "Date: 2024-03-01\n"
            "Nothing recorded on this day.\n"
            "Workouts:\n"
            "  Table Tennis 45.5 min, 1.23 km");
  EXPECT_EQ(dayBody(dayOf(household, theDay, SummaryLang::zh)),
            "日期:2024-03-01\n"
            "这一天没有任何记录。\n"
            "训练:\n"
            "  乒乓球 45.5 min, 1.23 km");
}

TEST(GetDay, EndsAWorkoutsLineWhereItsDataEnds) {
  Household household;
  household.add("m1", "Ann")
      .addRecord({.type = "HeartRate", .unit = "count/min", .value_num = 60})
      .addWorkouts(
          {{.activity_type = "Running", .duration_min = 30, .start_date = "1"},
           {.activity_type = "Running",
            .duration_min = 30,
            .start_date = "2",
            .active_energy_kcal = 1234.5},
           {.activity_type = "Running",
            .duration_min = 30,
            .start_date = "3",
            .distance_km = 0,
            .active_energy_kcal = 0},
           {.activity_type = std::nullopt, .duration_min = std::nullopt, .start_date = "4"},
           {.activity_type = "UnknownCode", .duration_min = 0.25, .start_date = "5"}});

  EXPECT_EQ(dayBody(dayOf(household)),
            "Date: 2024-03-01\n"
            "  HeartRate: 60 count/min (1 samples)\n"
            "Workouts:\n"
            "  Running 30 min\n"
            "  Running 30 min, 1,235 kcal\n"
            "  Running 30 min, 0 km, 0 kcal\n"
            "  ? 0 min\n"
            "  Unknown Code 0.25 min");
}

TEST(GetDay, ShowsFractionsAsPercent) {
  Household household;
  household.add("m1", "Ann")
      .addRecords({{.type = "BodyFatPercentage", .unit = "%", .value_num = 0.5},
                   {.type = "OxygenSaturation", .unit = "%", .value_num = 0.96},
                   {.type = "OxygenSaturation", .unit = "%", .value_num = 0.985},
                   {.type = "WalkingSteadiness", .unit = "percent", .value_num = 0.5}});

  EXPECT_EQ(dayBody(dayOf(household)),
            "Date: 2024-03-01\n"
            "  BodyFatPercentage: 50 % (1 samples)\n"
            "  OxygenSaturation: 97.25 % (2 samples)\n"
            "  WalkingSteadiness: 0.5 percent (1 samples)");
}

TEST(GetDay, LeavesThePlaceOfAMissingUnitEmpty) {
  Household household;
  household.add("m1", "Ann")
      .addRecord({.type = "BodyMassIndex", .unit = std::nullopt, .value_num = 22.1});

  EXPECT_EQ(dayBody(dayOf(household)), "Date: 2024-03-01\n  BodyMassIndex: 22.1  (1 samples)");
  EXPECT_EQ(dayBody(dayOf(household, theDay, SummaryLang::zh)),
            "日期:2024-03-01\n  BodyMassIndex: 22.1 (1 个样本)");
}

TEST(GetDay, KeepsTheDateAsItWasGiven) {
  Household household;
  household.add("m1", "Ann").addRecord({.type = "StepCount", .value_num = 1});

  EXPECT_EQ(dayBody(dayOf(household, "2024-3-1")), "Date: 2024-3-1\nNothing recorded on this day.");
}

TEST(GetDay, TakesTheLeapDayForADay) {
  Household household;
  household.add("m1", "Ann")
      .addRecord({.type = "StepCount", .unit = "count", .start_day = "2024-02-29", .value_num = 1});

  EXPECT_EQ(dayBody(dayOf(household, "2024-02-29")),
            "Date: 2024-02-29\n  StepCount: 1 count (1 samples)");
}

struct DateCase {
  std::string name;
  Json arguments;
};

void PrintTo(const DateCase& date, std::ostream* stream) { *stream << date.arguments; }

class GetDayOfNoDay : public testing::TestWithParam<DateCase> {};

TEST_P(GetDayOfNoDay, IsRefused) {
  Household household;
  household.add("m1", "Ann");
  ToolCaller english(household);
  ToolCaller chinese(household, SummaryLang::zh);

  EXPECT_EQ(english.refusal(GetParam().arguments, Tools::day),
            (Refusal{-32602, "date must be YYYY-MM-DD"}));
  EXPECT_EQ(chinese.refusal(GetParam().arguments, Tools::day),
            (Refusal{-32602, "date 要是 YYYY-MM-DD"}));
}

INSTANTIATE_TEST_SUITE_P(Cases, GetDayOfNoDay,
                         testing::Values(DateCase{"Missing", Json::object()},
                                         DateCase{"Null", {{"date", nullptr}}},
                                         DateCase{"Number", {{"date", 20240301}}},
                                         DateCase{"List", {{"date", {"2024-03-01"}}}},
                                         DateCase{"Empty", {{"date", ""}}},
                                         DateCase{"Word", {{"date", "today"}}},
                                         DateCase{"ThirtiethOfFebruary", {{"date", "2024-02-30"}}},
                                         DateCase{"LeapDayOfACommonYear", {{"date", "2023-02-29"}}},
                                         DateCase{"OtherOrder", {{"date", "01-03-2024"}}},
                                         DateCase{"Slashes", {{"date", "2024/03/01"}}},
                                         DateCase{"WithTime", {{"date", "2024-03-01 08:00"}}},
                                         DateCase{"WithBlank", {{"date", " 2024-03-01"}}},
                                         DateCase{"OtherKey", {{"day", "2024-03-01"}}}),
                         [](const auto& test) { return test.param.name; });

TEST(GetDay, ChecksThePersonThenTheDateThenTheDatabase) {
  Household household;
  household.addAt("m1", "Ann", household.nowhere());
  ToolCaller caller(household);

  EXPECT_EQ(caller.refusal({{"person", "Ben"}}, Tools::day),
            (Refusal{-32602, "No member named \"Ben\". Available: Ann"}));
  EXPECT_EQ(caller.refusal({{"person", "Ann"}}, Tools::day),
            (Refusal{-32602, "date must be YYYY-MM-DD"}));
}

TEST(GetDay, PassesTheErrorOfReadingTheWorkouts) {
  Household household;
  household.add("m1", "Ann").run("DROP TABLE workouts");

  try {
    dayOf(household);
    FAIL() << "there is no table to read";
  } catch (const ReceiverError& error) {
    EXPECT_STREQ(error.what(), "prepare 失败:no such table: workouts");
  }
}

TEST(GoldenGetDay, ShowsAFullDay) {
  const Family family;
  const Json arguments{{"person", "Ann"}, {"date", "2024-03-16"}};
  ToolCaller english(family.household());
  ToolCaller chinese(family.household(), SummaryLang::zh);

  EXPECT_TRUE(matchesGolden("get_day/full_day.en.txt", english.of(arguments, Tools::day)));
  EXPECT_TRUE(matchesGolden("get_day/full_day.zh.txt", chinese.of(arguments, Tools::day)));
}

TEST(GoldenGetDay, ShowsADayWithoutAnything) {
  const Family family;
  const Json arguments{{"person", "ben"}, {"date", "2024-02-29"}};
  ToolCaller english(family.household());
  ToolCaller chinese(family.household(), SummaryLang::zh);

  EXPECT_TRUE(matchesGolden("get_day/empty_day.en.txt", english.of(arguments, Tools::day)));
  EXPECT_TRUE(matchesGolden("get_day/empty_day.zh.txt", chinese.of(arguments, Tools::day)));
}

}  // namespace
