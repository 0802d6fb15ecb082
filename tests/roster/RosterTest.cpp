#include "platform/Files.h"
#include "roster/Roster.h"
#include "roster/RosterFile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace {

using nlohmann::json;
using nlohmann::ordered_json;
using testing::StartsWith;

Member memberOf(const std::string& id, const std::string& name) {
  Member member;
  member.id = id;
  member.name = name;
  return member;
}

PairedDevice deviceOf(const std::string& token, double pairedAt) {
  PairedDevice device;
  device.token = token;
  device.pairedAt = pairedAt;
  return device;
}

TEST_F(RosterFile, IsEmptyBeforeItIsLoaded) {
  write(fullFile().dump());
  EXPECT_TRUE(roster().members().empty());
}

TEST_F(RosterFile, LoadsEveryField) {
  write(fullFile().dump());
  Roster loaded = roster();

  loaded.load();

  EXPECT_EQ(loaded.members(), std::vector{fullMember()});
  EXPECT_EQ(logged(), "[1970-01-01 00:00:00] i 名册:1 个成员\n");
}

TEST_F(RosterFile, LoadsAMemberWithNothingOptional) {
  write(R"({"version": 1, "members": [
    {"id": "ben-02", "name": "Ben", "dbPath": "", "createdAt": 0, "devices": []}]})");
  Roster loaded = roster();

  loaded.load();

  EXPECT_EQ(loaded.members(), std::vector{memberOf("ben-02", "Ben")});
}

TEST_F(RosterFile, LoadsADeviceWithNothingOptional) {
  json file = fullFile();
  file["/members/0/devices"_json_pointer] = json::parse(R"([{"token": "t", "pairedAt": 5}])");
  write(file.dump());
  Roster loaded = roster();

  loaded.load();

  EXPECT_EQ(loaded.members().at(0).devices, std::vector{deviceOf("t", 5)});
}

TEST_F(RosterFile, LoadsAnEmptyHousehold) {
  write(R"({"version": 1, "members": []})");
  Roster loaded = roster();

  loaded.load();

  EXPECT_TRUE(loaded.members().empty());
  EXPECT_EQ(logged(), "[1970-01-01 00:00:00] i 名册:0 个成员\n");
}

TEST_F(RosterFile, KeepsTheOrderOfTheMembers) {
  json file = fullFile();
  for (const char* id : {"zoe-02", "ben-03"}) {
    json member = file["members"][0];
    member["id"] = id;
    file["members"].push_back(member);
  }
  write(file.dump());
  Roster loaded = roster();

  loaded.load();

  std::vector<std::string> ids;
  for (const Member& member : loaded.members()) ids.push_back(member.id);
  EXPECT_EQ(ids, (std::vector<std::string>{"ann-01", "zoe-02", "ben-03"}));
  EXPECT_EQ(logged(), "[1970-01-01 00:00:00] i 名册:3 个成员\n");
}

TEST_F(RosterFile, IgnoresUnknownKeysAtEveryLevel) {
  json file = fullFile();
  for (const char* place : {"",
                            "/members/0",
                            "/members/0/devices/0",
                            "/members/0/devices/0/history",
                            "/members/0/backfill"}) {
    file[json::json_pointer(place)]["added"] = {{"later", {1, 2, 3}}};
  }
  write(file.dump());
  Roster loaded = roster();

  loaded.load();

  EXPECT_EQ(loaded.members(), std::vector{fullMember()});
}

TEST_F(RosterFile, TakesTheLastOfTwoEqualKeys) {
  write(R"({"version": "x", "version": 1, "members": [
    {"id": "a", "name": "Old", "name": "New", "dbPath": "", "createdAt": 0, "devices": []}]})");
  Roster loaded = roster();

  loaded.load();

  EXPECT_EQ(loaded.members().at(0).name, "New");
}

TEST_F(RosterFile, TakesAWholeNumberWithAPointForAnInteger) {
  write(R"({"version": 1.0, "members": []})");
  EXPECT_NO_THROW(roster().load());
}

TEST_F(RosterFile, TakesAnyVersion) {
  write(R"({"version": -7, "members": []})");
  EXPECT_NO_THROW(roster().load());
}

TEST_F(RosterFile, ThatIsMissingLeavesTheMembersAsTheyAre) {
  write(fullFile().dump());
  Roster loaded = roster();
  loaded.load();
  std::filesystem::remove(path);

  loaded.load();

  EXPECT_EQ(loaded.members().size(), 1U);
  EXPECT_EQ(logged(), "[1970-01-01 00:00:00] i 名册:1 个成员\n");
}

TEST_F(RosterFile, ThatCannotBeReadLeavesTheMembersEmpty) {
  std::filesystem::create_directory(path);
  Roster loaded = roster();

  loaded.load();

  EXPECT_TRUE(loaded.members().empty());
  EXPECT_EQ(logged(), "");
  EXPECT_TRUE(std::filesystem::is_directory(path));
}

TEST_F(RosterFile, IsReplacedByALaterLoad) {
  write(fullFile().dump());
  Roster loaded = roster();
  loaded.load();
  write(R"({"version": 1, "members": []})");

  loaded.load();

  EXPECT_TRUE(loaded.members().empty());
}

TEST_F(RosterFile, ThatIsBrokenIsMovedAside) {
  const std::string contents = R"({"version": 1})";

  EXPECT_EQ(failureOf(contents), prefix() + "members is missing");

  EXPECT_FALSE(std::filesystem::exists(path));
  EXPECT_EQ(fileContents(backup), contents);
  EXPECT_EQ(logged(), "[1970-01-01 00:00:00] ! " + prefix() + "members is missing\n");
}

TEST_F(RosterFile, ThatIsBrokenLeavesNothingForTheNextStart) {
  failureOf("{");
  Roster next = roster();

  next.load();

  EXPECT_TRUE(next.members().empty());
}

TEST_F(RosterFile, ThatCannotBeMovedAsideIsStillRefused) {
  std::filesystem::create_directories(backup / "in the way");

  EXPECT_EQ(failureOf(R"({"version": 1})"), prefix() + "members is missing");

  EXPECT_EQ(fileContents(path), R"({"version": 1})");
}

class NoRoster : public RosterFile, public testing::WithParamInterface<std::string> {};

TEST_P(NoRoster, IsRefusedWithWhatTheDecoderSays) {
  const std::string failure = failureOf(GetParam());

  EXPECT_THAT(failure, StartsWith(prefix()));
  EXPECT_GT(failure.size(), prefix().size());
  EXPECT_EQ(fileContents(backup), GetParam());
}

INSTANTIATE_TEST_SUITE_P(Texts, NoRoster,
                         testing::Values("", "{", "members", "[]", "null", "7", "\"members\"",
                                         R"({"version": 1, "members": []} trailing)",
                                         R"({"version": 1, "members": [],})",
                                         R"({"version": 1e999, "members": []})",
                                         "{\"version\": 1, \"members\": [], \"x\": \"\xFF\"}"));

struct CutCase {
  std::string name;
  std::string last;  ///< the file ends behind this text
  int line;
};

class CutRoster : public RosterFile, public testing::WithParamInterface<CutCase> {};

TEST_P(CutRoster, IsRefusedWithoutAQuotation) {
  constexpr int indent = 2;
  const std::string whole = fullFile().dump(indent);
  const std::size_t end = whole.find(GetParam().last) + GetParam().last.size();
  const std::string expected = prefix() + "not JSON, line " + std::to_string(GetParam().line);

  EXPECT_EQ(failureOf(whole.substr(0, end)), expected);
  EXPECT_EQ(logged(), "[1970-01-01 00:00:00] ! " + expected + "\n");
}

INSTANTIATE_TEST_SUITE_P(Places, CutRoster,
                         testing::Values(CutCase{"InADevicesKey", "\"key\": \"c2Vj", 19},
                                         CutCase{"BehindADevicesKey", "\"c2VjcmV0\"", 19},
                                         CutCase{"InTheName", "\"name\": \"An", 28}),
                         [](const auto& test) { return test.param.name; });

TEST_F(RosterFile, FindsAMemberByItsExactId) {
  write(fullFile().dump());
  Roster loaded = roster();
  loaded.load();

  EXPECT_EQ(loaded.member("ann-01"), fullMember());
  EXPECT_EQ(loaded.member("Ann-01"), std::nullopt);
  EXPECT_EQ(loaded.member("ann-0"), std::nullopt);
  EXPECT_EQ(loaded.member(""), std::nullopt);
}

TEST_F(RosterFile, FindsTheFirstOfTwoMembersWithOneId) {
  json file = fullFile();
  file["members"].push_back(file["members"][0]);
  file["members"][1]["name"] = "Other";
  write(file.dump());
  Roster loaded = roster();
  loaded.load();

  EXPECT_EQ(loaded.member("ann-01")->name, "Ann");
}

TEST(RosterEncoding, KeepsTheOrderOfTheKeys) {
  EXPECT_EQ(ordered_json(Roster::File{1, {fullMember()}}).dump(),
            R"({"version":1,"members":[{"id":"ann-01","name":"Ann","dbPath":"/data/ann.sqlite",)"
            R"("createdAt":1700000000.5,"lastSyncAt":1709247272.25,"devices":[{"token":"token-1",)"
            R"("model":"iPhone15,2","deviceName":"Ann's iPhone","pairedAt":1700000001.0,)"
            R"("lastSeenAt":1709247000.0,"history":{"through":"2024-03-01",)"
            R"("earliest":"2016-01-02"},"key":"c2VjcmV0"}],"backfill":{"frontier":"2023-05-01",)"
            R"("earliest":"2016-01-02","done":false,"completeFrom":"2023-05-02"}}]})");
}

TEST(RosterEncoding, LeavesOutWhatIsAbsent) {
  Member member = memberOf("ben-02", "Ben");
  member.devices = {deviceOf("t", 5)};
  EXPECT_EQ(ordered_json(member).dump(),
            R"({"id":"ben-02","name":"Ben","dbPath":"","createdAt":0.0,)"
            R"("devices":[{"token":"t","pairedAt":5.0}]})");
}

TEST(RosterEncoding, IsDecodedToTheSameFile) {
  const Roster::File file{1, {fullMember(), memberOf("ben-02", "小美")}};
  EXPECT_EQ(json::parse(ordered_json(file).dump()).get<Roster::File>(), file);
}

}  // namespace
