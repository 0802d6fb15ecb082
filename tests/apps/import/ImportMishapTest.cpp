// Imports that cannot do what they are asked, or died on the way.

#include "apps/import/DatabaseContents.h"
#include "apps/import/ImportHarness.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <filesystem>
#include <sstream>

namespace {

using nlohmann::json;
using testing::HasSubstr;

TEST_F(Import, DoesNotMakeTheFolderOfADriveThatIsNotThere) {
  const std::string database = (folder / "unmounted/ann.db").string();
  writeRoster({{"version", 1}, {"members", {memberWithout("a-1", database)}}});
  writeExport(exportText(30));

  EXPECT_THAT(refusal("Ann"), HasSubstr("drive not mounted?"));

  EXPECT_FALSE(std::filesystem::exists(folder / "unmounted"));
}

TEST_F(Import, RefusesAnUnreadableRosterBeforeAnythingIsWritten) {
  folder.write("root/members.json", "{");
  writeExport(exportText(30));

  EXPECT_THAT(refusal("Ann"), HasSubstr("cannot be read and was left alone"));

  EXPECT_THAT(files(), testing::ElementsAre("members.json"));
  EXPECT_EQ(fileContents(root() / "members.json"), "{");
}

TEST_F(Import, OfAnExportThatIsNotThereMakesNothing) {
  EXPECT_NE(refusal("Ann"), "none");

  EXPECT_FALSE(std::filesystem::exists(root()));
}

TEST_F(Import, OfABrokenExportLeavesNoMember) {
  const std::string whole = exportText(300);
  writeExport(whole.substr(0, whole.size() / 2));

  EXPECT_NE(refusal("Ann"), "none");

  EXPECT_FALSE(std::filesystem::exists(root()));
}

TEST_F(Import, OfABrokenExportLeavesAnExistingMemberAsItWas) {
  writeExport(exportText(300));
  const Report first = importFor("Ann");
  const std::filesystem::path database = root() / "members" / first.id / "health.db";
  const std::string before = databaseContents(database);
  const json rosterBefore = roster();
  const std::string longer = exportText(500);
  writeExport(longer.substr(0, longer.size() - 20));

  EXPECT_NE(refusal("Ann"), "none");

  EXPECT_EQ(databaseContents(database), before);
  EXPECT_EQ(roster(), rosterBefore);
}

TEST_F(Import, ThatDiedBetweenDatabaseAndRosterIsCompletedByTheNext) {
  writeExport(exportText(300));
  const Report first = importFor("Ann");
  // As a death between the two leaves it.
  std::filesystem::remove(root() / "members.json");
  folder.write("root/members/" + first.id + "/import-unfinished", "Ann");

  const Report second = importFor("Ann");

  EXPECT_EQ(second.id, first.id);
  EXPECT_TRUE(second.tally.changedNothing());
  ASSERT_EQ(roster()["members"].size(), 1U);
  EXPECT_EQ(roster()["members"][0]["id"], first.id);
}

TEST_F(Import, DoesNotGiveOnePersonWhatADeathLeftOfAnother) {
  writeExport(exportText(300));
  importFor("Ann", "fam");
  // As a death between database and roster, or a roster that could not be written, leaves it.
  std::filesystem::remove(root() / "members.json");
  folder.write("root/members/fam/import-unfinished", "Ann");
  const std::string before = databaseContents(root() / "members/fam/health.db");
  writeExport(exportText(400));

  EXPECT_THAT(refusal("Ben", "fam"), HasSubstr("holds an unfinished import of Ann's"));

  EXPECT_EQ(databaseContents(root() / "members/fam/health.db"), before);
  EXPECT_FALSE(std::filesystem::exists(root() / "members.json"));
}

TEST_F(Import, ThatDiedBehindTheRosterIsTidiedUpByTheNext) {
  writeExport(exportText(3));
  importFor("Ann", "ann");
  folder.write("root/members/ann/import-unfinished", "Ann");

  importFor("Ann");

  EXPECT_FALSE(std::filesystem::exists(root() / "members/ann/import-unfinished"));
}

TEST_F(Import, SaysThatTheDataIsStoredWhenTheRosterCannotBeWritten) {
  writeExport(exportText(3));
  // Stands where the new roster is to be written.
  folder.write("root/members.json.new/occupied", "");

  EXPECT_THAT(refusal("Ann", "ann"),
              testing::AllOf(testing::StartsWith("the data is in the database, but the roster"),
                             HasSubstr("members.json cannot be written: ")));

  EXPECT_THAT(databaseContents(root() / "members/ann/health.db"), HasSubstr("HeartRate|3|"));
  std::filesystem::remove_all(root() / "members.json.new");
  EXPECT_TRUE(importFor("Ann").tally.changedNothing());
  EXPECT_EQ(roster()["members"][0]["id"], "ann");
}

TEST_F(Import, SaysThatTheDataIsStoredWhenTheRosterBreaksMeanwhile) {
  writeExport(exportText(3));
  std::ostringstream unseen;
  int asked = 0;
  const Clock breaking = [&] {
    if (++asked == 2) folder.write("root/members.json", "{");
    return now;
  };

  try {
    runImport({.dataRoot = root(), .name = "Ann", .id = "ann", .source = folder / "export.xml"},
              {.progress = unseen,
               .progressKind = Importer::Progress::Kind::log,
               .lang = SummaryLang::en,
               .clock = breaking,
               .timeZone = "Asia/Shanghai"});
    ADD_FAILURE() << "a broken roster was written";
  } catch (const Failure& error) {
    EXPECT_THAT(error.text(SummaryLang::en),
                testing::StartsWith("the data is in the database, but the roster "));
  }

  EXPECT_EQ(fileContents(root() / "members.json"), "{");
  EXPECT_THAT(databaseContents(root() / "members/ann/health.db"), HasSubstr("HeartRate|3|"));
}

TEST_F(Import, NamesAPathOfTheRosterThatLeadsNowhereInParticular) {
  writeExport(exportText(3));
  for (const char* path : {"", "ann.db", "members/ann.db"}) {
    writeRoster({{"version", 1}, {"members", {memberWithout("a-1", path)}}});

    EXPECT_EQ(refusal("Ann"),
              "the roster's dbPath for Ann is no absolute path, so it names no database: \"" +
                  std::string(path) + "\"");
  }
}

TEST_F(Import, SaysThatADatabaseIsNone) {
  writeRoster({{"version", 1}, {"members", {memberWithout("a-1", (root() / "ann.db").string())}}});
  folder.write("root/ann.db", std::string(5000, 'x'));
  writeExport(exportText(3));

  EXPECT_THAT(refusal("Ann"), HasSubstr("file is not a database"));
}

TEST_F(Import, OfANewMemberDoesNotMakeThePairedMembersDatabase) {
  json ben = memberWithout("b-2", (root() / "members/ann/health.db").string());
  ben["name"] = "Ben";
  ben["devices"] = {{{"token", "t"}, {"pairedAt", 1}}};
  writeRoster({{"version", 1}, {"members", {ben}}});
  writeExport(exportText(3));

  EXPECT_THAT(refusal("Ann", "ann"), testing::StartsWith("Ben has a paired phone"));

  EXPECT_THAT(files(), testing::ElementsAre("members.json"));
}

}  // namespace
