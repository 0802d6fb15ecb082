#include "mcp/tools/AnswerText.h"
#include "support/ToolCaller.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <string>
#include <vector>

namespace {

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
