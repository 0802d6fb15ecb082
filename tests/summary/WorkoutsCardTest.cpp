// The card of the workouts.

#include "summary/Cards.h"
#include "summary/CardsTest.h"
#include "support/MemorySource.h"
#include "support/SummaryPrinters.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace {

using Operation = MemorySource::Operation;
using testing::ElementsAre;

constexpr double infiniteMinutes = std::numeric_limits<double>::infinity();

class WorkoutsCard : public CardsTest {
protected:
  void train(const std::string& code, int count, double minutes = 30) {
    for (int workout = 0; workout < count; ++workout) {
      source.trained.push_back({"2024-03-01", code, minutes});
    }
  }
};

TEST_F(WorkoutsCard, CountsTheWorkoutsOfNinetyDays) {
  train("Running", 2, 45.25);
  train("Yoga", 1, 29.9);
  source.trained.push_back({"2023-12-17", "Running", 1000});
  source.trained.push_back({"2023-12-18", "Running", 1});
  source.trained.push_back({"2024-03-17", "Running", 1});
  source.trained.push_back({"2024-03-18", "Running", 1000});

  const SummaryCard workouts = card("workouts");

  EXPECT_EQ(workouts.metrics[0], figure("Workouts · last 90 days", 5, "", uncounted, "5"));
  EXPECT_DOUBLE_EQ(workouts.metrics[1].value.value_or(0), 122.4);
  EXPECT_EQ(workouts.metrics[1].text, "2h 2m");
  EXPECT_EQ(workouts.metrics[1].samples, uncounted);
  EXPECT_EQ(workouts.metrics[2], gap("Main activities", "Running×4、Yoga×1", DataState::present));
  EXPECT_EQ(workouts.state, DataState::present);
  EXPECT_EQ(workouts.needsDevice, std::nullopt);
}

TEST_F(WorkoutsCard, IsWrittenInChinese) {
  train("TraditionalStrengthTraining", 2, 30);
  train("UnknownCode", 1, 5);

  EXPECT_THAT(card("workouts", SummaryLang::zh).metrics,
              ElementsAre(figure("训练次数 · 近 90 天", 3, " 次", uncounted, "3 次"),
                          figure("总时长", 65, "", uncounted, "1 小时 5 分"),
                          gap("主要运动类型", "力量训练×2、UnknownCode×1", DataState::present)));
}

TEST_F(WorkoutsCard, NamesThreeActivitiesAtMostByTheirNumberThenTheirCode) {
  train("Yoga", 2);
  train("Walking", 2);
  train("Running", 1);
  train("HighIntensityIntervalTraining", 3);

  EXPECT_EQ(card("workouts").metrics[2].text,
            "High Intensity Interval Training×3、Walking×2、Yoga×2");
}

TEST_F(WorkoutsCard, KeepsTheOrderThatTheDataSourceGives) {
  // A source that breaks its own rule shows that nothing is sorted here.
  struct Unsorted final : SummaryDataSource {
    RecordedDays recordedDays() const override { return {}; }
    std::vector<std::string> devices() const override { return {}; }
    std::set<std::string> presentTypes() const override { return {}; }
    std::int64_t recordCount() const override { return 0; }
    RecordCounts yearlyCounts() const override { return {}; }
    std::map<std::string, double> dailyTotals(std::string_view, std::string_view,
                                              std::string_view) const override {
      return {};
    }
    std::vector<double> values(std::string_view, std::string_view,
                               std::string_view) const override {
      return {};
    }
    std::optional<DailyValue> latestValue(std::string_view) const override { return {}; }
    std::vector<SleepSegment> sleepSegments(std::string_view, std::string_view) const override {
      return {};
    }
    WorkoutStats workoutStats(std::string_view, std::string_view) const override {
      return {.count = 10, .minutes = 59.6, .byType = {{"B", 1}, {"A", 5}, {"C", 2}, {"D", 2}}};
    }
  };
  const Unsorted unsorted;
  const SummaryEngine engine(unsorted, 0, SummaryLang::en, {});

  const SummaryCard workouts = Cards::all({engine, {}, {}, false})[4];

  EXPECT_EQ(workouts.metrics[1].text, "1h 0m");
  EXPECT_EQ(workouts.metrics[2].text, "B×1、A×5、C×2");
}

TEST_F(WorkoutsCard, LeavesOutTheHoursBelowOne) {
  train("Running", 1, 59.4);

  EXPECT_EQ(card("workouts").metrics[1], figure("Total time", 59.4, "", uncounted, "59m"));
  EXPECT_EQ(card("workouts", SummaryLang::zh).metrics[1].text, "59 分");
}

TEST_F(WorkoutsCard, IsMadeOfTimesThatAreNoTimes) {
  train("Running", 1, infiniteMinutes);

  EXPECT_EQ(card("workouts").metrics[1].state, DataState::present);
}

TEST_F(WorkoutsCard, SaysThatThereWereNone) {
  const SummaryCard workouts = card("workouts");

  EXPECT_THAT(
      workouts.metrics,
      ElementsAre(
          gap("Workouts · last 90 days", "", DataState::absentExpected),
          gap("Total time", "", DataState::absentExpected),
          gap("Main activities", "no workouts in the last 90 days", DataState::absentExpected)));
  EXPECT_EQ(workouts.state, DataState::absentExpected);
  EXPECT_EQ(workouts.needsDevice, std::nullopt);
  EXPECT_EQ(card("workouts", SummaryLang::zh).metrics[2].text, "近 90 天没有训练记录");
}

TEST_F(WorkoutsCard, WaitsForWorkoutsWhileHistoryFillsIn) {
  source.covered.backfilling = true;

  const SummaryCard workouts = card("workouts");

  EXPECT_THAT(
      workouts.metrics,
      ElementsAre(
          gap("Workouts · last 90 days", "", DataState::backfilling),
          gap("Total time", "", DataState::backfilling),
          gap("Main activities", "no workouts in the last 90 days", DataState::backfilling)));
  EXPECT_EQ(workouts.state, DataState::backfilling);
}

TEST_F(WorkoutsCard, DoesNotClaimThatThereWereNoneWhenTheyCannotBeRead) {
  train("Running", 1);
  source.failing = {Operation::workoutStats};

  const SummaryCard workouts = card("workouts");

  EXPECT_THAT(workouts.metrics,
              ElementsAre(gap("Workouts · last 90 days", "", DataState::absentSuspicious),
                          gap("Total time", "", DataState::absentSuspicious),
                          gap("Main activities", unauthorized, DataState::absentSuspicious)));
  EXPECT_EQ(workouts.state, DataState::absentSuspicious);
}

TEST_F(WorkoutsCard, DoesNotClaimThatUnreadableWorkoutsAreStillToCome) {
  source.covered.backfilling = true;
  source.failing = {Operation::workoutStats};

  EXPECT_EQ(card("workouts").metrics[2],
            gap("Main activities", unauthorized, DataState::absentSuspicious));
}

}  // namespace
