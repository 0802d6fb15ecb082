// One export with all that is known to be unclean about real ones, from the archive to the rows.

#include "apps/import/ImportHarness.h"
#include "apps/import/WriterHarness.h"
#include "apps/import/ZipFile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace {

using testing::ElementsAre;
using testing::Pair;

class UncleanImport : public Import {
protected:
  UncleanImport() {
    const std::string run =
        "<Record value=\"61\" endDate=\"2024-03-31 01:31:00 +0100\" unit=\"count/min\""
        " device=\"&lt;&lt;HKDevice: 0x1&gt;, name:Apple Watch, hardware:Watch6,1&gt;\""
        " startDate=\"2024-03-31 01:30:00 +0100\" sourceName=\"Zoë’s “big”\u00A0Watch\""
        " type=\"HKQuantityTypeIdentifierHeartRate\"/>\n";
    const std::string session =
        "<Record type=\"HKCategoryTypeIdentifierMindfulSession\""
        " startDate=\"2024-03-31 03:30:00 +0200\"/>\n";
    const std::string text =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!DOCTYPE HealthData [\n<!ATTLIST Record\n"
        "  type CDATA #REQUIRED\n<!ELEMENT Workout EMPTY>\n]>\n\v<HealthData locale=\"en_GB\">\n" +
        run + session +
        "<Record type=\"HKQuantityTypeIdentifierStepCount\" value=\"7\" sourceName=\"A&#11;n\x01n\""
        " startDate=\"2099-01-01 00:00:00 -0330\"/>\n"
        "<Record type=\"HKQuantityTypeIdentifierStepCount\" value=\"8\"/>\n"
        "<Record type=\"HKQuantityTypeIdentifierBodyMass\" value=\"70\" sourceName=\"Z\xC3\""
        " startDate=\"2099-01-02 00:00:00 +0000\"/>\n" +
        session + run +
        "<Workout workoutActivityType=\"HKWorkoutActivityTypeRunning\" sourceName=\"Watch\""
        " startDate=\"2024-03-31 03:30:00 +0200\" startDate=\"2024-03-31 04:00:00 +0200\">"
        "<WorkoutStatistics type=\"HKQuantityTypeIdentifierDistanceWalkingRunning\" sum=\"5\""
        " unit=\"km\" startDate=\"2024-03-31 03:30:00 +0200\""
        " startDate=\"2024-03-31 04:00:00 +0200\" sum=\"6\"/></Workout>\n</HealthData>\n";
    writeZip(folder / "export.xml", {{"Gesundheit ä/export.xml", text}});
    machineZone = "Europe/Berlin";
  }
};

TEST_F(UncleanImport, StoresWhatIsSoundAndCountsTheRest) {
  const Report report = importFor("Ann", "ann");

  EXPECT_THAT(rows((root() / "members/ann/health.db").string(),
                   "SELECT type, source_name, device, unit, start_date, start_day, value, value_num"
                   " FROM records ORDER BY start_date",
                   8),
              ElementsAre("HeartRate|Zoë’s “big”\u00A0Watch|"
                          "<<HKDevice: 0x1>, name:Apple Watch, hardware:Watch6,1>|count/min|"
                          "2024-03-31 01:30:00 +0100|2024-03-31|61|61.0",
                          "MindfulSession|-|-|-|2024-03-31 03:30:00 +0200|2024-03-31|-|-",
                          "StepCount|Ann|-|-|2099-01-01 04:30:00 +0100|2099-01-01|7|7.0",
                          "BodyMass|Z\uFFFD|-|-|2099-01-02 01:00:00 +0100|2099-01-02|70|70.0"));
  EXPECT_EQ(report.tally.records, (Tally{.read = 6, .added = 4}));
  EXPECT_THAT(report.tally.skipped,
              ElementsAre(Pair("no startDate", Skipped{.count = 1, .firstLine = 11})));
  EXPECT_THAT(rows((root() / "members/ann/health.db").string(),
                   "SELECT start_date, end_date, distance_km FROM workouts",
                   3),
              ElementsAre("2024-03-31 03:30:00 +0200|2024-03-31 04:00:00 +0200|5.0"));
  EXPECT_EQ(report.irregularities.repeatedAttributes, 3);
  EXPECT_EQ(report.tally.unknownUnits, 1);
  EXPECT_EQ(report.tally.lastDay, "2099-01-02");
  EXPECT_EQ(report.irregularities.droppedCharacters, 3);
  EXPECT_EQ(report.irregularities.replacedSequences, 1);
}

TEST_F(UncleanImport, ChangesNothingTheSecondTime) {
  importFor("Ann", "ann");

  const Report report = importFor("Ann");

  EXPECT_TRUE(report.tally.changedNothing());
  EXPECT_EQ(report.tally.records.read, 6);
  EXPECT_THAT(rows((root() / "members/ann/health.db").string(), "SELECT COUNT(*) FROM records", 1),
              ElementsAre("4"));
}

}  // namespace
