#include "store/Schema.h"

#include <cstdint>
#include <optional>
#include <string>

namespace {

constexpr const char* mainSchema = R"sql(
CREATE TABLE IF NOT EXISTS imports (
  id INTEGER PRIMARY KEY, imported_at TEXT NOT NULL, source_file TEXT NOT NULL,
  source_bytes INTEGER, n_records INTEGER, n_workouts INTEGER, n_summary INTEGER, n_ecg INTEGER,
  n_routes INTEGER);
CREATE TABLE IF NOT EXISTS records (
  type TEXT NOT NULL, source_name TEXT, device TEXT, unit TEXT, start_date TEXT NOT NULL,
  start_day TEXT, end_date TEXT, creation_date TEXT, value TEXT, value_num REAL,
  UNIQUE (type, source_name, start_date, end_date, value));
CREATE TABLE IF NOT EXISTS workouts (
  activity_type TEXT, duration_min REAL, source_name TEXT, start_date TEXT NOT NULL,
  start_day TEXT, end_date TEXT, creation_date TEXT, distance_km REAL, active_energy_kcal REAL,
  basal_energy_kcal REAL, hr_avg REAL, hr_min REAL, hr_max REAL, elevation_m REAL, avg_mets REAL,
  indoor INTEGER, temp_c REAL, humidity_pct REAL,
  UNIQUE (activity_type, source_name, start_date, end_date));
CREATE TABLE IF NOT EXISTS activity_summary (
  date TEXT PRIMARY KEY, active_energy REAL, active_energy_goal REAL, active_energy_unit TEXT,
  move_time REAL, move_time_goal REAL, exercise_time REAL, exercise_time_goal REAL,
  stand_hours REAL, stand_hours_goal REAL);
CREATE TABLE IF NOT EXISTS ecg (
  id INTEGER PRIMARY KEY, file TEXT NOT NULL UNIQUE, person TEXT, birth_date TEXT,
  recorded_at TEXT, classification TEXT, symptoms TEXT, sw_version TEXT, device TEXT,
  sample_rate_hz REAL, lead TEXT, unit TEXT, n_samples INTEGER, duration_s REAL);
CREATE TABLE IF NOT EXISTS ecg_samples (
  ecg_id INTEGER NOT NULL REFERENCES ecg(id), idx INTEGER NOT NULL, uv REAL,
  PRIMARY KEY (ecg_id, idx)) WITHOUT ROWID;
CREATE TABLE IF NOT EXISTS routes (
  id INTEGER PRIMARY KEY, file TEXT NOT NULL UNIQUE, name TEXT, start_time TEXT, end_time TEXT,
  n_points INTEGER, duration_s REAL, distance_m REAL, ele_gain_m REAL, ele_min REAL, ele_max REAL,
  avg_speed_ms REAL, max_speed_ms REAL);
CREATE TABLE IF NOT EXISTS route_points (
  route_id INTEGER NOT NULL REFERENCES routes(id), idx INTEGER NOT NULL, time TEXT, lat REAL,
  lon REAL, ele REAL, speed REAL, course REAL, hacc REAL, vacc REAL,
  PRIMARY KEY (route_id, idx)) WITHOUT ROWID;
CREATE INDEX IF NOT EXISTS ix_rec_type_day ON records(type, start_day);
CREATE INDEX IF NOT EXISTS ix_wo_day ON workouts(start_day);
)sql";

constexpr const char* humiditySchema =
    "CREATE TABLE IF NOT EXISTS workout_humidity (workout_id TEXT PRIMARY KEY, data TEXT NOT NULL)";

constexpr const char* statisticsSchema = R"sql(
CREATE TABLE IF NOT EXISTS stat_types (type TEXT PRIMARY KEY, n INTEGER NOT NULL, last TEXT);
CREATE TABLE IF NOT EXISTS stat_sources (source_name TEXT PRIMARY KEY, n INTEGER NOT NULL, last TEXT);
CREATE TABLE IF NOT EXISTS stat_meta (k TEXT PRIMARY KEY, v TEXT);
)sql";

void addColumnIfMissing(Database& database, const std::string& table, const std::string& column,
                        const std::string& type) {
  Statement query = database.prepare("PRAGMA table_info(" + table + ")");
  bool found = false;
  while (const std::optional<Row> row = query.next()) found |= row->text(1) == column;
  if (!found) database.exec("ALTER TABLE " + table + " ADD COLUMN " + column + " " + type);
}

bool hasRecords(const Database& database) {
  Statement query = database.prepare("SELECT COUNT(*) FROM (SELECT 1 FROM records LIMIT 1)");
  const std::optional<Row> row = query.next();
  return row && row->find<std::int64_t>(0).value_or(0) != 0;
}

}  // namespace

void Schema::migrate(Database& database) {
  database.exec("PRAGMA journal_mode=WAL");
  database.exec("PRAGMA synchronous=NORMAL");
  database.exec(mainSchema);
  addColumnIfMissing(database, "imports", "types", "TEXT");
  database.exec(humiditySchema);
  database.exec(statisticsSchema);
  // Without records, empty statistics are complete. With records, their builder sets this mark.
  if (!hasRecords(database)) {
    database.exec("INSERT OR IGNORE INTO stat_meta (k, v) VALUES ('built', '1')");
  }
}
