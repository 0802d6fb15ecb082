#include "AddedWorkout.h"
#include "store/HealthStore.h"

#include <array>
#include <cstdint>
#include <cstdio>

namespace {

// The household already has this source, so the list of sources does not change.
constexpr const char* source = "Chest Strap";
constexpr const char* device = "<<HKDevice: 0x3>, name:CS1>";

/// The stamp `second` seconds after 8:00 on `day`.
std::string stampAt(const char* day, int second) {
  constexpr int firstHour = 8;
  std::array<char, 64> text{};
  std::snprintf(text.data(),
                text.size(),
                "%s %02d:%02d:%02d +0000",
                day,
                firstHour + second / 3600,
                second / 60 % 60,
                second % 60);
  return text.data();
}

bool isIn(const HealthStore& store, const WorkoutEntry& workout) {
  Statement query = store.prepare("SELECT 1 FROM workouts WHERE start_date=? AND source_name=?");
  query.bind(1, workout.start).bind(2, workout.source);
  return query.next().has_value();
}

void addWorkout(const HealthStore& store, const WorkoutEntry& workout) {
  Statement insert = store.prepare(
      "INSERT INTO workouts (activity_type, duration_min, source_name, start_date, start_day,"
      " end_date, creation_date) VALUES (?, ?, ?, ?, ?, ?, ?)");
  insert.bind(1, workout.activity_type).bind(2, workout.duration_min).bind(3, workout.source);
  insert.bind(4, workout.start).bind(5, workout.start.substr(0, 10)).bind(6, workout.end);
  insert.bind(7, workout.end).run();
}

void addSamples(const HealthStore& store, const AddedWorkout& workout) {
  Statement insert = store.prepare(
      "INSERT INTO records (type, source_name, device, unit, start_date, start_day, end_date,"
      " creation_date, value, value_num) VALUES ('HeartRate', ?, ?, 'count/min', ?, ?, ?, ?, ?, "
      "?)");
  insert.bind(1, source).bind(2, device).bind(4, workout.day);
  for (int second = 0; second < workout.samples; ++second) {
    const std::string stamp = stampAt(workout.day, second);
    const std::int64_t bpm = 100 + second % 61;
    insert.bind(3, stamp).bind(5, stamp).bind(6, stamp);
    insert.bind(7, std::to_string(bpm)).bind(8, static_cast<double>(bpm)).run();
  }
}

/// Keeps the statistics complete.
void addToStatistics(const HealthStore& store, const AddedWorkout& workout) {
  const std::int64_t count = workout.samples;
  const std::string last = stampAt(workout.day, workout.samples - 1);
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

WorkoutEntry AddedWorkout::entry() const {
  WorkoutEntry workout;
  workout.activity_type = activity;
  workout.start = stampAt(day, 0);
  workout.end = stampAt(day, samples);
  workout.source = source;
  workout.duration_min = samples / 60.0;
  return workout;
}

void AddedWorkout::addOnce(const std::string& path, Logger& log) const {
  const HealthStore store(path, {.createIfMissing = false, .readOnly = false}, log);
  const WorkoutEntry workout = entry();
  if (isIn(store, workout)) return;
  // On failure the store closes within the transaction, which rolls it back.
  store.prepare("BEGIN").run();
  addWorkout(store, workout);
  addSamples(store, *this);
  addToStatistics(store, *this);
  store.prepare("COMMIT").run();
}
