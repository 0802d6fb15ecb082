// The keys of a roster, one by one.

#include "roster/Roster.h"
#include "roster/RosterFile.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <ostream>
#include <string>

namespace {

using nlohmann::json;
using nlohmann::ordered_json;

struct KeyCase {
  std::string name;
  std::string pointer;  ///< the key's place in a full file
  std::string place;    ///< how a failure names it
  json wrong;           ///< a value of another type
  std::string expects;  ///< what the failure says the value is not
};

void PrintTo(const KeyCase& key, std::ostream* stream) { *stream << key.pointer; }

class RequiredKey : public RosterFile, public testing::WithParamInterface<KeyCase> {
protected:
  static json::json_pointer pointer() { return json::json_pointer(GetParam().pointer); }
};

TEST_P(RequiredKey, MustBeThere) {
  json file = fullFile();
  file[pointer().parent_pointer()].erase(pointer().back());
  EXPECT_EQ(failureOf(file.dump()), prefix() + GetParam().place + " is missing");
}

TEST_P(RequiredKey, MustBeOfItsType) {
  json file = fullFile();
  file[pointer()] = GetParam().wrong;
  EXPECT_EQ(failureOf(file.dump()), prefix() + GetParam().place + GetParam().expects);
}

TEST_P(RequiredKey, MustNotBeNull) {
  json file = fullFile();
  file[pointer()] = nullptr;
  EXPECT_EQ(failureOf(file.dump()), prefix() + GetParam().place + GetParam().expects);
}

constexpr const char* notString = " is not a string";
constexpr const char* notNumber = " is not a number";

INSTANTIATE_TEST_SUITE_P(
    Keys, RequiredKey,
    testing::Values(
        KeyCase{"Version", "/version", "version", "1", " is not an integer"},
        KeyCase{"VersionFraction", "/version", "version", 1.5, " is not an integer"},
        KeyCase{"VersionBeyondIntegers", "/version", "version", 1e30, " is not an integer"},
        KeyCase{"Members", "/members", "members", json::object(), " is not an array"},
        KeyCase{"Id", "/members/0/id", "members[0].id", 7, notString},
        KeyCase{"Name", "/members/0/name", "members[0].name", json::array(), notString},
        KeyCase{"DbPath", "/members/0/dbPath", "members[0].dbPath", true, notString},
        KeyCase{"CreatedAt", "/members/0/createdAt", "members[0].createdAt", "0", notNumber},
        KeyCase{"Devices", "/members/0/devices", "members[0].devices", "x", " is not an array"},
        KeyCase{"Token", "/members/0/devices/0/token", "members[0].devices[0].token", 1, notString},
        KeyCase{"PairedAt",
                "/members/0/devices/0/pairedAt",
                "members[0].devices[0].pairedAt",
                false,
                notNumber},
        KeyCase{"Through",
                "/members/0/devices/0/history/through",
                "members[0].devices[0].history.through",
                20240301,
                notString},
        KeyCase{"Done",
                "/members/0/backfill/done",
                "members[0].backfill.done",
                "yes",
                " is not a boolean"}),
    [](const auto& test) { return test.param.name; });

class OptionalKey : public RosterFile, public testing::WithParamInterface<KeyCase> {
protected:
  static json::json_pointer pointer() { return json::json_pointer(GetParam().pointer); }

  /// The member of `file`, encoded again.
  json reloaded(const json& file) {
    write(file.dump());
    Roster loaded = roster();
    loaded.load();
    return json::parse(ordered_json(Roster::File{1, loaded.members()}).dump());
  }
};

TEST_P(OptionalKey, MayBeMissingOrNull) {
  json without = fullFile();
  without[pointer().parent_pointer()].erase(pointer().back());
  json null = fullFile();
  null[pointer()] = nullptr;

  EXPECT_EQ(reloaded(without), without);
  EXPECT_EQ(reloaded(null), without);
}

TEST_P(OptionalKey, MustBeOfItsTypeWhenThere) {
  json file = fullFile();
  file[pointer()] = GetParam().wrong;
  EXPECT_EQ(failureOf(file.dump()), prefix() + GetParam().place + GetParam().expects);
}

INSTANTIATE_TEST_SUITE_P(
    Keys, OptionalKey,
    testing::Values(
        KeyCase{"LastSyncAt", "/members/0/lastSyncAt", "members[0].lastSyncAt", "now", notNumber},
        KeyCase{"Backfill",
                "/members/0/backfill",
                "members[0].backfill.frontier",
                true,
                " is wanted of what is not an object"},
        KeyCase{"Model", "/members/0/devices/0/model", "members[0].devices[0].model", 1, notString},
        KeyCase{"DeviceName",
                "/members/0/devices/0/deviceName",
                "members[0].devices[0].deviceName",
                json::object(),
                notString},
        KeyCase{"LastSeenAt",
                "/members/0/devices/0/lastSeenAt",
                "members[0].devices[0].lastSeenAt",
                "",
                notNumber},
        KeyCase{"History",
                "/members/0/devices/0/history",
                "members[0].devices[0].history.through",
                "2024",
                " is wanted of what is not an object"},
        KeyCase{"Key", "/members/0/devices/0/key", "members[0].devices[0].key", 1, notString},
        KeyCase{"HistoryEarliest",
                "/members/0/devices/0/history/earliest",
                "members[0].devices[0].history.earliest",
                1,
                notString},
        KeyCase{"Frontier",
                "/members/0/backfill/frontier",
                "members[0].backfill.frontier",
                1,
                notString},
        KeyCase{"BackfillEarliest",
                "/members/0/backfill/earliest",
                "members[0].backfill.earliest",
                1,
                notString},
        KeyCase{"CompleteFrom",
                "/members/0/backfill/completeFrom",
                "members[0].backfill.completeFrom",
                1,
                notString}),
    [](const auto& test) { return test.param.name; });

TEST_F(RosterFile, RefusesAMemberThatIsNoObject) {
  EXPECT_EQ(failureOf(R"({"version": 1, "members": ["Ann"]})"),
            prefix() + "members[0].id is wanted of what is not an object");
}

TEST_F(RosterFile, NamesTheSecondMemberWhenThatIsBroken) {
  json file = fullFile();
  file["members"].push_back(file["members"][0]);
  file["members"][1].erase("devices");
  EXPECT_EQ(failureOf(file.dump()), prefix() + "members[1].devices is missing");
}

}  // namespace
