// The heart-rate samples of one workout.

#include "platform/AppleFormat.h"
#include "platform/ReceiverError.h"
#include "platform/Text.h"
#include "store/HealthStore.h"
#include "store/QueryParts.h"

#include <algorithm>
#include <cmath>
#include <set>

namespace {

constexpr std::int64_t mostPerPage = 5000;
constexpr std::int64_t largestOffset = 2147483647;
constexpr std::size_t mostSamples = 200000;

/// The time of a workout, in seconds since 1970; the end is excluded.
struct TimeWindow {
  std::int64_t start;
  std::int64_t end;
};

TimeWindow windowOf(const WorkoutEntry& workout) {
  const std::optional<std::int64_t> start = AppleFormat::stampParser.parse(workout.start);
  const std::optional<std::int64_t> end = AppleFormat::stampParser.parse(workout.end);
  if (!start || !end || *end <= *start) {
    throw ReceiverError("训练起止时间无效，无法匹配心率");
  }
  return {*start, *end};
}

/// The UTC day `days` days after the day of `moment`, capped at 9999-12-31.
std::string dayInUTC(std::int64_t moment, int days) {
  const auto day =
      std::chrono::floor<std::chrono::days>(std::chrono::sys_seconds(std::chrono::seconds(moment)));
  const CivilDay wanted = AppleFormat::daysAfter(day, days);
  if (wanted.year() > std::chrono::year(9999)) return "9999-12-31";
  return AppleFormat::dayText(wanted);
}

/// The part of a sample for the order, the segments and the summary. A workout may have 200000
/// samples but a page only 5000, so the other fields are read only for the page.
struct Match {
  double elapsedSeconds;
  std::int64_t record;
  double bpm;
};

struct Matches {
  std::vector<Match> samples;
  std::set<std::string> sources;  ///< of all samples in the window
  std::int64_t excluded = 0;
  std::string lastSource;       ///< of the previous sample, as stored
  bool lastIsSelected = false;  ///< whether `lastSource` is the selected source
};

/// The sample's value if its unit means beats per minute.
std::optional<double> beatsPerMinute(const Row& row, int unitColumn, int valueColumn) {
  const std::string_view unit = row.bytes(unitColumn);
  if (unit != "count/min" && unit != "bpm") return std::nullopt;
  return Queries::valueIn(row, valueColumn);
}

/// Adds one row of rowid, start_date, source_name, unit and value_num.
void addCandidate(const Row& row, const TimeWindow& window, std::string_view source,
                  Matches& matches) {
  const std::optional<std::int64_t> start = AppleFormat::stampParser.parse(row.bytes(1));
  if (!start) {
    if (row.text(2) == source) ++matches.excluded;
    return;
  }
  if (*start < window.start || *start >= window.end) return;
  const std::string_view stored = row.bytes(2);
  // Most samples have the same source as the previous one.
  if (matches.sources.empty() || stored != matches.lastSource) {
    matches.lastSource = stored;
    matches.lastIsSelected = *matches.sources.insert(repaired(stored)).first == source;
  }
  if (!matches.lastIsSelected) return;
  const std::optional<double> bpm = beatsPerMinute(row, 3, 4);
  if (!bpm) {
    ++matches.excluded;
    return;
  }
  if (matches.samples.size() == mostSamples) {
    throw ReceiverError("单次训练心率超过 200000 条，拒绝截断，请检查训练时间范围");
  }
  matches.samples.push_back(
      {static_cast<double>(*start - window.start), row.find<std::int64_t>(0).value_or(0), *bpm});
}

/// The segment number of each sample. It increases after every gap of more than a minute, where a
/// chart must break its line.
std::vector<std::int64_t> segmentsOf(const std::vector<Match>& samples) {
  constexpr double longestStep = 60.0;
  std::vector<std::int64_t> segments;
  segments.reserve(samples.size());
  std::int64_t segment = 0;
  const Match* previous = nullptr;
  for (const Match& sample : samples) {
    if (previous != nullptr && sample.elapsedSeconds - previous->elapsedSeconds > longestStep) {
      ++segment;
    }
    segments.push_back(segment);
    previous = &sample;
  }
  return segments;
}

WorkoutHeartRateSummary summaryOf(const std::vector<Match>& samples) {
  WorkoutHeartRateSummary summary;
  summary.count = static_cast<std::int64_t>(samples.size());
  if (samples.empty()) return summary;
  const auto [lowest, highest] = std::ranges::minmax(samples, {}, &Match::bpm);
  summary.min_bpm = lowest.bpm;
  summary.max_bpm = highest.bpm;
  double mean = 0;
  for (const Match& sample : samples) mean += sample.bpm / static_cast<double>(samples.size());
  if (std::isfinite(mean)) summary.sample_mean_bpm = mean;
  return summary;
}

WorkoutHeartRatePagination paginationOf(std::int64_t total, std::int64_t limit,
                                        std::int64_t offset) {
  WorkoutHeartRatePagination pagination{.total_count = total,
                                        .returned_count = 0,
                                        .limit = limit,
                                        .offset = offset,
                                        .has_more = false,
                                        .next_offset = std::nullopt};
  pagination.returned_count = std::clamp<std::int64_t>(total - offset, 0, limit);
  const std::int64_t next = offset + pagination.returned_count;
  pagination.has_more = next < total;
  if (pagination.has_more) pagination.next_offset = next;
  return pagination;
}

constexpr const char* stepFailure = "读取训练心率 失败:";

/// All samples of `source` in the window, ordered by time, then by row id.
Matches matchesIn(const HealthStore& store, const TimeWindow& window, std::string_view source) {
  // A sample is stored under the day of its own zone. Two extra days on either side cover all
  // zones.
  Statement candidates = store.prepare(
      "SELECT rowid,start_date,source_name,unit,value_num\n"
      "FROM records WHERE type='HeartRate' AND start_day BETWEEN ? AND ?",
      stepFailure);
  candidates.bind(1, dayInUTC(window.start, -2)).bind(2, dayInUTC(window.end, 2));
  Matches matches;
  while (const std::optional<Row> row = candidates.next()) {
    addCandidate(*row, window, source, matches);
  }
  const auto order = [](const Match& sample) {
    return std::pair(sample.elapsedSeconds, sample.record);
  };
  // Most samples are stored in the order of their times.
  if (!std::ranges::is_sorted(matches.samples, {}, order)) {
    std::ranges::sort(matches.samples, {}, order);
  }
  return matches;
}

/// The complete samples of the page.
std::vector<WorkoutHeartRatePoint> pageOf(const HealthStore& store,
                                          const std::vector<Match>& samples,
                                          const WorkoutHeartRatePagination& pagination) {
  const std::vector<std::int64_t> segments = segmentsOf(samples);
  Statement sample = store.prepare(
      "SELECT start_date,end_date,source_name,device,unit,value FROM records WHERE rowid=?",
      stepFailure);
  std::vector<WorkoutHeartRatePoint> page;
  page.reserve(static_cast<std::size_t>(pagination.returned_count));
  for (std::int64_t index = 0; index < pagination.returned_count; ++index) {
    const auto position = static_cast<std::size_t>(pagination.offset + index);
    const Match& match = samples[position];
    sample.bind(1, match.record);
    const std::optional<Row> row = sample.next();
    if (!row) throw ReceiverError(std::string(stepFailure) + "?");
    page.push_back({.record_id = match.record,
                    .start = row->text(0),
                    .end = row->find<std::string>(1),
                    .source = row->text(2),
                    .device = row->find<std::string>(3),
                    .raw_unit = row->text(4),
                    .stored_value = row->find<std::string>(5),
                    .elapsed_seconds = match.elapsedSeconds,
                    .bpm = match.bpm,
                    .segment = segments[position]});
    sample.reset();
  }
  return page;
}

}  // namespace

WorkoutHeartRate HealthStore::workoutHeartRate(const std::string& workoutID,
                                               const std::optional<std::string>& source,
                                               std::int64_t limit, std::int64_t offset) const {
  if (limit < 1 || limit > mostPerPage || offset < 0 || offset > largestOffset) {
    throw ReceiverError("心率分页参数无效");
  }
  WorkoutHeartRate heartRate;
  heartRate.workout = workoutNamed(workoutID);
  heartRate.source = source.value_or(heartRate.workout.source);
  const Matches matches = matchesIn(*this, windowOf(heartRate.workout), heartRate.source);

  heartRate.available_sources.assign(matches.sources.begin(), matches.sources.end());
  heartRate.summary = summaryOf(matches.samples);
  heartRate.pagination = paginationOf(heartRate.summary.count, limit, offset);
  heartRate.samples = pageOf(*this, matches.samples, heartRate.pagination);
  heartRate.excluded_candidate_count = matches.excluded;
  return heartRate;
}
