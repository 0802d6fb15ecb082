#include "Floor.h"
#include "store/Database.h"

BareQuery Floor::count() { return {"SELECT COUNT(*) FROM records", {{}}}; }

std::vector<BareQuery> Floor::days(const std::vector<std::string>& types) {
  std::vector<std::vector<std::string>> bindings;
  for (const std::string& type : types) bindings.push_back({type});
  return {{"SELECT MIN(start_day) FROM records WHERE type=?", bindings},
          {"SELECT MAX(start_day) FROM records WHERE type=?", bindings}};
}

BareQuery Floor::countsByYear(const std::vector<std::string>& types,
                              const std::vector<std::string>& years) {
  BareQuery query{"SELECT COUNT(*) FROM records WHERE type=? AND start_day >= ? AND start_day < ?",
                  {}};
  for (const std::string& type : types) {
    for (const std::string& year : years) query.bindings.push_back({type, year, year + "~"});
  }
  return query;
}

BareQuery Floor::sourceValues(const std::string& type, const std::string& from,
                              const std::string& to) {
  return {
      "SELECT start_day, source_name, value_num FROM records "
      "WHERE type=? AND start_day BETWEEN ? AND ? ORDER BY start_day",
      {{type, from, to}}};
}

BareQuery Floor::values(const std::string& type, const std::string& from, const std::string& to) {
  return {
      "SELECT start_day, value_num FROM records "
      "WHERE type=? AND start_day BETWEEN ? AND ? ORDER BY start_day",
      {{type, from, to}}};
}

BareQuery Floor::recordsOf(const std::vector<std::string>& types, const std::string& day) {
  BareQuery query{
      "SELECT source_name, value_num, unit FROM records INDEXED BY ix_rec_type_day "
      "WHERE type=? AND start_day=?",
      {}};
  for (const std::string& type : types) query.bindings.push_back({type, day});
  return query;
}

BareQuery Floor::workouts(const std::string& from, const std::string& to) {
  return {
      "SELECT activity_type, start_date, end_date, source_name, duration_min, distance_km, "
      "active_energy_kcal, basal_energy_kcal, hr_avg, hr_min, hr_max, elevation_m, avg_mets, "
      "indoor, temp_c, humidity_pct FROM workouts WHERE start_day BETWEEN ? AND ?",
      {{from, to}}};
}

BareQuery Floor::workoutKeys() {
  return {"SELECT activity_type, source_name, start_date, end_date FROM workouts", {{}}};
}

BareQuery Floor::heartRates(const std::string& from, const std::string& to) {
  return {
      "SELECT rowid, start_date, source_name, unit, value_num FROM records "
      "WHERE type='HeartRate' AND start_day BETWEEN ? AND ?",
      {{from, to}}};
}

int Floor::stepped(const std::string& path, const std::vector<BareQuery>& queries) {
  const Database database(path, {});
  int rows = 0;
  for (const BareQuery& query : queries) {
    Statement statement = database.prepare(query.sql);
    for (const std::vector<std::string>& texts : query.bindings) {
      int position = 0;
      for (const std::string& text : texts) statement.bind(++position, text);
      while (statement.next()) ++rows;
      statement.reset();
    }
  }
  return rows;
}
