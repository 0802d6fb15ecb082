// What a life is after an export and an import, and what a household written that way holds.

#include "apps/sample/WrittenHousehold.h"
#include "roster/Roster.h"
#include "sample/household/Imported.h"
#include "store/HealthStore.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using testing::ElementsAre;

/// Keeps what it is told.
class Notebook final : public RecordSink {
public:
  void add(const Sample& sample) override { samples.push_back(sample); }
  void add(const Workout& workout) override { workouts.push_back(workout); }

  std::vector<Sample> samples;
  std::vector<Workout> workouts;
};

const Source watch{.name = "Watch", .device = "", .version = "10.1"};

Sample sampleOf(std::string_view type, std::string_view unit, Decimal value) {
  return {.type = type,
          .source = &watch,
          .unit = unit,
          .start = {1700000000, 0},
          .end = {1700000060, 0},
          .value = value};
}

Sample imported(const Sample& sample) {
  Notebook notebook;
  Imported(notebook, Zone::newYork).add(sample);
  return notebook.samples.at(0);
}

TEST(Imported, ConvertsTheLengthsOfDistancesToKilometres) {
  const Sample swum = imported(sampleOf("DistanceSwimming", "m", {850, 0}));

  EXPECT_EQ(swum.unit, "km");
  EXPECT_EQ(std::get<Decimal>(swum.value).number(), 0.85);
}

TEST(Imported, ConvertsKilojoulesToKilocalories) {
  const Sample eaten = imported(sampleOf("DietaryEnergyConsumed", "kJ", {2300, 0}));

  EXPECT_EQ(eaten.unit, "kcal");
  EXPECT_NEAR(std::get<Decimal>(eaten.value).number(), 2300 / 4.184, 1e-6);
}

TEST(Imported, LeavesOtherMetresAlone) {
  const Sample walked = imported(sampleOf("SixMinuteWalkTestDistance", "m", {540, 0}));

  EXPECT_EQ(walked.unit, "m");
  EXPECT_EQ(std::get<Decimal>(walked.value).number(), 540);
}

TEST(Imported, CallsTheUnitOfHeartRatesByOneName) {
  EXPECT_EQ(imported(sampleOf("HeartRate", "bpm", {61, 0})).unit, "count/min");
}

TEST(Imported, GivesEveryRecordItsDay) {
  Sample undated = sampleOf("BodyMass", "kg", {675, 1});
  undated.dated = false;

  EXPECT_TRUE(imported(undated).dated);
}

std::string textOf(Stamp stamp) { return std::string(StampText(stamp).text()); }

/// The stamp that `text` spells.
Stamp stampOf(std::string_view text) { return AppleFormat::stampParser.stamp(text).value(); }

TEST(Imported, ShowsEveryStampOnTheClocksOfHomeAtItsMoment) {
  const Source phone{.name = "iPhone", .device = "", .delaySeconds = 240};
  Sample walked = sampleOf("StepCount", "count", {412, 0});
  walked.source = &phone;
  walked.start = stampOf("2026-11-01 13:40:00 +0800");
  walked.end = stampOf("2026-11-01 13:58:00 +0800");
  Notebook notebook;

  Imported(notebook, Zone::newYork).add(walked);

  const Sample& imported = notebook.samples.at(0);
  EXPECT_EQ(textOf(imported.start), "2026-11-01 01:40:00 -0400");
  EXPECT_EQ(textOf(imported.end), "2026-11-01 01:58:00 -0400");
  EXPECT_EQ(textOf(imported.created()), "2026-11-01 01:02:00 -0500") << "the clocks went back";
}

TEST(Imported, ShowsWorkoutsOnTheClocksOfHomeInTheirTextsToo) {
  Workout workout;
  workout.source = &watch;
  workout.start = stampOf("2026-03-08 14:30:00 +0800");
  workout.end = stampOf("2026-03-08 15:30:00 +0800");
  workout.entry.start = "2026-03-08 14:30:00 +0800";
  workout.entry.end = "2026-03-08 15:30:00 +0800";
  Notebook notebook;

  Imported(notebook, Zone::newYork).add(workout);

  const Workout& imported = notebook.workouts.at(0);
  EXPECT_EQ(imported.entry.start, "2026-03-08 01:30:00 -0500");
  EXPECT_EQ(imported.entry.end, "2026-03-08 03:30:00 -0400");
  EXPECT_EQ(textOf(imported.start), imported.entry.start);
  EXPECT_EQ(textOf(imported.end), imported.entry.end);
  EXPECT_EQ(textOf(imported.created()), "2026-03-08 03:31:00 -0400");
}

TEST(Imported, CountsItsFirstDayAtHome) {
  Sample early = sampleOf("StepCount", "count", {1, 0});
  early.start = stampOf("2026-03-01 20:00:00 -0500");
  Notebook notebook;
  Imported sink(notebook, Zone::shanghai);

  sink.add(early);

  EXPECT_EQ(sink.firstDay(), "2026-03-02");
}

TEST(Imported, KnowsTheFirstDayWhateverTheOrder) {
  Notebook notebook;
  Imported sink(notebook, Zone::shanghai);
  EXPECT_EQ(sink.firstDay(), std::nullopt);

  sink.add(sampleOf("StepCount", "count", {1, 0}));
  Sample earlier = sampleOf("StepCount", "count", {2, 0});
  earlier.start = {1699900000, 0};
  sink.add(earlier);
  sink.add(sampleOf("StepCount", "count", {3, 0}));

  EXPECT_EQ(sink.firstDay(), "2023-11-14");
}

struct HumidityCase {
  std::string name;
  std::optional<double> value;
  std::string encoding;  ///< "" for the old column
  std::optional<double> expected;
};

void PrintTo(const HumidityCase& value, std::ostream* out) { *out << value.name; }

class ImportedHumidity : public testing::TestWithParam<HumidityCase> {};

TEST_P(ImportedHumidity, IsWhatTheExportWroteInHundredthsOfAPercent) {
  const HumidityCase& given = GetParam();
  Workout workout;
  workout.source = &watch;
  if (given.encoding.empty()) {
    workout.entry.humidity_pct = given.value;
  } else {
    workout.entry.humidity.emplace().raw_value = given.value;
    workout.entry.humidity->encoding = given.encoding;
  }
  Notebook notebook;

  Imported(notebook, Zone::shanghai).add(workout);

  const WorkoutEntry& entry = notebook.workouts.at(0).entry;
  EXPECT_EQ(entry.humidity_pct, std::nullopt);
  ASSERT_EQ(entry.humidity.has_value(), given.expected.has_value());
  if (!given.expected) return;
  EXPECT_EQ(entry.humidity,
            (WorkoutHumidity{.raw_value = given.expected,
                             .raw_unit = "%",
                             .raw_text = {},
                             .encoding = "xml_percent",
                             .source_bundle_id = {},
                             .source_version = "10.1"}));
}

INSTANTIATE_TEST_SUITE_P(Cases, ImportedHumidity,
                         testing::Values(HumidityCase{"Percent", 71.5, "healthkit_percent", 7150},
                                         HumidityCase{"Fraction", 0.54, "healthkit_fraction", 5400},
                                         HumidityCase{"AlreadyExported", 5400, "xml_percent", 5400},
                                         HumidityCase{"OldColumn", 66, "", 6600},
                                         HumidityCase{"WithoutNumber", {}, "healthkit_value", {}},
                                         HumidityCase{"NoneAtAll", {}, "", {}}),
                         [](const auto& test) { return test.param.name; });

Options importedOptions() {
  return {.out = {},
          .exportTo = {},
          .member = {},
          .members = 3,
          .years = 1,
          .records = 20000,
          .seed = 1,
          .today = {},
          .asImported = true};
}

TEST(ImportedHousehold, HasTheRecordsOfTheOtherEachWithItsDay) {
  Options direct = importedOptions();
  direct.members = 2;
  direct.asImported = false;
  const WrittenHousehold received(direct);
  const WrittenHousehold household(importedOptions());
  const std::string everyRecord =
      "SELECT type || source_name || " + momentSQL("start_date") + " || '|' || " +
      momentSQL("end_date") + " || '|' || " + momentSQL("creation_date") +
      " || ifnull(value_num, value) FROM records WHERE type NOT LIKE 'Distance%'"
      " AND type <> 'DietaryEnergyConsumed' ORDER BY rowid";

  EXPECT_EQ(household.texts("ann-01", everyRecord), received.texts("ann-01", everyRecord));
  EXPECT_EQ(household.texts("ann-01", "SELECT COUNT(*) FROM records WHERE start_day IS NULL"),
            std::vector<std::string>{"0"});
  EXPECT_EQ(household.texts("ann-01",
                            "SELECT DISTINCT unit FROM records"
                            " WHERE type LIKE 'Distance%'"),
            std::vector<std::string>{"km"});
  EXPECT_THAT(household.texts("ann-01",
                              "SELECT DISTINCT unit FROM records"
                              " WHERE type = 'DietaryEnergyConsumed'"),
              ElementsAre("kcal"));
}

TEST(ImportedHousehold, IsOnTheClocksOfHomeWithTheOffsetOfEveryMoment) {
  const WrittenHousehold household(importedOptions());
  const std::string offsets =
      "SELECT DISTINCT substr(stamp, 21) FROM (SELECT start_date AS stamp FROM records"
      " UNION SELECT end_date FROM records UNION SELECT creation_date FROM records"
      " UNION SELECT start_date FROM workouts UNION SELECT end_date FROM workouts"
      " UNION SELECT creation_date FROM workouts) ORDER BY 1";
  const std::string daysOfOtherStamps =
      "SELECT COUNT(*) FROM (SELECT start_date, start_day FROM records UNION ALL"
      " SELECT start_date, start_day FROM workouts) WHERE start_day <> substr(start_date, 1, 10)";

  EXPECT_THAT(household.texts("ann-01", offsets), ElementsAre("+0800"));
  EXPECT_THAT(household.texts("ben-02", offsets), ElementsAre("-0400", "-0500"));
  EXPECT_THAT(household.texts("ben-02",
                              "SELECT substr(MAX(end_date), 21) FROM records"
                              " WHERE end_date < '2026-07-01'"),
              ElementsAre("-0400"));
  EXPECT_THAT(household.texts("ann-01", daysOfOtherStamps), ElementsAre("0"));
  EXPECT_THAT(household.texts("ben-02", daysOfOtherStamps), ElementsAre("0"));
}

TEST(ImportedHousehold, KnowsTheHumidityOfWorkoutsByTheirNewStamps) {
  const WrittenHousehold household(importedOptions());
  Logger quiet(std::nullopt, Logger::Level::error, false, [] { return 0.0; });
  std::size_t readings = 0;
  for (const WorkoutEntry& workout :
       HealthStore(household.database("ann-01"), {}, quiet).workoutDetails({}, {})) {
    if (workout.humidity) ++readings;
  }

  EXPECT_GT(readings, 0U);
  EXPECT_THAT(household.texts("ann-01", "SELECT COUNT(*) FROM workout_humidity"),
              ElementsAre(std::to_string(readings)));
}

TEST(ImportedHousehold, KeepsTheNamesOfTheMembersZones) {
  const WrittenHousehold household(importedOptions());
  const std::string everything = "SELECT k || '=' || v FROM stat_meta ORDER BY k";

  EXPECT_THAT(household.texts("ann-01", everything),
              ElementsAre("built=1", "import_time_zone=Asia/Shanghai"));
  EXPECT_THAT(household.texts("ben-02", everything),
              ElementsAre("built=1", "import_time_zone=America/New_York"));
  EXPECT_THAT(household.texts("mei-03", everything),
              ElementsAre("built=1", "import_time_zone=Asia/Shanghai"));
}

TEST(ImportedHousehold, IsNamedInARosterWithoutDevices) {
  WrittenHousehold household(importedOptions());
  Roster roster(household.folder / "root/members.json", household.quiet, [] { return 0.0; });

  roster.load();

  const std::vector<Member> members = roster.members();
  ASSERT_EQ(members.size(), 3U);
  for (const Member& member : members) {
    EXPECT_TRUE(member.devices.empty()) << member.id;
    ASSERT_TRUE(member.backfill) << member.id;
    EXPECT_TRUE(member.backfill->done) << member.id;
    EXPECT_EQ(member.lastSyncAt, 1795129200.0) << member.id;  // 2026-11-20 07:00 +0800
  }
}

}  // namespace
