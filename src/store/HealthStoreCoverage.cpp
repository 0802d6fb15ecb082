// The extent of all records: days, types, counts, years and sources.

#include "platform/Text.h"
#include "store/HealthStore.h"
#include "store/QueryParts.h"

RecordedDays HealthStore::recordedDays() const {
  Statement query = prepare(Queries::presentTypes + R"sql(
SELECT COUNT(*), MIN(first), MAX(last) FROM (
  SELECT (SELECT MIN(start_day) FROM records WHERE records.type = present.type) AS first,
         (SELECT MAX(start_day) FROM records WHERE records.type = present.type) AS last
  FROM present)
)sql");
  const std::optional<Row> row = query.next();
  if (!row) return {};
  return {.typeCount = row->find<std::int64_t>(0).value_or(0),
          .first = row->text(1),
          .last = row->text(2)};
}

namespace {

/// A table "sources" of every record type with each of its sources and NULL, found by index seeks
/// too.
const std::string presentSources = Queries::presentTypes + R"sql(,
sources(type, name) AS (
  SELECT type, (SELECT MIN(source_name) FROM records WHERE records.type = present.type)
  FROM present
  UNION
  SELECT type, (SELECT MIN(records.source_name) FROM records
                WHERE records.type = sources.type AND records.source_name > sources.name)
  FROM sources WHERE name IS NOT NULL)
)sql";

std::vector<std::string> nonEmptyTexts(Statement query) {
  std::vector<std::string> texts;
  while (const std::optional<Row> row = query.next()) {
    std::string text = row->text(0);
    if (!text.empty()) texts.push_back(std::move(text));
  }
  return texts;
}

}  // namespace

std::vector<std::string> HealthStore::devices() const {
  std::vector<std::string> names;
  if (hasTable("stat_sources")) {
    names = nonEmptyTexts(
        prepare("SELECT source_name FROM stat_sources WHERE n > 0 ORDER BY last DESC"));
  }
  if (names.empty()) {
    names = nonEmptyTexts(prepare(presentSources + "SELECT DISTINCT name FROM sources ORDER BY 1"));
  }
  return names;
}

std::set<std::string> HealthStore::presentTypes() const {
  Statement query = prepare(Queries::presentTypes + "SELECT type FROM present");
  std::set<std::string> types;
  while (const std::optional<Row> row = query.next()) types.insert(row->text(0));
  return types;
}

std::int64_t HealthStore::recordCount() const {
  Statement query = prepare("SELECT COUNT(*) FROM records");
  const std::optional<Row> row = query.next();
  return row ? row->find<std::int64_t>(0).value_or(0) : 0;
}

namespace {

/// SQL conditions: whether `day` starts with a year; the first text after all days of that year.
constexpr std::string_view inYear =
    "typeof(day) = 'text' AND substr(day, 1, 4) GLOB '[0-9][0-9][0-9][0-9]'";
constexpr std::string_view nextYear = "substr(day, 1, 3) || char(unicode(substr(day, 4, 1)) + 1)";

/// The number of records of each type and year; the year is NULL for days without one. Each year is
/// a range of the index on type and day. One seek finds it, and counting does not touch the table.
/// Malformed days are visited one by one, because only SQLite knows their order and their
/// characters.
const std::string countsByYear = Queries::presentTypes + filled(R"sql(,
years(type, day) AS (
  SELECT type, (SELECT MIN(start_day) FROM records WHERE records.type = present.type)
  FROM present
  UNION
  SELECT type, CASE
    WHEN {0} THEN (SELECT MIN(start_day) FROM records
                   WHERE records.type = years.type AND start_day >= {1})
    ELSE (SELECT MIN(start_day) FROM records
          WHERE records.type = years.type AND start_day > day) END
  FROM years WHERE day IS NOT NULL)
SELECT CASE WHEN length(day) >= 4 THEN substr(day, 1, 4) END, CASE
  WHEN day IS NULL THEN (SELECT COUNT(*) FROM records
                         WHERE records.type = years.type AND start_day IS NULL)
  WHEN {0} THEN (SELECT COUNT(*) FROM records
                 WHERE records.type = years.type AND start_day >= day AND start_day < {1})
  ELSE (SELECT COUNT(*) FROM records WHERE records.type = years.type AND start_day = day) END
FROM years
)sql",
                                                                {inYear, nextYear});

}  // namespace

RecordCounts HealthStore::yearlyCounts() const {
  Statement query = prepare(countsByYear);
  RecordCounts counts;
  while (const std::optional<Row> row = query.next()) {
    const std::optional<std::string> year = row->find<std::string>(0);
    (year ? counts.byYear[*year] : counts.withoutYear) += row->find<std::int64_t>(1).value_or(0);
  }
  return counts;
}
