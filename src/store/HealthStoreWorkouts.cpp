// Workouts: statistics, short rows of a day, and complete entries.

#include "platform/ReceiverError.h"
#include "store/HealthStore.h"

#include <algorithm>

WorkoutStats HealthStore::workoutStats(std::string_view from, std::string_view to) const {
  WorkoutStats stats;
  Statement totals = prepare(
      "SELECT COUNT(*), COALESCE(SUM(duration_min), 0) FROM workouts\n"
      "WHERE start_day BETWEEN ? AND ?");
  totals.bind(1, from).bind(2, to);
  if (const std::optional<Row> row = totals.next()) {
    stats.count = row->find<std::int64_t>(0).value_or(0);
    stats.minutes = row->find<double>(1).value_or(0);
  }
  Statement byType = prepare(
      "SELECT activity_type, COUNT(*) FROM workouts\n"
      "WHERE start_day BETWEEN ? AND ?\n"
      "GROUP BY 1 ORDER BY 2 DESC, 1");
  byType.bind(1, from).bind(2, to);
  stats.byType = byType.readAll([](const Row& row) {
    return std::pair{row.find<std::string>(0).value_or("?"), row.find<std::int64_t>(1).value_or(0)};
  });
  return stats;
}

std::vector<DayWorkout> HealthStore::workouts(std::string_view day) const {
  Statement query = prepare(
      "SELECT activity_type, duration_min, distance_km, active_energy_kcal\n"
      "FROM workouts WHERE start_day=? ORDER BY start_date");
  query.bind(1, day);
  return query.readAll([](const Row& row) {
    return DayWorkout{row.find<std::string>(0).value_or("?"),
                      row.find<double>(1).value_or(0),
                      row.find<double>(2),
                      row.find<double>(3)};
  });
}

namespace {

const std::string workoutColumns =
    "SELECT activity_type, start_date, end_date, source_name,\n"
    "       duration_min, distance_km, active_energy_kcal, basal_energy_kcal,\n"
    "       hr_avg, hr_min, hr_max, elevation_m, avg_mets, indoor, temp_c, humidity_pct\n"
    "FROM workouts ";

std::optional<bool> flag(std::optional<double> number) {
  if (!number) return std::nullopt;
  return *number != 0;
}

WorkoutEntry workoutEntry(const Row& row) {
  return {.activity_type = row.text(0),
          .start = row.text(1),
          .end = row.text(2),
          .source = row.text(3),
          .duration_min = row.find<double>(4),
          .distance_km = row.find<double>(5),
          .active_energy_kcal = row.find<double>(6),
          .basal_energy_kcal = row.find<double>(7),
          .hr_avg = row.find<double>(8),
          .hr_min = row.find<double>(9),
          .hr_max = row.find<double>(10),
          .elevation_m = row.find<double>(11),
          .avg_mets = row.find<double>(12),
          .indoor = flag(row.find<double>(13)),
          .temp_c = row.find<double>(14),
          .humidity_pct = row.find<double>(15),
          .humidity = std::nullopt};
}

}  // namespace

std::vector<WorkoutEntry> HealthStore::workoutDetails(std::optional<std::string_view> from,
                                                      std::optional<std::string_view> to) const {
  std::vector<std::int64_t> rows;
  listWorkouts(from.value_or(""),
               to.value_or("9999-12-31"),
               [&rows](std::int64_t row, const auto&) { rows.push_back(row); });
  return workoutsAt(rows);
}

void HealthStore::listWorkouts(
    std::string_view from, std::string_view to,
    const std::function<void(std::int64_t row, const WorkoutEntry&)>& take) const {
  Statement query = prepare(
      "SELECT rowid, activity_type, source_name, indoor,\n"
      "       duration_min, distance_km, active_energy_kcal, basal_energy_kcal\n"
      "FROM workouts WHERE start_day BETWEEN ? AND ? ORDER BY start_date DESC, rowid DESC");
  query.bind(1, from).bind(2, to);
  while (const std::optional<Row> row = query.next()) {
    WorkoutEntry workout;
    workout.activity_type = row->text(1);
    workout.source = row->text(2);
    workout.indoor = flag(row->find<double>(3));
    workout.duration_min = row->find<double>(4);
    workout.distance_km = row->find<double>(5);
    workout.active_energy_kcal = row->find<double>(6);
    workout.basal_energy_kcal = row->find<double>(7);
    take(row->find<std::int64_t>(0).value_or(0), workout);
  }
}

std::vector<WorkoutEntry> HealthStore::workoutsAt(std::span<const std::int64_t> rows) const {
  Statement query = prepare(workoutColumns + "WHERE rowid=?");
  std::vector<WorkoutEntry> workouts;
  workouts.reserve(rows.size());
  for (const std::int64_t wanted : rows) {
    query.bind(1, wanted);
    if (const std::optional<Row> row = query.next()) workouts.push_back(workoutEntry(*row));
    query.reset();
  }
  attachHumidity(workouts);
  return workouts;
}

WorkoutEntry HealthStore::workoutNamed(const std::string& workoutID) const {
  // No table contains the identifier, which is a hash. So the four texts of every workout are
  // hashed, and only the matching workout is read in full. The plus sign keeps SQLite from using
  // the index on the day for every row. If several workouts have the same texts, the one stored
  // last counts.
  const std::optional<WorkoutDigest> wanted = workoutDigestOf(workoutID);
  Statement keys = prepare(
      "SELECT rowid, activity_type, source_name, start_date, end_date FROM workouts\n"
      "WHERE +start_day BETWEEN '' AND '9999-12-31'");
  std::optional<std::int64_t> found;
  while (const std::optional<Row> row = keys.next()) {
    const WorkoutDigest digest =
        workoutDigest(row->text(1), row->text(2), row->text(3), row->text(4));
    if (digest == wanted) found = std::max(found, row->find<std::int64_t>(0));
  }
  if (!found) throw ReceiverError("没有这次训练，请从训练清单获取 workout_id");
  return std::move(workoutsAt({&*found, 1}).at(0));
}

void HealthStore::attachHumidity(std::vector<WorkoutEntry>& workouts) const {
  // Older files have no table of humidity readings.
  if (!hasTable("workout_humidity")) return;
  Statement query =
      prepare("SELECT data FROM workout_humidity WHERE workout_id=?", "读取湿度原值 失败:");
  for (WorkoutEntry& workout : workouts) {
    query.bind(1, workout.workout_id());
    if (const std::optional<Row> row = query.next()) workout.humidity = humidityIn(row->text(0));
    query.reset();
  }
}
