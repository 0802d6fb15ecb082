#include "import/database/Statistics.h"

bool Statistics::built(const Database& database) {
  return database.prepare("SELECT v FROM stat_meta WHERE k = 'built' AND v = '1'")
      .next()
      .has_value();
}

void Statistics::rebuild(Database& database) {
  // The records are read once, along the index of their constraint. It contains all needed columns
  // in this order. Both tables are computed from the pairs.
  for (const char* sql :
       {"CREATE TEMP TABLE pairs AS SELECT type, source_name, COUNT(*) AS n, MAX(start_date) AS "
        "last"
        " FROM records GROUP BY type, source_name",
        "DELETE FROM stat_types",
        "INSERT INTO stat_types (type, n, last) SELECT type, SUM(n), MAX(last) FROM temp.pairs"
        " GROUP BY type",
        "DELETE FROM stat_sources",
        "INSERT INTO stat_sources (source_name, n, last) SELECT source_name, SUM(n), MAX(last)"
        " FROM temp.pairs WHERE source_name IS NOT NULL GROUP BY source_name",
        "DROP TABLE temp.pairs",
        "INSERT OR REPLACE INTO stat_meta (k, v) VALUES ('built', '1')"}) {
    database.prepare(sql).run();
  }
}

std::int64_t Statistics::sources(const Database& database) {
  Statement query = database.prepare("SELECT COUNT(*) FROM stat_sources WHERE n > 0");
  const std::optional<Row> row = query.next();
  return row ? row->find<std::int64_t>(0).value_or(0) : 0;
}

std::optional<std::string> Statistics::firstDay(const Database& database) {
  // One index seek per type, instead of a scan of the whole index.
  Statement query = database.prepare(
      "SELECT MIN(day) FROM (SELECT (SELECT MIN(start_day) FROM records WHERE records.type ="
      " stat_types.type) AS day FROM stat_types UNION ALL SELECT MIN(start_day) FROM workouts)");
  const std::optional<Row> row = query.next();
  return row ? row->find<std::string>(0) : std::nullopt;
}
