// The catalogue of tools: one literal table of names, descriptions, schemas and handlers.

#include "mcp/tools/JsonText.h"
#include "mcp/tools/MCPError.h"
#include "mcp/tools/Tools.h"
#include "platform/Phrase.h"
#include "platform/Text.h"
#include "summary/Metrics.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>
#include <span>

namespace {

using Texts = std::span<const std::string_view>;

/// One argument of a tool. The bounds and choices inform the client; the tools do their own checks.
struct Property {
  std::string_view name;
  std::string_view type;  ///< JSON type: "string" or "integer"
  Phrase description;
  Texts choices = {};  ///< empty: any text
  std::optional<std::int64_t> minimum = {};
  std::optional<std::int64_t> maximum = {};
};

struct Tool {
  std::string_view name;
  Phrase description;  ///< "{0}" is replaced by the catalogue of metrics
  std::span<const Property> properties;
  Texts required;
  std::string (*handler)(const Tools::Call&);
};

constexpr auto metricKeys = [] {
  std::array<std::string_view, metricCount> keys{};
  for (std::size_t row = 0; row < keys.size(); ++row) keys[row] = metricTable[row].rawValue;
  return keys;
}();

constexpr Property person{
    .name = "person",
    .type = "string",
    .description = {"成员标识或显示名。这台电脑上有多个成员时必填;只有一个成员时可省略。不"
                    "支持「全部成员」。",
                    "Member id or display name. Required when this Mac has more than one "
                    "member; may be omitted when there is exactly one. There is no 'all "
                    "members' option."}};
constexpr Phrase startDate = {"起始日期 YYYY-MM-DD(默认 90 天前)",
                              "Start date YYYY-MM-DD (default: 90 days ago)"};
constexpr Phrase endDate = {"结束日期 YYYY-MM-DD(默认今天)",
                            "End date YYYY-MM-DD (default: today)"};
constexpr Property metric{.name = "metric",
                          .type = "string",
                          .description = {"指标名", "Metric name"},
                          .choices = metricKeys};

constexpr Property day(std::string_view name, const Phrase& description) {
  return {.name = name, .type = "string", .description = description};
}

constexpr std::array personOnly{person};

constexpr std::array trendProperties{person, metric, day("from", startDate), day("to", endDate)};
constexpr std::array<std::string_view, 1> trendRequired{"metric"};

constexpr std::array dayProperties{person, day("date", {"日期 YYYY-MM-DD", "Date YYYY-MM-DD"})};
constexpr std::array<std::string_view, 1> dayRequired{"date"};

constexpr std::array<std::string_view, 4> environments{"all", "indoor", "outdoor", "unspecified"};
constexpr std::array<std::string_view, 2> orders{"desc", "asc"};
constexpr std::array<std::string_view, 2> formats{"text", "json"};
constexpr std::array workoutProperties{
    person,
    day("from", startDate),
    day("to", endDate),
    Property{.name = "activity_type",
             .type = "string",
             .description = {"运动类型,可用原始代码(如 Walking)或中英文显示名(如 步行);省略为全部。"
                             "按返回的 available_activities 选择。",
                             "Activity code (e.g. Walking) or Chinese/English label; omit for all. "
                             "Choose from available_activities."}},
    Property{.name = "environment",
             .type = "string",
             .description = {"all=全部(默认),indoor=室内,outdoor=室外,unspecified=未记录。",
                             "all (default), indoor, outdoor, or unspecified (not recorded)."},
             .choices = environments},
    Property{.name = "source",
             .type = "string",
             .description = {"来源精确匹配;省略为全部。原样使用 available_sources 的值,包括不换行空"
                             "格。",
                             "Exact source match; omit for all. Copy available_sources verbatim, "
                             "including nonbreaking spaces."}},
    Property{
        .name = "limit",
        .type = "integer",
        .description = {"每页记录数,默认 50,最大 200。", "Page size, default 50, maximum 200."},
        .minimum = 1,
        .maximum = 200},
    Property{.name = "offset",
             .type = "integer",
             .description = {"分页偏移,默认 0;续页使用 next_offset,其余参数不变。",
                             "Page offset, default 0; use next_offset with the same filters."},
             .minimum = 0},
    Property{.name = "order",
             .type = "string",
             .description = {"开始时间排序:desc 最新在前(默认),asc 最早在前。",
                             "Start-time order: desc newest first (default), asc oldest first."},
             .choices = orders},
    Property{.name = "format",
             .type = "string",
             .description = {"text=可读详情(默认);json=原始精度、固定字段、null 与单位表,仍通过 "
                             "MCP 文本内容返回。",
                             "text readable details (default); json raw precision, fixed keys, "
                             "nulls and units, returned as MCP text content."},
             .choices = formats},
};

constexpr std::array heartRateProperties{
    person,
    Property{.name = "workout_id",
             .type = "string",
             .description = {"workout_id from get_workouts", "workout_id from get_workouts"}},
    Property{.name = "source",
             .type = "string",
             .description = {"精确来源；省略使用训练来源，不自动回退。",
                             "Exact source; omit for workout source, with no automatic fallback."}},
    Property{.name = "limit",
             .type = "integer",
             .description = {"Default 1000; maximum 5000", "Default 1000; maximum 5000"},
             .minimum = 1,
             .maximum = 5000},
    Property{.name = "offset",
             .type = "integer",
             .description = {"Default 0; follow pagination.next_offset",
                             "Default 0; follow pagination.next_offset"},
             .minimum = 0,
             .maximum = 2147483647},
};
constexpr std::array<std::string_view, 1> heartRateRequired{"workout_id"};

constexpr std::array compareProperties{
    person,
    metric,
    day("a_from", startDate),
    day("a_to", endDate),
    day("b_from", startDate),
    day("b_to", endDate),
};
constexpr std::array<std::string_view, 5> compareRequired{
    "metric", "a_from", "a_to", "b_from", "b_to"};

constexpr std::array catalogue{
    Tool{.name = "list_persons",
         .description = {"这台电脑上有哪些成员、各自的数据区间与最后同步时间。",
                         "Members on this Mac, each one's data range and last sync time."},
         .properties = {},
         .required = {},
         .handler = Tools::listPersons},
    Tool{.name = "get_overview",
         .description = {"某个成员的数据概览 + 数据覆盖说明 + 摘要卡片。**模型连上必读这个**。",
                         "One member's overview, the data-coverage notice and the summary "
                         "cards. Read this first."},
         .properties = personOnly,
         .required = {},
         .handler = Tools::overview},
    Tool{.name = "get_trend",
         .description = {"某个指标的逐日序列。口径已封装:累加型指标同一天多来源取最大值不相加"
                         ",瞬时型按天取中位数。可用指标:{0}",
                         "Daily series for one metric. Units and aggregation are handled "
                         "inside: cumulative metrics take the max across sources (never a "
                         "sum), instantaneous metrics take the daily median. Metrics: {0}"},
         .properties = trendProperties,
         .required = trendRequired,
         .handler = Tools::trend},
    Tool{.name = "get_day",
         .description = {"某一天的详细数据(各类型的当日合计或中位)与训练记录。",
                         "Everything recorded on one day, plus that day's workouts."},
         .properties = dayProperties,
         .required = dayRequired,
         .handler = Tools::day},
    Tool{.name = "get_workouts",
         .description = {"训练频道的完整记录:起止时间、来源、类型、室内/室外、时长、距离、活动"
                         "/基础能量、平均/最低/最高心率、爬升、MET、温湿度。支持筛选与分页,默认"
                         "最新在前、每页 50 条。汇总针对筛选后的全部记录,不是当前页;同时列出区"
                         "间可用类型与来源。日期按原始开始日期(含首尾);缺失为 null/未记录,室内"
                         "标记缺失不当室外。记录合计未做跨来源重叠去重,不等于每日活动总量。",
                         "Full workout-channel records: start/end, source, activity, "
                         "environment, duration, distance, active/basal energy, "
                         "average/min/max heart rate, elevation, MET, temperature and "
                         "humidity. Filterable and paginated; newest first, 50 per page. "
                         "Totals cover all filtered records, not just the page. Lists "
                         "available activities and sources in the range. Dates use original "
                         "start day, inclusive. Missing means null/not recorded, never "
                         "outdoor. Totals do not deduplicate overlapping sources and are not "
                         "daily activity totals."},
         .properties = workoutProperties,
         .required = {},
         .handler = Tools::workouts},
    Tool{.name = "get_workout_heart_rate",
         .description = {"单次训练时段内的逐条心率，返回 JSON、时间戳、bpm、来源、完整样本汇总"
                         "与分页。先从 get_workouts 获取 workout_id。默认只查与训练完全相同的来"
                         "源，可用 source 精确选择 available_sources 中的其他来源。按采样开始时"
                         "间落在训练 [start,end) 匹配，不代表已验证 HealthKit 对象关联；不合并"
                         "来源、不插值、不补零。采样均值不是时间加权均值，也不替代训练自带平均"
                         "心率。",
                         "Timestamped heart-rate samples during one workout, as JSON with bpm, "
                         "source, all-sample totals and pagination. Get workout_id from "
                         "get_workouts first. Defaults to the exact workout source; select "
                         "another available_sources entry with source. Matches sample start "
                         "instants in [workout start,end), not verified HealthKit object "
                         "associations. Never merges sources, interpolates or fills zeros. "
                         "Sample mean is not time-weighted or the workout's reported average."},
         .properties = heartRateProperties,
         .required = heartRateRequired,
         .handler = Tools::workoutHeartRate},
    Tool{.name = "compare_periods",
         .description = {"同一个人两个时间段的对比。**只比同一个人**,不做跨人对比 ——「我比我爸"
                         "心率低」这种话请自己拿两次查询结果去说。",
                         "Compare two date ranges for the SAME person. Cross-person comparison "
                         "is not provided — do it yourself with two separate queries."},
         .properties = compareProperties,
         .required = compareRequired,
         .handler = Tools::compare},
};

nlohmann::ordered_json schemaOf(const Property& property, SummaryLang lang) {
  nlohmann::ordered_json schema;
  schema["type"] = property.type;
  if (!property.choices.empty()) schema["enum"] = property.choices;
  if (property.minimum) schema["minimum"] = *property.minimum;
  if (property.maximum) schema["maximum"] = *property.maximum;
  schema["description"] = property.description.in(lang);
  return schema;
}

nlohmann::ordered_json descriptorOf(const Tool& tool, SummaryLang lang) {
  nlohmann::ordered_json properties = nlohmann::ordered_json::object();
  for (const Property& property : tool.properties) {
    properties[std::string(property.name)] = schemaOf(property, lang);
  }
  nlohmann::ordered_json schema;
  schema["type"] = "object";
  schema["properties"] = std::move(properties);
  if (!tool.required.empty()) schema["required"] = tool.required;

  nlohmann::ordered_json descriptor;
  descriptor["name"] = tool.name;
  descriptor["description"] = filled(tool.description.in(lang), {metricCatalog()}) + " " +
                              std::string(Tools::boundary.in(lang));
  descriptor["inputSchema"] = std::move(schema);
  return descriptor;
}

}  // namespace

nlohmann::ordered_json Tools::schemas(SummaryLang lang) {
  nlohmann::ordered_json descriptors = nlohmann::ordered_json::array();
  for (const Tool& tool : catalogue) descriptors.push_back(descriptorOf(tool, lang));
  return descriptors;
}

std::string Tools::answer(std::string_view name, const Call& call) {
  const auto tool = std::ranges::find(catalogue, name, &Tool::name);
  if (tool == catalogue.end()) {
    throw MCPError(MCPError::unknownName, "没有这个工具:" + std::string(name));
  }
  return tool->handler(call);
}
