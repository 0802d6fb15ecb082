// In which zone the days of an imported member are.

#include "apps/import/DatabaseContents.h"
#include "apps/import/ImportHarness.h"
#include "apps/import/WriterHarness.h"
#include "support/EnvironmentGuard.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <filesystem>
#include <string>

namespace {

using testing::ElementsAre;
using testing::HasSubstr;

/// An export with a steps sample around each of the two midnights that a night in New York's summer
/// has at the offsets of summer and winter; every stamp at `offset`.
std::string exportAt(int offsetHours, const std::string& more = "") {
  const std::int64_t moment = AppleFormat::stampParser.parse("2024-07-02 04:30:00 +0000").value();
  const auto stamp = [offsetHours](std::int64_t at) {
    return std::string(StampText({.moment = at, .offset = offsetHours * 3600}).text());
  };
  const auto steps = [&](std::int64_t at, const std::string& value) {
    return "<Record type=\"HKQuantityTypeIdentifierStepCount\" sourceName=\"iPhone\" unit=\"count\""
           " creationDate=\"" +
           stamp(at + 60) + "\" startDate=\"" + stamp(at) + "\" endDate=\"" + stamp(at + 60) +
           "\" value=\"" + value + "\"/>\n";
  };
  return "<HealthData><ExportDate value=\"" + stamp(1722500000) + "\"/>\n" +
         steps(moment - 3600, "10") + steps(moment, "20") + more + "</HealthData>";
}

class TimeZones : public Import {
protected:
  TimeZones() { machineZone = "America/New_York"; }

  std::vector<std::string> samples() const {
    return rows(database().string(),
                "SELECT start_date, start_day, end_date, creation_date FROM records ORDER BY 1",
                4);
  }
  std::filesystem::path database() const { return root() / "members/ann/health.db"; }
};

TEST_F(TimeZones, StoreEverySampleOnceWhateverTheOffsetOfTheExport) {
  for (const int offset : {-4, -5, 9, 0}) {
    writeExport(exportAt(offset));
    if (offset != -4) machineZone = "Etc/UTC";  // the machine has moved, the member's days have not
    importFor("Ann", "ann");
  }

  EXPECT_THAT(samples(),
              ElementsAre("2024-07-01 23:30:00 -0400|2024-07-01|2024-07-01 23:31:00 -0400|"
                          "2024-07-01 23:31:00 -0400",
                          "2024-07-02 00:30:00 -0400|2024-07-02|2024-07-02 00:31:00 -0400|"
                          "2024-07-02 00:31:00 -0400"));
}

TEST_F(TimeZones, AreKeptInTheDatabaseAndTold) {
  writeExport(exportAt(-4));

  const Report report = importFor("Ann", "ann");

  EXPECT_EQ(report.timeZone, "America/New_York");
  EXPECT_THAT(rows(database().string(), "SELECT v FROM stat_meta WHERE k = 'import_time_zone'", 1),
              ElementsAre("America/New_York"));
}

TEST_F(TimeZones, AreTheMachinesUnlessAskedFor) {
  writeExport(exportAt(9));
  askedZone = "Europe/Berlin";

  const Report report = importFor("Ann", "ann");

  EXPECT_EQ(report.timeZone, "Europe/Berlin");
  EXPECT_EQ(report.machineTimeZone, "America/New_York");
  EXPECT_THAT(samples(),
              ElementsAre(HasSubstr("2024-07-02 05:30:00 +0200|2024-07-02"),
                          HasSubstr("2024-07-02 06:30:00 +0200|2024-07-02")));
}

TEST_F(TimeZones, OfAMachineElsewhereAreRefusedWithTheLineToType) {
  writeExport(exportAt(8));
  machineZone = "Etc/UTC";

  EXPECT_EQ(refusal("Ann", "ann"),
            "the export was made at +0800, this machine is at +0000: add --time-zone "
            "Asia/Shanghai, or the zone you live in");
  EXPECT_FALSE(std::filesystem::exists(database().parent_path()));
  EXPECT_FALSE(std::filesystem::exists(root() / "members.json"));
}

TEST_F(TimeZones, OfTheFirstStampDecideWithoutADateOfTheExport) {
  writeExport(
      "<HealthData><Record type=\"a\" startDate=\"2024-07-02 00:00:00 -0500\"/></HealthData>");
  EXPECT_THAT(refusal("Ann"), HasSubstr("made at -0500, this machine is at -0400"));

  writeExport(
      "<HealthData><Record type=\"a\" startDate=\"2024-07-02 00:00:00 -0400\"/></HealthData>");
  EXPECT_EQ(refusal("Ann"), "none");
}

TEST_F(TimeZones, OfALaterExportMayBeAnyOther) {
  writeExport(exportAt(-4));
  importFor("Ann", "ann");
  writeExport(exportAt(9));

  EXPECT_EQ(refusal("Ann"), "none");
}

TEST_F(TimeZones, HaveToBeNamedWhereTheMachinesHasNoName) {
  writeExport(exportAt(-4));
  machineZone.reset();

  EXPECT_THAT(refusal("Ann", "ann"), HasSubstr("this machine's time zone has no name: add"));
  askedZone = "America/New_York";
  EXPECT_EQ(refusal("Ann", "ann"), "none");
}

TEST_F(TimeZones, ThatTheMachineDoesNotKnowAreRefusedBeforeAnythingIsMade) {
  writeExport(exportAt(-4));
  askedZone = "Moon/Crater";

  EXPECT_EQ(refusal("Ann", "ann"),
            "this machine knows no time zone Moon/Crater; zones have names such as Asia/Shanghai");
  EXPECT_FALSE(std::filesystem::exists(root()));
}

TEST_F(TimeZones, OfOneMemberAreRefusedWhenTheyChange) {
  writeExport(exportAt(-4));
  importFor("Ann", "ann");
  const std::string before = databaseContents(database());
  askedZone = "Europe/Berlin";

  EXPECT_EQ(refusal("Ann"),
            "Ann's data is kept in the time zone America/New_York, and a later import cannot be in "
            "Europe/Berlin: leave --time-zone out");
  EXPECT_EQ(databaseContents(database()), before);

  askedZone = "America/New_York";
  EXPECT_EQ(refusal("Ann"), "none");
}

TEST_F(TimeZones, ThatTheMachineHasForgottenAreRefused) {
  writeExport(exportAt(-4));
  importFor("Ann", "ann");
  Database(database().string(), {.create = false, .readOnly = false})
      .exec("UPDATE stat_meta SET v = 'Moon/Crater' WHERE k = 'import_time_zone'");

  EXPECT_THAT(refusal("Ann"), HasSubstr("this machine knows no time zone Moon/Crater"));
}

/// What may lie in a database of which nobody knows the zone.
class UnzonedDatabase : public TimeZones, public testing::WithParamInterface<const char*> {};

TEST_P(UnzonedDatabase, IsRefusedAndLeftAsItWas) {
  writeExport(exportAt(-4));
  importFor("Ann", "ann");
  Database(database().string(), {.create = false, .readOnly = false}).exec(GetParam());
  const std::optional<std::string> bytes = fileContents(database());
  const nlohmann::json rosterBefore = roster();

  const std::string folder = database().parent_path().string();
  EXPECT_EQ(refusal("Ann"),
            folder +
                "/health.db holds data without a note of its time zone, and another import "
                "would store each sample twice. For a fresh import, move the folder " +
                folder + " away, and where the roster names the member ann, remove that entry");
  EXPECT_EQ(fileContents(database()), bytes);
  EXPECT_EQ(roster(), rosterBefore);
}

TEST_P(UnzonedDatabase, IsRefusedAndLeftAsItWasInWriteAheadMode) {
  writeExport(exportAt(-4));
  importFor("Ann", "ann");
  Database(database().string(), {.create = false, .readOnly = false})
      .exec(std::string("PRAGMA journal_mode=WAL;") + GetParam());
  const std::optional<std::string> bytes = fileContents(database());

  EXPECT_THAT(refusal("Ann", "ann"), HasSubstr("without a note of its time zone"));

  EXPECT_EQ(fileContents(database()), bytes);
  EXPECT_EQ(fileContents(database().string() + "-wal").value_or(""), "");
}

INSTANTIATE_TEST_SUITE_P(
    Holding, UnzonedDatabase,
    testing::Values("DELETE FROM stat_meta WHERE k <> 'built'", "DROP TABLE stat_meta",
                    "DELETE FROM stat_meta; DELETE FROM records;"
                    " INSERT INTO workouts (start_date) VALUES ('2024-03-01 08:00:00 +0800')"));

TEST_F(TimeZones, OfAnEmptyDatabaseAreChosenAnew) {
  writeExport(exportAt(-4));
  importFor("Ann", "ann");
  Database(database().string(), {.create = false, .readOnly = false})
      .exec("DELETE FROM stat_meta; DELETE FROM records");
  askedZone = "Europe/Berlin";

  EXPECT_EQ(importFor("Ann").timeZone, "Europe/Berlin");
}

TEST_F(TimeZones, AreNotKeptWhenNothingConfirmsThem) {
  machineZone = "Etc/UTC";
  writeExport("<HealthData><ActivitySummary dateComponents=\"2024-03-01\"/></HealthData>");
  importFor("Ann", "ann");
  writeExport(exportAt(-4));

  EXPECT_THAT(refusal("Ann"), HasSubstr("made at -0400, this machine is at +0000"));
  askedZone = "America/New_York";
  EXPECT_EQ(importFor("Ann").timeZone, "America/New_York");
}

TEST_F(TimeZones, AskedForBeforeTheFirstSampleMayBeAskedForAnew) {
  writeExport("<HealthData><ActivitySummary dateComponents=\"2024-03-01\"/></HealthData>");
  askedZone = "Asia/Tokyo";
  importFor("Ann", "ann");
  askedZone.reset();
  EXPECT_EQ(importFor("Ann").timeZone, "Asia/Tokyo");

  askedZone = "America/New_York";
  writeExport(exportAt(-4));
  importFor("Ann");

  EXPECT_THAT(rows(database().string(), "SELECT v FROM stat_meta WHERE k = 'import_time_zone'", 1),
              ElementsAre("America/New_York"));
}

TEST_F(TimeZones, OfTheExportsDateDecideWhereverItStands) {
  std::string records;
  for (int number = 0; number < 3000; ++number) {
    records += "<Record type=\"a\" startDate=\"2024-07-02 00:00:00 -0400\" value=\"" +
               std::to_string(number) + "\"/>\n";
  }
  writeExport("<HealthData>" + records +
              "<ExportDate value=\"2024-07-03 00:00:00 -0500\"/></HealthData>");

  EXPECT_THAT(refusal("Ann"), HasSubstr("made at -0500, this machine is at -0400"));
}

TEST_F(TimeZones, OfTheFirstStampDecideWhenTheDateCannotBeRead) {
  writeExport(
      "<HealthData><ExportDate value=\"today\"/>"
      "<Record type=\"a\" startDate=\"2024-07-02 00:00:00 -0500\"/></HealthData>");

  EXPECT_THAT(refusal("Ann"), HasSubstr("made at -0500, this machine is at -0400"));
}

TEST_F(TimeZones, AreNotThoseOfMetadata) {
  writeExport(exportAt(-4,
                       "<Record type=\"a\" startDate=\"2024-07-01 21:00:00 -0400\"><MetadataEntry"
                       " key=\"HKTimeZone\" value=\"Asia/Tokyo\"/></Record>"));
  importFor("Ann", "ann");

  EXPECT_THAT(rows(database().string(), "SELECT start_date FROM records WHERE type = 'a'", 1),
              ElementsAre("2024-07-01 21:00:00 -0400"));
}

TEST_F(TimeZones, AreMissingAltogetherOnSomeMachines) {
  writeExport(exportAt(-4));
  machineZone.reset();
  const EnvironmentGuard nowhere{{"TZDIR", (folder / "no zones").string()}};

  EXPECT_THAT(refusal("Ann"), HasSubstr("this machine has no time zones (is tzdata missing?)"));
  askedZone = "Europe/Berlin";
  EXPECT_THAT(refusal("Ann"), HasSubstr("this machine has no time zones (is tzdata missing?)"));
}

TEST_F(TimeZones, CannotReadSomeStampsAndTellThem) {
  writeExport(exportAt(-4,
                       "<Record type=\"HKCategoryTypeIdentifierSleepAnalysis\" sourceName=\"W\""
                       " startDate=\"2024-07-01 11:00:00\u202FPM -0400\""
                       " endDate=\"2024-07-02 07:00:00 -0400\" value=\"Asleep\"/>"));

  const Report report = importFor("Ann", "ann");

  EXPECT_EQ(report.irregularities.unreadableStamps, 1);
  EXPECT_THAT(rows(database().string(),
                   "SELECT start_date, start_day FROM records WHERE type = 'SleepAnalysis'",
                   2),
              ElementsAre("2024-07-01 11:00:00\u202FPM -0400|2024-07-01"));
}

TEST_F(TimeZones, GiveAWorkoutOneIdentifierForAllExports) {
  const auto exportWith = [this](const std::string& start, const std::string& end, int offset) {
    writeExport(exportAt(offset,
                         "<Workout workoutActivityType=\"HKWorkoutActivityTypeRunning\""
                         " sourceName=\"W\" duration=\"30\" durationUnit=\"min\" startDate=\"" +
                             start + "\" endDate=\"" + end +
                             "\"><MetadataEntry key=\"HKWeatherHumidity\" value=\"5000 %\"/>"
                             "</Workout>"));
  };
  exportWith("2024-01-10 18:00:00 -0400", "2024-01-10 18:30:00 -0400", -4);
  importFor("Ann", "ann");
  exportWith("2024-01-10 17:00:00 -0500", "2024-01-10 17:30:00 -0500", -5);

  const Report report = importFor("Ann");

  EXPECT_EQ(report.tally.workouts, (Tally{.read = 1, .added = 0}));
  EXPECT_THAT(rows(database().string(), "SELECT start_date, start_day, end_date FROM workouts", 3),
              ElementsAre("2024-01-10 17:00:00 -0500|2024-01-10|2024-01-10 17:30:00 -0500"));
  WorkoutEntry entry;
  entry.activity_type = "Running";
  entry.source = "W";
  entry.start = "2024-01-10 17:00:00 -0500";
  entry.end = "2024-01-10 17:30:00 -0500";
  EXPECT_THAT(rows(database().string(), "SELECT workout_id FROM workout_humidity", 1),
              ElementsAre(entry.workout_id()));
}

TEST_F(Import, RefusesADataRootWhosePathIsNotUTF8BeforeTheFirstByte) {
  writeExport(exportText(3));
  std::ostringstream unseen;
  const std::filesystem::path odd = folder / "ro\xFFot";

  try {
    runImport({.dataRoot = odd, .name = "Ann", .id = {}, .source = folder / "export.xml"},
              {.progress = unseen,
               .progressKind = Importer::Progress::Kind::log,
               .lang = SummaryLang::en,
               .clock = [] { return now; },
               .timeZone = "Asia/Shanghai"});
    FAIL() << "imported";
  } catch (const Failure& error) {
    EXPECT_THAT(error.text(SummaryLang::en), HasSubstr("is not UTF-8"));
  }
  EXPECT_FALSE(std::filesystem::exists(odd));
}

/// An export of that date with one day of rings.
std::string ringsAt(const std::string& date, const std::string& energy, const std::string& unit) {
  return "<HealthData><ExportDate value=\"" + date +
         "\"/><ActivitySummary dateComponents=\"2024-03-01\" activeEnergyBurned=\"" + energy +
         "\" activeEnergyBurnedUnit=\"" + unit + "\"/></HealthData>";
}

TEST_F(Import, OfAnExportFromTheFutureMakesNoLaterOneOlder) {
  writeExport(ringsAt("2030-01-01 08:00:00 +0800", "100", "kcal"));
  importFor("Ann", "ann");
  EXPECT_FALSE(roster()["members"][0].contains("lastSyncAt"));

  writeExport(ringsAt("2024-06-01 11:46:40 +0800", "200", "kcal"));
  importFor("Ann", "ann");

  EXPECT_THAT(rows((root() / "members/ann/health.db").string(),
                   "SELECT active_energy FROM activity_summary",
                   1),
              ElementsAre("200.0"));
}

TEST_F(Import, OfRingsThatWereOnlyRoundedOtherwiseChangesNothing) {
  writeExport(ringsAt("2024-06-01 08:00:00 +0800", "446", "kcal"));
  importFor("Ann", "ann");
  writeExport(ringsAt("2024-06-01 09:00:00 +0800", "1866.06", "kJ"));

  EXPECT_TRUE(importFor("Ann").tally.changedNothing());
  writeExport(ringsAt("2024-06-01 10:00:00 +0800", "1867", "kJ"));
  EXPECT_FALSE(importFor("Ann").tally.changedNothing());
}

TEST_F(Import, MakesNoMemberOfAnUnfinishedImportWhoseIDIsANameByNow) {
  folder.write("root/members/Ann/import-unfinished", "Bob");
  writeExport(exportText(3));
  importFor("Ann", "ann2");

  EXPECT_EQ(refusal("Bob"),
            "Ann is another member's name, and a question could not tell the two apart; choose "
            "another --id");
  EXPECT_EQ(roster()["members"].size(), 1U);
}

TEST_F(Import, TakesALastSyncInTheFutureForNone) {
  std::filesystem::create_directories(root() / "members/ann");
  nlohmann::json member = memberWithout("ann", (root() / "members/ann/health.db").string());
  member["lastSyncAt"] = now + 1000000;
  writeRoster({{"version", 1}, {"members", {member}}});
  writeExport(exportText(3));

  importFor("Ann");

  EXPECT_EQ(roster()["members"][0]["lastSyncAt"], 1717200000);
}

}  // namespace
