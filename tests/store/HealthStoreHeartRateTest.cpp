// Which heart-rate samples belong to a workout, and which of those can be read.

#include "platform/ReceiverError.h"
#include "store/HealthStore.h"
#include "support/RuinedPages.h"
#include "support/TestDatabase.h"
#include "support/WorkoutSamples.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// The first thousand samples of `workout`.
WorkoutHeartRate heartRateOf(const TestDatabase& database,
                             const std::optional<std::string>& source = std::nullopt,
                             const TestWorkout& workout = hourOfRunning()) {
  return database.open().workoutHeartRate(identifierOf(workout), source, 1000, 0);
}

std::vector<double> bpmOf(const WorkoutHeartRate& heartRate) {
  std::vector<double> values;
  for (const WorkoutHeartRatePoint& sample : heartRate.samples) values.push_back(sample.bpm);
  return values;
}

/// The message of the ReceiverError with which `workout` is refused; "" when it is not.
std::string samplesFailure(const TestDatabase& database,
                           const TestWorkout& workout = hourOfRunning()) {
  try {
    heartRateOf(database, std::nullopt, workout);
  } catch (const ReceiverError& error) {
    return error.what();
  }
  return "";
}

TEST(WorkoutSamples, CarryEveryColumn) {
  TestDatabase database;
  database.addWorkout(hourOfRunning())
      .addRecord({.type = "HeartRate",
                  .device = "<<HKDevice>, name:Apple\u00A0Watch>",
                  .unit = "bpm",
                  .start_date = "2024-03-01 16:00:30 +0800",
                  .end_date = "2024-03-01 16:00:35 +0800",
                  .value = "72.1235",
                  .value_num = 72.123456789});

  EXPECT_THAT(heartRateOf(database).samples,
              ElementsAre(WorkoutHeartRatePoint{.record_id = 1,
                                                .start = "2024-03-01 16:00:30 +0800",
                                                .end = "2024-03-01 16:00:35 +0800",
                                                .source = "Watch",
                                                .device = "<<HKDevice>, name:Apple\u00A0Watch>",
                                                .raw_unit = "bpm",
                                                .stored_value = "72.1235",
                                                .elapsed_seconds = 30,
                                                .bpm = 72.123456789,
                                                .segment = 0}));
}

TEST(WorkoutSamples, LeaveOutWhatWasNotStored) {
  TestDatabase database;
  database.addWorkout(hourOfRunning()).addRecord(sampleAfter(0));

  const WorkoutHeartRatePoint sample = heartRateOf(database).samples.at(0);

  EXPECT_EQ(sample.end, std::nullopt);
  EXPECT_EQ(sample.device, std::nullopt);
  EXPECT_EQ(sample.stored_value, std::nullopt);
}

TEST(WorkoutSamples, AreNamedByTheirRow) {
  TestDatabase database;
  database.addWorkout(hourOfRunning())
      .addRecords({sampleAfter(-5), {.type = "StepCount", .value_num = 9}, sampleAfter(5)});

  EXPECT_EQ(heartRateOf(database).samples.at(0).record_id, 3);
}

TEST(WorkoutSamples, BeginInTheWorkoutItsEndExcluded) {
  TestDatabase database;
  database.addWorkout(hourOfRunning())
      .addRecords({sampleAfter(-1, 50),
                   sampleAfter(0, 51),
                   sampleAfter(3599, 52),
                   sampleAfter(3600, 53),
                   sampleAfter(3601, 54)});

  EXPECT_THAT(bpmOf(heartRateOf(database)), ElementsAre(51, 52));
}

TEST(WorkoutSamples, AreOfHeartRateAlone) {
  TestDatabase database;
  TestRecord resting = sampleAfter(0);
  resting.type = "RestingHeartRate";
  database.addWorkout(hourOfRunning()).addRecord(resting);

  EXPECT_THAT(heartRateOf(database).samples, IsEmpty());
  EXPECT_THAT(heartRateOf(database).available_sources, IsEmpty());
}

TEST(WorkoutSamples, AreMatchedAcrossZones) {
  TestWorkout inShanghai = hourOfRunning();
  inShanghai.start_date = "2024-03-02 01:00:00 +0800";
  inShanghai.start_day = "2024-03-02";
  inShanghai.end_date = "2024-03-01 18:00:00 +0000";
  TestDatabase database;
  database.addWorkout(inShanghai)
      .addRecords({{.unit = "bpm",
                    .start_date = "2024-03-01 07:00:00 -1000",
                    .start_day = "2024-03-01",
                    .value_num = 70},
                   {.unit = "bpm",
                    .start_date = "2024-03-02 07:30:00 +1400",
                    .start_day = "2024-03-02",
                    .value_num = 71},
                   {.unit = "bpm",
                    .start_date = "2024-03-02 01:30:00 +0000",
                    .start_day = "2024-03-02",
                    .value_num = 72}});

  const WorkoutHeartRate heartRate = heartRateOf(database, std::nullopt, inShanghai);

  EXPECT_THAT(bpmOf(heartRate), ElementsAre(70, 71));
  EXPECT_EQ(heartRate.samples.at(1).elapsed_seconds, 1800);
  EXPECT_EQ(heartRate.samples.at(1).start, "2024-03-02 07:30:00 +1400");
}

TEST(WorkoutSamples, MayBeStoredUnderADayThatIsTwoDaysOff) {
  TestDatabase database;
  database.addWorkout(hourOfRunning());
  for (const char* day : {"2024-02-27", "2024-02-28", "2024-03-03", "2024-03-04"}) {
    TestRecord sample = sampleAfter(0, std::stod(std::string(day).substr(8)));
    sample.start_day = day;
    database.addRecord(sample);
  }

  EXPECT_THAT(bpmOf(heartRateOf(database)), ElementsAre(28, 3));
}

TEST(WorkoutSamples, HaveADayOfTheirOwn) {
  TestRecord sample = sampleAfter(0);
  sample.start_day = std::nullopt;
  TestDatabase database;
  database.addWorkout(hourOfRunning()).addRecord(sample);

  EXPECT_THAT(heartRateOf(database).samples, IsEmpty());
}

// --- sources

/// sampleAfter(0, bpm) of another source.
TestRecord sampleOf(const std::optional<std::string>& source, double bpm) {
  TestRecord sample = sampleAfter(0, bpm);
  sample.source_name = source;
  return sample;
}

TEST(SourcesOfAWorkout, AreNeverMerged) {
  TestDatabase database;
  database.addWorkout(hourOfRunning())
      .addRecords({sampleOf("iPhone", 90), sampleOf("Watch", 60), sampleOf("Strap", 80)});

  const WorkoutHeartRate heartRate = heartRateOf(database);

  EXPECT_EQ(heartRate.source, "Watch");
  EXPECT_THAT(bpmOf(heartRate), ElementsAre(60));
  EXPECT_EQ(heartRate.excluded_candidate_count, 0);
  EXPECT_THAT(heartRate.available_sources, ElementsAre("Strap", "Watch", "iPhone"));
}

TEST(SourcesOfAWorkout, AreChosenExactly) {
  TestDatabase database;
  database.addWorkout(hourOfRunning())
      .addRecords({sampleOf("Watch", 60), sampleOf("watch", 70), sampleOf("Watch ", 80)});

  EXPECT_THAT(bpmOf(heartRateOf(database, "watch")), ElementsAre(70));
  EXPECT_THAT(bpmOf(heartRateOf(database, "Watch ")), ElementsAre(80));
  EXPECT_THAT(bpmOf(heartRateOf(database, "WATCH")), IsEmpty());
}

TEST(SourcesOfAWorkout, DoNotStandInForEachOther) {
  TestDatabase database;
  database.addWorkout(hourOfRunning()).addRecord(sampleOf("iPhone", 90));

  const WorkoutHeartRate heartRate = heartRateOf(database);

  EXPECT_EQ(heartRate.source, "Watch");
  EXPECT_THAT(heartRate.samples, IsEmpty());
  EXPECT_EQ(heartRate.summary, WorkoutHeartRateSummary());
  EXPECT_THAT(heartRate.available_sources, ElementsAre("iPhone"));
}

TEST(SourcesOfAWorkout, DifferByANoBreakSpace) {
  TestDatabase database;
  database.addWorkout(hourOfRunning())
      .addRecords(
          {sampleOf("Ann\u2019s Apple Watch", 60), sampleOf("Ann\u2019s Apple\u00A0Watch", 70)});

  EXPECT_THAT(bpmOf(heartRateOf(database, "Ann\u2019s Apple\u00A0Watch")), ElementsAre(70));
  EXPECT_THAT(bpmOf(heartRateOf(database, "Ann\u2019s Apple Watch")), ElementsAre(60));
}

TEST(SourcesOfAWorkout, MayHaveAnEmptyName) {
  TestDatabase database;
  database.addWorkout(hourOfRunning())
      .addRecords({sampleOf("Watch", 60), sampleOf("", 70), sampleOf(std::nullopt, 80)});

  const WorkoutHeartRate heartRate = heartRateOf(database, "");

  EXPECT_EQ(heartRate.source, "");
  EXPECT_THAT(bpmOf(heartRate), ElementsAre(70, 80));
  EXPECT_THAT(heartRate.available_sources, ElementsAre("", "Watch"));
}

TEST(SourcesOfAWorkout, AreThoseOfAWorkoutWithoutOne) {
  TestWorkout workout = hourOfRunning();
  workout.source_name = std::nullopt;
  TestDatabase database;
  database.addWorkout(workout).addRecords({sampleOf("Watch", 60), sampleOf(std::nullopt, 70)});

  EXPECT_THAT(bpmOf(heartRateOf(database, std::nullopt, workout)), ElementsAre(70));
}

TEST(SourcesOfAWorkout, HaveASampleInItWhateverItIsWorth) {
  TestRecord before = sampleAfter(-1);
  before.source_name = "Before";
  TestRecord after = sampleAfter(3600);
  after.source_name = "After";
  TestRecord unreadable = sampleAfter(10);
  unreadable.source_name = "Unreadable";
  unreadable.unit = "kg";
  TestDatabase database;
  database.addWorkout(hourOfRunning()).addRecords({before, after, unreadable});

  EXPECT_THAT(heartRateOf(database).available_sources, ElementsAre("Unreadable"));
}

// --- samples that cannot be read

struct UnreadableCase {
  std::string name;
  std::string change;  ///< of the one sample, in SQL
};

class UnreadableSample : public testing::TestWithParam<UnreadableCase> {};

TEST_P(UnreadableSample, IsCountedAndLeftOut) {
  TestDatabase database;
  database.addWorkout(hourOfRunning()).addRecord(sampleAfter(10));
  database.run("UPDATE records SET " + GetParam().change).addRecord(sampleAfter(20, 77));

  const WorkoutHeartRate heartRate = heartRateOf(database);

  EXPECT_THAT(bpmOf(heartRate), ElementsAre(77));
  EXPECT_EQ(heartRate.excluded_candidate_count, 1);
  EXPECT_EQ(heartRate.summary.count, 1);
}

TEST_P(UnreadableSample, OfAnotherSourceIsNotCounted) {
  TestDatabase database;
  database.addWorkout(hourOfRunning()).addRecord(sampleAfter(10));
  database.run("UPDATE records SET source_name='iPhone', " + GetParam().change);

  EXPECT_EQ(heartRateOf(database).excluded_candidate_count, 0);
  EXPECT_EQ(heartRateOf(database, "iPhone").excluded_candidate_count, 1);
}

INSTANTIATE_TEST_SUITE_P(Units, UnreadableSample,
                         testing::Values(UnreadableCase{"PerSecond", "unit='count/s'"},
                                         UnreadableCase{"OtherCase", "unit='BPM'"},
                                         UnreadableCase{"WithABlank", "unit='bpm '"},
                                         UnreadableCase{"WithAnEnding", "unit='count/min/kg'"},
                                         UnreadableCase{"EmptyUnit", "unit=''"},
                                         UnreadableCase{"NoUnit", "unit=NULL"},
                                         UnreadableCase{"NumberForAUnit", "unit=1"}),
                         [](const auto& test) { return test.param.name; });

INSTANTIATE_TEST_SUITE_P(Values, UnreadableSample,
                         testing::Values(UnreadableCase{"NoValue", "value_num=NULL"},
                                         UnreadableCase{"Text", "value_num='fast'"},
                                         UnreadableCase{"EmptyText", "value_num=''"},
                                         UnreadableCase{"NumberAndUnit", "value_num='60 bpm'"},
                                         UnreadableCase{"Blob", "value_num=X'3630'"},
                                         UnreadableCase{"Infinity", "value_num=9e999"},
                                         UnreadableCase{"MinusInfinity", "value_num=-9e999"},
                                         UnreadableCase{"NeitherValueNorUnit",
                                                        "value_num=NULL, unit=NULL"}),
                         [](const auto& test) { return test.param.name; });

INSTANTIATE_TEST_SUITE_P(
    Starts, UnreadableSample,
    testing::Values(UnreadableCase{"EmptyStart", "start_date=''"},
                    UnreadableCase{"Word", "start_date='now'"},
                    UnreadableCase{"DayAlone", "start_date='2024-03-01'"},
                    UnreadableCase{"NoZone", "start_date='2024-03-01 08:00:10'"},
                    UnreadableCase{"NoSuchHour", "start_date='2024-03-01 24:00:10 +0000'"},
                    UnreadableCase{"NoSuchDay", "start_date='2024-02-30 08:00:10 +0000'"},
                    UnreadableCase{"LetterInTheMiddle", "start_date='2024-03-01T08:00:10 +0000'"},
                    UnreadableCase{"Bytes", "start_date=CAST(X'FFC3' AS TEXT)"}),
    [](const auto& test) { return test.param.name; });

TEST(UnreadableSamples, OutsideTheWorkoutAreNotCounted) {
  TestRecord before = sampleAfter(-1);
  before.unit = std::nullopt;
  TestRecord after = sampleAfter(3600);
  after.value_num = std::nullopt;
  TestDatabase database;
  database.addWorkout(hourOfRunning()).addRecords({before, after});

  EXPECT_EQ(heartRateOf(database).excluded_candidate_count, 0);
}

TEST(UnreadableSamples, WithoutATimeBelongToNoSourceOfTheWorkout) {
  TestRecord timeless = sampleAfter(0);
  timeless.start_date = "whenever";
  TestDatabase database;
  database.addWorkout(hourOfRunning()).addRecord(timeless);

  EXPECT_THAT(heartRateOf(database).available_sources, IsEmpty());
}

TEST(UnreadableSamples, AreToldFromUnusualOnes) {
  TestDatabase database;
  database.addWorkout(hourOfRunning())
      .addRecords({sampleAfter(1, 0), sampleAfter(2, -5), sampleAfter(3, 1e308)});

  const WorkoutHeartRate heartRate = heartRateOf(database);

  EXPECT_THAT(bpmOf(heartRate), ElementsAre(0, -5, 1e308));
  EXPECT_EQ(heartRate.excluded_candidate_count, 0);
}

// --- failures of the database

TEST(HeartRateOfAStore, FailsWithoutTheSamples) {
  TestDatabase database;
  database.addWorkout(hourOfRunning()).run("DROP TABLE records");

  EXPECT_EQ(samplesFailure(database), "prepare 失败:no such table: records");
}

TEST(HeartRateOfAStore, FailsWithoutTheWorkouts) {
  TestDatabase database;
  database.run("DROP TABLE workouts");

  EXPECT_EQ(samplesFailure(database), "prepare 失败:no such table: workouts");
}

TEST(HeartRateOfAStore, FailsWithItsOwnWordsWhenASampleCannotBeRead) {
  TestRecord sample = sampleAfter(0);
  sample.device = "a device on a page of its own";
  TestDatabase database;
  database.addWorkout(hourOfRunning()).addRecord(sample);
  ASSERT_EQ(ruinPages(database, *sample.device), 1);

  EXPECT_EQ(samplesFailure(database), "读取训练心率 失败:database disk image is malformed");
}

TEST(HeartRateOfAStore, FailsWhereNoDatabaseIs) {
  TestDatabase database;
  database.replaceFile(std::string(4096, 'x'));

  EXPECT_EQ(samplesFailure(database), "prepare 失败:file is not a database");
}

}  // namespace
