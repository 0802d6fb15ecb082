#include "summary/SummaryStrings.h"

#include <gtest/gtest.h>

#include <string>

namespace {

struct WordCase {
  std::string name;
  Words SummaryStrings::*field;
  std::string zh;
  std::string en;
};

void PrintTo(const WordCase& word, std::ostream* stream) { *stream << word.name; }

class Word : public testing::TestWithParam<WordCase> {};

TEST_P(Word, IsSaidInBothLanguages) {
  EXPECT_EQ(std::string_view(SummaryStrings::zh.*GetParam().field), GetParam().zh);
  EXPECT_EQ(std::string_view(SummaryStrings::en.*GetParam().field), GetParam().en);
}

using S = SummaryStrings;

INSTANTIATE_TEST_SUITE_P(
    Words, Word,
    testing::Values(
        WordCase{"cardOverview", &S::cardOverview, "数据总览", "Overview"},
        WordCase{"cardActivity", &S::cardActivity, "活动", "Activity"},
        WordCase{"cardHeart", &S::cardHeart, "心率", "Heart rate"},
        WordCase{"cardSleep", &S::cardSleep, "睡眠", "Sleep"},
        WordCase{"cardWorkouts", &S::cardWorkouts, "训练", "Workouts"},
        WordCase{"cardBody", &S::cardBody, "身体数据", "Body"},
        WordCase{"records", &S::records, "记录数", "Records"},
        WordCase{"span", &S::span, "时间跨度", "Date range"},
        WordCase{"typeCount", &S::typeCount, "数据类型数", "Data types"},
        WordCase{"devices", &S::devices, "检测到的设备", "Devices seen"},
        WordCase{"steps30", &S::steps30, "日均步数 · 近 30 天", "Daily steps · last 30 days"},
        WordCase{"steps90", &S::steps90, "日均步数 · 近 90 天", "Daily steps · last 90 days"},
        WordCase{"stepsLastYear",
                 &S::stepsLastYear,
                 "日均步数 · 去年同期",
                 "Daily steps · same period last year"},
        WordCase{"restingHR90",
                 &S::restingHR90,
                 "静息心率中位 · 近 90 天",
                 "Median resting HR · last 90 days"},
        WordCase{"restingHRLastYear",
                 &S::restingHRLastYear,
                 "静息心率中位 · 去年同期",
                 "Median resting HR · same period last year"},
        WordCase{"restingHRDelta", &S::restingHRDelta, "与去年同期之差", "Change vs last year"},
        WordCase{"sleepDuration", &S::sleepDuration, "平均睡眠时长", "Average sleep"},
        WordCase{"bedtime", &S::bedtime, "入睡时间(中位)", "Bedtime (median)"},
        WordCase{"wakeTime", &S::wakeTime, "起床时间(中位)", "Wake time (median)"},
        WordCase{
            "workoutCount", &S::workoutCount, "训练次数 · 近 90 天", "Workouts · last 90 days"},
        WordCase{"workoutMinutes", &S::workoutMinutes, "总时长", "Total time"},
        WordCase{"workoutTypes", &S::workoutTypes, "主要运动类型", "Main activities"},
        WordCase{"weight", &S::weight, "体重", "Weight"}, WordCase{"bmi", &S::bmi, "BMI", "BMI"},
        WordCase{"unitRecords", &S::unitRecords, " 条", ""},
        WordCase{"unitSteps", &S::unitSteps, " 步", ""},
        WordCase{"unitBPM", &S::unitBPM, " 次/分", " bpm"},
        WordCase{"unitHours", &S::unitHours, " 小时", "h"},
        WordCase{"unitTimes", &S::unitTimes, " 次", ""},
        WordCase{"unitMinutes", &S::unitMinutes, " 分钟", "min"},
        WordCase{"unitKg", &S::unitKg, " kg", " kg"},
        WordCase{"needsWatch",
                 &S::needsWatch,
                 "未采集(未检测到 Apple Watch)",
                 "not collected (no Apple Watch detected)"},
        WordCase{"notCollected", &S::notCollected, "未采集", "not collected"},
        WordCase{"maybeUnauthorized",
                 &S::maybeUnauthorized,
                 "未收到数据(可能未授权,用户尚未确认)",
                 "no data received (permission may be off; unconfirmed)"},
        WordCase{"backfilling", &S::backfilling, "历史补全中", "history still filling in"},
        WordCase{"noSamePeriod", &S::noSamePeriod, "暂无同期对比", "no comparable period yet"},
        WordCase{"noWorkouts",
                 &S::noWorkouts,
                 "近 90 天没有训练记录",
                 "no workouts in the last 90 days"},
        WordCase{"noBody",
                 &S::noBody,
                 "未采集(需要手动记录或体脂秤)",
                 "not collected (needs manual entry or a smart scale)"},
        WordCase{"coverageTitle", &S::coverageTitle, "【数据覆盖说明】", "[Data coverage]"},
        WordCase{"dataTitle", &S::dataTitle, "【数据】", "[Data]"},
        WordCase{"insightTitle", &S::insightTitle, "【观察】", "[Observations]"},
        WordCase{"covRange", &S::covRange, "覆盖区间", "Range"},
        WordCase{"covLastSync", &S::covLastSync, "最近同步", "Last synced"},
        WordCase{"covCollected", &S::covCollected, "已采集", "Collected"},
        WordCase{"covAbsent", &S::covAbsent, "未采集", "Not collected"},
        WordCase{"covSuspicious", &S::covSuspicious, "状态存疑", "Uncertain"},
        WordCase{"covNone", &S::covNone, "无", "none"},
        WordCase{"covBackfilling",
                 &S::covBackfilling,
                 "历史回填进行中,更早的数据还在补",
                 "History is still being filled in; older data may be missing"},
        WordCase{"covWarning",
                 &S::covWarning,
                 "提示:请勿因某项缺失而推断健康状况,缺失仅代表未采集。",
                 "Note: do not infer anything about health from a missing item — missing only "
                 "means not collected."},
        WordCase{"covComplete", &S::covComplete, "完整覆盖", "Complete from"},
        WordCase{"covCompleteSuffix",
                 &S::covCompleteSuffix,
                 "起(这之前的数据可能不全)",
                 "onward (earlier data may be partial)"},
        WordCase{
            "covCompleteAll", &S::covCompleteAll, "起(历史已全部补齐)", "onward (full history)"},
        WordCase{"covReached", &S::covReached, "已补到 ", "reached "},
        WordCase{"covYearly", &S::covYearly, "分年记录数", "Records per year"},
        WordCase{"covStale",
                 &S::covStale,
                 "⚠️ 这份数据已经超过 3 天没有更新,可能不是最新情况。",
                 "⚠️ This data hasn't been updated in over 3 days and may be stale."},
        WordCase{"signature",
                 &S::signature,
                 "— 由 Larkspur 生成(larkspur.example)",
                 "— generated by Larkspur (larkspur.example)"}),
    [](const auto& test) { return test.param.name; });

TEST(SummaryStrings, ArePickedByLanguage) {
  EXPECT_EQ(&SummaryStrings::in(SummaryLang::zh), &SummaryStrings::zh);
  EXPECT_EQ(&SummaryStrings::in(SummaryLang::en), &SummaryStrings::en);
}

TEST(Opening, NamesThePerson) {
  EXPECT_EQ(SummaryStrings::zh.opening("小美"),
            "这是小美的健康数据摘要(由 Larkspur 从 Apple 健康整理)。\n"
            "请帮我看看有什么值得注意的,以及有哪些问题值得我去问医生。");
  EXPECT_EQ(SummaryStrings::en.opening("Ann"),
            "Here is Ann's health summary (compiled by Larkspur from Apple Health).\n"
            "Please tell me what stands out, and what questions are worth asking my doctor.");
}

TEST(Opening, TakesAnyName) {
  EXPECT_EQ(SummaryStrings::en.opening("{0}"),
            "Here is {0}'s health summary (compiled by Larkspur from Apple Health).\n"
            "Please tell me what stands out, and what questions are worth asking my doctor.");
}

TEST(InsightWeekday, NamesTheMostAndTheLeastActiveDay) {
  EXPECT_EQ(SummaryStrings::zh.insightWeekday("星期六", "星期一"),
            "你最活跃的是星期六,最少的是星期一。");
  EXPECT_EQ(SummaryStrings::en.insightWeekday("Saturday", "Monday"),
            "Your most active day is Saturday; your least active is Monday.");
}

TEST(InsightBestMonth, NamesTheMonth) {
  EXPECT_EQ(SummaryStrings::zh.insightBestMonth("2024 年 3 月"),
            "你活动量最高的一个月是 2024 年 3 月。");
  EXPECT_EQ(SummaryStrings::en.insightBestMonth("March 2024"),
            "Your highest-activity month was March 2024.");
}

struct RestingCase {
  std::string name;
  double delta;
  bool lower;
  std::string zh;
  std::string en;
};

class InsightRestingHR : public testing::TestWithParam<RestingCase> {};

TEST_P(InsightRestingHR, SaysHowMuchAndWhichWay) {
  const auto& [name, delta, lower, zh, en] = GetParam();
  EXPECT_EQ(SummaryStrings::zh.insightRestingHR(delta, lower), zh);
  EXPECT_EQ(SummaryStrings::en.insightRestingHR(delta, lower), en);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, InsightRestingHR,
    testing::Values(RestingCase{"Lower",
                                -4,
                                true,
                                "近 90 天静息心率比去年同期低 4 次/分。",
                                "Your median resting heart rate over the last 90 days is 4 bpm "
                                "lower than the same period last year."},
                    RestingCase{"Higher",
                                4,
                                false,
                                "近 90 天静息心率比去年同期高 4 次/分。",
                                "Your median resting heart rate over the last 90 days is 4 bpm "
                                "higher than the same period last year."},
                    RestingCase{"RoundsToWholeBeats",
                                3.6,
                                false,
                                "近 90 天静息心率比去年同期高 4 次/分。",
                                "Your median resting heart rate over the last 90 days is 4 bpm "
                                "higher than the same period last year."},
                    RestingCase{"HalfGoesToEven",
                                -2.5,
                                true,
                                "近 90 天静息心率比去年同期低 2 次/分。",
                                "Your median resting heart rate over the last 90 days is 2 bpm "
                                "lower than the same period last year."},
                    RestingCase{"DirectionIsTheCallers",
                                -12,
                                false,
                                "近 90 天静息心率比去年同期高 12 次/分。",
                                "Your median resting heart rate over the last 90 days is 12 bpm "
                                "higher than the same period last year."}),
    [](const auto& test) { return test.param.name; });

}  // namespace
