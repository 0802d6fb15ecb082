#include "platform/Logger.h"
#include "sample/household/RosterWriter.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <vector>

namespace {

using namespace std::chrono_literals;

const HistoryOptions options{.today = 2026y / 11 / 20, .years = 2, .seed = 1, .records = {}};

Roster::File rosterOf(int members, const std::filesystem::path& root) {
  Roster::File file{.version = 1, .members = {}};
  for (const Person& person : household(members)) {
    file.members.push_back(
        memberOf(person, file.members.size(), options, databasePath(root, person)));
  }
  return file;
}

TEST(RosterWriter, WritesWhatTheRosterReads) {
  const TemporaryFolder folder;
  const Roster::File written = rosterOf(7, folder.path());
  Logger quiet(std::nullopt, Logger::Level::error, false, [] { return 0.0; });

  writeRoster(folder / "members.json", written);
  Roster roster(folder / "members.json", quiet, [] { return 0.0; });
  roster.load();

  EXPECT_EQ(roster.members(), written.members);
}

TEST(RosterWriter, KeepsTheFileToItsOwnerAndLeavesNoOther) {
  const TemporaryFolder folder;
  folder.write("members.json.new", "left by an interrupted run");

  writeRoster(folder / "members.json", rosterOf(1, folder.path()));

  using std::filesystem::perms;
  EXPECT_EQ(std::filesystem::status(folder / "members.json").permissions(),
            perms::owner_read | perms::owner_write);
  EXPECT_FALSE(std::filesystem::exists(folder / "members.json.new"));
}

TEST(RosterWriter, FailsWhereItCannotWrite) {
  const TemporaryFolder folder;

  EXPECT_THROW(writeRoster(folder / "missing" / "members.json", rosterOf(1, folder.path())),
               std::system_error);
}

TEST(RosterMembers, AnnHasACompleteHistoryAndTwoPhones) {
  const Member ann = rosterOf(1, "/root").members.at(0);

  EXPECT_EQ(ann.id, "ann-01");
  EXPECT_EQ(ann.dbPath, "/root/members/ann-01/health.db");
  EXPECT_EQ(ann.lastSyncAt, 1795129200.0);  // 2026-11-20 07:00 +0800
  ASSERT_EQ(ann.devices.size(), 2U);
  EXPECT_TRUE(ann.devices[0].key && ann.devices[0].history && ann.devices[0].history->earliest);
  EXPECT_FALSE(ann.devices[1].key || ann.devices[1].history || ann.devices[1].lastSeenAt);
  EXPECT_EQ(ann.backfill,
            (BackfillState{.frontier = "2024-11-20",
                           .earliest = "2024-11-20",
                           .done = true,
                           .completeFrom = "2024-11-20"}));
}

TEST(RosterMembers, BenHasNoBackfillStateAndAHintWithoutABeginning) {
  const Member ben = rosterOf(2, "/root").members.at(1);

  EXPECT_EQ(ben.backfill, std::nullopt);
  ASSERT_EQ(ben.devices.size(), 1U);
  EXPECT_EQ(ben.devices[0].deviceName, "Ben\u2019s iPhone");
  EXPECT_EQ(ben.devices[0].history,
            (HistoryHint{.through = "2026-11-20", .earliest = std::nullopt}));
}

TEST(RosterMembers, MeiHasNotSyncedYet) {
  const Member mei = rosterOf(3, "/root").members.at(2);

  EXPECT_EQ(mei.id, "mei-03");
  EXPECT_EQ(mei.name, "小美");
  EXPECT_EQ(mei.lastSyncAt, std::nullopt);
  EXPECT_EQ(mei.devices.at(0).history, std::nullopt);
  ASSERT_TRUE(mei.backfill);
  EXPECT_FALSE(mei.backfill->done);
  EXPECT_TRUE(mei.backfill->frontier);
}

TEST(RosterMembers, LaterMembersBringTheRemainingFormsOfABackfill) {
  const std::vector<Member> members = rosterOf(5, "/root").members;

  ASSERT_TRUE(members[3].backfill && members[4].backfill);
  EXPECT_FALSE(members[3].backfill->done);
  EXPECT_TRUE(members[3].backfill->frontier && members[3].backfill->completeFrom);
  EXPECT_EQ(members[4].backfill,
            (BackfillState{.frontier = {}, .earliest = {}, .done = true, .completeFrom = {}}));
}

}  // namespace
