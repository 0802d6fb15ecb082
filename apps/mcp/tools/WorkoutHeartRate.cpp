#include "workouts/WorkoutHeartRate.h"
#include "mcp/tools/AnswerText.h"
#include "mcp/tools/Arguments.h"
#include "mcp/tools/JsonText.h"
#include "mcp/tools/MCPError.h"
#include "mcp/tools/Tools.h"
#include "platform/JsonFields.h"
#include "platform/Phrase.h"
#include "platform/ReceiverError.h"

#include <nlohmann/json.hpp>

#include <algorithm>

namespace {

/// In English in both languages.
constexpr Phrase mustBeString{"{0} must be a string", "{0} must be a string"};
constexpr Phrase mustBeInteger{"{0} must be an integer in {1}...{2}",
                               "{0} must be an integer in {1}...{2}"};
constexpr const char* noIdentifier = "workout_id must come from get_workouts";

constexpr Phrase note{
    "保留库内采样精度与原时区。按采样起点匹配训练 [start,end)，不证明对象关联，不合并来源、"
    "不插值或补零。sample_mean_bpm 是采样算术均值，不是时间加权值，不替代训练统计。segment "
    "仅用于超过 60 秒缺口断线。汇总针对全部匹配采样，分页非快照；排除候选指所选来源中时间"
    "/单位/数值无法解析的记录，不代表缺失时长。",
    "Stored precision and original timezone retained. Sample-start matching in [start,end) "
    "is not an object association. No source merging, interpolation or zero filling. "
    "Sample mean is not time-weighted or the reported workout mean. segment only breaks "
    "chart lines at gaps over 60 seconds. Summary covers all matches; pagination is not a "
    "snapshot. Excluded candidates have unreadable time/unit/value, not a measured missing "
    "duration."};

std::size_t characterCount(std::string_view text) {
  const auto beginsCharacter = [](char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0) != 0x80;
  };
  return static_cast<std::size_t>(std::ranges::count_if(text, beginsCharacter));
}

/// The required identifier; only its form is checked.
std::string workoutArgument(const Tools::Call& call) {
  constexpr std::size_t length = 66;
  std::string workoutID = Tools::lenientText(call, "workout_id").value_or("");
  if (!workoutID.starts_with("w_") || characterCount(workoutID) != length) {
    throw MCPError(MCPError::invalidArguments, noIdentifier);
  }
  return workoutID;
}

using JsonFields::orNull;
using Json = nlohmann::json;

/// The elements of the list of samples. One JSON value for all samples would take more time and
/// memory than their text, so one value is reused for each.
std::string textOf(const std::vector<WorkoutHeartRatePoint>& samples) {
  std::string text;
  Json sample;
  for (const WorkoutHeartRatePoint& point : samples) {
    sample["record_id"] = point.record_id;
    sample["start"] = point.start;
    sample["end"] = orNull(point.end);
    sample["source"] = point.source;
    sample["device"] = orNull(point.device);
    sample["raw_unit"] = point.raw_unit;
    sample["stored_value"] = orNull(point.stored_value);
    sample["elapsed_seconds"] = point.elapsed_seconds;
    sample["bpm"] = point.bpm;
    sample["segment"] = point.segment;
    const std::string element = Tools::documentText(sample);
    // Most samples have the same length, but the first may be an exception of a megabyte.
    constexpr std::size_t mostAtOnce = 2UL << 20;
    if (text.empty()) text.reserve(std::min(mostAtOnce, samples.size() * (element.size() + 16)));
    text.append(text.empty() ? "" : ",").append(element);
  }
  return text;
}

Json summaryOf(const WorkoutHeartRateSummary& summary) {
  return {{"count", summary.count},
          {"min_bpm", orNull(summary.min_bpm)},
          {"max_bpm", orNull(summary.max_bpm)},
          {"sample_mean_bpm", orNull(summary.sample_mean_bpm)}};
}

Json paginationOf(const WorkoutHeartRatePagination& pagination) {
  return {{"total_count", pagination.total_count},
          {"returned_count", pagination.returned_count},
          {"limit", pagination.limit},
          {"offset", pagination.offset},
          {"order", "asc"},
          {"has_more", pagination.has_more},
          {"next_offset", orNull(pagination.next_offset)}};
}

/// The document of the answer without its samples. Every key is always there; an absent value is
/// null.
Json documentOf(const Member& member, const std::string& workoutID,
                const WorkoutHeartRate& heartRate, const std::string& coverage, SummaryLang lang) {
  return {{"person_id", member.id},
          {"person", member.name},
          {"workout_id", workoutID},
          {"workout_start", heartRate.workout.start},
          {"workout_end", heartRate.workout.end},
          {"source", heartRate.source},
          {"available_sources", heartRate.available_sources},
          {"units", {{"bpm", "count/min"}, {"elapsed_seconds", "s"}}},
          {"association", "sample_start_in_workout_time_window_exact_source"},
          {"value_precision", "stored_apple_export_compatible_6_significant_digits"},
          {"summary", summaryOf(heartRate.summary)},
          {"pagination", paginationOf(heartRate.pagination)},
          {"excluded_candidate_count", heartRate.excluded_candidate_count},
          {"samples", Json::array()},
          {"note", note.in(lang)},
          {"coverage", coverage},
          {"boundary", Tools::boundary.in(lang)}};
}

}  // namespace

std::string Tools::workoutHeartRate(const Call& call) {
  const Member member = resolve(call);
  const std::string workoutID = workoutArgument(call);
  const std::optional<std::string> source = strictText(call, "source", mustBeString);
  constexpr IntegerRule limitRule{.fallback = 1000, .lowest = 1, .highest = 5000};
  constexpr IntegerRule offsetRule{.fallback = 0, .lowest = 0, .highest = 2147483647};
  const std::int64_t limit = integerArgument(call, "limit", limitRule, mustBeInteger);
  const std::int64_t offset = integerArgument(call, "offset", offsetRule, mustBeInteger);

  try {
    const HealthStore store(member.dbPath, reading(call), call.log);
    const WorkoutHeartRate heartRate = store.workoutHeartRate(workoutID, source, limit, offset);
    std::string text =
        documentText(documentOf(member, workoutID, heartRate, coverageOf(store, call), call.lang));
    // Quotes inside a string are escaped, so this text occurs only as the key.
    constexpr std::string_view list = "\"samples\":[";
    return text.insert(text.find(list) + list.size(), textOf(heartRate.samples));
  } catch (const ReceiverError& error) {
    throw MCPError(MCPError::invalidArguments, error.message);
  }
}
