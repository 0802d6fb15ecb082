#include "apps/sample/WrittenHousehold.h"
#include "platform/Files.h"
#include "platform/ReceiverError.h"
#include "roster/Roster.h"
#include "sample/household/Household.h"
#include "store/HealthStore.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <set>
#include <string>
#include <vector>

namespace {

using namespace std::chrono_literals;

Options small(std::uint64_t seed = 1) {
  return {.out = {}, .members = 2, .years = 1, .records = 3000, .seed = seed, .today = {}};
}

constexpr const char* everyRecord =
    "SELECT group_concat(line, char(10)) FROM (SELECT type || '|' || source_name || '|' ||"
    " ifnull(device, '') || '|' || ifnull(unit, '') || '|' || start_date || '|' ||"
    " ifnull(start_day, '') || '|' || end_date || '|' || creation_date || '|' || value || '|' ||"
    " ifnull(value_num, '') AS line FROM records ORDER BY rowid)";
constexpr const char* everyWorkout =
    "SELECT group_concat(line, char(10)) FROM (SELECT activity_type || source_name || start_date ||"
    " end_date || duration_min || ifnull(hr_avg, '') || ifnull(humidity_pct, '') AS line"
    " FROM workouts ORDER BY rowid)";

TEST(SampleHousehold, IsTheSameForTheSameSeedAndDay) {
  const WrittenHousehold first(small());
  const WrittenHousehold second(small());

  for (const std::string id : {"ann-01", "ben-02"}) {
    EXPECT_EQ(first.texts(id, everyRecord), second.texts(id, everyRecord)) << id;
    EXPECT_EQ(first.texts(id, everyWorkout), second.texts(id, everyWorkout)) << id;
  }
}

TEST(SampleHousehold, IsAnotherForAnotherSeedOrDay) {
  const WrittenHousehold first(small(1));
  const WrittenHousehold otherSeed(small(2));
  const WrittenHousehold otherDay(small(1), 2026y / 11 / 21);

  EXPECT_NE(first.texts("ann-01", everyRecord), otherSeed.texts("ann-01", everyRecord));
  EXPECT_NE(first.texts("ann-01", everyRecord), otherDay.texts("ann-01", everyRecord));
}

TEST(SampleHousehold, DoesNotDependOnWhoElseLivesInIt) {
  Options alone = small();
  alone.members = 1;

  EXPECT_EQ(WrittenHousehold(alone).texts("ann-01", everyRecord),
            WrittenHousehold(small()).texts("ann-01", everyRecord));
}

TEST(SampleHousehold, NamesEveryDatabaseInARosterThatLoads) {
  Options options = small();
  options.members = 5;
  WrittenHousehold household(options);
  Roster roster(household.folder / "root/members.json", household.quiet, [] { return 0.0; });

  roster.load();

  std::set<std::string> ids;
  for (const Member& member : roster.members()) {
    ids.insert(member.id);
    EXPECT_TRUE(std::filesystem::path(member.dbPath).is_absolute());
    EXPECT_NO_THROW(HealthStore(member.dbPath, {}, household.quiet).coverage()) << member.id;
  }
  EXPECT_THAT(ids, testing::ElementsAre("ann-01", "ben-02", "clara-04", "david-05", "mei-03"));
}

TEST(SampleHousehold, IsNotWrittenOverARoster) {
  WrittenHousehold household(small());
  const std::filesystem::path roster = household.folder / "root/members.json";
  const std::optional<std::string> before = fileContents(roster);
  Options again = small(2);
  again.out = household.folder / "root";
  Progress progress(household.report, false, [] { return 0.0; });

  EXPECT_THROW(writeHousehold(again, sampleDay, household.report, progress), ReceiverError);
  EXPECT_EQ(fileContents(roster), before);
}

TEST(SampleHousehold, IsNotWrittenOverAMembersDatabase) {
  WrittenHousehold household(small());
  std::filesystem::remove(household.folder / "root/members.json");
  Options again = small(2);
  again.out = household.folder / "root";
  Progress progress(household.report, false, [] { return 0.0; });

  EXPECT_THROW(writeHousehold(again, sampleDay, household.report, progress), ReceiverError);
  EXPECT_FALSE(std::filesystem::exists(household.folder / "root/members.json"));
}

TEST(SampleHousehold, GivesMeiAnEmptyDatabaseWithCompleteStatistics) {
  Options options = small();
  options.members = 3;
  const WrittenHousehold household(options);

  EXPECT_EQ(household.texts("mei-03", "SELECT COUNT(*) FROM records"),
            std::vector<std::string>{"0"});
  EXPECT_EQ(household.texts("mei-03", "SELECT v FROM stat_meta"), std::vector<std::string>{"1"});
}

TEST(SampleHousehold, LeavesTheDatabasesWithAWriteAheadLog) {
  const WrittenHousehold household(small());

  EXPECT_EQ(household.texts("ann-01", "PRAGMA journal_mode"), std::vector<std::string>{"wal"});
}

TEST(SampleHousehold, ReportsEveryMemberInOneLine) {
  const WrittenHousehold household(small());

  EXPECT_THAT(household.report.str(),
              testing::MatchesRegex("Ann \\(ann-01\\): [0-9],[0-9]+ records, [0-9]+ workouts\n"
                                    "Ben \\(ben-02\\): [0-9]+,[0-9]+ records, [0-9]+ workouts\n"));
}

}  // namespace
