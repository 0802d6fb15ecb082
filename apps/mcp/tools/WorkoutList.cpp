#include "mcp/tools/WorkoutList.h"
#include "mcp/tools/AnswerText.h"
#include "mcp/tools/MCPError.h"
#include "mcp/tools/WorkoutListJson.h"
#include "mcp/tools/WorkoutListText.h"
#include "platform/Phrase.h"
#include "platform/Text.h"

namespace {

constexpr Phrase mustBeString{"{0} 必须是字符串。", "{0} must be a string."};
constexpr Phrase mustBeInteger{"{0} 必须是 {1}...{2} 范围内的整数。",
                               "{0} must be an integer in {1}...{2}"};
constexpr Phrase mustBeDate{"{0} 要是有效的 YYYY-MM-DD 日期。",
                            "{0} must be a valid YYYY-MM-DD date."};
constexpr Phrase fromAfterTo{"from 不能晚于 to。", "from must not be later than to."};

MCPError refusal(std::string_view message) {
  return {MCPError::invalidArguments, std::string(message)};
}

std::string textOr(const Tools::Call& call, const char* key, const char* fallback) {
  return Tools::strictText(call, key, mustBeString).value_or(fallback);
}

/// Stricter than Tools::range: a given date must have exactly the form of dayText.
void requireExactDay(const Tools::Call& call, const char* key) {
  const std::optional<std::string> text = Tools::strictText(call, key, mustBeString);
  if (!text) return;
  const std::optional<CivilDay> day = AppleFormat::dayParser.parse(*text);
  if (!day || AppleFormat::dayText(*day) != *text) {
    throw refusal(filled(mustBeDate.in(call.lang), {key}));
  }
}

DayRange strictRange(const Tools::Call& call) {
  requireExactDay(call, "from");
  requireExactDay(call, "to");
  DayRange range = Tools::range(call);
  if (range.from > range.to) throw refusal(fromAfterTo.in(call.lang));
  return range;
}

WorkoutEnvironment environmentArgument(const Tools::Call& call) {
  const auto environment = workoutEnvironmentNamed(textOr(call, "environment", "all"));
  if (!environment) throw refusal("environment: all / indoor / outdoor / unspecified");
  return *environment;
}

WorkoutSelection::Order orderArgument(const Tools::Call& call) {
  const std::string order = textOr(call, "order", "desc");
  if (order == "desc") return WorkoutSelection::Order::desc;
  if (order == "asc") return WorkoutSelection::Order::asc;
  throw refusal("order: desc / asc");
}

/// The writer of one form of the answer.
using Form = std::string (*)(const WorkoutList::Query&, const WorkoutSelection::Selection&,
                             const std::string& coverage, const Tools::Call&);

Form formArgument(const Tools::Call& call) {
  const std::string format = textOr(call, "format", "text");
  if (format == "text") return WorkoutListText::text;
  if (format == "json") return WorkoutListJson::json;
  throw refusal("format: text / json");
}

}  // namespace

std::string_view WorkoutList::rawValue(WorkoutSelection::Order order) {
  return order == WorkoutSelection::Order::desc ? "desc" : "asc";
}

constinit const Phrase WorkoutList::closingNote{
    "汇总为筛选后全部训练记录的合计(不是本页),仅累加已记录值,未做跨来源重叠去重,不等于每日"
    "活动总量。日期按原始开始日期,起止时间保留原时区;缺失不代表 0,环境缺失不推断为室外。温"
    "湿度是训练环境元数据，不代表手表传感器连续测量。humidity_pct 仅对已识别的 Apple 来源提"
    "供百分数；unverified_scale/legacy_unverified 表示尺度待核实，不是数据缺失或源记录异常"
    "。原值与来源见 raw/encoding/source 字段，不按数值大小猜倍率。",
    "Totals cover all filtered workout records (not this page), sum only recorded values, "
    "do not deduplicate overlapping sources and are not daily activity totals. Dates use "
    "original start day; timestamps retain their timezone. Missing is not zero; "
    "unspecified environment is not outdoor. Temperature/humidity are workout environment "
    "metadata, not continuous watch-sensor measurements. humidity_pct is provided only for "
    "an identified Apple source. unverified_scale/legacy_unverified means the scale needs "
    "verification, not missing or anomalous source data. See raw/encoding/source fields; "
    "never infer a scale from the value."};

std::string Tools::workouts(const Call& call) {
  WorkoutList::Query query;
  query.member = resolve(call);
  query.range = strictRange(call);
  query.filters.activityType = trimmedWhitespace(textOr(call, "activity_type", ""));
  query.filters.source = textOr(call, "source", "");
  query.filters.environment = environmentArgument(call);
  query.order = orderArgument(call);
  const Form form = formArgument(call);
  constexpr IntegerRule limitRule{.fallback = 50, .lowest = 1, .highest = 200};
  constexpr IntegerRule offsetRule{.fallback = 0, .lowest = 0, .highest = 2147483647};
  query.page.limit = integerArgument(call, "limit", limitRule, mustBeInteger);
  query.page.offset = integerArgument(call, "offset", offsetRule, mustBeInteger);

  const HealthStore store = open(query.member, call);
  WorkoutSelection::Selector selector(query.filters);
  store.listWorkouts(
      query.range.from, query.range.to, [&selector](std::int64_t row, const auto& entry) {
        selector.add(row, entry);
      });
  WorkoutSelection::Selection selection = selector.selected(query.order, query.page);
  selection.page = store.workoutsAt(selection.pageRows);

  return form(query, selection, coverageOf(store, call), call);
}
