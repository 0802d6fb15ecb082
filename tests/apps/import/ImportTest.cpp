#include "apps/import/DatabaseContents.h"
#include "apps/import/ImportHarness.h"
#include "roster/Roster.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <filesystem>
#include <sstream>

namespace {

using nlohmann::json;
using testing::HasSubstr;

TEST_F(Import, MakesADataRootWithOneMemberWhoseHistoryIsComplete) {
  writeExport(exportText(300));

  const Report report = importFor("Ann");

  const json member = roster()["members"][0];
  EXPECT_EQ(report.tally.records, (Tally{.read = 300, .added = 300}));
  EXPECT_TRUE(report.newMember);
  EXPECT_EQ(member["id"], report.id);
  EXPECT_EQ(member["name"], "Ann");
  EXPECT_EQ(member["createdAt"], now);
  EXPECT_EQ(member["lastSyncAt"], 1717200000);
  EXPECT_EQ(member["backfill"]["done"], true);
  EXPECT_EQ(member["backfill"]["completeFrom"], "2024-03-01");
  EXPECT_EQ(member["dbPath"], (root() / "members" / report.id / "health.db").string());
  EXPECT_TRUE(std::filesystem::exists(member["dbPath"].get<std::string>()));
  EXPECT_FALSE(std::filesystem::exists(root() / "members" / report.id / "import-unfinished"));
}

TEST_F(Import, KeepsARowOfTheRunWithTheNameOfWhatWasGiven) {
  writeExport(exportText(3));
  folder.write("unpacked/export.xml", exportText(3));
  std::ostringstream unseen;
  const auto bringIn = [&](const std::filesystem::path& source) {
    runImport({.dataRoot = root(), .name = "Ann", .id = "ann", .source = source},
              {.progress = unseen,
               .progressKind = Importer::Progress::Kind::log,
               .lang = SummaryLang::en,
               .clock = [] { return now; },
               .timeZone = "Asia/Shanghai"});
  };

  bringIn(folder / "export.xml");
  bringIn((folder / "unpacked").string() + "/");

  const std::string bytes = std::to_string(exportText(3).size());
  EXPECT_THAT(Database((root() / "members/ann/health.db").string(), {})
                  .prepare("SELECT imported_at || '|' || source_file || '|' || source_bytes"
                           " FROM imports ORDER BY id")
                  .readAll([](const Row& row) { return row.text(0); }),
              testing::ElementsAre("2024-06-02 03:46:40 +0000|export.xml|" + bytes,
                                   "2024-06-02 03:46:40 +0000|unpacked|" + bytes));
}

TEST_F(Import, OfTheSameExportChangesNothing) {
  writeExport(exportText(300));
  const Report first = importFor("Ann");
  const std::filesystem::path database = root() / "members" / first.id / "health.db";
  const std::string before = databaseContents(database);
  const json rosterBefore = roster();

  const Report second = importFor("Ann");

  EXPECT_TRUE(second.tally.changedNothing());
  EXPECT_FALSE(second.newMember);
  EXPECT_EQ(second.tally.records, (Tally{.read = 300, .added = 0}));
  EXPECT_EQ(databaseContents(database), before);
  EXPECT_EQ(roster(), rosterBefore);
}

TEST_F(Import, OfANewerExportAddsWhatIsNew) {
  writeExport(exportText(300));
  importFor("Ann");
  writeExport(exportText(400, "2024-06-02 08:00:00 +0800"));

  const Report report = importFor("Ann");

  EXPECT_EQ(report.tally.records, (Tally{.read = 400, .added = 100}));
  EXPECT_EQ(report.tally.workouts, (Tally{.read = 4, .added = 1}));
  EXPECT_EQ(roster()["members"].size(), 1U);
  EXPECT_EQ(roster()["members"][0]["lastSyncAt"], 1717286400);
}

TEST_F(Import, TakesTheIDThatIsGivenForANewMember) {
  writeExport(exportText(3));

  importFor("Ann", "ann-01");

  EXPECT_EQ(roster()["members"][0]["id"], "ann-01");
  EXPECT_TRUE(std::filesystem::exists(root() / "members/ann-01/health.db"));
}

TEST_F(Import, GoesToTheDatabaseThatTheRosterNames) {
  std::filesystem::create_directory(folder / "elsewhere");
  writeRoster({{"version", 1},
               {"members", {memberWithout("a-1", (folder / "elsewhere/ann.db").string())}}});
  writeExport(exportText(30));

  importFor("Ann");

  EXPECT_EQ(roster()["members"][0]["dbPath"], (folder / "elsewhere/ann.db").string());
  EXPECT_THAT(databaseContents(folder / "elsewhere/ann.db"), HasSubstr("HeartRate|30|"));
}

TEST_F(Import, RefusesAMemberWithAPairedPhoneBeforeAnythingIsWritten) {
  json member = memberWithout("a-1", (root() / "ann.db").string());
  member["devices"] = {{{"token", "t"}, {"pairedAt", 1}}};
  writeRoster({{"version", 1}, {"members", {member}}});
  writeExport(exportText(30));

  EXPECT_THAT(refusal("Ann"), HasSubstr("has a paired phone"));
  EXPECT_THAT(refusal("Ann", "a-1"), HasSubstr("has a paired phone"));

  EXPECT_THAT(files(), testing::ElementsAre("members.json"));
}

TEST_F(Import, OfWorkoutsAloneHasTheirFirstDay) {
  writeExport(
      "<HealthData><ExportDate value=\"2024-06-01 08:00:00 +0800\"/>"
      "<Workout workoutActivityType=\"HKWorkoutActivityTypeRunning\" duration=\"30\""
      " durationUnit=\"min\" startDate=\"2018-09-01 18:00:00 +0800\""
      " endDate=\"2018-09-01 18:30:00 +0800\"/></HealthData>");

  importFor("Ann");

  const json expected{{"done", true},
                      {"frontier", "2018-09-01"},
                      {"earliest", "2018-09-01"},
                      {"completeFrom", "2018-09-01"}};
  EXPECT_EQ(roster()["members"][0]["backfill"], expected);
}

TEST_F(Import, KeepsAMemberWhomTheReceiverAddedMeanwhile) {
  writeExport(exportText(3));
  std::ostringstream unseen;
  int asked = 0;
  // The clock is asked while the export is read: the moment at which somebody else pairs a phone.
  const Clock meddling = [&] {
    if (++asked == 2) {
      json ben = memberWithout("b-2", "/ben.db");
      ben["name"] = "Ben";
      writeRoster({{"version", 1}, {"members", {ben}}});
    }
    return now;
  };

  runImport({.dataRoot = root(), .name = "Ann", .id = {}, .source = folder / "export.xml"},
            {.progress = unseen,
             .progressKind = Importer::Progress::Kind::log,
             .lang = SummaryLang::en,
             .clock = meddling,
             .timeZone = "Asia/Shanghai"});

  ASSERT_EQ(roster()["members"].size(), 2U);
  EXPECT_EQ(roster()["members"][0]["name"], "Ben");
  EXPECT_EQ(roster()["members"][1]["name"], "Ann");
}

}  // namespace
