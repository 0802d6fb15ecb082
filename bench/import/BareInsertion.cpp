#include "bench/import/BareInsertion.h"
#include "import/database/Writer.h"
#include "store/Schema.h"

#include <cstddef>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace {

/// Enough rows to make switching between the databases negligible, but few enough to stay in the
/// processor's cache.
constexpr std::size_t rowsAtOnce = 10000;

/// A value equal to that of the previous row: it needs no binding.
struct Unchanged {};
struct Null {
  bool operator==(const Null&) const = default;
};
using Value = std::variant<Null, double, std::string>;
using Cell = std::variant<Unchanged, Null, double, std::string>;

Value valueOf(const Row& row, int column) {
  if (const std::optional<double> number = row.find<double>(column)) return *number;
  const std::optional<std::string_view> text = row.find<std::string_view>(column);
  if (!text) return Null{};
  return std::string(*text);
}

/// The rows of one table in the order of their insertion.
class Rows {
public:
  Rows(const Database& source, const std::string& table, int columns)
      : query(source.prepare("SELECT * FROM " + table + " ORDER BY rowid")),
        last(static_cast<std::size_t>(columns)) {}

  /// The cells of the next rows, row after row; empty after the last.
  std::vector<Cell> next() {
    std::vector<Cell> cells;
    cells.reserve(rowsAtOnce * last.size());
    while (!ended && cells.size() < rowsAtOnce * last.size()) {
      if (const std::optional<Row> row = query.next()) {
        add(*row, cells);
      } else {
        ended = true;
      }
    }
    return cells;
  }

private:
  void add(const Row& row, std::vector<Cell>& cells) {
    for (std::size_t column = 0; column < last.size(); ++column) {
      Value value = valueOf(row, static_cast<int>(column));
      if (last[column] == value) {
        cells.emplace_back(Unchanged{});
      } else {
        last[column] = std::move(value);
        std::visit([&cells](const auto& content) { cells.emplace_back(content); }, *last[column]);
      }
    }
  }

  Statement query;
  std::vector<std::optional<Value>> last;  ///< absent before the first row
  bool ended = false;
};

/// Binds one cell to one position.
struct Binding {
  Statement& insert;
  int position;

  void operator()(Unchanged /*unused*/) const {}
  void operator()(Null /*unused*/) const { insert.bindNull(position); }
  void operator()(double number) const { insert.bind(position, number); }
  void operator()(const std::string& text) const { insert.bind(position, text); }
};

Cost inserted(const std::vector<Cell>& cells, int columns, Statement& insert) {
  const CostMeter meter;
  int position = 0;
  for (const Cell& cell : cells) {
    std::visit(Binding{insert, ++position}, cell);
    if (position < columns) continue;
    insert.run();
    position = 0;
  }
  return meter.taken();
}

int columnCount(const Database& database, const std::string& table) {
  Statement query = database.prepare("PRAGMA table_info(" + table + ")");
  int count = 0;
  while (query.next()) ++count;
  return count;
}

Cost copied(const Database& source, const Database& target, const std::string& table) {
  const int columns = columnCount(source, table);
  std::string places = "?";
  for (int column = 1; column < columns; ++column) places += ", ?";
  Statement insert = target.prepare("INSERT INTO " + table + " VALUES (" + places + ")");
  Rows rows(source, table, columns);
  Cost cost;
  for (std::vector<Cell> cells = rows.next(); !cells.empty(); cells = rows.next()) {
    cost += inserted(cells, columns, insert);
  }
  return cost;
}

Cost run(const Database& database, const std::string& sql) {
  const CostMeter meter;
  database.prepare(sql).run();
  return meter.taken();
}

/// The settings of Writer for a new member: the same page cache, no concurrent readers, and a
/// commit that waits for the disk.
void set(const Database& database) {
  const Writer::Options options{.inUse = false};
  run(database, "PRAGMA synchronous=EXTRA");
  run(database, "PRAGMA fullfsync=ON");
  run(database, "PRAGMA checkpoint_fullfsync=ON");
  run(database, "PRAGMA cache_size=-" + std::to_string(options.cacheKibibytes));
  run(database, "PRAGMA journal_mode=DELETE");
}

}  // namespace

Cost bareInsertion(const std::filesystem::path& source, const std::filesystem::path& target) {
  const Database from(source.string(), {});
  Database into(target.string(), {.create = true, .readOnly = false});
  Schema::migrate(into);
  set(into);

  Cost cost = run(into, "BEGIN IMMEDIATE");
  for (const char* table : {"records", "workouts", "workout_humidity", "activity_summary"}) {
    cost += copied(from, into, table);
  }
  cost += run(into, "COMMIT");
  return cost;
}
