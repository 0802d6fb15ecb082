// What get_workouts says of all workouts together, and of raw numbers, to the last digit.

#include "mcp/tools/Tools.h"
#include "mcp/tools/WorkoutSelection.h"
#include "support/ToolCaller.h"
#include "support/WorkoutChoice.h"
#include "support/WorkoutSamples.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <cstddef>
#include <cstdlib>
#include <string>
#include <vector>

namespace {

using Json = nlohmann::json;
using testing::HasSubstr;

/// Numbers whose sum depends on the order in which they are added.
std::vector<double> delicateNumbers() {
  std::vector<double> numbers;
  for (int index = 1; index <= 60; ++index) numbers.push_back(10.0 / index);
  return numbers;
}

TEST(WorkoutTotals, AreMadeOfNumbersWhoseOrderMatters) {
  const std::vector<double> numbers = delicateNumbers();
  double forwards = 0;
  double backwards = 0;
  for (std::size_t index = 0; index < numbers.size(); ++index) {
    forwards += numbers[index];
    backwards += numbers[numbers.size() - 1 - index];
  }

  EXPECT_NE(forwards, backwards);
}

TEST(WorkoutTotals, AreTheSameToTheLastBitInBothOrders) {
  std::vector<WorkoutEntry> workouts;
  for (const double number : delicateNumbers()) {
    WorkoutEntry workout;
    workout.duration_min = number;
    workout.distance_km = number / 3;
    workout.active_energy_kcal = number * 7;
    workout.basal_energy_kcal = number / 7;
    workouts.push_back(workout);
  }
  using WorkoutSelection::Order;

  const auto newestFirst = selected(workouts, {}, Order::desc, {.limit = 10, .offset = 0});
  const auto oldestFirst = selected(workouts, {}, Order::asc, {.limit = 10, .offset = 0});

  for (std::size_t measure = 0; measure < WorkoutSelection::totalledMeasures; ++measure) {
    EXPECT_EQ(newestFirst.totals[measure].sum, oldestFirst.totals[measure].sum) << measure;
    EXPECT_EQ(newestFirst.totals[measure].count, 60) << measure;
    EXPECT_EQ(oldestFirst.totals[measure].count, 60) << measure;
  }
}

TEST(WorkoutTotals, AreTheSameTextInBothOrders) {
  Household household;
  TestDatabase& database = household.add("ann", "Ann");
  int seconds = 0;
  for (const double number : delicateNumbers()) {
    seconds += 60;
    database.addWorkout({.duration_min = number,
                         .start_date = stampAfter(seconds),
                         .end_date = stampAfter(seconds + 30),
                         .distance_km = number / 3,
                         .active_energy_kcal = number * 7,
                         .basal_energy_kcal = number / 7});
  }
  ToolCaller caller(household);
  const auto totals = [&caller](const std::string& order) {
    const std::string answer = caller.of({{"order", order}, {"format", "json"}}, Tools::workouts);
    return Json::parse(answer).at("totals").dump();
  };

  EXPECT_EQ(totals("asc"), totals("desc"));
}

TEST(WorkoutSources, KeepTheOneWithoutAName) {
  Household household;
  household.add("ann", "Ann")
      .addWorkouts({{.source_name = "B", .start_date = stampAfter(0)},
                    {.source_name = "", .start_date = stampAfter(60)},
                    {.source_name = "A", .start_date = stampAfter(120)}});

  EXPECT_THAT(ToolCaller(household).of(Json::object(), Tools::workouts),
              HasSubstr("\navailable_sources: , A, B\n"));
}

struct RawCase {
  std::string name;
  std::string stored;  ///< as JSON
  std::string begins;  ///< the text that is shown begins with it
};

class RawHumidity : public testing::TestWithParam<RawCase> {};

TEST_P(RawHumidity, IsShownWithoutAnExponentAndReadsBackTheSame) {
  Household household;
  household.add("ann", "Ann")
      .addWorkout(hourOfRunning())
      .addHumidity(
          identifierOf(hourOfRunning()),
          R"({"encoding":"xml_percent","raw_unit":"%","raw_value":)" + GetParam().stored + "}");

  const std::string answer = ToolCaller(household).of(Json::object(), Tools::workouts);

  const std::string label = "raw_value=";
  const std::size_t found = answer.find(label);
  ASSERT_NE(found, std::string::npos);
  const std::size_t begin = found + label.size();
  const std::string shown = answer.substr(begin, answer.find(',', begin) - begin);
  EXPECT_EQ(shown.find_first_not_of("-.0123456789"), std::string::npos) << shown;
  EXPECT_THAT(shown, testing::StartsWith(GetParam().begins));
  EXPECT_EQ(std::strtod(shown.c_str(), nullptr), std::strtod(GetParam().stored.c_str(), nullptr));
}

INSTANTIATE_TEST_SUITE_P(
    Numbers, RawHumidity,
    testing::Values(RawCase{"HundredThousand", "100000", "100000"},
                    RawCase{"TenThousandth", "0.0001", "0.0001"},
                    RawCase{"BelowATenThousandth", "0.00012", "0.00012"},
                    RawCase{"Negative", "-1e-7", "-0.0000001"},
                    RawCase{"Smallest", "5e-324", "0.00000000000000000000"},
                    RawCase{"Large", "1e22", "10000000000000000000000"},
                    RawCase{"Largest", "1.7976931348623157e308", "17976931348623157"}),
    [](const auto& test) { return test.param.name; });

}  // namespace
