// The samples of a workout, compared with an algorithm that is slow and plain: it takes every row
// of the table and keeps all of every sample.

#include "platform/AppleFormat.h"
#include "store/HealthStore.h"
#include "support/TestDatabase.h"
#include "support/WorkoutSamples.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <limits>
#include <optional>
#include <ostream>
#include <random>
#include <set>
#include <string>
#include <tuple>
#include <vector>

inline void PrintTo(const WorkoutHeartRate& heartRate, std::ostream* stream) {
  *stream << nlohmann::ordered_json(heartRate).dump(1);
}

namespace {

using Source = std::optional<std::string>;

/// The day of `moment` in UTC and `days` later, written by hand.
std::string dayOf(std::int64_t moment, int days) {
  const std::chrono::sys_days day =
      std::chrono::floor<std::chrono::days>(std::chrono::sys_seconds(std::chrono::seconds(moment)));
  return AppleFormat::dayText(AppleFormat::daysAfter(day, days));
}

struct Ask {
  WorkoutEntry workout;
  Source source;
  std::int64_t limit;
  std::int64_t offset;
};

/// All samples of the selected source, whatever their order; notes the rest in `answer`.
std::vector<WorkoutHeartRatePoint> matchesOf(const TestDatabase& database, const Ask& ask,
                                             WorkoutHeartRate& answer) {
  const std::int64_t begin = AppleFormat::stampParser.parse(ask.workout.start).value();
  const std::int64_t end = AppleFormat::stampParser.parse(ask.workout.end).value();
  std::set<std::string> sources;
  std::vector<WorkoutHeartRatePoint> points;
  const Database connection = database.writer();
  Statement everything = connection.prepare(
      "SELECT rowid, start_date, end_date, source_name, device, unit, value, value_num, type, "
      "start_day FROM records ORDER BY rowid DESC");
  while (const std::optional<Row> row = everything.next()) {
    const std::string day = row->text(9);
    if (row->text(8) != "HeartRate" || day < dayOf(begin, -2) || day > dayOf(end, 2)) continue;
    const std::string source = row->text(3);
    const std::optional<std::int64_t> start = AppleFormat::stampParser.parse(row->text(1));
    if (!start && source == answer.source) ++answer.excluded_candidate_count;
    if (!start || *start < begin || *start >= end) continue;
    sources.insert(source);
    if (source != answer.source) continue;
    const std::optional<double> bpm = row->find<double>(7);
    const std::string unit = row->text(5);
    if (!bpm || std::isinf(*bpm) || (unit != "count/min" && unit != "bpm")) {
      ++answer.excluded_candidate_count;
      continue;
    }
    points.push_back({.record_id = row->find<std::int64_t>(0).value(),
                      .start = row->text(1),
                      .end = row->find<std::string>(2),
                      .source = source,
                      .device = row->find<std::string>(4),
                      .raw_unit = unit,
                      .stored_value = row->find<std::string>(6),
                      .elapsed_seconds = static_cast<double>(*start - begin),
                      .bpm = *bpm,
                      .segment = 0});
  }
  answer.available_sources.assign(sources.begin(), sources.end());
  return points;
}

WorkoutHeartRateSummary summaryOf(const std::vector<WorkoutHeartRatePoint>& points) {
  WorkoutHeartRateSummary summary;
  for (const WorkoutHeartRatePoint& point : points) {
    ++summary.count;
    summary.min_bpm = std::min(point.bpm, summary.min_bpm.value_or(point.bpm));
    summary.max_bpm = std::max(point.bpm, summary.max_bpm.value_or(point.bpm));
    summary.sample_mean_bpm =
        summary.sample_mean_bpm.value_or(0) + point.bpm / static_cast<double>(points.size());
  }
  return summary;
}

WorkoutHeartRate plainAnswer(const TestDatabase& database, const Ask& ask) {
  WorkoutHeartRate answer;
  answer.workout = ask.workout;
  answer.source = ask.source.value_or(ask.workout.source);
  std::vector<WorkoutHeartRatePoint> points = matchesOf(database, ask, answer);
  std::sort(points.begin(), points.end(), [](const auto& left, const auto& right) {
    return std::tie(left.elapsed_seconds, left.record_id) <
           std::tie(right.elapsed_seconds, right.record_id);
  });
  for (std::size_t index = 1; index < points.size(); ++index) {
    const double gap = points[index].elapsed_seconds - points[index - 1].elapsed_seconds;
    points[index].segment = points[index - 1].segment + (gap > 60 ? 1 : 0);
  }
  answer.summary = summaryOf(points);
  const auto count = static_cast<std::int64_t>(points.size());
  for (std::int64_t index = ask.offset; index < std::min(count, ask.offset + ask.limit); ++index) {
    answer.samples.push_back(points[static_cast<std::size_t>(index)]);
  }
  answer.pagination.total_count = count;
  answer.pagination.returned_count = static_cast<std::int64_t>(answer.samples.size());
  answer.pagination.limit = ask.limit;
  answer.pagination.offset = ask.offset;
  const std::int64_t next = ask.offset + answer.pagination.returned_count;
  answer.pagination.has_more = next < count;
  if (answer.pagination.has_more) answer.pagination.next_offset = next;
  return answer;
}

/// Numbers that are the same on every machine, which the standard's distributions are not.
class Dice {
public:
  explicit Dice(unsigned seed) : engine(seed) {}

  /// 0 to `sides` - 1.
  int rolled(int sides) { return static_cast<int>(engine() % static_cast<unsigned>(sides)); }

  template <typename T, std::size_t count>
  const T& oneOf(const std::array<T, count>& choices) {
    return choices[static_cast<std::size_t>(rolled(static_cast<int>(count)))];
  }

private:
  std::mt19937 engine;
};

const std::array<Source, 5> sources{"Watch", "watch", "Apple\u00A0Watch", "", std::nullopt};
const std::array<Source, 8> units{
    "count/min", "count/min", "count/min", "bpm", "bpm", "BPM", "", std::nullopt};
const std::array<std::string, 3> types{"HeartRate", "HeartRate", "RestingHeartRate"};
const std::array<int, 5> zones{0, 8, -10, 14, 5};

/// The moment in a zone so many hours ahead of UTC, as the export writes it.
std::string stampOf(std::int64_t moment, int hours) {
  const std::int64_t local = moment + hours * 3600;
  const auto twoDigits = [](std::int64_t number) {
    return (number < 10 ? "0" : "") + std::to_string(number);
  };
  const std::int64_t second = local % 86400;
  return dayOf(local, 0) + " " + twoDigits(second / 3600) + ":" + twoDigits(second / 60 % 60) +
         ":" + twoDigits(second % 60) + (hours < 0 ? " -" : " +") + twoDigits(std::abs(hours)) +
         "00";
}

constexpr std::int64_t noon = 1709294400;  // 2024-03-01 12:00:00 UTC

void addWorkouts(TestDatabase& database, Dice& dice) {
  for (int number = 0; number < 4; ++number) {
    const std::int64_t start = noon + dice.rolled(20) * 600;
    const std::string stamp = stampOf(start, dice.oneOf(zones));
    database.addWorkout({.source_name = dice.oneOf(sources),
                         .start_date = stamp,
                         .start_day = stamp.substr(0, 10),
                         .end_date = stampOf(start + 60 + dice.rolled(7200), dice.oneOf(zones)),
                         .hr_avg = number});
  }
}

TestRecord randomSample(Dice& dice) {
  TestRecord sample;
  sample.type = dice.oneOf(types);
  sample.source_name = dice.oneOf(sources);
  if (dice.rolled(3) > 0) sample.device = "device " + std::to_string(dice.rolled(3));
  sample.unit = dice.oneOf(units);
  // To the half minute, so that many begin at once.
  const std::int64_t start = noon + dice.rolled(700) * 30;
  sample.start_date = stampOf(start, dice.oneOf(zones));
  sample.start_day = dayOf(start, dice.rolled(9) - 4);
  if (dice.rolled(3) > 0) sample.end_date = stampOf(start + 5, 0);
  if (dice.rolled(3) > 0) sample.value = std::to_string(dice.rolled(200));
  if (dice.rolled(8) > 0) sample.value_num = 40 + dice.rolled(1400) / 7.0;
  if (dice.rolled(20) == 0) sample.value_num = std::numeric_limits<double>::infinity();
  if (dice.rolled(30) == 0) sample.start_date = "some time";
  return sample;
}

void fill(TestDatabase& database, Dice& dice) {
  addWorkouts(database, dice);
  std::vector<TestRecord> samples;
  for (int number = 0; number < 3000; ++number) samples.push_back(randomSample(dice));
  // Of two rows that the table takes for the same, the first stays.
  database.run("DROP TABLE records")
      .run(
          "CREATE TABLE records (type TEXT, source_name TEXT, device TEXT, unit TEXT, start_date "
          "TEXT, start_day TEXT, end_date TEXT, value TEXT, value_num REAL)")
      .addRecords(samples)
      .run("UPDATE records SET value_num='text' WHERE rowid % 31 = 0")
      .run("DELETE FROM records WHERE rowid % 13 = 0");
}

class WorkoutSamplesOfAnyDatabase : public testing::TestWithParam<unsigned> {};

TEST_P(WorkoutSamplesOfAnyDatabase, AreThoseOfThePlainAlgorithm) {
  Dice dice(GetParam());
  TestDatabase database;
  fill(database, dice);
  const HealthStore store = database.open();
  std::int64_t matched = 0;
  std::int64_t excluded = 0;

  for (const WorkoutEntry& workout : store.workoutDetails({}, {})) {
    for (const Source& source : sources) {
      const Ask ask{workout, source, 1 + dice.rolled(40), dice.rolled(30)};
      const WorkoutHeartRate expected = plainAnswer(database, ask);
      ASSERT_EQ(store.workoutHeartRate(workout.workout_id(), source, ask.limit, ask.offset),
                expected);
      matched += expected.summary.count;
      excluded += expected.excluded_candidate_count;
    }
  }

  // Where nothing matches, nothing is compared.
  EXPECT_GT(matched, 100);
  EXPECT_GT(excluded, 100);
}

INSTANTIATE_TEST_SUITE_P(Seeds, WorkoutSamplesOfAnyDatabase, testing::Range(1U, 9U));

}  // namespace
