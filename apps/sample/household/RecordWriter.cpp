#include "sample/household/RecordWriter.h"

#include <nlohmann/json.hpp>

#include <optional>
#include <variant>

RecordWriter::RecordWriter(Database& database, Progress& progress)
    : database(database),
      progress(progress),
      insertSample(
          database.prepare("INSERT INTO records (type, source_name, device, unit, start_date,"
                           " start_day, end_date, creation_date, value, value_num)"
                           " VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?)")),
      insertWorkout(database.prepare(
          "INSERT INTO workouts (activity_type, duration_min, source_name, start_date, start_day,"
          " end_date, creation_date, distance_km, active_energy_kcal, basal_energy_kcal, hr_avg,"
          " hr_min, hr_max, elevation_m, avg_mets, indoor, temp_c, humidity_pct)"
          " VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)")),
      insertHumidity(
          database.prepare("INSERT INTO workout_humidity (workout_id, data) VALUES (?, ?)")) {
  // The roster is written last, so nobody reads the file before. A crash costs only another run.
  run("PRAGMA synchronous=OFF");
  run("PRAGMA journal_mode=MEMORY");  // a write-ahead log would write everything twice
  // Every type and source inserts at its own place in the indexes. The cache keeps their pages in
  // memory.
  run("PRAGMA cache_size=-65536");
  run("BEGIN");
}

void RecordWriter::run(const char* sql) { database.prepare(sql).run(); }

namespace {

/// Binds NULL for an empty text.
void bindOrNull(Statement& statement, int position, std::string_view text) {
  if (text.empty()) {
    statement.bindNull(position);
  } else {
    statement.bind(position, text);
  }
}

void bindValue(Statement& statement, int textPosition, int numberPosition, const Sample& sample) {
  if (const auto* number = std::get_if<Decimal>(&sample.value)) {
    statement.bind(textPosition, number->text()).bind(numberPosition, number->number());
  } else {
    statement.bind(textPosition, std::get<std::string_view>(sample.value)).bindNull(numberPosition);
  }
}

}  // namespace

void RecordWriter::add(const Sample& sample) {
  const StampText start(sample.start);
  const Source& source = *sample.source;
  if (sample.type.data() != boundType) insertSample.bind(1, sample.type);
  if (sample.source != boundSource) {
    insertSample.bind(2, source.name);
    bindOrNull(insertSample, 3, source.device);
  }
  boundType = sample.type.data();
  boundSource = sample.source;
  bindOrNull(insertSample, 4, sample.unit);
  insertSample.bind(5, start.text());
  bindOrNull(insertSample, 6, sample.dated ? start.day() : std::string_view());
  insertSample.bind(7, StampText(sample.end).text());
  insertSample.bind(8, StampText(sample.created()).text());
  bindValue(insertSample, 9, 10, sample);
  insertSample.run();

  count(types, sample.type, start.text());
  count(sources, source.name, start.text());
  progress.rows(++recordCount);
  constexpr std::int64_t rowsPerTransaction = 100000;
  if (recordCount % rowsPerTransaction == 0) {
    run("COMMIT");
    run("BEGIN");
  }
}

void RecordWriter::count(Counts& counts, std::string_view key, std::string_view start) {
  auto found = counts.find(key);
  if (found == counts.end()) found = counts.emplace(key, TypeCount{}).first;
  TypeCount& entry = found->second;
  ++entry.count;
  if (start > entry.last) entry.last = start;
}

void RecordWriter::add(const Workout& workout) {
  const WorkoutEntry& entry = workout.entry;
  const StampText start(workout.start);
  const std::string created(StampText(workout.created()).text());
  insertWorkout.bind(1, entry.activity_type).bind(2, entry.duration_min).bind(3, entry.source);
  insertWorkout.bind(4, entry.start).bind(5, start.day()).bind(6, entry.end).bind(7, created);
  insertWorkout.bind(8, entry.distance_km).bind(9, entry.active_energy_kcal);
  insertWorkout.bind(10, entry.basal_energy_kcal).bind(11, entry.hr_avg).bind(12, entry.hr_min);
  insertWorkout.bind(13, entry.hr_max).bind(14, entry.elevation_m).bind(15, entry.avg_mets);
  insertWorkout.bind(
      16, entry.indoor ? std::optional<std::int64_t>(*entry.indoor ? 1 : 0) : std::nullopt);
  insertWorkout.bind(17, entry.temp_c).bind(18, entry.humidity_pct);
  insertWorkout.run();
  ++workoutCount;

  if (!entry.humidity) return;
  const std::string data = nlohmann::ordered_json(*entry.humidity).dump();
  insertHumidity.bind(1, entry.workout_id()).bind(2, data).run();
}

void RecordWriter::insertCounts(const char* sql, const Counts& counts) {
  Statement insert = database.prepare(sql);
  for (const auto& [key, entry] : counts) {
    insert.bind(1, key).bind(2, entry.count).bind(3, entry.last).run();
  }
}

void RecordWriter::noteImportZone(std::string_view name) {
  database.prepare("INSERT INTO stat_meta (k, v) VALUES ('import_time_zone', ?)")
      .bind(1, name)
      .run();
}

void RecordWriter::finish(Statistics statistics) {
  if (statistics == Statistics::built) {
    insertCounts("INSERT INTO stat_types (type, n, last) VALUES (?, ?, ?)", types);
    insertCounts("INSERT INTO stat_sources (source_name, n, last) VALUES (?, ?, ?)", sources);
  } else {
    // The statistics of a new file are marked as complete. They are not complete for its records.
    run("DELETE FROM stat_meta WHERE k = 'built'");
  }
  run("COMMIT");
  run("PRAGMA journal_mode=WAL");  // like the receiver
}
