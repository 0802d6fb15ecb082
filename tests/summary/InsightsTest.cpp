#include "platform/AppleFormat.h"
#include "summary/Insights.h"
#include "support/MemorySource.h"
#include "support/Moment.h"
#include "support/SummaryPrinters.h"
#include "support/ZoneGuard.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <ostream>
#include <string>
#include <vector>

namespace {

using Operation = MemorySource::Operation;
using testing::ElementsAre;
using testing::IsEmpty;

/// The insights at noon of 17 March 2024, a Sunday, whose last 90 days begin on 18 December 2023.
std::vector<Insight> insightsOf(const MemorySource& source, SummaryLang lang = SummaryLang::en) {
  return Insights::all(SummaryEngine(source, moment("2024-03-17 12:00:00 +0000"), lang, {}));
}

// --- weekday

TEST(WeekdayInsight, NamesTheDaysWithTheHighestAndTheLowestMean) {
  MemorySource source;
  source.addTotals("StepCount", "2024-03-04", 14, 5000);  // Monday to Sunday, twice
  source.totals["StepCount"]["2024-03-06"] = 9000;        // a Wednesday
  source.totals["StepCount"]["2024-03-15"] = 100;         // a Friday

  EXPECT_THAT(insightsOf(source),
              ElementsAre(Insight{
                  "weekday", "Your most active day is Wednesday; your least active is Friday."}));
  EXPECT_THAT(insightsOf(source, SummaryLang::zh),
              ElementsAre(Insight{"weekday", "你最活跃的是星期三,最少的是星期五。"}));
}

TEST(WeekdayInsight, ComparesMeansAndNotSums) {
  MemorySource source;
  source.addTotals("StepCount", "2024-03-01", 17, 5000);  // three Fridays, Saturdays and Sundays
  source.totals["StepCount"]["2024-03-07"] = 5200;
  source.totals["StepCount"]["2024-03-14"] = 5200;  // Thursday adds up to less than Friday

  EXPECT_THAT(insightsOf(source),
              ElementsAre(Insight{
                  "weekday", "Your most active day is Thursday; your least active is Sunday."}));
}

TEST(WeekdayInsight, NeedsFourteenDays) {
  MemorySource source;
  source.addTotals("StepCount", "2024-03-05", 13, 5000);
  EXPECT_THAT(insightsOf(source), IsEmpty());

  source.addTotals("StepCount", "2024-03-04", 1, 5000);
  EXPECT_EQ(insightsOf(source).size(), 1u);
}

TEST(WeekdayInsight, CountsTheLastNinetyDaysOnly) {
  MemorySource source;
  source.addTotals("StepCount", "2023-12-17", 14, 5000);
  EXPECT_THAT(insightsOf(source), IsEmpty()) << "the first day is 91 days ago";

  source.totals.clear();
  source.addTotals("StepCount", "2023-12-18", 14, 5000);
  EXPECT_EQ(insightsOf(source).size(), 1u);

  source.totals.clear();
  source.addTotals("StepCount", "2024-03-05", 14, 5000);
  EXPECT_THAT(insightsOf(source), IsEmpty()) << "the last day is tomorrow";
}

TEST(WeekdayInsight, TakesTheEarlierWeekdayOfEqualOnes) {
  MemorySource source;
  source.addTotals("StepCount", "2024-03-04", 14, 5000);
  EXPECT_EQ(insightsOf(source)[0].text,
            "Your most active day is Sunday; your least active is Sunday.");

  for (const char* day : {"2024-03-05", "2024-03-12", "2024-03-09", "2024-03-16"}) {
    source.totals["StepCount"][day] = 7000;  // Tuesdays and Saturdays
  }
  for (const char* day : {"2024-03-06", "2024-03-13", "2024-03-07", "2024-03-14"}) {
    source.totals["StepCount"][day] = 3000;  // Wednesdays and Thursdays
  }
  EXPECT_EQ(insightsOf(source)[0].text,
            "Your most active day is Tuesday; your least active is Wednesday.");
}

TEST(WeekdayInsight, LeavesOutWeekdaysWithoutData) {
  MemorySource source;
  for (const std::string& day : daysFrom("2023-12-18", 91)) {
    const CivilDay civil = AppleFormat::dayParser.parse(day).value();
    const unsigned weekday = std::chrono::weekday(std::chrono::sys_days(civil)).c_encoding();
    if (weekday == 2) source.totals["StepCount"][day] = 10;
    if (weekday == 4) source.totals["StepCount"][day] = 20;
  }

  EXPECT_EQ(insightsOf(source)[0].text,
            "Your most active day is Thursday; your least active is Tuesday.");
}

struct ZoneCase {
  std::string name;
  std::string zone;
  std::string now;
  std::string firstDay;  ///< a Sunday or Monday such that 14 days from it just fit in
};

void PrintTo(const ZoneCase& zone, std::ostream* stream) { *stream << zone.name; }

class WeekdayInZone : public testing::TestWithParam<ZoneCase> {};

TEST_P(WeekdayInZone, IsThatOfTheStoredDay) {
  const ZoneGuard zone(GetParam().zone);
  MemorySource source;
  source.addTotals("StepCount", GetParam().firstDay, 14, 5000);
  const std::vector<std::string> days = daysFrom(GetParam().firstDay, 14);
  source.totals["StepCount"][days[0]] = 20000;

  const SummaryEngine engine(source, moment(GetParam().now), SummaryLang::en, {});
  const std::vector<Insight> insights = Insights::all(engine);

  EXPECT_THAT(insights,
              ElementsAre(Insight{"weekday",
                                  "Your most active day is Monday; your least active is Sunday."}));
}

INSTANTIATE_TEST_SUITE_P(
    Cases, WeekdayInZone,
    testing::Values(
        ZoneCase{"UTC", "UTC", "2024-03-17 00:00:00 +0000", "2024-03-04"},
        ZoneCase{
            "ShanghaiIsThereAlready", "Asia/Shanghai", "2024-03-16 16:00:00 +0000", "2024-03-04"},
        ZoneCase{
            "NewYorkIsThereStill", "America/New_York", "2024-03-18 03:59:00 +0000", "2024-03-04"},
        ZoneCase{"NewYorkWhenClocksGoBack",
                 "America/New_York",
                 "2024-11-03 23:59:00 -0500",
                 "2024-10-21"},
        ZoneCase{"AcrossTheYearsEnd", "Asia/Shanghai", "2024-01-07 09:00:00 +0800", "2023-12-25"},
        ZoneCase{
            "AcrossTheLeapDay", "America/New_York", "2024-03-03 09:00:00 -0500", "2024-02-19"}),
    [](const auto& test) { return test.param.name; });

TEST(WeekdayInsight, IsLeftOutWhenTheStepsCannotBeRead) {
  MemorySource source;
  source.addTotals("StepCount", "2024-01-01", 77, 5000);
  source.failing = {Operation::dailyTotals};

  EXPECT_THAT(insightsOf(source), IsEmpty());
}

// --- resting heart rate

struct HeartCase {
  std::string name;
  double now;
  double before;
  std::string sentence;  ///< "" for none
};

void PrintTo(const HeartCase& heart, std::ostream* stream) { *stream << heart.name; }

class RestingHeartRateInsight : public testing::TestWithParam<HeartCase> {};

TEST_P(RestingHeartRateInsight, TellsADifferenceOfHalfABeatOrMore) {
  MemorySource source;
  source.addSamples("RestingHeartRate", "2024-03-01", 1, GetParam().now);
  source.addSamples("RestingHeartRate", "2023-03-01", 1, GetParam().before);

  const std::vector<Insight> insights = insightsOf(source);

  if (GetParam().sentence.empty()) {
    EXPECT_THAT(insights, IsEmpty());
  } else {
    EXPECT_THAT(insights, ElementsAre(Insight{"resting_hr", GetParam().sentence}));
  }
}

const std::string over = "Your median resting heart rate over the last 90 days is ";

INSTANTIATE_TEST_SUITE_P(
    Cases, RestingHeartRateInsight,
    testing::Values(
        HeartCase{"NoDifference", 60, 60, ""}, HeartCase{"TooSmallUpward", 60.4, 60, ""},
        HeartCase{"TooSmallDownward", 59.6, 60, ""},
        HeartCase{
            "JustEnoughUpward", 60.5, 60, over + "0 bpm higher than the same period last year."},
        HeartCase{
            "JustEnoughDownward", 59.5, 60, over + "0 bpm lower than the same period last year."},
        HeartCase{"Lower", 57.4, 60, over + "3 bpm lower than the same period last year."},
        HeartCase{"Higher", 72, 60, over + "12 bpm higher than the same period last year."}),
    [](const auto& test) { return test.param.name; });

TEST(RestingHeartRateInsights, AreWrittenInChinese) {
  MemorySource source;
  source.addSamples("RestingHeartRate", "2024-03-01", 1, 57);
  source.addSamples("RestingHeartRate", "2023-03-01", 1, 60);
  EXPECT_EQ(insightsOf(source, SummaryLang::zh)[0].text, "近 90 天静息心率比去年同期低 3 次/分。");

  source.addSamples("RestingHeartRate", "2024-03-02", 2, 64);
  EXPECT_EQ(insightsOf(source, SummaryLang::zh)[0].text, "近 90 天静息心率比去年同期高 4 次/分。");
}

TEST(RestingHeartRateInsights, NeedBothYears) {
  MemorySource now;
  now.addSamples("RestingHeartRate", "2024-03-01", 1, 57);
  EXPECT_THAT(insightsOf(now), IsEmpty());

  MemorySource before;
  before.addSamples("RestingHeartRate", "2023-03-01", 1, 57);
  EXPECT_THAT(insightsOf(before), IsEmpty());
}

TEST(RestingHeartRateInsights, CompareTheSameNinetyDays) {
  MemorySource source;
  source.addSamples("RestingHeartRate", "2022-12-16", 1, 200);
  source.addSamples("RestingHeartRate", "2022-12-17", 1, 70);
  source.addSamples("RestingHeartRate", "2023-03-17", 1, 70);
  source.addSamples("RestingHeartRate", "2023-03-18", 275, 10);
  source.addSamples("RestingHeartRate", "2023-12-18", 1, 60);
  source.addSamples("RestingHeartRate", "2024-03-17", 1, 60);
  source.addSamples("RestingHeartRate", "2024-03-18", 2, 200);

  EXPECT_EQ(insightsOf(source)[0].text, over + "10 bpm lower than the same period last year.");
}

TEST(RestingHeartRateInsights, AreLeftOutWhenTheValuesCannotBeRead) {
  MemorySource source;
  source.addSamples("RestingHeartRate", "2024-03-01", 1, 57);
  source.addSamples("RestingHeartRate", "2023-03-01", 1, 70);
  source.failing = {Operation::values};

  EXPECT_THAT(insightsOf(source), IsEmpty());
}

// --- month

TEST(BestMonthInsight, NamesTheMonthWithTheMostSteps) {
  MemorySource source;
  source.addTotals("StepCount", "2019-01-01", 31, 5000);
  source.addTotals("StepCount", "2019-02-01", 28, 6000);
  source.addTotals("StepCount", "2019-03-01", 31, 5100);

  EXPECT_THAT(insightsOf(source),
              ElementsAre(Insight{"best_month", "Your highest-activity month was February 2019."}));
  EXPECT_THAT(insightsOf(source, SummaryLang::zh),
              ElementsAre(Insight{"best_month", "你活动量最高的一个月是 2019 年 2 月。"}));
}

TEST(BestMonthInsight, ComparesSumsAndNotMeans) {
  MemorySource source;
  source.addTotals("StepCount", "2019-01-01", 31, 5000);
  source.addTotals("StepCount", "2019-02-01", 20, 6000);
  source.addTotals("StepCount", "2019-03-01", 20, 6000);

  EXPECT_EQ(insightsOf(source)[0].text, "Your highest-activity month was January 2019.");
}

TEST(BestMonthInsight, NeedsSixtyDays) {
  MemorySource source;
  source.addTotals("StepCount", "2019-01-01", 20, 5000);
  source.addTotals("StepCount", "2019-02-01", 20, 5000);
  source.addTotals("StepCount", "2019-03-01", 19, 5000);
  EXPECT_THAT(insightsOf(source), IsEmpty());

  source.addTotals("StepCount", "2019-03-20", 1, 5000);
  EXPECT_EQ(insightsOf(source).size(), 1u);
}

TEST(BestMonthInsight, NeedsTwentyDaysInTheMonth) {
  MemorySource source;
  for (const char* month : {"2019-01-01", "2019-02-01", "2019-03-01", "2019-04-01"}) {
    source.addTotals("StepCount", month, 19, 50000);
  }
  EXPECT_THAT(insightsOf(source), IsEmpty());

  source.addTotals("StepCount", "2019-05-01", 20, 10);
  EXPECT_EQ(insightsOf(source)[0].text, "Your highest-activity month was May 2019.");
}

TEST(BestMonthInsight, TakesTheEarlierMonthOfEqualOnes) {
  MemorySource source;
  source.addTotals("StepCount", "2019-12-01", 30, 5000);
  source.addTotals("StepCount", "2020-01-01", 30, 5000);
  source.addTotals("StepCount", "2018-11-01", 30, 4000);

  EXPECT_EQ(insightsOf(source)[0].text, "Your highest-activity month was December 2019.");
}

TEST(BestMonthInsight, ReadsAllStoredDays) {
  MemorySource source;
  source.addTotals("StepCount", "1899-12-01", 31, 90000);
  source.addTotals("StepCount", "1900-01-01", 31, 6000);
  source.addTotals("StepCount", "2024-02-01", 29, 5000);
  source.addTotals("StepCount", "2999-12-01", 31, 7000);
  source.addTotals("StepCount", "3000-01-01", 31, 90000);

  const std::vector<Insight> insights = insightsOf(source);

  EXPECT_EQ(insights.back(),
            (Insight{"best_month", "Your highest-activity month was December 2999."}));
}

TEST(BestMonthInsight, DoesNotMixTheSameMonthOfTwoYears) {
  MemorySource source;
  source.addTotals("StepCount", "2019-03-01", 31, 5000);
  source.addTotals("StepCount", "2020-03-01", 31, 5000);
  source.addTotals("StepCount", "2020-06-01", 30, 6000);

  EXPECT_EQ(insightsOf(source)[0].text, "Your highest-activity month was June 2020.");
}

TEST(BestMonthInsight, ShowsAMonthOfNoStepsWhenThereIsNoBetterOne) {
  MemorySource source;
  source.addTotals("StepCount", "2019-03-01", 31, 0);
  source.addTotals("StepCount", "2019-04-01", 30, 0);

  EXPECT_EQ(insightsOf(source)[0].text, "Your highest-activity month was March 2019.");
}

// --- all of them

MemorySource sourceOfEverything() {
  MemorySource source;
  source.addTotals("StepCount", "2024-01-01", 77, 5000);
  source.addSamples("RestingHeartRate", "2024-03-01", 1, 57);
  source.addSamples("RestingHeartRate", "2023-03-01", 1, 70);
  return source;
}

std::vector<std::string> keysOf(const MemorySource& source) {
  std::vector<std::string> keys;
  for (const Insight& insight : insightsOf(source)) keys.push_back(insight.key);
  return keys;
}

TEST(Insights, AreThreeInAFixedOrder) {
  EXPECT_THAT(keysOf(sourceOfEverything()), ElementsAre("weekday", "resting_hr", "best_month"));
}

TEST(Insights, AreNoneWithoutData) { EXPECT_THAT(keysOf(MemorySource()), IsEmpty()); }

TEST(Insights, OutliveAFailureOfTheOthers) {
  MemorySource source = sourceOfEverything();

  source.failing = {Operation::values};
  EXPECT_THAT(keysOf(source), ElementsAre("weekday", "best_month"));

  source.failing = {Operation::dailyTotals};
  EXPECT_THAT(keysOf(source), ElementsAre("resting_hr"));
}

}  // namespace
