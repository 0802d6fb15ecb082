#include "import/database/Writer.h"
#include "import/database/ImportedZone.h"
#include "import/database/Statistics.h"
#include "import/export/Units.h"
#include "platform/AppleFormat.h"

#include <nlohmann/json.hpp>

#include <array>
#include <cmath>

namespace {

void run(Database& database, const std::string& sql) { database.prepare(sql).run(); }

/// 0 when there are no records.
std::int64_t lastRow(const Database& database) {
  Statement query = database.prepare("SELECT MAX(rowid) FROM records");
  const std::optional<Row> row = query.next();
  return row ? row->find<std::int64_t>(0).value_or(0) : 0;
}

/// Applies the settings for one long transaction and begins it. Returns the last row id of the
/// records.
std::int64_t begun(Database& database, const Writer::Options& options) {
  // The roster is written after the commit and says that the data exists. So the commit must be on
  // the disk by then.
  run(database, "PRAGMA synchronous=EXTRA");
  run(database, "PRAGMA fullfsync=ON");  // where fsync alone stops at the drive's cache
  run(database, "PRAGMA checkpoint_fullfsync=ON");
  run(database, "PRAGMA cache_size=-" + std::to_string(options.cacheKibibytes));
  // A new database, which has no readers yet, gets a rollback journal. That journal contains the
  // old content of changed pages; new pages have none. A write-ahead log would write every page
  // several times. A database in use keeps its log. So readers can continue, and find a consistent
  // database even after this process was killed. The log is turned on again when the file is next
  // opened for writing.
  if (!options.inUse) run(database, "PRAGMA journal_mode=DELETE");
  run(database, "BEGIN IMMEDIATE");
  return lastRow(database);
}

constexpr const char* recordSearch =
    "SELECT value, value_num, unit IS ?5 FROM records WHERE type = ?1 AND source_name IS ?2"
    " AND start_date = ?3 AND end_date IS ?4";
constexpr const char* recordInsertion =
    "INSERT OR IGNORE INTO records (type, source_name, device, unit, start_date, start_day,"
    " end_date, creation_date, value, value_num) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?)";
// Every text of a workout's key may be absent, and the constraint treats NULL as different from
// NULL.
constexpr const char* workoutInsertion =
    "INSERT INTO workouts (activity_type, source_name, start_date, end_date, duration_min,"
    " start_day, creation_date, distance_km, active_energy_kcal, basal_energy_kcal, hr_avg, hr_min,"
    " hr_max, elevation_m, avg_mets, indoor, temp_c, humidity_pct)"
    " SELECT ?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8, ?9, ?10, ?11, ?12, ?13, ?14, ?15, ?16, ?17, ?18"
    " WHERE NOT EXISTS (SELECT 1 FROM workouts WHERE activity_type IS ?1 AND source_name IS ?2"
    " AND start_date = ?3 AND end_date IS ?4) RETURNING 1";
constexpr const char* humidityInsertion =
    "INSERT OR REPLACE INTO workout_humidity (workout_id, data) VALUES (?, ?)";
constexpr const char* daySearch =
    "SELECT active_energy_unit, active_energy, active_energy_goal, move_time, move_time_goal,"
    " exercise_time, exercise_time_goal, stand_hours, stand_hours_goal FROM activity_summary"
    " WHERE date = ?";
constexpr const char* dayReplacement =
    "INSERT OR REPLACE INTO activity_summary (date, active_energy_unit, active_energy,"
    " active_energy_goal, move_time, move_time_goal, exercise_time, exercise_time_goal,"
    " stand_hours, stand_hours_goal) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?)";

/// The numbers of a day, in the column order of both statements.
std::array<std::optional<double>, 8> numbersOf(const ExportedActivityDay& day) {
  return {day.activeEnergy,
          day.activeEnergyGoal,
          day.moveTime,
          day.moveTimeGoal,
          day.exerciseTime,
          day.exerciseTimeGoal,
          day.standHours,
          day.standHoursGoal};
}

/// Runs a statement that returns a row if it changed one.
bool changed(Statement& statement) {
  bool any = false;
  while (statement.next()) any = true;
  statement.reset();
  return any;
}

std::optional<std::string_view> unlessEmpty(std::string_view text) {
  if (text.empty()) return std::nullopt;
  return text;
}

}  // namespace

Writer::Writer(Database& database, Options options)
    : database(database),
      options(options),
      lastRowBefore(begun(database, options)),
      findRecord(database.prepare(recordSearch)),
      insertRecord(database.prepare(recordInsertion)),
      insertWorkout(database.prepare(workoutInsertion)),
      insertHumidity(database.prepare(humidityInsertion)),
      findDay(database.prepare(daySearch)),
      replaceDay(database.prepare(dayReplacement)) {}

void Writer::exportedAt(std::string_view stamp) {
  counts.exportedAt = stamp;
  const std::optional<std::int64_t> moment = AppleFormat::stampParser.parse(stamp);
  olderExport = moment && options.lastSyncAt && static_cast<double>(*moment) < *options.lastSyncAt;
}

/// Binds only texts that differ from the previous row. Most texts are the same as its neighbour's,
/// and binding copies.
void Writer::bindIfChanged(std::size_t position, std::optional<std::string_view> text) {
  std::optional<std::string>& present = bound[position - 1];
  if (text ? present && *present == *text : !present) return;
  if (text) {
    present = *text;
  } else {
    present.reset();
  }
  insertRecord.bind(static_cast<int>(position), text);
}

/// The unit of the first stored number of the record's type; `nullopt` when there is none.
std::optional<std::string> Writer::firstUnitOf(const ExportedRecord& record) {
  std::optional<std::string> unit;
  // Usually all numbers of a type are in one unit, which the first query finds immediately through
  // the index. The second query, for the first row, reads all rows of the type.
  constexpr std::array searches{
      "SELECT unit FROM records WHERE type = ? AND unit IS NOT NULL AND value_num IS NOT NULL"
      " LIMIT 1",
      "SELECT unit FROM records WHERE type = ? AND unit IS NOT NULL AND value_num IS NOT NULL"
      " ORDER BY rowid LIMIT 1"};
  for (const char* search : searches) {
    Statement query = database.prepare(search);
    const std::optional<Row> row = query.bind(1, record.type).next();
    unit = row ? row->find<std::string>(0) : std::nullopt;
    if (!unit || *unit == *record.unit) return unit;
  }
  return unit;
}

/// Whether the sample is stored: with the same text, or with a number within the phone's rounding.
/// The phone exports a sample in its current unit: first "1.609344" km, later "1" mi.
bool Writer::isStored(const ExportedRecord& record) {
  findRecord.bind(1, record.type).bind(2, record.sourceName).bind(3, record.startDate);
  findRecord.bind(4, record.endDate).bind(5, record.unit);
  const bool comparable = record.number && record.unit && Units::isConvertible(*record.unit);
  const double rounding = comparable ? Units::roundingIn(*record.unit, *record.number) : 0;
  bool found = false;
  while (const std::optional<Row> row = findRecord.next()) {
    const bool sameText = row->find<std::string>(0) == record.value;
    const std::optional<double> number = row->find<double>(1);
    const bool sameUnit = row->find<std::int64_t>(2) == 1;
    const bool sameNumber =
        comparable && sameUnit && number && std::abs(*number - *record.number) <= rounding;
    found = found || sameText || sameNumber;
  }
  findRecord.reset();
  return found;
}

void Writer::add(const ExportedRecord& exported) {
  ExportedRecord record = exported;
  firstUnits.convert(record, [this](const ExportedRecord& first) { return firstUnitOf(first); });
  counts.read(counts.records, record);
  if (record.startDay) counts.met(*record.startDay);

  // The table's constraint treats NULL as different from NULL, so every import would add such a row
  // again.
  const bool comparable = record.sourceName && record.endDate && record.value;
  // One export has only one unit per type, so a different text of the same sample comes from an
  // earlier export.
  const bool mayBeReworded =
      lastRowBefore != 0 && record.number && record.unit && Units::isConvertible(*record.unit);
  if ((!comparable || mayBeReworded) && isStored(record)) return;
  bindIfChanged(1, record.type);
  bindIfChanged(2, record.sourceName);
  bindIfChanged(3, record.device);
  bindIfChanged(4, record.unit);
  insertRecord.bind(5, record.startDate).bind(6, record.startDay).bind(7, record.endDate);
  insertRecord.bind(8, record.creationDate).bind(9, record.value).bind(10, record.number);
  insertRecord.run();
}

void Writer::add(const ExportedWorkout& workout) {
  const WorkoutEntry& entry = workout.entry;
  const std::string day = entry.start.substr(0, 10);
  counts.read(counts.workouts, workout);
  counts.met(day);

  insertWorkout.bind(1, unlessEmpty(entry.activity_type)).bind(2, unlessEmpty(entry.source));
  insertWorkout.bind(3, entry.start).bind(4, unlessEmpty(entry.end)).bind(5, entry.duration_min);
  insertWorkout.bind(6, day).bind(7, workout.creationDate).bind(8, entry.distance_km);
  insertWorkout.bind(9, entry.active_energy_kcal).bind(10, entry.basal_energy_kcal);
  insertWorkout.bind(11, entry.hr_avg).bind(12, entry.hr_min).bind(13, entry.hr_max);
  insertWorkout.bind(14, entry.elevation_m).bind(15, entry.avg_mets);
  insertWorkout.bind(
      16, entry.indoor ? std::optional<std::int64_t>(*entry.indoor ? 1 : 0) : std::nullopt);
  insertWorkout.bind(17, entry.temp_c).bind(18, entry.humidity_pct);
  if (!changed(insertWorkout)) return;
  ++counts.workouts.added;
  if (entry.humidity) addHumidity(entry);
}

void Writer::addHumidity(const WorkoutEntry& entry) {
  const std::string data = nlohmann::ordered_json(*entry.humidity).dump();
  insertHumidity.bind(1, entry.workout_id()).bind(2, data).run();
}

/// Whether the rings of that day are stored and need no change: equal within the phone's rounding,
/// or from a newer export than this one.
bool Writer::isStored(const ExportedActivityDay& day) {
  findDay.bind(1, day.date);
  const std::optional<Row> row = findDay.next();
  bool stored = row.has_value();
  if (row && !olderExport) {
    stored = row->find<std::string>(0) == day.activeEnergyUnit;
    int column = 0;
    for (const std::optional<double>& number : numbersOf(day)) {
      const std::optional<double> there = row->find<double>(++column);
      const bool same = there && number
                            ? std::abs(*there - *number) <= Units::roundingIn("kcal", *number)
                            : there == number;
      stored = stored && same;
    }
  }
  findDay.reset();
  return stored;
}

void Writer::add(const ExportedActivityDay& day) {
  counts.read(counts.activityDays, day);
  if (isStored(day)) return;
  replaceDay.bind(1, day.date).bind(2, day.activeEnergyUnit);
  int position = 2;
  for (const std::optional<double>& number : numbersOf(day)) replaceDay.bind(++position, number);
  replaceDay.run();
  ++counts.activityDays.added;
}

void Writer::notStored(std::string_view element) { counts.count(element); }

void Writer::skipped(std::string_view reason, long long line) { counts.skip(reason, line); }

void Writer::insertRun(const Origin& origin) {
  Statement insert = database.prepare(
      "INSERT INTO imports (imported_at, source_file, source_bytes, n_records, n_workouts,"
      " n_summary, n_ecg, n_routes) VALUES (?, ?, ?, ?, ?, ?, 0, 0)");
  insert.bind(1, origin.importedAt).bind(2, origin.sourceFile).bind(3, origin.sourceBytes);
  insert.bind(4, counts.records.added).bind(5, counts.workouts.added);
  insert.bind(6, counts.activityDays.added).run();
}

void Writer::finish(const Origin& origin) {
  // An ignored row takes no row id, and a new row always gets the next one.
  counts.records.added = lastRow(database) - lastRowBefore;
  if (counts.records.added > 0 || !Statistics::built(database)) {
    Statistics::rebuild(database);
  }
  counts.sources = Statistics::sources(database);
  firstStored = Statistics::firstDay(database);
  insertRun(origin);
  if (origin.timeZone) ImportedZone::keep(database, *origin.timeZone);
  run(database, "COMMIT");
}
