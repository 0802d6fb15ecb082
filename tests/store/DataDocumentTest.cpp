// doc/data.md names every table, column and key as the programs do.

#include "platform/Files.h"
#include "platform/JsonFields.h"
#include "roster/Roster.h"
#include "store/StoreFiles.h"
#include "support/TestDatabase.h"
#include "workouts/WorkoutHumidity.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <cstddef>
#include <map>
#include <sstream>
#include <string>
#include <vector>

namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

using Rows = std::vector<std::string>;

std::string page() { return fileContents(LARKSPUR_DATA_PAGE).value(); }

/// The first cells of a line such as "| `type` | TEXT | ... |", without backticks and joined by
/// "|".
std::string cellsOf(const std::string& line, int count) {
  std::string cells;
  std::size_t begin = 2;
  for (int cell = 0; cell < count; ++cell) {
    const std::size_t end = line.find(" | ", begin);
    cells += (cell == 0 ? "" : "|") + line.substr(begin, end - begin);
    begin = end + 3;
  }
  std::erase(cells, '`');
  return cells;
}

/// The first table below each "### " heading, its first `count` cells.
std::map<std::string, Rows> tablesOfPage(int count) {
  std::map<std::string, Rows> tables;
  std::istringstream lines(page());
  std::string heading;
  for (std::string line; std::getline(lines, line);) {
    if (line.starts_with("### ")) {
      heading = line.substr(4);
      std::erase(heading, '`');
    } else if (!heading.empty() && line.starts_with("| `")) {
      tables[heading].push_back(cellsOf(line, count));
    } else if (!line.starts_with("|") && tables.contains(heading)) {
      heading.clear();
    }
  }
  return tables;
}

TEST(DataDocument, DescribesEveryColumn) {
  const TestDatabase database;
  const std::map<std::string, Rows> described = tablesOfPage(2);
  for (const std::string& table :
       rowsOf(database, "SELECT name FROM sqlite_master WHERE type = 'table'", 1)) {
    const Rows columns = rowsOf(database,
                                "SELECT name, type || iif(\"notnull\", ', not NULL', '') ||"
                                " iif(pk, ', key', '') FROM pragma_table_info('" +
                                    table + "')",
                                2);
    EXPECT_EQ(described.contains(table) ? described.at(table) : Rows(), columns) << table;
  }
}

TEST(DataDocument, DescribesNoOtherTable) {
  const TestDatabase database;
  for (const auto& [heading, rows] : tablesOfPage(2)) {
    if (heading.starts_with("Keys of ")) continue;
    EXPECT_THAT(rowsOf(database, "SELECT name FROM pragma_table_info('" + heading + "')", 1),
                Not(IsEmpty()))
        << heading;
  }
}

TEST(DataDocument, NamesEveryIndex) {
  const TestDatabase database;
  for (const std::string& index :
       rowsOf(database, "SELECT name FROM sqlite_master WHERE type = 'index' AND sql != ''", 1)) {
    EXPECT_THAT(page(), HasSubstr("`" + index + "` on ")) << index;
  }
}

std::string typeOf(const nlohmann::json& value) {
  return value.is_number_integer() ? "integer" : value.type_name();
}

template <typename Record>
bool canBeDecoded(const nlohmann::json& json) {
  try {
    json.get<Record>();
    return true;
  } catch (const DecodingError&) {
    return false;
  }
}

/// Key, type and whether it is required, of a record in which every key has a value.
template <typename Record>
Rows keysOf(const Record& full) {
  const nlohmann::ordered_json json = full;
  Rows keys;
  for (const auto& [key, value] : json.items()) {
    nlohmann::json without = nlohmann::json::parse(json.dump());
    without.erase(key);
    keys.push_back(key + "|" + typeOf(nlohmann::json::parse(value.dump())) + "|" +
                   (canBeDecoded<Record>(without) ? "no" : "yes"));
  }
  return keys;
}

TEST(DataDocument, DescribesEveryKey) {
  const HistoryHint history{.through = "2024-03-01", .earliest = "2016-01-02"};
  const BackfillState backfill{.frontier = "2023-05-01",
                               .earliest = "2016-01-02",
                               .done = false,
                               .completeFrom = "2023-05-02"};
  const PairedDevice device{.token = "token-1",
                            .model = "iPhone15,2",
                            .deviceName = "Ann's iPhone",
                            .pairedAt = 0.5,
                            .lastSeenAt = 0.5,
                            .history = history,
                            .key = "c2VjcmV0"};
  const Member member{.id = "ann-01",
                      .name = "Ann",
                      .dbPath = "/data/ann.sqlite",
                      .createdAt = 0.5,
                      .lastSyncAt = 0.5,
                      .devices = {device},
                      .backfill = backfill};
  const WorkoutHumidity humidity{.raw_value = 0.5,
                                 .raw_unit = "%",
                                 .raw_text = "wet",
                                 .encoding = "xml_percent",
                                 .source_bundle_id = "com.apple.Workout",
                                 .source_version = "10.1"};

  std::map<std::string, Rows> described = tablesOfPage(3);
  EXPECT_EQ(described["Keys of the file"], keysOf(Roster::File{.version = 1, .members = {member}}));
  EXPECT_EQ(described["Keys of a member"], keysOf(member));
  EXPECT_EQ(described["Keys of a device"], keysOf(device));
  EXPECT_EQ(described["Keys of backfill"], keysOf(backfill));
  EXPECT_EQ(described["Keys of history"], keysOf(history));
  EXPECT_EQ(described["Keys of data"], keysOf(humidity));
}

}  // namespace
