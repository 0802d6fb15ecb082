#include "apps/import/WriterHarness.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using testing::ElementsAre;
using testing::HasSubstr;

const std::string recordColumns =
    "SELECT type, source_name, device, unit, start_date, start_day, end_date, creation_date, value,"
    " value_num FROM records ORDER BY start_date";

TEST(Writer, StoresARecordColumnByColumn) {
  const TestDatabase database;

  imported(database, [](Writer& writer) { writer.add(stepRecord()); });

  EXPECT_THAT(rows(database.path(), recordColumns, 10),
              ElementsAre("StepCount|Ann\u2019s iPhone|<<HKDevice: 0x1>, name:iPhone>|count|"
                          "2024-03-01 08:00:00 +0800|2024-03-01|2024-03-01 08:10:00 +0800|"
                          "2024-03-01 08:11:00 +0800|120|120.0"));
}

TEST(Writer, StoresWhatIsAbsentAsNullAlsoAfterARowThatHasIt) {
  const TestDatabase database;

  imported(database, [](Writer& writer) {
    writer.add(stepRecord());
    writer.add({.type = "StepCount",
                .startDate = "2024-03-02 08:00:00 +0800",
                .startDay = std::nullopt,
                .endDate = std::nullopt,
                .creationDate = std::nullopt,
                .sourceName = std::nullopt,
                .device = std::nullopt,
                .unit = std::nullopt,
                .value = std::nullopt,
                .number = std::nullopt});
    ExportedRecord third = stepRecord();
    third.startDate = "2024-03-03 08:00:00 +0800";
    writer.add(third);
  });

  EXPECT_THAT(rows(database.path(),
                   "SELECT source_name, device, unit, start_day, end_date, creation_date, value,"
                   " value_num FROM records ORDER BY start_date",
                   8),
              ElementsAre(HasSubstr("|120.0"), "-|-|-|-|-|-|-|-", HasSubstr("|120.0")));
}

/// A record without one of the columns that make it up.
struct IncompleteCase {
  std::string name;
  std::function<void(ExportedRecord&)> takeAway;
};

class IncompleteRecord : public testing::TestWithParam<IncompleteCase> {};

TEST_P(IncompleteRecord, IsStoredOnceHoweverOftenItComes) {
  const TestDatabase database;
  ExportedRecord record = stepRecord();
  GetParam().takeAway(record);

  const RunTally first = imported(database, [&](Writer& writer) {
    writer.add(record);
    writer.add(record);
  });
  const RunTally second = imported(database, [&](Writer& writer) { writer.add(record); });

  EXPECT_EQ(first.records, (Tally{.read = 2, .added = 1}));
  EXPECT_EQ(second.records, (Tally{.read = 1, .added = 0}));
  EXPECT_TRUE(second.changedNothing());
  EXPECT_THAT(rows(database.path(), "SELECT COUNT(*) FROM records", 1), ElementsAre("1"));
}

INSTANTIATE_TEST_SUITE_P(
    Cases, IncompleteRecord,
    testing::Values(
        IncompleteCase{"Complete", [](ExportedRecord&) {}},
        IncompleteCase{"WithoutValue",
                       [](ExportedRecord& record) { record.value = record.unit = {}; }},
        IncompleteCase{"WithoutEnd", [](ExportedRecord& record) { record.endDate.reset(); }},
        IncompleteCase{"WithoutSource", [](ExportedRecord& record) { record.sourceName.reset(); }},
        IncompleteCase{"WithoutAnyOfThem",
                       [](ExportedRecord& record) {
                         record.endDate = record.value = record.sourceName = {};
                       }}),
    [](const auto& test) { return test.param.name; });

TEST(Writer, TellsRowsApartThatDifferInWhetherTheyHaveAValue) {
  const TestDatabase database;
  ExportedRecord without = stepRecord();
  without.value.reset();
  ExportedRecord empty = stepRecord();
  empty.value = "";

  const RunTally tally = imported(database, [&](Writer& writer) {
    writer.add(stepRecord());
    writer.add(without);
    writer.add(empty);
  });

  EXPECT_EQ(tally.records.added, 3);
}

TEST(Writer, AddsWhatANewerExportHasMore) {
  const TestDatabase database;
  imported(database, [](Writer& writer) { writer.add(stepRecord()); });

  const RunTally tally = imported(database, [](Writer& writer) {
    writer.add(stepRecord());
    ExportedRecord newer = stepRecord();
    newer.startDate = "2024-03-04 08:00:00 +0800";
    newer.startDay = "2024-03-04";
    writer.add(newer);
  });

  EXPECT_EQ(tally.records, (Tally{.read = 2, .added = 1}));
  EXPECT_EQ(tally.firstDay, "2024-03-01");
  EXPECT_EQ(tally.lastDay, "2024-03-04");
}

TEST(Writer, KeepsARowOfEveryRunWithWhatItAdded) {
  const TestDatabase database;
  const auto tell = [](Writer& writer) {
    writer.add(stepRecord());
    writer.add(eveningRun());
    writer.add(rings(1));
  };

  imported(database, tell);
  imported(database, tell);

  EXPECT_THAT(
      rows(database.path(),
           "SELECT imported_at, source_file, source_bytes, n_records, n_workouts, n_summary, n_ecg,"
           " n_routes FROM imports ORDER BY id",
           8),
      ElementsAre("2024-03-03 00:00:00 +0000|export.zip|1234|1|1|1|0|0",
                  "2024-03-03 00:00:00 +0000|export.zip|1234|0|0|0|0|0"));
}

TEST(Writer, MakesTheStatisticsTrue) {
  const TestDatabase database;

  const RunTally tally = imported(database, [](Writer& writer) {
    writer.add(stepRecord());
    ExportedRecord watch = stepRecord();
    watch.sourceName = "Ann\u2019s Watch";
    watch.startDate = "2024-03-05 08:00:00 +0800";
    writer.add(watch);
    watch.type = "HeartRate";
    writer.add(watch);
    watch.sourceName.reset();
    writer.add(watch);
  });

  EXPECT_EQ(tally.sources, 2);
  EXPECT_THAT(rows(database.path(), "SELECT type, n, last FROM stat_types ORDER BY type", 3),
              ElementsAre("HeartRate|2|2024-03-05 08:00:00 +0800",
                          "StepCount|2|2024-03-05 08:00:00 +0800"));
  EXPECT_THAT(rows(database.path(), "SELECT source_name, n, last FROM stat_sources ORDER BY n", 3),
              ElementsAre("Ann\u2019s iPhone|1|2024-03-01 08:00:00 +0800",
                          "Ann\u2019s Watch|2|2024-03-05 08:00:00 +0800"));
  EXPECT_THAT(rows(database.path(), "SELECT k, v FROM stat_meta ORDER BY k", 2),
              ElementsAre("built|1", "import_time_zone|Asia/Shanghai"));
}

TEST(Writer, BuildsStatisticsThatNobodyBuiltEvenWhenNothingIsNew) {
  TestDatabase database;
  imported(database, [](Writer& writer) { writer.add(stepRecord()); });
  database.run("DELETE FROM stat_types; DELETE FROM stat_sources; DELETE FROM stat_meta");

  imported(database, [](Writer& writer) { writer.add(stepRecord()); });

  EXPECT_THAT(rows(database.path(), "SELECT type, n FROM stat_types", 2),
              ElementsAre("StepCount|1"));
  EXPECT_THAT(rows(database.path(), "SELECT k, v FROM stat_meta ORDER BY k", 2),
              ElementsAre("built|1", "import_time_zone|Asia/Shanghai"));
}

TEST(Writer, KnowsTheFirstDayOfAllThatIsStored) {
  TestDatabase database;
  database.addRecord({.type = "BodyMass", .start_day = "2019-05-02"});
  Database connection(database.path(), {.create = false, .readOnly = false});
  Writer writer(connection, {});

  writer.add(stepRecord());
  writer.finish({});

  EXPECT_EQ(writer.firstStoredDay(), "2019-05-02");
  EXPECT_EQ(writer.tally().firstDay, "2024-03-01");
}

TEST(Writer, CountsWorkoutsAmongWhatHasAFirstDay) {
  TestDatabase database;
  database.addWorkout({.start_day = "2018-09-01"});
  Database connection(database.path(), {.create = false, .readOnly = false});
  Writer writer(connection, {});

  writer.add(stepRecord());
  writer.finish({});

  EXPECT_EQ(writer.firstStoredDay(), "2018-09-01");
}

TEST(Writer, CountsWhatItCannotStore) {
  const TestDatabase database;

  const RunTally tally = imported(database, [](Writer& writer) {
    writer.notStored("WorkoutRoute");
    writer.notStored("WorkoutRoute");
    writer.skipped("no startDate", 12);
    writer.skipped("no startDate", 40);
    ExportedRecord record = stepRecord();
    record.converted = true;
    writer.add(record);
    ExportedWorkout workout = eveningRun();
    workout.converted = true;
    workout.unknownUnit = true;
    writer.add(workout);
  });

  EXPECT_THAT(tally.notStored, ElementsAre(testing::Pair("WorkoutRoute", 2)));
  EXPECT_THAT(tally.skipped,
              ElementsAre(testing::Pair("no startDate", Skipped{.count = 2, .firstLine = 12})));
  EXPECT_EQ(tally.converted, 2);
  EXPECT_EQ(tally.unknownUnits, 1);
}

TEST(RunTally, KeepsNoMoreNamesThanAReportCanShow) {
  RunTally tally;

  for (int number = 0; number < 1000; ++number) tally.count("Element" + std::to_string(number));
  tally.count("Element0");

  EXPECT_EQ(tally.notStored.size(), 50U);
  EXPECT_EQ(tally.notStored.at("Element0"), 2);
  EXPECT_EQ(tally.others, 950);
}

}  // namespace
