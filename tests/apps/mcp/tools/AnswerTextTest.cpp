#include "mcp/tools/AnswerText.h"
#include "support/EnvironmentGuard.h"
#include "support/ToolCaller.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <clocale>
#include <limits>
#include <string>
#include <vector>

namespace {

using Limits = std::numeric_limits<double>;

const DigitGrouping byThrees;

struct NumberCase {
  std::string name;
  double value;
  std::string text;
};

class Fmt : public testing::TestWithParam<NumberCase> {};

TEST_P(Fmt, ShowsAsManyDecimalsAsMatter) {
  EXPECT_EQ(Tools::fmt(GetParam().value, byThrees), GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(Thousands, Fmt,
                         testing::Values(NumberCase{"Exactly", 1000, "1,000"},
                                         NumberCase{"HalfGoesAwayFromZero", 1234.5, "1,235"},
                                         NumberCase{"EvenHalfToo", 1002.5, "1,003"},
                                         NumberCase{"BelowTheHalf", 1234.49, "1,234"},
                                         NumberCase{"NegativeHalf", -1234.5, "-1,235"},
                                         NumberCase{"NegativeExactly", -1000, "-1,000"},
                                         NumberCase{"Millions", 1234567.8, "1,234,568"}),
                         [](const auto& test) { return test.param.name; });

INSTANTIATE_TEST_SUITE_P(Hundreds, Fmt,
                         testing::Values(NumberCase{"Exactly", 100, "100"},
                                         NumberCase{"OneDecimal", 123.44, "123.4"},
                                         NumberCase{"ZeroAtTheEnd", 100.04, "100"},
                                         NumberCase{"JustBelowAThousand", 999.94, "999.9"},
                                         // Stored a little above 999.95, so printf rounds it up.
                                         NumberCase{"HalfAsItIsStored", 999.95, "1000"},
                                         NumberCase{"RoundedUpStaysUngrouped", 999.96, "1000"},
                                         NumberCase{"Negative", -999.96, "-1000"}),
                         [](const auto& test) { return test.param.name; });

INSTANTIATE_TEST_SUITE_P(Ones, Fmt,
                         testing::Values(NumberCase{"Exactly", 1, "1"},
                                         NumberCase{"WholeNumber", 12.0, "12"},
                                         NumberCase{"Ten", 10, "10"},
                                         NumberCase{"OneDecimal", 12.5, "12.5"},
                                         NumberCase{"TwoDecimals", 12.34, "12.34"},
                                         NumberCase{"ThirdDecimalIsRounded", 12.346, "12.35"},
                                         // Stored a little above 99.995.
                                         NumberCase{"JustBelowAHundred", 99.995, "100"},
                                         NumberCase{"JustAboveNinetyNine", 99.994, "99.99"},
                                         NumberCase{"Negative", -12.50, "-12.5"}),
                         [](const auto& test) { return test.param.name; });

INSTANTIATE_TEST_SUITE_P(BelowOne, Fmt,
                         testing::Values(NumberCase{"Zero", 0, "0"},
                                         NumberCase{"NegativeZero", -0.0, "0"},
                                         NumberCase{"ThreeDecimals", 0.1234, "0.123"},
                                         NumberCase{"TwoDecimals", 0.97, "0.97"},
                                         // Stored a little above 0.0005.
                                         NumberCase{"HalfOfTheLastPlace", 0.0005, "0.001"},
                                         NumberCase{"BelowTheLastPlace", 0.00049, "0"},
                                         NumberCase{"NegativeBelowTheLastPlace", -0.0001, "0"},
                                         NumberCase{"Negative", -0.25, "-0.25"},
                                         NumberCase{"JustBelowOne", 0.9996, "1"},
                                         NumberCase{"Smallest", Limits::denorm_min(), "0"}),
                         [](const auto& test) { return test.param.name; });

INSTANTIATE_TEST_SUITE_P(
    Extremes, Fmt,
    testing::Values(NumberCase{"EveryWholeNumberUpToHere", 0x1p53, "9,007,199,254,740,992"},
                    NumberCase{"LastBeforeTwoToThe63", 0x1p63 - 1024, "9,223,372,036,854,774,784"},
                    NumberCase{"TwoToThe63", 0x1p63, "9223372036854775808"},
                    NumberCase{"MinusTwoToThe63", -0x1p63, "-9223372036854775808"},
                    NumberCase{"Infinite", Limits::infinity(), "inf"},
                    NumberCase{"MinusInfinite", -Limits::infinity(), "-inf"},
                    NumberCase{"NoNumber", Limits::quiet_NaN(), "nan"}),
    [](const auto& test) { return test.param.name; });

TEST(Fmt, WritesTheLargestNumbersInFull) {
  const std::string text = Tools::fmt(1e300, byThrees);

  EXPECT_EQ(text.size(), 301U);
  EXPECT_EQ(std::stod(text), 1e300);
  EXPECT_EQ(Tools::fmt(Limits::max(), byThrees).size(), 309U);
}

TEST(Fmt, KeepsItsDecimalPointWhateverTheEnvironmentSays) {
  const EnvironmentGuard german({{"LC_ALL", "de_DE.UTF-8"}, {"LC_NUMERIC", "de_DE.UTF-8"}});

  EXPECT_EQ(Tools::fmt(12.34, byThrees), "12.34");
  EXPECT_EQ(Tools::fmt(123.44, byThrees), "123.4");
  EXPECT_STREQ(std::setlocale(LC_NUMERIC, nullptr), "C");
}

TEST(Fmt, GroupsDigitsAsItIsTold) {
  EXPECT_EQ(Tools::fmt(1234567, {.separator = ".", .sizes = "\3"}), "1.234.567");
  EXPECT_EQ(Tools::fmt(12.5, {.separator = ".", .sizes = "\3"}), "12.5");
}

Member memberCalled(const std::string& id, const std::string& name) {
  Member member;
  member.id = id;
  member.name = name;
  return member;
}

TEST(Header, NamesTheMemberInBothLanguages) {
  const Member member = memberCalled("id-1", "小美");

  EXPECT_EQ(Tools::header(member, SummaryLang::en), "Member: 小美 (person=id-1)");
  EXPECT_EQ(Tools::header(member, SummaryLang::zh), "成员:小美(person=id-1)");
}

TEST(Header, CopiesNamesThatLookLikeMarks) {
  EXPECT_EQ(Tools::header(memberCalled("{0}", "{1}"), SummaryLang::en), "Member: {1} (person={0})");
}

struct SpanCase {
  std::string name;
  std::string first;
  std::string last;
  int days;
};

class DaysBetween : public testing::TestWithParam<SpanCase> {};

TEST_P(DaysBetween, CountsWholeCalendarDays) {
  EXPECT_EQ(Tools::daysBetween(GetParam().first, GetParam().last), GetParam().days);
}

INSTANTIATE_TEST_SUITE_P(Cases, DaysBetween,
                         testing::Values(SpanCase{"MonthOf31Days", "2024-03-01", "2024-03-31", 30},
                                         SpanCase{"SameDay", "2024-03-01", "2024-03-01", 0},
                                         SpanCase{"Backwards", "2024-03-31", "2024-03-01", -30},
                                         SpanCase{"LeapYear", "2024-01-01", "2025-01-01", 366},
                                         SpanCase{"NoFirst", "", "2024-03-01", 0},
                                         SpanCase{"NoLast", "2024-03-01", "", 0},
                                         SpanCase{"NoDay", "2024-02-30", "2024-03-01", 0}),
                         [](const auto& test) { return test.param.name; });

struct MetricLineCase {
  HealthMetric metric;
  std::string en;
  std::string zh;
};

class MetricLine : public testing::TestWithParam<MetricLineCase> {};

TEST_P(MetricLine, NamesKeyUnitAndHowADayIsMade) {
  EXPECT_EQ(Tools::metricLine(GetParam().metric, SummaryLang::en), GetParam().en);
  EXPECT_EQ(Tools::metricLine(GetParam().metric, SummaryLang::zh), GetParam().zh);
}

/// The two lines of a metric. The note is Chinese in both.
MetricLineCase line(HealthMetric metric, const std::string& key, const std::string& unit,
                    const std::string& note) {
  return {metric,
          "Metric: " + key + " (" + unit + ") · " + note,
          "指标:" + key + "(" + (unit.empty() ? "无单位" : unit) + ")· " + note};
}

constexpr const char* daySum = "每日合计(同一天多个来源分别合计后取最大值,不相加)";
constexpr const char* dayMedian = "逐次测量,按天取中位数";
constexpr const char* nightSum = "按夜合计的睡着时长(不含 InBed)";

INSTANTIATE_TEST_SUITE_P(
    All, MetricLine,
    testing::Values(line(HealthMetric::steps, "steps", "count", daySum),
                    line(HealthMetric::distance, "distance", "km", daySum),
                    line(HealthMetric::flights, "flights", "count", daySum),
                    line(HealthMetric::activeEnergy, "active_energy", "kcal", daySum),
                    line(HealthMetric::restingHeartRate, "resting_heart_rate", "count/min",
                         dayMedian),
                    line(HealthMetric::heartRate, "heart_rate", "count/min", dayMedian),
                    line(HealthMetric::hrv, "hrv", "ms", dayMedian),
                    line(HealthMetric::respiratoryRate, "respiratory_rate", "count/min", dayMedian),
                    line(HealthMetric::oxygenSaturation, "oxygen_saturation", "%", dayMedian),
                    line(HealthMetric::vo2max, "vo2max", "mL/min·kg", dayMedian),
                    line(HealthMetric::weight, "weight", "kg", dayMedian),
                    line(HealthMetric::bmi, "bmi", "", dayMedian),
                    line(HealthMetric::bodyFat, "body_fat", "%", dayMedian),
                    line(HealthMetric::exerciseMinutes, "exercise_minutes", "min", daySum),
                    line(HealthMetric::standMinutes, "stand_minutes", "min", daySum),
                    line(HealthMetric::sleep, "sleep", "min", nightSum)));

TEST(ShownSeries, TurnsFractionsIntoPercentAndNothingElse) {
  TestDatabase database;
  database.addRecords({{.type = "OxygenSaturation", .value_num = 0.97},
                       {.type = "BodyFatPercentage", .value_num = 0.25},
                       {.type = "BodyMass", .value_num = 0.5}});
  const HealthStore store = database.open();
  const auto shown = [&store](HealthMetric metric) {
    return Tools::shownSeries(store, metric, "2024-03-01", "2024-03-01");
  };

  EXPECT_EQ(shown(HealthMetric::oxygenSaturation),
            (std::vector<DailyValue>{{"2024-03-01", 0.97 * 100}}));
  EXPECT_EQ(shown(HealthMetric::bodyFat), (std::vector<DailyValue>{{"2024-03-01", 25}}));
  EXPECT_EQ(shown(HealthMetric::weight), (std::vector<DailyValue>{{"2024-03-01", 0.5}}));
}

TEST(Mean, IsTheSumOverTheNumberOfDays) {
  EXPECT_EQ(Tools::mean({{"2024-03-01", 1}, {"2024-03-02", 2}, {"2024-03-04", 6}}), 3);
  EXPECT_EQ(Tools::mean({{"2024-03-01", -7.5}}), -7.5);
}

struct CoverageCase {
  std::string name;
  std::vector<std::optional<std::string>> days;  ///< of one record each
  std::string en;
  std::string zh;
};

class CoverageOf : public testing::TestWithParam<CoverageCase> {};

TEST_P(CoverageOf, CallsAHistoryOfFewerThan400DaysUnfinished) {
  constexpr const char* noteEn =
      "Note: do not infer anything about health from a missing item — missing only means not "
      "collected.";
  constexpr const char* noteZh = "提示:请勿因某项缺失而推断健康状况,缺失仅代表未采集。";
  Household household;
  TestDatabase& database = household.add("ann", "Ann");
  for (const auto& day : GetParam().days) database.addRecord({.start_day = day, .value_num = 1});
  const auto coverage = [&database](const Tools::Call& call) {
    return Tools::coverageOf(database.open(), call);
  };

  EXPECT_EQ(ToolCaller(household, SummaryLang::en).of(nlohmann::json::object(), coverage),
            GetParam().en + noteEn);
  EXPECT_EQ(ToolCaller(household, SummaryLang::zh).of(nlohmann::json::object(), coverage),
            GetParam().zh + noteZh);
}

const std::string fillingEn = "History is still being filled in; older data may be missing\n";
const std::string fillingZh = "历史回填进行中,更早的数据还在补\n";

INSTANTIATE_TEST_SUITE_P(
    Cases, CoverageOf,
    testing::Values(CoverageCase{"NoRecords", {}, "Range:none\n", "覆盖区间:无\n"},
                    CoverageCase{"OneDay",
                                 {"2024-03-01"},
                                 "Range:2024-03-01 ~ 2024-03-01\n" + fillingEn,
                                 "覆盖区间:2024-03-01 ~ 2024-03-01\n" + fillingZh},
                    CoverageCase{"Span399",
                                 {"2023-01-01", "2024-02-04"},
                                 "Range:2023-01-01 ~ 2024-02-04\n" + fillingEn,
                                 "覆盖区间:2023-01-01 ~ 2024-02-04\n" + fillingZh},
                    CoverageCase{"Span400",
                                 {"2023-01-01", "2024-02-05"},
                                 "Range:2023-01-01 ~ 2024-02-05\n",
                                 "覆盖区间:2023-01-01 ~ 2024-02-05\n"},
                    CoverageCase{"RecordsWithoutADay",
                                 {std::nullopt},
                                 "Range:none\n" + fillingEn,
                                 "覆盖区间:无\n" + fillingZh}),
    [](const auto& test) { return test.param.name; });

}  // namespace
