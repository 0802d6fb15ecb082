#include "mcp/tools/Tools.h"
#include "support/Golden.h"
#include "support/ToolCaller.h"
#include "support/ZoneGuard.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <optional>
#include <string>

namespace {

using Json = nlohmann::json;
using testing::HasSubstr;
using testing::Not;

/// Two weeks of one person: steps of two devices, sleep, and a few measurements.
void fill(TestDatabase& database) {
  database.addRecords(
      {{.type = "StepCount", .source_name = "Watch", .start_day = "2024-03-01", .value_num = 5000},
       {.type = "StepCount",
        .source_name = "Watch",
        .start_date = "2024-03-01 09:00:00 +0000",
        .start_day = "2024-03-01",
        .value_num = 3000},
       {.type = "StepCount", .source_name = "iPhone", .start_day = "2024-03-01", .value_num = 7500},
       {.type = "StepCount",
        .source_name = "iPhone",
        .start_day = "2024-03-02",
        .value_num = 999.96},
       {.type = "StepCount",
        .source_name = "Watch",
        .start_day = "2024-03-04",
        .value_num = 12345}});
  database.addRecords({{.type = "SleepAnalysis",
                        .start_date = "2024-03-01 23:30:00 +0000",
                        .start_day = "2024-03-01",
                        .end_date = "2024-03-02 07:00:00 +0000",
                        .value = "HKCategoryValueSleepAnalysisAsleepCore"},
                       {.type = "SleepAnalysis",
                        .start_date = "2024-03-01 22:00:00 +0000",
                        .start_day = "2024-03-01",
                        .end_date = "2024-03-02 08:00:00 +0000",
                        .value = "HKCategoryValueSleepAnalysisInBed"},
                       {.type = "SleepAnalysis",
                        .start_date = "2024-03-03 00:10:00 +0000",
                        .start_day = "2024-03-03",
                        .end_date = "2024-03-03 06:20:30 +0000",
                        .value = "HKCategoryValueSleepAnalysisAsleepDeep"},
                       {.type = "SleepAnalysis",
                        .start_date = "2024-03-04 13:00:00 +0000",
                        .start_day = "2024-03-04",
                        .end_date = "2024-03-04 14:59:00 +0000",
                        .value = "HKCategoryValueSleepAnalysisAsleepREM"}});
  database.addRecords({{.type = "RestingHeartRate", .start_day = "2024-03-01", .value_num = 60},
                       {.type = "RestingHeartRate",
                        .start_date = "2024-03-01 09:00:00 +0000",
                        .start_day = "2024-03-01",
                        .value_num = 63},
                       {.type = "RestingHeartRate", .start_day = "2024-03-02", .value_num = 58},
                       {.type = "OxygenSaturation", .start_day = "2024-03-01", .value_num = 0.97},
                       {.type = "OxygenSaturation", .start_day = "2024-03-02", .value_num = 0.955},
                       {.type = "BodyMassIndex", .start_day = "2024-03-03", .value_num = 21.537}});
}

struct TrendCase {
  std::string name;  ///< of the golden files
  Json arguments;
};

class GoldenTrend : public testing::TestWithParam<TrendCase> {};

TEST_P(GoldenTrend, IsTheWholeAnswer) {
  Household household;
  fill(household.add("ann", "Ann"));
  const auto golden = [&](const std::string& language, SummaryLang lang) {
    return matchesGolden("get_trend/" + GetParam().name + "." + language + ".txt",
                         ToolCaller(household, lang).of(GetParam().arguments, Tools::trend));
  };

  EXPECT_TRUE(golden("en", SummaryLang::en));
  EXPECT_TRUE(golden("zh", SummaryLang::zh));
}

INSTANTIATE_TEST_SUITE_P(
    Cases, GoldenTrend,
    testing::Values(TrendCase{"steps", {{"metric", "steps"}}},
                    TrendCase{"sleep", {{"metric", "sleep"}}},
                    TrendCase{"median", {{"metric", "resting_heart_rate"}, {"to", "2024-03-10"}}},
                    TrendCase{"percent", {{"metric", "oxygen_saturation"}}},
                    TrendCase{"no_unit", {{"metric", "bmi"}, {"from", "2024-03-01"}}},
                    TrendCase{"no_data", {{"metric", "weight"}}},
                    TrendCase{"one_day",
                              {{"metric", "steps"}, {"from", "2024-03-04"}, {"to", "2024-03-04"}}},
                    TrendCase{"backwards",
                              {{"metric", "steps"}, {"from", "2024-03-04"}, {"to", "2024-03-01"}}}),
    [](const auto& test) { return test.param.name; });

TEST(Trend, LeavesOutStatisticsAndHeadingWithoutData) {
  Household household;
  household.add("ann", "Ann");

  const std::string en = ToolCaller(household).of({{"metric", "steps"}}, Tools::trend);
  const std::string zh =
      ToolCaller(household, SummaryLang::zh).of({{"metric", "steps"}}, Tools::trend);

  EXPECT_THAT(en, Not(HasSubstr("Daily:")));
  EXPECT_THAT(en, Not(HasSubstr("Days with data")));
  EXPECT_THAT(zh, Not(HasSubstr("逐日")));
  EXPECT_THAT(zh, Not(HasSubstr("有数据的天数")));
}

TEST(Trend, ListsAFractionOfAPercentMetricAsPercent) {
  Household household;
  household.add("ann", "Ann").addRecord({.type = "OxygenSaturation", .value_num = 0.97});

  EXPECT_THAT(
      ToolCaller(household).of({{"metric", "oxygen_saturation"}}, Tools::trend),
      HasSubstr("Days with data: 1, mean 97, min 97, max 97\n\nDaily:\n2024-03-01  97\n\n"));
}

TEST(Trend, TakesInfinitiesForNoNumbers) {
  Household household;
  household.add("ann", "Ann")
      .addRecords({{.type = "RestingHeartRate", .start_day = "2024-03-02", .value_num = 60},
                   {.type = "RestingHeartRate", .start_day = "2024-03-03", .value_num = 58}})
      .run(
          "INSERT INTO records (type, start_date, start_day, value_num) VALUES "
          "('RestingHeartRate', 'a', '2024-03-01', 9e999), "
          "('RestingHeartRate', 'b', '2024-03-02', -9e999)");

  EXPECT_THAT(ToolCaller(household).of({{"metric", "resting_heart_rate"}}, Tools::trend),
              HasSubstr("Days with data: 2, mean 59, min 58, max 60\n\n"
                        "Daily:\n2024-03-02  60\n2024-03-03  58\n"));
}

TEST(Trend, IncludesBothEndsOfTheRange) {
  Household household;
  household.add("ann", "Ann")
      .addRecords({{.type = "BodyMass", .start_day = "2024-02-29", .value_num = 1},
                   {.type = "BodyMass", .start_day = "2024-03-01", .value_num = 2},
                   {.type = "BodyMass", .start_day = "2024-03-02", .value_num = 3},
                   {.type = "BodyMass", .start_day = "2024-03-03", .value_num = 4}});
  const Json arguments{{"metric", "weight"}, {"from", "2024-03-01"}, {"to", "2024-03-02"}};

  EXPECT_THAT(ToolCaller(household).of(arguments, Tools::trend),
              HasSubstr("Range: 2024-03-01 ~ 2024-03-02\n"
                        "Days with data: 2, mean 2.5, min 2, max 3\n\n"
                        "Daily:\n2024-03-01  2\n2024-03-02  3\n\n"));
}

struct ZoneCase {
  std::string name;
  std::string zone;
  double now;
  std::string line;
};

class TrendToday : public testing::TestWithParam<ZoneCase> {};

TEST_P(TrendToday, IsTheMachinesDay) {
  Household household;
  household.add("ann", "Ann");
  const ZoneGuard zone(GetParam().zone);
  ToolCaller caller(household, SummaryLang::en, GetParam().now);

  EXPECT_THAT(caller.of({{"metric", "steps"}, {"to", "2024-02-30"}}, Tools::trend),
              HasSubstr("\nRange: " + GetParam().line + "\n"));
}

INSTANTIATE_TEST_SUITE_P(
    Zones, TrendToday,
    testing::Values(ZoneCase{"UTC", "UTC", testNow, "2023-12-18 ~ 2024-03-17"},
                    ZoneCase{"Shanghai", "Asia/Shanghai", 1710691200, "2023-12-19 ~ 2024-03-18"},
                    ZoneCase{"NewYork", "America/New_York", 1710647999, "2023-12-17 ~ 2024-03-16"}),
    [](const auto& test) { return test.param.name; });

TEST(Trend, AnswersAboutTheNamedMemberAlone) {
  Household household;
  household.add("1", "Ann").addRecord({.type = "BodyMass", .value_num = 60});
  household.add("2", "Bob").addRecord({.type = "BodyMass", .value_num = 80});
  ToolCaller caller(household);

  EXPECT_THAT(caller.of({{"metric", "weight"}, {"person", "Bob"}}, Tools::trend),
              testing::AllOf(testing::StartsWith("Member: Bob (person=2)\n"),
                             HasSubstr("2024-03-01  80\n"),
                             Not(HasSubstr("60"))));
}

TEST(Trend, RepairsADayThatIsNoValidText) {
  Household household;
  household.add("ann", "Ann")
      .run(
          "INSERT INTO records (type, start_date, start_day, value_num) VALUES"
          " ('BodyMass', '2024-03-01 08:00:00 +0000', CAST(X'323032342D30332D3031FF' AS TEXT), "
          "60)");

  EXPECT_THAT(ToolCaller(household).of({{"metric", "weight"}}, Tools::trend),
              HasSubstr("Daily:\n2024-03-01\uFFFD  60\n"));
}

struct RefusedRangeCase {
  std::string name;
  Json arguments;
  std::string start;  ///< of the message
};

class TrendOrder : public testing::TestWithParam<RefusedRangeCase> {};

TEST_P(TrendOrder, ChecksThePersonThenTheMetricThenTheDatabase) {
  Household household;
  for (const char* id : {"1", "2"}) household.addAt(id, id, household.nowhere());

  const std::optional<Refusal> refusal =
      ToolCaller(household).refusal(GetParam().arguments, Tools::trend);

  ASSERT_TRUE(refusal);
  EXPECT_THAT(refusal->message, testing::StartsWith(GetParam().start));
}

INSTANTIATE_TEST_SUITE_P(
    Cases, TrendOrder,
    testing::Values(RefusedRangeCase{"NothingGiven", Json::object(), "This Mac has 2 members"},
                    RefusedRangeCase{"PersonUnknownAndMetricMissing",
                                     {{"person", "Bob"}},
                                     "No member named \"Bob\""},
                    RefusedRangeCase{"PersonUnknownAndMetricUnknown",
                                     {{"person", "Bob"}, {"metric", "x"}},
                                     "No member named \"Bob\""},
                    RefusedRangeCase{"MetricMissing", {{"person", "1"}}, "metric is required"},
                    RefusedRangeCase{"MetricUnknown",
                                     {{"person", "1"}, {"metric", "Steps"}},
                                     "Unknown metric \"Steps\""},
                    RefusedRangeCase{"DatabaseMissing",
                                     {{"person", "1"}, {"metric", "steps"}},
                                     "打不开 1 的数据:数据目录不可用"}),
    [](const auto& test) { return test.param.name; });

TEST(Trend, LetsGoOfTheDatabase) {
  Household household;
  TestDatabase& database = household.add("ann", "Ann");
  database.addRecord({.type = "BodyMass", .value_num = 60});

  ToolCaller(household).of({{"metric", "weight"}}, Tools::trend);

  // Takes the write-ahead log away, which no other connection may hold.
  EXPECT_NO_THROW(database.useRollbackJournal());
}

}  // namespace
