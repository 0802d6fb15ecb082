#include "LongWorkout.h"
#include "Days.h"
#include "store/HealthStore.h"

#include <array>
#include <cstdint>
#include <cstdio>

namespace {

// Worn by the household already, so that its list of sources stays as it is.
constexpr const char* source = "Chest Strap";
constexpr const char* device = "<<HKDevice: 0x3>, name:CS1>";

/// The stamp `second` seconds after eight in the morning.
std::string stampAt(int second) {
  constexpr int firstHour = 8;
  std::array<char, 64> text{};
  std::snprintf(text.data(),
                text.size(),
                "%s %02d:%02d:%02d +0000",
                Days::ofLongWorkout,
                firstHour + second / 3600,
                second / 60 % 60,
                second % 60);
  return text.data();
}

bool isIn(const HealthStore& store) {
  Statement query = store.prepare("SELECT 1 FROM workouts WHERE start_date=? AND source_name=?");
  query.bind(1, stampAt(0)).bind(2, source);
  return query.next().has_value();
}

void addWorkout(const HealthStore& store) {
  const WorkoutEntry workout = LongWorkout::entry();
  Statement insert = store.prepare(
      "INSERT INTO workouts (activity_type, duration_min, source_name, start_date, start_day,"
      " end_date, creation_date) VALUES (?, ?, ?, ?, ?, ?, ?)");
  insert.bind(1, workout.activity_type).bind(2, workout.duration_min).bind(3, workout.source);
  insert.bind(4, workout.start).bind(5, Days::ofLongWorkout).bind(6, workout.end);
  insert.bind(7, workout.end).run();
}

void addSamples(const HealthStore& store) {
  Statement insert = store.prepare(
      "INSERT INTO records (type, source_name, device, unit, start_date, start_day, end_date,"
      " creation_date, value, value_num) VALUES ('HeartRate', ?, ?, 'count/min', ?, ?, ?, ?, ?, "
      "?)");
  insert.bind(1, source).bind(2, device).bind(4, Days::ofLongWorkout);
  for (int second = 0; second < LongWorkout::samples; ++second) {
    const std::string stamp = stampAt(second);
    const std::int64_t bpm = 100 + second % 61;
    insert.bind(3, stamp).bind(5, stamp).bind(6, stamp);
    insert.bind(7, std::to_string(bpm)).bind(8, static_cast<double>(bpm)).run();
  }
}

/// The statistics go on counting every record.
void addToStatistics(const HealthStore& store) {
  constexpr std::int64_t count = LongWorkout::samples;
  const std::string last = stampAt(LongWorkout::samples - 1);
  store
      .prepare(
          "INSERT INTO stat_types (type, n, last) VALUES ('HeartRate', ?, ?)"
          " ON CONFLICT (type) DO UPDATE SET n = n + excluded.n")
      .bind(1, count)
      .bind(2, last)
      .run();
  store
      .prepare(
          "INSERT INTO stat_sources (source_name, n, last) VALUES (?, ?, ?)"
          " ON CONFLICT (source_name) DO UPDATE SET n = n + excluded.n")
      .bind(1, source)
      .bind(2, count)
      .bind(3, last)
      .run();
}

}  // namespace

WorkoutEntry LongWorkout::entry() {
  WorkoutEntry workout;
  workout.activity_type = "Hiking";
  workout.start = stampAt(0);
  workout.end = stampAt(samples);
  workout.source = source;
  workout.duration_min = samples / 60.0;
  return workout;
}

void LongWorkout::addOnce(const std::string& path, Logger& log) {
  const HealthStore store(path, {.createIfMissing = false, .readOnly = false}, log);
  if (isIn(store)) return;
  // A failure closes the store in the middle of the transaction, which undoes it.
  store.prepare("BEGIN").run();
  addWorkout(store);
  addSamples(store);
  addToStatistics(store);
  store.prepare("COMMIT").run();
}
