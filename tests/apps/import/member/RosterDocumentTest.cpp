#include "import/Failure.h"
#include "import/member/RosterDocument.h"
#include "platform/Files.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

namespace {

using nlohmann::json;
using std::filesystem::perms;

const ImportedMember ann{.id = "a-1",
                         .name = "Ann",
                         .database = "/root/members/a-1/health.db",
                         .now = 1710676800.5,
                         .exportedAt = 1710670000.0,
                         .firstDay = "2019-05-02"};

json written(const TemporaryFolder& folder) {
  return json::parse(fileContents(folder / "members.json").value());
}

/// The roster file `text` after `member` was put into it.
json updated(const std::string& text, const ImportedMember& member) {
  const TemporaryFolder folder;
  folder.write("members.json", text);
  RosterDocument roster(folder / "members.json");
  roster.put(member);
  roster.write();
  return written(folder);
}

TEST(RosterDocument, BeginsANewRosterWhichTheServerReads) {
  const TemporaryFolder folder;
  RosterDocument roster(folder / "members.json");

  roster.put(ann);
  roster.write();

  const std::vector<Member> members = RosterDocument(folder / "members.json").members();
  ASSERT_EQ(members.size(), 1U);
  EXPECT_EQ(members[0],
            (Member{.id = "a-1",
                    .name = "Ann",
                    .dbPath = "/root/members/a-1/health.db",
                    .createdAt = 1710676800.5,
                    .lastSyncAt = 1710670000.0,
                    .devices = {},
                    .backfill = BackfillState{.frontier = "2019-05-02",
                                              .earliest = "2019-05-02",
                                              .done = true,
                                              .completeFrom = "2019-05-02"}}));
}

TEST(RosterDocument, IsItsOwnersAloneWhenNewAndLeavesNothingBeside) {
  const TemporaryFolder folder;
  folder.write("members.json.new", "left by a killed run");

  RosterDocument(folder / "members.json").write();

  EXPECT_EQ(std::filesystem::status(folder / "members.json").permissions(),
            perms::owner_read | perms::owner_write);
  EXPECT_FALSE(std::filesystem::exists(folder / "members.json.new"));
}

TEST(RosterDocument, ReplacesWhatALinkLeadsTo) {
  const TemporaryFolder folder;
  folder.write("elsewhere/roster.json", R"({"version":1,"members":[]})");
  std::filesystem::create_symlink("elsewhere/roster.json", folder / "members.json");
  RosterDocument roster(folder / "members.json");

  roster.put(ann);
  roster.write();

  EXPECT_TRUE(std::filesystem::is_symlink(folder / "members.json"));
  EXPECT_EQ(RosterDocument(folder / "elsewhere/roster.json").members().size(), 1U);
}

TEST(RosterDocument, KeepsEverythingItDoesNotKnow) {
  const std::string before = R"({"future":{"a":[1,2]},"version":3,"members":[
    {"zodiac":"ox","id":"a-1","name":"Ann","dbPath":"/elsewhere/ann.db","createdAt":5,
     "devices":[],"backfill":{"done":false,"speed":7},"lastSyncAt":6},
    {"id":"b-2","name":"Ben","dbPath":"/b.db","createdAt":7.25,"pet":null,
     "devices":[{"token":"t","pairedAt":8,"colour":"red"}]}]})";

  json after = updated(before, ann);

  json expected = json::parse(before);
  expected["members"][0]["lastSyncAt"] = 1710670000.0;
  expected["members"][0]["backfill"] = {{"done", true},
                                        {"speed", 7},
                                        {"frontier", "2019-05-02"},
                                        {"earliest", "2019-05-02"},
                                        {"completeFrom", "2019-05-02"}};
  EXPECT_EQ(after, expected);
}

TEST(RosterDocument, KeepsTheOrderOfTheKeys) {
  const TemporaryFolder folder;
  folder.write("members.json", R"({"zebra":1,"version":1,"members":[],"ape":2})");

  RosterDocument(folder / "members.json").write();

  const std::string text = fileContents(folder / "members.json").value();
  EXPECT_LT(text.find("zebra"), text.find("version"));
  EXPECT_LT(text.find("members"), text.find("ape"));
}

TEST(RosterDocument, AddsAMemberBehindTheOthers) {
  const json after = updated(
      R"({"version":1,"members":[{"id":"b","name":"Ann","dbPath":"x","createdAt":1,"devices":[]}]})",
      ann);

  ASSERT_EQ(after["members"].size(), 2U);
  EXPECT_EQ(after["members"][0]["id"], "b");
  EXPECT_EQ(after["members"][1]["id"], "a-1");
  EXPECT_EQ(after["members"][1]["devices"], json::array());
}

TEST(RosterDocument, NeverMovesTheLastSyncBack) {
  const std::string before =
      R"({"version":1,"members":[{"id":"a-1","name":"Ann","dbPath":"x","createdAt":1,"devices":[],
          "lastSyncAt":1710670001}]})";

  EXPECT_EQ(updated(before, ann)["members"][0]["lastSyncAt"], 1710670001);
}

TEST(RosterDocument, SaysNothingOfADateOrDayThatIsNotKnown) {
  ImportedMember empty = ann;
  empty.exportedAt.reset();
  empty.firstDay.reset();

  const json entry = updated(R"({"version":1,"members":[]})", empty)["members"][0];

  EXPECT_FALSE(entry.contains("lastSyncAt"));
  EXPECT_EQ(entry["backfill"], (json{{"done", true}}));
}

struct UnreadableCase {
  std::string name;
  std::string text;
};

class UnreadableRoster : public testing::TestWithParam<UnreadableCase> {};

TEST_P(UnreadableRoster, IsRefusedAndLeftAlone) {
  const TemporaryFolder folder;
  folder.write("members.json", GetParam().text);

  EXPECT_THROW(RosterDocument(folder / "members.json"), Failure);

  EXPECT_EQ(fileContents(folder / "members.json"), GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, UnreadableRoster,
    testing::Values(UnreadableCase{"Empty", ""},
                    UnreadableCase{"Torn", R"({"version":1,"members":[{"id)"},
                    UnreadableCase{"NoObject", "[]"},
                    UnreadableCase{"NoMembers", R"({"version":1})"},
                    UnreadableCase{"MemberWithoutDevices",
                                   R"({"version":1,"members":[{"id":"a","name":"A","dbPath":"x",
                                       "createdAt":1}]})"},
                    UnreadableCase{"InvalidText", "{\"version\":1,\"members\":[],\"a\":\"\xff\"}"}),
    [](const auto& test) { return test.param.name; });

/// What reading the roster in `folder` is refused with, in English.
std::string refusal(const TemporaryFolder& folder) {
  try {
    const RosterDocument roster(folder / "members.json");
    return "none";
  } catch (const Failure& error) {
    return error.text(SummaryLang::en);
  }
}

TEST(RosterDocument, RefusesAFolderInItsPlace) {
  const TemporaryFolder folder;
  std::filesystem::create_directory(folder / "members.json");

  EXPECT_EQ(refusal(folder),
            "the roster " + (folder / "members.json").string() +
                " is no regular file and was left alone");
}

TEST(RosterDocument, SaysWhyALinkCannotBeRead) {
  const TemporaryFolder folder;
  std::filesystem::create_symlink("unmounted/roster.json", folder / "members.json");

  EXPECT_EQ(refusal(folder),
            "the roster " + (folder / "members.json").string() +
                " cannot be read and was left alone: No such file or directory");
  EXPECT_TRUE(std::filesystem::is_symlink(folder / "members.json"));
}

TEST(RosterDocument, KeepsTheValuesOfNumbersNotTheirSpelling) {
  const json after = updated(
      R"({"version":1,"members":[],"a":2.50,"b":18446744073709551615,"c":12345678901234567890123})",
      ann);

  EXPECT_EQ(after["a"], 2.5);
  EXPECT_EQ(after["b"].get<std::uint64_t>(), UINT64_MAX);
  EXPECT_EQ(after["c"], 12345678901234567890123.0);
}

TEST(RosterDocument, KeepsTheModeOfTheFile) {
  for (const unsigned mode : {0640U, 0600U, 0664U, 0400U}) {
    const TemporaryFolder folder;
    folder.write("members.json", R"({"version":1,"members":[]})");
    std::filesystem::permissions(folder / "members.json", perms(mode));
    RosterDocument roster(folder / "members.json");
    roster.put(ann);

    roster.write();

    EXPECT_EQ(std::filesystem::status(folder / "members.json").permissions(), perms(mode));
    EXPECT_EQ(written(folder)["members"].size(), 1U);
  }
}

TEST(RosterDocument, KeepsOwnerAndGroupWhereItMay) {
  if (geteuid() != 0) GTEST_SKIP() << "only the administrator may give a file away";
  const TemporaryFolder folder;
  const std::filesystem::path path = folder.write("members.json", R"({"version":1,"members":[]})");
  ASSERT_EQ(chown(path.c_str(), 1234, 5678), 0);
  std::filesystem::permissions(path, perms(0640));
  RosterDocument roster(path);
  roster.put(ann);

  roster.write();

  struct stat status {};
  ASSERT_EQ(stat(path.c_str(), &status), 0);
  EXPECT_EQ(status.st_uid, 1234U);
  EXPECT_EQ(status.st_gid, 5678U);
  EXPECT_EQ(status.st_mode & 0777U, 0640U);
}

/// A roster with an unknown key that holds `depth` - 1 arrays in each other.
std::string nested(int depth) {
  const auto count = static_cast<std::size_t>(depth - 1);
  return R"({"version":1,"members":[],"more":)" + std::string(count, '[') +
         std::string(count, ']') + R"(,"text":"[[[\"[[["})";
}

TEST(RosterDocument, TakesUnknownValuesNestedAHundredDeepAndNoDeeper) {
  EXPECT_EQ(updated(nested(100), ann)["members"].size(), 1U);

  for (const int depth : {101, 1000000}) {
    const TemporaryFolder folder;
    const std::string text = nested(depth);
    folder.write("members.json", text);

    EXPECT_EQ(refusal(folder),
              "the roster " + (folder / "members.json").string() +
                  " is nested more than 100 deep and was left alone");
    EXPECT_EQ(fileContents(folder / "members.json"), text);
  }
}

TEST(RosterDocument, FailsWhereItCannotWrite) {
  const TemporaryFolder folder;
  std::filesystem::create_directory(folder / "members.json.new");
  folder.write("members.json.new/occupied", "");
  RosterDocument roster(folder / "members.json");
  roster.put(ann);

  EXPECT_THROW(roster.write(), std::system_error);

  EXPECT_FALSE(std::filesystem::exists(folder / "members.json"));
}

}  // namespace
