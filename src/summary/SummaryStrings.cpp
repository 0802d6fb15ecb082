#include "summary/SummaryStrings.h"
#include "platform/Text.h"

std::string OpeningTemplate::operator()(std::string_view name) const {
  return filled(pattern, {name});
}

std::string WeekdayTemplate::operator()(std::string_view most, std::string_view least) const {
  return filled(pattern, {most, least});
}

std::string RestingHRTemplate::operator()(double delta, bool lower) const {
  return filled(lower ? lowerPattern : higherPattern,
                {fixedDecimals(delta < 0 ? -delta : delta, 0)});
}

std::string BestMonthTemplate::operator()(std::string_view month) const {
  return filled(pattern, {month});
}

namespace {

constexpr SummaryStrings chinese{
    .cardOverview = "数据总览",
    .cardActivity = "活动",
    .cardHeart = "心率",
    .cardSleep = "睡眠",
    .cardWorkouts = "训练",
    .cardBody = "身体数据",
    .records = "记录数",
    .span = "时间跨度",
    .typeCount = "数据类型数",
    .devices = "检测到的设备",
    .steps30 = "日均步数 · 近 30 天",
    .steps90 = "日均步数 · 近 90 天",
    .stepsLastYear = "日均步数 · 去年同期",
    .restingHR90 = "静息心率中位 · 近 90 天",
    .restingHRLastYear = "静息心率中位 · 去年同期",
    .restingHRDelta = "与去年同期之差",
    .sleepDuration = "平均睡眠时长",
    .bedtime = "入睡时间(中位)",
    .wakeTime = "起床时间(中位)",
    .workoutCount = "训练次数 · 近 90 天",
    .workoutMinutes = "总时长",
    .workoutTypes = "主要运动类型",
    .weight = "体重",
    .bmi = "BMI",
    .unitRecords = " 条",
    .unitSteps = " 步",
    .unitBPM = " 次/分",
    .unitHours = " 小时",
    .unitTimes = " 次",
    .unitMinutes = " 分钟",
    .unitKg = " kg",
    .needsWatch = "未采集(未检测到 Apple Watch)",
    .notCollected = "未采集",
    .maybeUnauthorized = "未收到数据(可能未授权,用户尚未确认)",
    .backfilling = "历史补全中",
    .noSamePeriod = "暂无同期对比",
    .noWorkouts = "近 90 天没有训练记录",
    .noBody = "未采集(需要手动记录或体脂秤)",
    .opening = {"这是{0}的健康数据摘要(由 Larkspur 从 Apple 健康整理)。\n"
                "请帮我看看有什么值得注意的,以及有哪些问题值得我去问医生。"},
    .coverageTitle = "【数据覆盖说明】",
    .dataTitle = "【数据】",
    .insightTitle = "【观察】",
    .covRange = "覆盖区间",
    .covLastSync = "最近同步",
    .covCollected = "已采集",
    .covAbsent = "未采集",
    .covSuspicious = "状态存疑",
    .covNone = "无",
    .covBackfilling = "历史回填进行中,更早的数据还在补",
    .covWarning = "提示:请勿因某项缺失而推断健康状况,缺失仅代表未采集。",
    .covComplete = "完整覆盖",
    .covCompleteSuffix = "起(这之前的数据可能不全)",
    .covCompleteAll = "起(历史已全部补齐)",
    .covReached = "已补到 ",
    .covYearly = "分年记录数",
    .covStale = "⚠️ 这份数据已经超过 3 天没有更新,可能不是最新情况。",
    .signature = "— 由 Larkspur 生成(larkspur.example)",
    .insightWeekday = {"你最活跃的是{0},最少的是{1}。"},
    .insightRestingHR = {.lowerPattern = "近 90 天静息心率比去年同期低 {0} 次/分。",
                         .higherPattern = "近 90 天静息心率比去年同期高 {0} 次/分。"},
    .insightBestMonth = {"你活动量最高的一个月是 {0}。"},
};

constexpr SummaryStrings english{
    .cardOverview = "Overview",
    .cardActivity = "Activity",
    .cardHeart = "Heart rate",
    .cardSleep = "Sleep",
    .cardWorkouts = "Workouts",
    .cardBody = "Body",
    .records = "Records",
    .span = "Date range",
    .typeCount = "Data types",
    .devices = "Devices seen",
    .steps30 = "Daily steps · last 30 days",
    .steps90 = "Daily steps · last 90 days",
    .stepsLastYear = "Daily steps · same period last year",
    .restingHR90 = "Median resting HR · last 90 days",
    .restingHRLastYear = "Median resting HR · same period last year",
    .restingHRDelta = "Change vs last year",
    .sleepDuration = "Average sleep",
    .bedtime = "Bedtime (median)",
    .wakeTime = "Wake time (median)",
    .workoutCount = "Workouts · last 90 days",
    .workoutMinutes = "Total time",
    .workoutTypes = "Main activities",
    .weight = "Weight",
    .bmi = "BMI",
    .unitRecords = Words::unwritten(),
    .unitSteps = Words::unwritten(),
    .unitBPM = " bpm",
    .unitHours = "h",
    .unitTimes = Words::unwritten(),
    .unitMinutes = "min",
    .unitKg = " kg",
    .needsWatch = "not collected (no Apple Watch detected)",
    .notCollected = "not collected",
    .maybeUnauthorized = "no data received (permission may be off; unconfirmed)",
    .backfilling = "history still filling in",
    .noSamePeriod = "no comparable period yet",
    .noWorkouts = "no workouts in the last 90 days",
    .noBody = "not collected (needs manual entry or a smart scale)",
    .opening = {"Here is {0}'s health summary (compiled by Larkspur from Apple Health).\n"
                "Please tell me what stands out, and what questions are worth asking my doctor."},
    .coverageTitle = "[Data coverage]",
    .dataTitle = "[Data]",
    .insightTitle = "[Observations]",
    .covRange = "Range",
    .covLastSync = "Last synced",
    .covCollected = "Collected",
    .covAbsent = "Not collected",
    .covSuspicious = "Uncertain",
    .covNone = "none",
    .covBackfilling = "History is still being filled in; older data may be missing",
    .covWarning =
        "Note: do not infer anything about health from a missing item — missing only means not "
        "collected.",
    .covComplete = "Complete from",
    .covCompleteSuffix = "onward (earlier data may be partial)",
    .covCompleteAll = "onward (full history)",
    .covReached = "reached ",
    .covYearly = "Records per year",
    .covStale = "⚠️ This data hasn't been updated in over 3 days and may be stale.",
    .signature = "— generated by Larkspur (larkspur.example)",
    .insightWeekday = {"Your most active day is {0}; your least active is {1}."},
    .insightRestingHR =
        {.lowerPattern = "Your median resting heart rate over the last 90 days is {0} bpm lower "
                         "than the same period last year.",
         .higherPattern = "Your median resting heart rate over the last 90 days is {0} bpm higher "
                          "than the same period last year."},
    .insightBestMonth = {"Your highest-activity month was {0}."},
};

}  // namespace

constinit const SummaryStrings SummaryStrings::zh = chinese;
constinit const SummaryStrings SummaryStrings::en = english;
