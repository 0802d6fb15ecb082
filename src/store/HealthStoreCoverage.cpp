// What there is at all: the range and counts of all records, their types, years and sources.

#include "store/HealthStore.h"
#include "store/Queries.h"

#include <algorithm>
#include <cstddef>

SummaryCoverage HealthStore::coverage() const {
  SummaryCoverage coverage;
  Statement count = prepare("SELECT COUNT(*) FROM records");
  if (const std::optional<Row> row = count.next()) {
    coverage.records = row->find<std::int64_t>(0).value_or(0);
  }
  Statement types =
      prepare(Queries::presentTypes +
              "SELECT (SELECT MIN(start_day) FROM records WHERE records.type = present.type),\n"
              "       (SELECT MAX(start_day) FROM records WHERE records.type = present.type)\n"
              "FROM present");
  std::optional<std::string> firstDay;
  std::optional<std::string> lastDay;
  while (const std::optional<Row> row = types.next()) {
    ++coverage.typeCount;
    const std::optional<std::string> first = row->find<std::string>(0);
    const std::optional<std::string> last = row->find<std::string>(1);
    if (first && (!firstDay || *first < *firstDay)) firstDay = first;
    if (last && (!lastDay || *last > *lastDay)) lastDay = last;
  }
  coverage.firstDay = firstDay.value_or("");
  coverage.lastDay = lastDay.value_or("");
  coverage.devices = sourceNames();
  return coverage;
}

namespace {

std::vector<std::string> nonEmptyTexts(Statement query) {
  std::vector<std::string> texts;
  while (const std::optional<Row> row = query.next()) {
    std::string text = row->text(0);
    if (!text.empty()) texts.push_back(std::move(text));
  }
  return texts;
}

}  // namespace

std::vector<std::string> HealthStore::sourceNames() const {
  std::vector<std::string> names;
  if (hasTable("stat_sources")) {
    names = nonEmptyTexts(
        prepare("SELECT source_name FROM stat_sources WHERE n > 0 ORDER BY last DESC"));
  }
  if (names.empty()) {
    names = nonEmptyTexts(
        prepare(Queries::presentSources + "SELECT DISTINCT name FROM sources ORDER BY 1"));
  }
  return names;
}

std::set<std::string> HealthStore::presentTypes() const {
  Statement query = prepare(Queries::presentTypes + "SELECT type FROM present");
  std::set<std::string> types;
  while (const std::optional<Row> row = query.next()) types.insert(row->text(0));
  return types;
}

namespace {

/// The first four characters of a day, "" for a shorter one; `nullopt` when it takes SQLite to tell
/// what its characters are.
std::optional<std::string_view> yearOf(std::string_view day) {
  constexpr std::size_t digits = 4;
  const std::string_view year = day.substr(0, digits);
  const auto isPlain = [](char byte) { return static_cast<signed char>(byte) > 0; };
  if (!std::ranges::all_of(year, isPlain)) return std::nullopt;
  return year.size() == digits ? year : std::string_view();
}

/// For days that are not written as days: what a character is, is SQLite's to say.
std::map<std::string, std::int64_t> countsByAnyYear(const HealthStore& store) {
  Statement query = store.prepare(
      "SELECT CASE WHEN length(start_day) >= 4 THEN substr(start_day, 1, 4) END, COUNT(*)\n"
      "FROM records GROUP BY type, start_day");
  std::map<std::string, std::int64_t> counts;
  while (const std::optional<Row> row = query.next()) {
    if (row->isNull(0)) continue;
    counts[row->text(0)] += row->find<std::int64_t>(1).value_or(0);
  }
  return counts;
}

}  // namespace

std::map<std::string, std::int64_t> HealthStore::yearlyCounts() const {
  // Counts by type and day come in one pass over the index and without touching the table. The
  // years are made of them here: a year inside the query would be computed record by record.
  Statement query = prepare("SELECT start_day, COUNT(*) FROM records GROUP BY type, start_day");
  std::map<std::string, std::int64_t> counts;
  auto latest = counts.end();
  while (const std::optional<Row> row = query.next()) {
    const std::int64_t count = row->find<std::int64_t>(1).value_or(0);
    const std::optional<std::string_view> year = yearOf(row->bytes(0));
    if (!year) return countsByAnyYear(*this);
    if (year->empty()) continue;
    if (latest == counts.end() || latest->first != *year) {
      latest = counts.try_emplace(std::string(*year)).first;
    }
    latest->second += count;
  }
  return counts;
}
