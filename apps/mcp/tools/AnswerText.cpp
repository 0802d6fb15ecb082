#include "mcp/tools/AnswerText.h"
#include "platform/AppleFormat.h"
#include "platform/Phrase.h"
#include "platform/Text.h"
#include "summary/SummaryText.h"

#include <cmath>

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

/// "12.50" as "12.5", "12.00" as "12".
void dropTrailingZeros(std::string& text) {
  if (text.find('.') == std::string::npos) return;
  text.erase(text.find_last_not_of('0') + 1);
  if (text.back() == '.') text.pop_back();
}

}  // namespace

std::string Tools::fmt(double value, const DigitGrouping& grouping) {
  const double magnitude = std::abs(value);
  if (!(magnitude < 1000)) return groupedWhole(value, grouping);
  const int decimals = magnitude >= 100 ? 1 : magnitude >= 1 ? 2 : 3;
  std::string text = fixedDecimals(value, decimals);
  dropTrailingZeros(text);
  return text == "-0" ? "0" : text;
}

int Tools::daysBetween(std::string_view first, std::string_view last) {
  return AppleFormat::daysBetween(first, last);
}

namespace {

constexpr Phrase metricWithoutUnit{"指标:{0}(无单位)· {1}", "Metric: {0} () · {1}"};

/// In Chinese in both languages.
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

std::vector<DailyValue> Tools::shownSeries(const HealthStore& store, HealthMetric metric,
                                           std::string_view from, std::string_view to) {
  std::vector<DailyValue> series = store.series(metric, from, to);
  if (infoOf(metric).unit == "%") {
    for (DailyValue& day : series) day.value *= 100;
  }
  return series;
}

double Tools::mean(const std::vector<DailyValue>& series) {
  double sum = 0;
  for (const DailyValue& day : series) sum += day.value;
  return sum / static_cast<double>(series.size());
}

std::string Tools::coverageOf(const HealthStore& store, const Call& call) {
  const RecordedDays days = store.recordedDays();
  SummaryCoverage coverage;
  coverage.firstDay = days.first;
  coverage.lastDay = days.last;
  coverage.backfilling = days.typeCount > 0 && spansTooFewDays(days.first, days.last);
  return SummaryText::coverageBlock(coverage, call.lang, call.clock(), call.grouping);
}
