// The one transaction of an import, as its readers and a full disk see it.

#include "apps/import/WriterHarness.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using testing::ElementsAre;

TEST(WriterTransaction, LeavesTheDatabaseAsItWasUnlessFinished) {
  const TestDatabase database;
  imported(database, [](Writer& writer) { writer.add(stepRecord()); });

  for (const bool inUse : {true, false}) {
    Database connection(database.path(), {.create = false, .readOnly = false});
    Writer writer(connection, {.inUse = inUse});
    writer.add(eveningRun());
    writer.add(rings(1));
  }

  EXPECT_THAT(rows(database.path(),
                   "SELECT (SELECT COUNT(*) FROM records), (SELECT COUNT(*) FROM workouts),"
                   " (SELECT COUNT(*) FROM activity_summary), (SELECT COUNT(*) FROM imports)",
                   4),
              ElementsAre("1|0|0|1"));
}

TEST(WriterTransaction, LetsReadersGoOnWithTheOldStateUntilItCommits) {
  const TestDatabase database;
  imported(database, [](Writer& writer) { writer.add(stepRecord()); });
  Database connection(database.path(), {.create = false, .readOnly = false});
  Writer writer(connection, {.inUse = true, .cacheKibibytes = 40});

  for (int second = 10; second < 60; ++second) {
    const std::string start = "2024-03-07 08:00:" + std::to_string(second) + " +0800";
    const std::string value(2000, '7');
    ExportedRecord record = stepRecord();
    record.startDate = start;
    record.value = value;
    writer.add(record);
  }

  EXPECT_EQ(database.open().recordCount(), 1);
  writer.finish({});
  EXPECT_EQ(database.open().recordCount(), 51);
}

/// Adds records until the database takes no more.
void fill(Writer& writer) {
  for (int second = 1; second < 10000; ++second) {
    const std::string value = std::to_string(second) + std::string(1000, '7');
    ExportedRecord record = stepRecord();
    record.value = value;
    writer.add(record);
  }
}

TEST(WriterTransaction, TakesEverythingBackWhenThereIsNoMoreRoom) {
  const TestDatabase database;
  imported(database, [](Writer& writer) { writer.add(stepRecord()); });

  for (const bool inUse : {true, false}) {
    Database connection(database.path(), {.create = false, .readOnly = false});
    connection.prepare("PRAGMA max_page_count=200").run();
    Writer writer(connection, {.inUse = inUse, .cacheKibibytes = 100});
    try {
      fill(writer);
      ADD_FAILURE() << "all of it fitted";
    } catch (const DatabaseError& error) {
      EXPECT_TRUE(error.isDiskFull()) << error.message;
    }
  }

  EXPECT_THAT(rows(database.path(), "SELECT COUNT(*) FROM records", 1), ElementsAre("1"));
  EXPECT_THAT(rows(database.path(), "PRAGMA integrity_check", 1), ElementsAre("ok"));
}

}  // namespace
