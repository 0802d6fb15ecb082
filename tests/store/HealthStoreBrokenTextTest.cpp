// Bytes in a database that are no text.

#include "store/HealthStore.h"
#include "store/SeriesRecords.h"
#include "support/TestDatabase.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace {

using Series = std::vector<DailyValue>;

/// A record whose type, source and day hold a byte that is no UTF-8.
constexpr const char* brokenRecord =
    "INSERT INTO records (type, source_name, start_date, start_day, value_num) VALUES ("
    "CAST(x'48FF52' AS TEXT), CAST(x'57C3' AS TEXT), '2024-03-01 08:00:00 +0000', "
    "CAST(x'323032342DFF' AS TEXT), 5)";

TEST(BrokenText, IsRepairedWhereverItIsRead) {
  TestDatabase database;
  database.run(brokenRecord);
  const HealthStore store = database.open();

  const SummaryCoverage coverage = store.coverage();

  EXPECT_EQ(coverage.firstDay, "2024-\xEF\xBF\xBD");
  EXPECT_EQ(coverage.lastDay, "2024-\xEF\xBF\xBD");
  EXPECT_EQ(coverage.devices, std::vector<std::string>{"W\xEF\xBF\xBD"});
  EXPECT_EQ(coverage.typeCount, 1);
  EXPECT_EQ(store.presentTypes(),
            std::set<std::string>{"H\xEF\xBF\xBD"
                                  "R"});
  EXPECT_EQ(store.yearlyCounts().byYear, (std::map<std::string, std::int64_t>{{"2024", 1}}));
}

TEST(BrokenText, IsRepairedInSeriesAndValues) {
  TestDatabase database;
  database.run(brokenRecord);
  const std::string day = "2024-\xEF\xBF\xBD";
  for (const char* type : {"StepCount", "HeartRate"}) {
    database.run(std::string("UPDATE records SET type = '") + type + "'");
    const HealthStore store = database.open();
    const HealthMetric metric =
        std::string(type) == "StepCount" ? HealthMetric::steps : HealthMetric::heartRate;
    EXPECT_EQ(store.series(metric, "", always), (Series{{day, 5}}));
    EXPECT_EQ(store.latestValue(type), (DailyValue{day, 5}));
  }
}

TEST(BrokenText, OfTwoSourcesDoesNotMakeThemOne) {
  TestDatabase database;
  for (const char* row : {"57FF' AS TEXT), 8000, 9223372036854775807", "57FE' AS TEXT), 7500, 5"}) {
    database.run(
        "INSERT INTO records (type, unit, start_date, start_day, source_name, value_num,"
        " rowid) VALUES ('StepCount', 'count', 'a', '2024-03-01', CAST(x'" +
        std::string(row) + ")");
  }

  EXPECT_EQ(database.open().dayDetail("2024-03-01"),
            (std::vector<DayRow>{{"StepCount", 8000, 2, "count"}}));
}

TEST(BrokenText, OfACountedSourceIsRepaired) {
  TestDatabase database;
  database.run("INSERT INTO stat_sources VALUES (CAST(x'57C3' AS TEXT), 1, '2024')");
  EXPECT_EQ(database.open().coverage().devices, std::vector<std::string>{"W\xEF\xBF\xBD"});
}

TEST(BlobInTheTypeColumn, CountsAsATypeOfItsOwn) {
  TestDatabase database;
  database.addRecord(heartRate("2024-03-01", 60))
      .run("INSERT INTO records (type, start_date, start_day) VALUES (x'4142', 'a', '2024-03-02')")
      .run("INSERT INTO records (type, start_date, start_day) VALUES (x'00FF', 'b', '2024-03-03')");
  const HealthStore store = database.open();

  EXPECT_EQ(store.coverage().typeCount, 3);
  EXPECT_EQ(store.coverage().lastDay, "2024-03-03");
  EXPECT_EQ(store.presentTypes().size(), 3U);
  EXPECT_TRUE(store.presentTypes().contains("AB"));
}

}  // namespace
