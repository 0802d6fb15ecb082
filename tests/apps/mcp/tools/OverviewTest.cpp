#include "mcp/tools/Tools.h"
#include "support/Family.h"
#include "support/Golden.h"
#include "support/Moment.h"
#include "support/ToolCaller.h"
#include "support/ZoneGuard.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <string>

namespace {

using Json = nlohmann::json;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

std::string overviewOf(const Household& household, const Json& arguments = Json::object(),
                       SummaryLang lang = SummaryLang::en) {
  return ToolCaller(household, lang).of(arguments, Tools::overview);
}

TEST(GetOverview, HasNeitherOpeningNorSignature) {
  Household household;
  household.add("m1", "Ann");

  EXPECT_THAT(overviewOf(household), StartsWith("[Data coverage]\nRange:none\n"));
  EXPECT_THAT(overviewOf(household), EndsWith("smart scale)"));
  EXPECT_THAT(overviewOf(household, Json::object(), SummaryLang::zh),
              StartsWith("【数据覆盖说明】\n覆盖区间:无\n"));
}

TEST(GetOverview, IsAboutThePersonWhoIsNamed) {
  Household household;
  household.add("m1", "Ann").addRecord({.type = "BodyMass", .value_num = 61});
  household.add("m2", "Ben").addRecord({.type = "BodyMass", .value_num = 82});

  EXPECT_THAT(overviewOf(household, {{"person", "m1"}}), HasSubstr("Weight: 61.0 kg"));
  EXPECT_THAT(overviewOf(household, {{"person", " Ben\t"}}), HasSubstr("Weight: 82.0 kg"));
}

TEST(GetOverview, IsGivenWithoutTheWorkoutsThatCannotBeRead) {
  Household household;
  household.add("m1", "Ann")
      .addRecords(
          {{.type = "BodyMass", .source_name = "Scale", .start_day = "2015-01-01", .value_num = 61},
           {.type = "BodyMass",
            .source_name = "Scale",
            .start_day = "2024-03-01",
            .value_num = 62}})
      .run("DROP TABLE workouts");

  const std::string overview = overviewOf(household);

  EXPECT_THAT(overview,
              HasSubstr("· Workouts\n    Main activities: no data received (permission may be off; "
                        "unconfirmed)\n· Body\n    Weight: 62.0 kg"));
  EXPECT_THAT(overview, Not(HasSubstr("no workouts")));
  EXPECT_THAT(overview, HasSubstr("\nUncertain:Activity、Workouts\n"));
}

TEST(GetOverview, CountsItsPeriodsFromTheMachinesDay) {
  Household household;
  household.add("m1", "Ann")
      .addRecords({{.type = "StepCount", .start_day = "2024-02-16", .value_num = 1000},
                   {.type = "StepCount", .start_day = "2024-03-18", .value_num = 3000}});
  const double lateEvening = moment("2024-03-17 20:00:00 +0000");
  const auto overviewIn = [&](const std::string& name) {
    const ZoneGuard zone(name);
    return ToolCaller(household, SummaryLang::en, lateEvening).of(Json::object(), Tools::overview);
  };

  // In Shanghai it is the 18th already, whose thirtieth day before is the 17th of February.
  EXPECT_THAT(overviewIn("UTC"), HasSubstr("last 30 days: 1,000 (1 samples)"));
  EXPECT_THAT(overviewIn("America/New_York"), HasSubstr("last 30 days: 1,000 (1 samples)"));
  EXPECT_THAT(overviewIn("Asia/Shanghai"), HasSubstr("last 30 days: 3,000 (1 samples)"));
}

TEST(GetOverview, ShowsTheSyncAndWhetherItIsOld) {
  const TestDatabase database;
  Member member;
  member.id = "m1";
  member.name = "Ann";
  member.dbPath = database.path();
  member.lastSyncAt = moment("2024-03-14 12:00:00 +0000");
  Household household;
  household.add(member);
  const std::string stale =
      "\n⚠️ This data hasn't been updated in over 3 days and may be stale.\n";

  const std::string fresh =
      ToolCaller(household, SummaryLang::en, testNow).of(Json::object(), Tools::overview);
  const std::string old =
      ToolCaller(household, SummaryLang::en, testNow + 1).of(Json::object(), Tools::overview);

  EXPECT_THAT(fresh, HasSubstr("\nLast synced:2024-03-14 12:00\n"));
  EXPECT_THAT(fresh, Not(HasSubstr(stale)));
  EXPECT_THAT(old, HasSubstr("\nLast synced:2024-03-14 12:00" + stale));
}

TEST(GetOverview, TellsWhatTheRosterKnowsOfTheBackfill) {
  TestDatabase database;
  database.addRecord({.type = "StepCount", .start_day = "2024-03-01", .value_num = 1});
  Member member;
  member.id = "m1";
  member.name = "Ann";
  member.dbPath = database.path();
  member.backfill = {.frontier = "2024-03-01",
                     .earliest = "2020-01-01",
                     .done = false,
                     .completeFrom = "2024-03-01"};
  Household filling;
  filling.add(member);
  member.backfill->done = true;
  Household filled;
  filled.add(member);

  EXPECT_THAT(overviewOf(filling),
              HasSubstr("\nComplete from:2024-03-01 onward (earlier data may be partial)\n"
                        "History is still being filled in; older data may be missing(reached "
                        "2024-03-01)\n"));
  EXPECT_THAT(overviewOf(filled),
              HasSubstr("\nComplete from:2020-01-01 onward (earlier data may be partial)\n"
                        "Collected:Activity\n"));
}

TEST(GetOverview, IsTheSameForAMemberWhoIsKnownAlready) {
  Household household;
  household.add("m1", "Ann").addRecord({.type = "BodyMass", .value_num = 61});
  household.add("m2", "Ben");
  ToolCaller caller(household);

  const std::string known = caller.of({{"person", "m2"}}, [](const Tools::Call& call) {
    return Tools::overviewOf(call.roster.member("m1").value(), call);
  });

  EXPECT_EQ(known, caller.of({{"person", "m1"}}, Tools::overview));
}

struct MemberCase {
  std::string id;
  std::string file;
};

TEST(GoldenGetOverview, SummarisesEveryKindOfMember) {
  const Family family;

  for (const auto& [id, file] : {MemberCase{"ann", "watch"},
                                 MemberCase{"ben", "phone_filling_in"},
                                 MemberCase{"cleo", "no_records"}}) {
    const std::string name = "get_overview/" + file;
    const Json arguments{{"person", id}};
    EXPECT_TRUE(matchesGolden(name + ".en.txt", overviewOf(family.household(), arguments)));
    EXPECT_TRUE(matchesGolden(name + ".zh.txt",
                              overviewOf(family.household(), arguments, SummaryLang::zh)));
  }
}

}  // namespace
