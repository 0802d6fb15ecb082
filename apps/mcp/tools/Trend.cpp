#include "mcp/tools/AnswerText.h"
#include "mcp/tools/Arguments.h"
#include "mcp/tools/Tools.h"
#include "platform/Phrase.h"
#include "platform/Text.h"

#include <algorithm>

namespace {

constexpr Phrase noData{
    "这个区间内没有数据。**这不代表数值为 0** —— "
    "可能是未授权、没有相应设备,或历史还没回填完。先看 get_overview 的数据覆盖说明。",
    "No data in this range. **This does not mean zero** — it may be a missing permission, no "
    "such device, or history not yet backfilled. See the coverage notice from get_overview."};
constexpr Phrase statistics{"有数据的天数:{0},日均 {1},最低 {2},最高 {3}",
                            "Days with data: {0}, mean {1}, min {2}, max {3}"};
constexpr Phrase daily{"逐日:", "Daily:"};

std::string statisticsLine(const std::vector<DailyValue>& series, const Tools::Call& call) {
  const auto [lowest, highest] = std::ranges::minmax(series, {}, &DailyValue::value);
  return filled(statistics.in(call.lang),
                {std::to_string(series.size()),
                 Tools::fmt(mean(series), call),
                 Tools::fmt(lowest.value, call),
                 Tools::fmt(highest.value, call)});
}

}  // namespace

std::string Tools::trend(const Call& call) {
  const Member member = resolve(call);
  const HealthMetric metric = metricArg(call);
  const auto [from, to] = range(call);

  const HealthStore store = open(member, call);
  const std::vector<DailyValue> series = shown(store.series(metric, from, to), metric);

  Lines lines;
  lines.add(header(member, call.lang));
  lines.add(metricLine(metric, call.lang));
  lines.add(rangeLine(from, to, call.lang));
  if (series.empty()) {
    lines.add(noData.in(call.lang));
  } else {
    lines.add(statisticsLine(series, call));
    lines.add("");
    lines.add(daily.in(call.lang));
    for (const DailyValue& day : series) lines.add(day.day, "  ", fmt(day.value, call));
  }
  lines.add("");
  lines.add(coverageOf(store, call));
  return lines.joined();
}
