// Which workout an identifier means, whether its times can be read, and how many samples are too
// many.

#include "platform/ReceiverError.h"
#include "store/HealthStore.h"
#include "support/TestDatabase.h"
#include "support/WorkoutSamples.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <optional>
#include <string>

namespace {

const std::string noSuchWorkout = "没有这次训练，请从训练清单获取 workout_id";

/// The message of the ReceiverError with which the identifier is refused; "" when it is not.
std::string missingFailure(const TestDatabase& database, const std::string& identifier) {
  try {
    database.open().workoutHeartRate(identifier, std::nullopt, 1, 0);
  } catch (const ReceiverError& error) {
    return error.what();
  }
  return "";
}

TEST(WorkoutOfAnIdentifier, ComesWithAllThatIsStoredOfIt) {
  TestWorkout workout = hourOfRunning();
  workout.distance_km = 10.5;
  workout.indoor = 0;
  TestDatabase database;
  database.addWorkouts({workout, {.activity_type = "Yoga"}})
      .addHumidity(identifierOf(workout), R"({"raw_value":55,"encoding":"xml_percent"})");
  const HealthStore store = database.open();

  const WorkoutHeartRate heartRate =
      store.workoutHeartRate(identifierOf(workout), std::nullopt, 1, 0);

  EXPECT_EQ(heartRate.workout, store.workoutDetails({}, {}).at(1));
  EXPECT_EQ(heartRate.workout.humidity->raw_value, 55);
  EXPECT_EQ(heartRate.workout.workout_id(), identifierOf(workout));
  EXPECT_EQ(heartRate.person_id, "");
}

TEST(WorkoutOfAnIdentifier, NeedsNoTableOfHumidity) {
  TestDatabase database;
  database.addWorkout(hourOfRunning()).run("DROP TABLE workout_humidity");

  EXPECT_EQ(missingFailure(database, identifierOf(hourOfRunning())), "");
}

TEST(WorkoutOfAnIdentifier, IsMeantExactly) {
  TestDatabase database;
  database.addWorkout(hourOfRunning());
  const std::string identifier = identifierOf(hourOfRunning());
  std::string upperCase = identifier;
  for (char& character : upperCase) {
    if (character >= 'a' && character <= 'f') character = static_cast<char>(character - 'a' + 'A');
  }
  std::string capital = identifier;
  capital.front() = 'W';
  std::string otherDigit = identifier;
  otherDigit.back() = otherDigit.back() == '0' ? '1' : '0';
  ASSERT_NE(upperCase, identifier);

  for (const std::string& wrong : {upperCase,
                                   capital,
                                   otherDigit,
                                   identifier + "0",
                                   identifier.substr(0, 65),
                                   identifier + " ",
                                   std::string("w_") + std::string(64, 'g'),
                                   std::string("w_"),
                                   std::string()}) {
    EXPECT_EQ(missingFailure(database, wrong), noSuchWorkout) << wrong;
  }
  EXPECT_EQ(missingFailure(database, identifier), "");
}

TEST(WorkoutOfAnIdentifier, IsTheLastStoredOfSeveral) {
  TestWorkout workout = hourOfRunning();
  // Without a source the table takes the same workout again.
  workout.source_name = std::nullopt;
  TestDatabase database;
  for (const double average : {101.0, 103.0, 102.0}) {
    workout.hr_avg = average;
    database.addWorkout(workout);
  }

  EXPECT_EQ(
      database.open().workoutHeartRate(identifierOf(workout), {}, 1, 0).workout.hr_avg.value(),
      102);
}

TEST(WorkoutOfAnIdentifier, IsListedWithADay) {
  TestWorkout workout = hourOfRunning();
  workout.start_day = std::nullopt;
  TestDatabase database;
  database.addWorkout(workout);

  EXPECT_EQ(missingFailure(database, identifierOf(workout)), noSuchWorkout);
}

struct TimesCase {
  std::string name;
  std::string start;
  std::optional<std::string> end;
};

class UnreadableTimes : public testing::TestWithParam<TimesCase> {};

TEST_P(UnreadableTimes, MatchNoSample) {
  TestWorkout workout = hourOfRunning();
  workout.start_date = GetParam().start;
  workout.end_date = GetParam().end;
  TestDatabase database;
  database.addWorkout(workout).addRecord(sampleAfter(0));

  EXPECT_EQ(missingFailure(database, identifierOf(workout)), "训练起止时间无效，无法匹配心率");
}

INSTANTIATE_TEST_SUITE_P(
    Cases, UnreadableTimes,
    testing::Values(TimesCase{"NoStart", "", stampAfter(1)},
                    TimesCase{"Word", "now", stampAfter(1)},
                    TimesCase{"StartWithoutAZone", "2024-03-01 08:00:00", stampAfter(1)},
                    TimesCase{"StartThatIsADay", "2024-03-01", stampAfter(1)},
                    TimesCase{"NoEnd", stampAfter(0), {}}, TimesCase{"EmptyEnd", stampAfter(0), ""},
                    TimesCase{"EndOfNoDay", stampAfter(0), "2024-02-30 08:00:00 +0000"},
                    TimesCase{"NoLength", stampAfter(0), stampAfter(0)},
                    TimesCase{"NoLengthAcrossZones", stampAfter(0), "2024-03-01 16:00:00 +0800"},
                    TimesCase{"Backwards", stampAfter(1), stampAfter(0)},
                    TimesCase{"BackwardsAcrossZones", stampAfter(0), "2024-03-01 15:59:59 +0800"}),
    [](const auto& test) { return test.param.name; });

TEST(TimesOfAWorkout, AreLookedAtBeforeItsSamples) {
  TestWorkout workout = hourOfRunning();
  workout.end_date = workout.start_date;
  TestDatabase database;
  database.addWorkout(workout).run("DROP TABLE records");

  EXPECT_EQ(missingFailure(database, identifierOf(workout)), "训练起止时间无效，无法匹配心率");
}

/// Ten samples a second from stampAfter(0) on, 200001 in all, and two runs: `fitting` has 200000 of
/// them, `overfull` one more.
class HeartRateAtItsLimit : public testing::Test {
protected:
  static void SetUpTestSuite() {
    database.emplace();
    database->addWorkouts({fitting(), overfull()});
    database->run(
        "INSERT INTO records (type, source_name, unit, start_date, start_day, value, value_num)\n"
        "WITH RECURSIVE numbers(n) AS\n"
        "  (SELECT 0 UNION ALL SELECT n + 1 FROM numbers WHERE n < 200000)\n"
        "SELECT 'HeartRate', 'Watch', 'count/min',\n"
        "       strftime('%Y-%m-%d %H:%M:%S +0000', '2024-03-01 08:00:00',\n"
        "                (n / 10) || ' seconds'),\n"
        "       '2024-03-01', 60 + n % 100, 60 + n % 100 FROM numbers");
  }

  static void TearDownTestSuite() { database.reset(); }

  static TestWorkout runUntil(int second) {
    TestWorkout workout = hourOfRunning();
    workout.end_date = stampAfter(second);
    return workout;
  }

  static TestWorkout fitting() { return runUntil(20000); }
  static TestWorkout overfull() { return runUntil(20001); }

  static inline std::optional<TestDatabase> database;
};

TEST_F(HeartRateAtItsLimit, AnswersTwoHundredThousandSamples) {
  const HealthStore store = database->open();

  const WorkoutHeartRate page =
      store.workoutHeartRate(identifierOf(fitting()), std::nullopt, 5000, 195000);

  EXPECT_EQ(page.summary.count, 200000);
  EXPECT_EQ(page.summary.min_bpm, 60);
  EXPECT_EQ(page.summary.max_bpm, 159);
  EXPECT_NEAR(page.summary.sample_mean_bpm.value(), 109.5, 1e-6);
  EXPECT_EQ(page.pagination.returned_count, 5000);
  EXPECT_EQ(page.pagination.next_offset, std::nullopt);
  ASSERT_EQ(page.samples.size(), 5000U);
  EXPECT_EQ(page.samples.front().record_id, 195001);
  EXPECT_EQ(page.samples.back().record_id, 200000);
  EXPECT_EQ(page.samples.back().elapsed_seconds, 19999);
}

TEST_F(HeartRateAtItsLimit, RefusesOneMoreWhateverThePage) {
  const HealthStore store = database->open();

  for (const std::int64_t offset : {std::int64_t{0}, std::int64_t{2147483647}}) {
    try {
      store.workoutHeartRate(identifierOf(overfull()), std::nullopt, 1, offset);
      ADD_FAILURE() << "there are too many samples";
    } catch (const ReceiverError& error) {
      EXPECT_STREQ(error.what(), "单次训练心率超过 200000 条，拒绝截断，请检查训练时间范围");
    }
  }
}

TEST_F(HeartRateAtItsLimit, CountsTheSelectedSourceAlone) {
  const WorkoutHeartRate heartRate =
      database->open().workoutHeartRate(identifierOf(overfull()), "iPhone", 1, 0);

  EXPECT_EQ(heartRate.summary.count, 0);
  EXPECT_EQ(heartRate.available_sources, std::vector<std::string>{"Watch"});
}

}  // namespace
