#include "mcp/tools/Tools.h"
#include "support/Family.h"
#include "support/Golden.h"
#include "support/MemorySource.h"
#include "support/ToolCaller.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <cstddef>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

namespace {

using Json = nlohmann::json;
using testing::HasSubstr;

const Json twoWeeks{{"metric", "steps"},
                    {"a_from", "2024-03-01"},
                    {"a_to", "2024-03-07"},
                    {"b_from", "2024-02-01"},
                    {"b_to", "2024-02-07"}};

/// The same call about another metric.
Json about(const std::string& metric) {
  Json arguments = twoWeeks;
  arguments["metric"] = metric;
  return arguments;
}

/// The same call with one more argument, or another value.
Json with(const std::string& key, const Json& value) {
  Json arguments = twoWeeks;
  arguments[key] = value;
  return arguments;
}

Json without(const std::string& key) {
  Json arguments = twoWeeks;
  arguments.erase(key);
  return arguments;
}

std::string comparisonOf(const Household& household, const Json& arguments = twoWeeks,
                         SummaryLang lang = SummaryLang::en) {
  return ToolCaller(household, lang).of(arguments, Tools::compare);
}

/// The lines about the two ranges: neither heading, nor metric, nor coverage notice.
std::string body(const std::string& answer) {
  const std::size_t start = answer.find("\nA  ") + 1;
  return answer.substr(start, answer.find("\n\n") - start);
}

void addDays(TestDatabase& database, const std::string& type, std::string_view first,
             const std::vector<double>& values) {
  std::size_t next = 0;
  for (const std::string& day : daysFrom(first, static_cast<int>(values.size()))) {
    database.addRecord({.type = type, .start_day = day, .value_num = values[next++]});
  }
}

/// The two range lines, and the difference if any, for these daily values.
std::string bodyOf(const std::string& metric, const std::string& type, const std::vector<double>& a,
                   const std::vector<double>& b, SummaryLang lang = SummaryLang::en) {
  Household household;
  TestDatabase& database = household.add("m1", "Ann");
  addDays(database, type, "2024-03-01", a);
  addDays(database, type, "2024-02-01", b);
  return body(comparisonOf(household, about(metric), lang));
}

TEST(ComparePeriods, IsAHeadingTheMetricTwoMeansTheirDifferenceAndTheCoverageNotice) {
  Household household;
  TestDatabase& database = household.add("m1", "Ann");
  addDays(database, "StepCount", "2024-03-01", {100, 120});
  addDays(database, "StepCount", "2024-02-01", {90, 100, 110});

  EXPECT_EQ(comparisonOf(household),
            "Member: Ann (person=m1)\n"
            "Metric: steps (count) · 每日合计(同一天多个来源分别合计后取最大值,不相加)\n"
            "A  2024-03-01 ~ 2024-03-07:mean 110 over 2 days\n"
            "B  2024-02-01 ~ 2024-02-07:mean 100 over 3 days\n"
            "A - B = 10 (+10.0%)\n"
            "\n"
            "Range:2024-02-01 ~ 2024-03-02\n"
            "History is still being filled in; older data may be missing\n"
            "Note: do not infer anything about health from a missing item — missing only means not "
            "collected.");
  EXPECT_EQ(comparisonOf(household, twoWeeks, SummaryLang::zh),
            "成员:Ann(person=m1)\n"
            "指标:steps(count)· 每日合计(同一天多个来源分别合计后取最大值,不相加)\n"
            "A  2024-03-01 ~ 2024-03-07:日均 110(2 天)\n"
            "B  2024-02-01 ~ 2024-02-07:日均 100(3 天)\n"
            "A - B = 10(+10.0%)\n"
            "\n"
            "覆盖区间:2024-02-01 ~ 2024-03-02\n"
            "历史回填进行中,更早的数据还在补\n"
            "提示:请勿因某项缺失而推断健康状况,缺失仅代表未采集。");
}

TEST(ComparePeriods, SaysThatARangeWithoutDataIsNotZero) {
  EXPECT_EQ(bodyOf("steps", "StepCount", {100}, {}),
            "A  2024-03-01 ~ 2024-03-07:mean 100 over 1 days\n"
            "B  2024-02-01 ~ 2024-02-07:no data (not zero)");
  EXPECT_EQ(bodyOf("steps", "StepCount", {}, {100}, SummaryLang::zh),
            "A  2024-03-01 ~ 2024-03-07:没有数据(不代表 0)\n"
            "B  2024-02-01 ~ 2024-02-07:日均 100(1 天)");
  EXPECT_EQ(bodyOf("steps", "StepCount", {}, {}),
            "A  2024-03-01 ~ 2024-03-07:no data (not zero)\n"
            "B  2024-02-01 ~ 2024-02-07:no data (not zero)");
}

struct DifferenceCase {
  std::string name;
  std::vector<double> a;
  std::vector<double> b;
  std::string expected;
};

void PrintTo(const DifferenceCase& difference, std::ostream* stream) { *stream << difference.name; }

class Difference : public testing::TestWithParam<DifferenceCase> {};

TEST_P(Difference, HasItsPercentageOfB) {
  const std::string lines = bodyOf("weight", "BodyMass", GetParam().a, GetParam().b);

  EXPECT_EQ(lines.substr(lines.rfind('\n') + 1), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, Difference,
    testing::Values(DifferenceCase{"More", {110}, {100}, "A - B = 10 (+10.0%)"},
                    DifferenceCase{"Less", {90}, {100}, "A - B = -10 (-10.0%)"},
                    DifferenceCase{"Equal", {90, 110}, {100}, "A - B = 0 (+0.0%)"},
                    DifferenceCase{"OfZero", {5}, {0}, "A - B = 5 (+0.0%)"},
                    DifferenceCase{"BothZero", {0}, {0}, "A - B = 0 (+0.0%)"},
                    DifferenceCase{"ZeroOfSomething", {0}, {8}, "A - B = -8 (-100.0%)"},
                    DifferenceCase{"AboveANegativeMean", {-5}, {-10}, "A - B = 5 (-50.0%)"},
                    DifferenceCase{"SmallerThanItsDigits", {99.99}, {100}, "A - B = -0.01 (-0.0%)"},
                    DifferenceCase{"Threefold", {3000}, {1000}, "A - B = 2,000 (+200.0%)"},
                    DifferenceCase{"OneDecimal", {2}, {3}, "A - B = -1 (-33.3%)"},
                    DifferenceCase{"OfMeans", {60, 61, 63}, {60}, "A - B = 1.33 (+2.2%)"}),
    [](const auto& test) { return test.param.name; });

TEST(ComparePeriods, ShowsFractionsAsPercent) {
  EXPECT_EQ(bodyOf("oxygen_saturation", "OxygenSaturation", {0.96, 0.98}, {0.5}),
            "A  2024-03-01 ~ 2024-03-07:mean 97 over 2 days\n"
            "B  2024-02-01 ~ 2024-02-07:mean 50 over 1 days\n"
            "A - B = 47 (+94.0%)");
}

TEST(ComparePeriods, ComparesNightsOfSleep) {
  Household household;
  TestDatabase& database = household.add("m1", "Ann");
  const auto sleep = [&database](
                         const std::string& day, const std::string& start, const std::string& end) {
    database.addRecord({.type = "SleepAnalysis",
                        .start_date = day + " " + start + " +0000",
                        .start_day = day,
                        .end_date = day + " " + end + " +0000",
                        .value = "HKCategoryValueSleepAnalysisAsleepCore"});
  };
  sleep("2024-03-01", "19:00:00", "23:00:00");
  sleep("2024-02-01", "22:00:00", "23:59:00");  // too short for a night

  EXPECT_EQ(body(comparisonOf(household, about("sleep"))),
            "A  2024-03-01 ~ 2024-03-07:mean 240 over 1 days\n"
            "B  2024-02-01 ~ 2024-02-07:no data (not zero)");
}

TEST(ComparePeriods, IncludesBothEndsOfARange) {
  Household household;
  TestDatabase& database = household.add("m1", "Ann");
  addDays(database, "StepCount", "2024-01-31", {1000, 1, 0, 0, 0, 0, 0, 7, 1000});
  addDays(database, "StepCount", "2024-02-29", {1000, 2, 0, 0, 0, 0, 0, 8, 1000});

  EXPECT_THAT(comparisonOf(household), HasSubstr("\nA  2024-03-01 ~ 2024-03-07:mean 1.43 over 7"));
  EXPECT_THAT(comparisonOf(household), HasSubstr("\nB  2024-02-01 ~ 2024-02-07:mean 1.14 over 7"));
}

TEST(ComparePeriods, FindsNothingInARangeThatEndsBeforeItBegins) {
  Household household;
  addDays(household.add("m1", "Ann"), "StepCount", "2024-02-01", std::vector<double>(60, 100));
  Json arguments = with("a_from", "2024-03-07");
  arguments["a_to"] = "2024-03-01";

  EXPECT_EQ(body(comparisonOf(household, arguments)),
            "A  2024-03-07 ~ 2024-03-01:no data (not zero)\n"
            "B  2024-02-01 ~ 2024-02-07:mean 100 over 7 days");
}

TEST(ComparePeriods, KeepsDatesAsTheyWereGiven) {
  Household household;
  household.add("m1", "Ann");

  EXPECT_THAT(comparisonOf(household, with("a_from", "2024-3-1")),
              HasSubstr("\nA  2024-3-1 ~ 2024-03-07:"));
}

TEST(ComparePeriods, TakesRangesThatOverlap) {
  Household household;
  addDays(household.add("m1", "Ann"), "StepCount", "2024-03-01", {100, 200});
  Json arguments = with("b_from", "2024-03-02");
  arguments["b_to"] = "2024-03-02";

  EXPECT_THAT(comparisonOf(household, arguments), HasSubstr("\nA - B = -50 (-25.0%)\n"));
}

class MalformedDate : public testing::TestWithParam<std::string> {};

TEST_P(MalformedDate, IsRefusedByItsKeyInChineseAlways) {
  Household household;
  household.add("m1", "Ann");
  const std::string key = GetParam();
  const Refusal expected{-32602, key + " 要是 YYYY-MM-DD"};

  for (const SummaryLang lang : {SummaryLang::en, SummaryLang::zh}) {
    ToolCaller caller(household, lang);
    EXPECT_EQ(caller.refusal(without(key), Tools::compare), expected);
    for (const Json& value : {Json(nullptr), Json(7), Json(""), Json("soon"), Json("2023-02-29")}) {
      EXPECT_EQ(caller.refusal(with(key, value), Tools::compare), expected) << value;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Keys, MalformedDate, testing::Values("a_from", "a_to", "b_from", "b_to"));

struct OrderCase {
  std::string name;
  Json arguments;
  Refusal expected;
};

void PrintTo(const OrderCase& order, std::ostream* stream) { *stream << order.name; }

class ChecksOfComparePeriods : public testing::TestWithParam<OrderCase> {};

TEST_P(ChecksOfComparePeriods, ReportTheFirstThatFails) {
  Household household;
  household.addAt("m1", "Ann", household.nowhere());

  EXPECT_EQ(ToolCaller(household).refusal(GetParam().arguments, Tools::compare),
            GetParam().expected);
}

const std::string catalog =
    "steps(count), distance(km), flights(count), active_energy(kcal), "
    "resting_heart_rate(count/min), heart_rate(count/min), hrv(ms), respiratory_rate(count/min), "
    "oxygen_saturation(%), vo2max(mL/min·kg), weight(kg), bmi(无单位), body_fat(%), "
    "exercise_minutes(min), stand_minutes(min), sleep(min)";

INSTANTIATE_TEST_SUITE_P(
    Cases, ChecksOfComparePeriods,
    testing::Values(
        OrderCase{
            "Person", {{"person", "Ben"}}, {-32602, "No member named \"Ben\". Available: Ann"}},
        OrderCase{"NoMetric", Json::object(), {-32602, "metric is required. One of: " + catalog}},
        OrderCase{"UnknownMetric",
                  {{"metric", "Steps"}},
                  {-32602, "Unknown metric \"Steps\". One of: " + catalog}},
        OrderCase{"FirstDayOfA", {{"metric", "steps"}}, {-32602, "a_from 要是 YYYY-MM-DD"}},
        OrderCase{"LastDayOfA",
                  {{"metric", "steps"}, {"a_from", "2024-03-01"}},
                  {-32602, "a_to 要是 YYYY-MM-DD"}},
        OrderCase{"FirstDayOfB",
                  {{"metric", "steps"}, {"a_from", "2024-03-01"}, {"a_to", "2024-03-07"}},
                  {-32602, "b_from 要是 YYYY-MM-DD"}},
        OrderCase{"LastDayOfB", without("b_to"), {-32602, "b_to 要是 YYYY-MM-DD"}}),
    [](const auto& test) { return test.param.name; });

struct GoldenCase {
  std::string name;
  Json arguments;
};

void PrintTo(const GoldenCase& golden, std::ostream* stream) { *stream << golden.name; }

class GoldenComparePeriods : public testing::TestWithParam<GoldenCase> {};

TEST_P(GoldenComparePeriods, IsTheWholeAnswer) {
  const Family family;
  const std::string name = "compare_periods/" + GetParam().name;

  EXPECT_TRUE(
      matchesGolden(name + ".en.txt", comparisonOf(family.household(), GetParam().arguments)));
  EXPECT_TRUE(matchesGolden(
      name + ".zh.txt", comparisonOf(family.household(), GetParam().arguments, SummaryLang::zh)));
}

INSTANTIATE_TEST_SUITE_P(Cases, GoldenComparePeriods,
                         testing::Values(GoldenCase{"resting_heart_rate",
                                                    {{"person", "Ann"},
                                                     {"metric", "resting_heart_rate"},
                                                     {"a_from", "2024-02-01"},
                                                     {"a_to", "2024-02-29"},
                                                     {"b_from", "2023-02-01"},
                                                     {"b_to", "2023-02-28"}}},
                                         GoldenCase{"steps_before_the_history",
                                                    {{"person", "本"},
                                                     {"metric", "steps"},
                                                     {"a_from", "2024-03-03"},
                                                     {"a_to", "2024-03-16"},
                                                     {"b_from", "2023-03-03"},
                                                     {"b_to", "2023-03-16"}}}),
                         [](const auto& test) { return test.param.name; });

}  // namespace
