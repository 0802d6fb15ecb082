#include "mcp/tools/AnswerText.h"
#include "platform/Phrase.h"
#include "platform/Text.h"
#include "summary/Coverage.h"
#include "summary/SummaryText.h"

namespace {

constexpr Phrase memberHeader{"成员:{0}(person={1})", "Member: {0} (person={1})"};
constexpr Phrase metricHeader{"指标:{0}({1})· {2}", "Metric: {0} ({1}) · {2}"};
constexpr Phrase daysHeader{"区间:{0} ~ {1}", "Range: {0} ~ {1}"};

}  // namespace

std::string Tools::header(const Member& member, SummaryLang lang) {
  return filled(memberHeader.in(lang), {member.name, member.id});
}

std::string Tools::rangeLine(std::string_view from, std::string_view to, SummaryLang lang) {
  return filled(daysHeader.in(lang), {from, to});
}

namespace {

constexpr Phrase metricWithoutUnit{"指标:{0}(无单位)· {1}", "Metric: {0} () · {1}"};

/// The note is in Chinese in both languages.
std::string_view aggregationNote(Aggregation aggregation) {
  switch (aggregation) {
    case Aggregation::cumulative:
      return "每日合计(同一天多个来源分别合计后取最大值,不相加)";
    case Aggregation::asleepPerNight:
      return "按夜合计的睡着时长(不含 InBed)";
    case Aggregation::median:
      return "逐次测量,按天取中位数";
  }
  return "";
}

}  // namespace

std::string Tools::metricLine(HealthMetric metric, SummaryLang lang) {
  const MetricInfo& info = infoOf(metric);
  const std::string_view note = aggregationNote(info.aggregation);
  if (info.unit.empty()) return filled(metricWithoutUnit.in(lang), {info.rawValue, note});
  return filled(metricHeader.in(lang), {info.rawValue, info.unit, note});
}

std::string Tools::coverageOf(const HealthStore& store, const Call& call) {
  return SummaryText::coverageBlock(
      Coverage::ofDays(store.recordedDays()), call.lang, call.clock(), call.grouping);
}
