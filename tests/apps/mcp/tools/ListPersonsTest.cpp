#include "mcp/tools/Tools.h"
#include "support/Family.h"
#include "support/Golden.h"
#include "support/Moment.h"
#include "support/ToolCaller.h"
#include "support/ZoneGuard.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <chrono>
#include <optional>
#include <string>
#include <vector>

namespace {

using Json = nlohmann::json;

const std::string warning =
    "\n\n🔴 Multiple members: every later query must name a person. There is no "
    "combined-household view.";
const std::string chineseWarning =
    "\n\n🔴 有多个成员:后续每次查询都必须指定 person,不存在「全家合计」这种口径。";

std::string listOf(const Household& household, SummaryLang lang = SummaryLang::en) {
  return ToolCaller(household, lang).of(Json::object(), Tools::listPersons);
}

/// A member whose database is at `file`.
Member memberAt(const std::string& file) {
  Member member;
  member.id = "m1";
  member.name = "Ann";
  member.dbPath = file;
  return member;
}

TEST(ListPersons, IsNoErrorWithoutMembers) {
  const Household nobody;

  EXPECT_EQ(listOf(nobody), "No members on this Mac yet.");
  EXPECT_EQ(listOf(nobody, SummaryLang::zh), "这台电脑上还没有任何成员。");
}

TEST(ListPersons, GivesASingleMemberOneLine) {
  Household household;
  household.add("m1", "Ann")
      .addRecords({{.start_day = "2024-03-01", .value_num = 1},
                   {.start_day = "2024-03-17", .value_num = 1}});

  EXPECT_EQ(listOf(household), "· Ann (person=m1): 2 records, 2024-03-01 ~ 2024-03-17");
  EXPECT_EQ(listOf(household, SummaryLang::zh),
            "· Ann (person=m1):2 条记录,2024-03-01 ~ 2024-03-17");
}

TEST(ListPersons, GroupsTheDigitsOfTheCount) {
  Household household;
  household.add("m1", "Ann").addRecords(std::vector<TestRecord>(1234));

  EXPECT_EQ(listOf(household), "· Ann (person=m1): 1,234 records, 2024-03-01 ~ 2024-03-01");
}

TEST(ListPersons, ShowsThatThereIsNoDataYet) {
  Household household;
  household.add("m1", "Ann");

  EXPECT_EQ(listOf(household), "· Ann (person=m1): 0 records,  ~ ");
  EXPECT_EQ(listOf(household, SummaryLang::zh), "· Ann (person=m1):0 条记录, ~ ");
}

TEST(ListPersons, EndsWithTheLastSync) {
  const TestDatabase database;
  Member member = memberAt(database.path());
  member.lastSyncAt = moment("2024-03-16 23:30:59 +0000");
  Household household;
  household.add(member);

  EXPECT_EQ(listOf(household), "· Ann (person=m1): 0 records,  ~ , last synced 2024-03-16 23:30");
  EXPECT_EQ(listOf(household, SummaryLang::zh),
            "· Ann (person=m1):0 条记录, ~ ,最近同步 2024-03-16 23:30");
}

TEST(ListPersons, ShowsTheSyncInTheMachinesTime) {
  Household household;
  Member member = memberAt(household.nowhere());
  member.lastSyncAt = moment("2024-03-10 07:30:00 +0000");
  household.add(member);

  {
    const ZoneGuard zone("Asia/Shanghai");
    EXPECT_EQ(listOf(household), "· Ann (person=m1), last synced 2024-03-10 15:30");
  }
  {
    // Half an hour after the clocks went from two to three.
    const ZoneGuard zone("America/New_York");
    EXPECT_EQ(listOf(household), "· Ann (person=m1), last synced 2024-03-10 03:30");
  }
}

TEST(ListPersons, ShowsASyncAtTheBeginningOfTime) {
  Household household;
  Member member = memberAt(household.nowhere());
  member.lastSyncAt = 0;
  household.add(member);

  EXPECT_EQ(listOf(household), "· Ann (person=m1), last synced 1970-01-01 00:00");
}

TEST(ListPersons, LeavesOutTheDataThatCannotBeRead) {
  const TemporaryFolder folder;
  TestDatabase noDatabase;
  noDatabase.replaceFile("this is no database, however long the text that stands here may be");
  TestDatabase noTable;
  noTable.run("DROP TABLE records");

  for (const std::string& file : {(folder / "missing.sqlite").string(),
                                  (folder / "missing" / "health.sqlite").string(),
                                  folder.path().string(),
                                  std::string(),
                                  noDatabase.path(),
                                  noTable.path()}) {
    Household household;
    household.add(memberAt(file));

    EXPECT_EQ(listOf(household), "· Ann (person=m1)") << file;
    EXPECT_EQ(listOf(household, SummaryLang::zh), "· Ann (person=m1)") << file;
  }
}

TEST(ListPersons, GoesOnAfterAMemberWhoseDataCannotBeRead) {
  Household household;
  household.addAt("m1", "Ann", household.nowhere());
  household.add("m2", "Ben").addRecord({.start_day = "2024-03-01", .value_num = 1});

  EXPECT_EQ(listOf(household),
            "· Ann (person=m1)\n"
            "· Ben (person=m2): 1 records, 2024-03-01 ~ 2024-03-01" +
                warning);
}

/// Members of whom each keeps the database to himself, but for the last one.
class LockedHousehold {
public:
  explicit LockedHousehold(int locked) {
    for (int number = 1; number <= locked; ++number) {
      const std::string id = "m" + std::to_string(number);
      owners.push_back(household.add(id, "Ann").useRollbackJournal().writer());
      owners.back().exec("BEGIN EXCLUSIVE");
    }
    household.add("last", "Ben").addRecord({.start_day = "2024-03-01", .value_num = 1});
  }

  Household household;

private:
  std::vector<Database> owners;
};

/// A clock that is `seconds` further at every look.
Clock clockInStepsOf(double seconds) {
  return [seconds, now = testNow]() mutable { return now += seconds; };
}

std::string listWith(const Household& household, const Clock& clock, int patienceMilliseconds) {
  Logger log(std::nullopt, Logger::Level::error, false, clock);
  Roster roster(household.rosterFile(), log, clock);
  roster.load();
  const Json none = Json::object();
  return Tools::listPersons(
      {none, roster, log, SummaryLang::en, clock, DigitGrouping{}, patienceMilliseconds});
}

TEST(ListPersons, WaitsForAllLockedDatabasesTogether) {
  const LockedHousehold locked(8);
  constexpr int patienceMilliseconds = 1000;
  const auto began = std::chrono::steady_clock::now();

  const std::string answer = listWith(locked.household, systemTime, patienceMilliseconds);

  const auto took = std::chrono::steady_clock::now() - began;
  EXPECT_GE(took, std::chrono::milliseconds(patienceMilliseconds));
  EXPECT_LT(took, std::chrono::milliseconds(4 * patienceMilliseconds));
  EXPECT_THAT(answer, testing::StartsWith("· Ann (person=m1)\n· Ann (person=m2)\n"));
  EXPECT_THAT(answer, testing::HasSubstr("\n· Ben (person=last): 1 records, "));
}

TEST(ListPersons, TriesALockedDatabaseOnceWithoutPatience) {
  const LockedHousehold locked(2);
  const auto began = std::chrono::steady_clock::now();

  const std::string answer = listWith(locked.household, systemTime, 0);

  EXPECT_LT(std::chrono::steady_clock::now() - began, std::chrono::seconds(30));
  EXPECT_THAT(answer, testing::HasSubstr("\n· Ben (person=last): 1 records, "));
}

/// The machine's clock is set forward, or the members before take their time: both are no waiting.
TEST(ListPersons, LosesNoPatienceButByWaiting) {
  const LockedHousehold locked(2);
  constexpr int patienceMilliseconds = 100;
  const auto began = std::chrono::steady_clock::now();

  listWith(locked.household, clockInStepsOf(60), patienceMilliseconds);

  EXPECT_GE(std::chrono::steady_clock::now() - began,
            std::chrono::milliseconds(patienceMilliseconds));
}

TEST(ListPersons, GainsNoPatienceFromAClockThatIsSetBack) {
  const LockedHousehold locked(1);

  EXPECT_THAT(listWith(locked.household, clockInStepsOf(-3600), 1),
              testing::HasSubstr("\n· Ben (person=last): 1 records, "));
}

TEST(ListPersons, WarnsOfSeveralMembers) {
  Household household;
  household.add("m1", "Zoe");
  household.add("m2", "Ann");

  EXPECT_EQ(listOf(household),
            "· Zoe (person=m1): 0 records,  ~ \n· Ann (person=m2): 0 records,  ~ " + warning);

  household.add("m3", "Zoe");
  EXPECT_EQ(listOf(household, SummaryLang::zh),
            "· Zoe (person=m1):0 条记录, ~ \n"
            "· Ann (person=m2):0 条记录, ~ \n"
            "· Zoe (person=m3):0 条记录, ~ " +
                chineseWarning);
}

TEST(ListPersons, TakesNoNotesOfArguments) {
  Household household;
  household.add("m1", "Ann");

  EXPECT_EQ(ToolCaller(household).of({{"person", "nobody"}, {"date", 7}}, Tools::listPersons),
            "· Ann (person=m1): 0 records,  ~ ");
}

TEST(ListPersons, KeepsBracesInNamesAsTheyAre) {
  Household household;
  Member member = memberAt(household.nowhere());
  member.name = "{0}{1}";
  household.add(member);

  EXPECT_EQ(listOf(household), "· {0}{1} (person=m1)");
}

TEST(GoldenListPersons, ListsAFamily) {
  const Family family;

  EXPECT_TRUE(matchesGolden("list_persons/family.en.txt", listOf(family.household())));
  EXPECT_TRUE(
      matchesGolden("list_persons/family.zh.txt", listOf(family.household(), SummaryLang::zh)));
}

}  // namespace
