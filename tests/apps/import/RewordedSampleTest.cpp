// Samples that come again after their unit was changed on the phone.

#include "apps/import/WriterHarness.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace {

using testing::ElementsAre;

/// A sample as one export has it, converted, and as the next has it after a unit was changed.
struct RewordedCase {
  std::string name;
  std::string_view type;
  std::string_view unit;  ///< that both are stored in
  std::string_view firstText;
  double first;
  std::string_view secondText;
  double second;
};

ExportedRecord worded(const RewordedCase& sample, std::string_view text, double number) {
  ExportedRecord record = stepRecord();
  record.type = sample.type;
  record.unit = sample.unit;
  record.value = text;
  record.number = number;
  return record;
}

const std::vector<RewordedCase> rewordedSamples{
    {"Distance", "DistanceWalkingRunning", "km", "1.609344", 1.609344, "1", 1.609344},
    {"RoundedDistance", "DistanceCycling", "km", "1", 1.609344, "1.60934", 1.60934},
    {"Energy", "ActiveEnergyBurned", "kcal", "418.4", 100, "100", 100},
    {"Weight", "BodyMass", "kg", "154.324", 70.00018887788, "70", 70},
    {"Nothing", "BasalEnergyBurned", "kcal", "0", 0, "0.0", 0}};

class RewordedSample : public testing::TestWithParam<RewordedCase> {
protected:
  /// Imports the sample and then, in another export, what `change` makes of its other wording; the
  /// number of records after both.
  std::string recordsAfter(const std::function<void(ExportedRecord&)>& change) const {
    const TestDatabase database;
    const RewordedCase& sample = GetParam();
    imported(database,
             [&](Writer& writer) { writer.add(worded(sample, sample.firstText, sample.first)); });
    imported(database, [&](Writer& writer) {
      ExportedRecord record = worded(sample, sample.secondText, sample.second);
      change(record);
      writer.add(record);
    });
    return rows(database.path(), "SELECT COUNT(*) FROM records", 1).front();
  }
};

TEST_P(RewordedSample, IsTheSameAfterItsUnitWasChanged) {
  EXPECT_EQ(recordsAfter([](ExportedRecord&) {}), "1");
}

TEST_P(RewordedSample, IsAnotherWhenAnythingElseDiffers) {
  EXPECT_EQ(recordsAfter([](ExportedRecord& record) { record.number = *record.number + 0.01; }),
            "2");
  EXPECT_EQ(recordsAfter([](ExportedRecord& record) { record.endDate.reset(); }), "2");
  EXPECT_EQ(recordsAfter([](ExportedRecord& record) { record.sourceName = "Scale"; }), "2");
  EXPECT_EQ(recordsAfter([](ExportedRecord& record) { record.unit = "furlong"; }), "2");
  EXPECT_EQ(recordsAfter([](ExportedRecord& record) { record.type = "BodyMassIndex"; }), "2");
}

INSTANTIATE_TEST_SUITE_P(Cases, RewordedSample, testing::ValuesIn(rewordedSamples),
                         [](const auto& test) { return test.param.name; });

TEST(RewordedSample, IsTheSameWithoutEndAndSourceToo) {
  const TestDatabase database;
  for (const char* text : {"1.609344", "1"}) {
    imported(database, [&](Writer& writer) {
      ExportedRecord record = worded(rewordedSamples.front(), text, 1.609344);
      record.endDate = record.sourceName = {};
      writer.add(record);
    });
  }

  EXPECT_THAT(rows(database.path(), "SELECT value, value_num FROM records", 2),
              ElementsAre("1.609344|1.609344"));
}

}  // namespace
