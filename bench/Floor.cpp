#include "Floor.h"
#include "store/Database.h"

BareQuery Floor::count() { return {"SELECT COUNT(*) FROM records", {}}; }

BareQuery Floor::sums(const std::string& type, const std::string& from, const std::string& to) {
  return {
      "SELECT start_day, source_name, SUM(value_num) FROM records "
      "WHERE type=? AND start_day BETWEEN ? AND ? GROUP BY 1, 2",
      {type, from, to}};
}

BareQuery Floor::values(const std::string& type, const std::string& from, const std::string& to) {
  return {
      "SELECT start_day, value_num FROM records "
      "WHERE type=? AND start_day BETWEEN ? AND ? ORDER BY start_day",
      {type, from, to}};
}

BareQuery Floor::countsByDay() {
  return {"SELECT type, start_day, COUNT(*) FROM records GROUP BY type, start_day", {}};
}

BareQuery Floor::dayOf(const std::string& type, const std::string& day) {
  return {
      "SELECT unit, value_num, source_name FROM records INDEXED BY ix_rec_type_day "
      "WHERE type=? AND start_day=?",
      {type, day}};
}

BareQuery Floor::workouts(const std::string& from, const std::string& to) {
  return {"SELECT * FROM workouts WHERE start_day BETWEEN ? AND ?", {from, to}};
}

BareQuery Floor::workoutKeys() {
  return {"SELECT activity_type, source_name, start_date, end_date FROM workouts", {}};
}

BareQuery Floor::heartRates(const std::string& from, const std::string& to) {
  return {
      "SELECT rowid, start_date, source_name, unit, value_num FROM records "
      "WHERE type='HeartRate' AND start_day BETWEEN ? AND ?",
      {from, to}};
}

int Floor::stepped(const std::string& path, const std::vector<BareQuery>& queries) {
  const Database database(path, {});
  int rows = 0;
  for (const BareQuery& query : queries) {
    Statement statement = database.prepare(query.sql);
    int position = 0;
    for (const std::string& text : query.texts) statement.bind(++position, text);
    while (statement.next()) ++rows;
  }
  return rows;
}
