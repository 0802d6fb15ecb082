// Types that have no unit of our choice: the database's first one is kept.

#include "apps/import/WriterHarness.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace {

using testing::ElementsAre;

class UnitOfTheDatabase : public testing::Test {
protected:
  /// Imports one sample of a type that nobody knows, an hour after the one before.
  RunTally importSample(std::string_view unit, double number) {
    const std::string text = std::to_string(number);
    const std::string start = "2024-03-01 1" + std::to_string(hour++) + ":00:00 +0800";
    return imported(database, [&](Writer& writer) {
      ExportedRecord record = stepRecord();
      record.type = "DepthOfSomeNewKind";
      record.startDate = start;
      record.unit = unit.empty() ? std::nullopt : std::optional(unit);
      record.value = text;
      record.number = number;
      writer.add(record);
    });
  }

  std::vector<std::string> stored() const {
    return rows(database.path(), "SELECT value_num, unit FROM records ORDER BY rowid", 2);
  }

  TestDatabase database;
  int hour = 0;
};

TEST_F(UnitOfTheDatabase, IsTheFirstThatCame) {
  importSample("m", 2);
  const RunTally tally = importSample("ft", 10);

  EXPECT_EQ(tally.converted, 1);
  EXPECT_THAT(stored(), ElementsAre("2.0|m", "3.048|m"));
}

TEST_F(UnitOfTheDatabase, IsThatOfTheFirstRowAndNotOfTheFirstDay) {
  hour = 5;
  importSample("count", 2);  // cannot be brought to any other
  hour = 0;
  importSample("m", 3);
  const RunTally tally = importSample("ft", 10);

  EXPECT_EQ(tally.unknownUnits, 1);
  EXPECT_THAT(stored(), ElementsAre("2.0|count", "3.0|m", "10.0|ft"));
}

TEST_F(UnitOfTheDatabase, IsNotSaidByARecordWithoutOne) {
  importSample("", 1);
  importSample("ft", 10);
  importSample("m", 3.048);

  EXPECT_THAT(stored(), ElementsAre("1.0|-", "10.0|ft", "10.0|ft"));
}

TEST_F(UnitOfTheDatabase, CountsWhatCannotBeConverted) {
  importSample("m", 2);
  const RunTally tally = importSample("furlong", 1);

  EXPECT_EQ(tally.unknownUnits, 1);
  EXPECT_EQ(tally.converted, 0);
  EXPECT_THAT(stored(), ElementsAre("2.0|m", "1.0|furlong"));
}

TEST_F(UnitOfTheDatabase, HoldsWithinOneExportToo) {
  imported(database, [](Writer& writer) {
    ExportedRecord record = stepRecord();
    record.type = "DepthOfSomeNewKind";
    record.unit = "m";
    writer.add(record);
    record.startDate = "2024-03-01 09:00:00 +0800";
    record.unit = "km";
    record.number = 0.5;
    writer.add(record);
  });

  EXPECT_THAT(stored(), ElementsAre("120.0|m", "500.0|m"));
}

}  // namespace
