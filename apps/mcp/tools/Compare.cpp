#include "mcp/tools/AnswerText.h"
#include "mcp/tools/Arguments.h"
#include "mcp/tools/MCPError.h"
#include "mcp/tools/Tools.h"
#include "platform/Phrase.h"
#include "platform/Text.h"

#include <cmath>

namespace {

constexpr Phrase meanOver{"日均 {0}({1} 天)", "mean {0} over {1} days"};
constexpr Phrase noData{"没有数据(不代表 0)", "no data (not zero)"};
constexpr Phrase difference{"A - B = {0}({1}%)", "A - B = {0} ({1}%)"};

/// The required day under `key`, unchanged. The error is in Chinese in both languages.
std::string need(const Tools::Call& call, const char* key) {
  if (const std::optional<std::string> day = Tools::dayArgument(call, key)) return *day;
  throw MCPError(MCPError::invalidArguments, std::string(key) + " 要是 YYYY-MM-DD");
}

std::string statistic(const std::vector<DailyValue>& series, const Tools::Call& call) {
  if (series.empty()) return std::string(noData.in(call.lang));
  return filled(meanOver.in(call.lang),
                {Tools::fmt(mean(series), call), std::to_string(series.size())});
}

/// The difference of `value` to `base` in percent of `base`, always with its sign; +0.0 when `base`
/// is zero.
std::string percentAbove(double value, double base) {
  const double percent = base == 0 ? 0 : (value - base) / base * 100;
  return std::string(std::signbit(percent) ? "" : "+").append(fixedDecimals(percent, 1));
}

}  // namespace

std::string Tools::compare(const Call& call) {
  const Member member = resolve(call);
  const HealthMetric metric = metricArg(call);
  const std::string aFrom = need(call, "a_from");
  const std::string aTo = need(call, "a_to");
  const std::string bFrom = need(call, "b_from");
  const std::string bTo = need(call, "b_to");

  const HealthStore store = open(member, call);
  const std::vector<DailyValue> a = shown(store.series(metric, aFrom, aTo), metric);
  const std::vector<DailyValue> b = shown(store.series(metric, bFrom, bTo), metric);

  Lines lines;
  lines.add(header(member, call.lang));
  lines.add(metricLine(metric, call.lang));
  lines.add("A  ", aFrom, " ~ ", aTo, ":", statistic(a, call));
  lines.add("B  ", bFrom, " ~ ", bTo, ":", statistic(b, call));
  if (!a.empty() && !b.empty()) {
    lines.add(filled(difference.in(call.lang),
                     {fmt(mean(a) - mean(b), call), percentAbove(mean(a), mean(b))}));
  }
  lines.add("");
  lines.add(coverageOf(store, call));
  return lines.joined();
}
