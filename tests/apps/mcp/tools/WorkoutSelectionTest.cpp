#include "mcp/tools/WorkoutSelection.h"
#include "support/WorkoutChoice.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using WorkoutSelection::Filters;
using WorkoutSelection::Order;
using WorkoutSelection::Page;
using WorkoutSelection::Selection;

WorkoutEntry workoutOf(const std::string& activity, const std::string& source = "Watch",
                       std::optional<bool> indoor = std::nullopt) {
  WorkoutEntry workout;
  workout.activity_type = activity;
  workout.source = source;
  workout.indoor = indoor;
  return workout;
}

/// `count` workouts, newest first, that begin at "9", "8" and so on.
std::vector<WorkoutEntry> newestFirst(int count) {
  std::vector<WorkoutEntry> workouts;
  for (int number = 0; number < count; ++number) {
    workouts.push_back(workoutOf("Running"));
    workouts.back().start = std::to_string(9 - number);
  }
  return workouts;
}

Filters activityFilter(const std::string& text) { return {text, WorkoutEnvironment::all, ""}; }

Filters sourceFilter(const std::string& source) { return {"", WorkoutEnvironment::all, source}; }

Filters environmentFilter(WorkoutEnvironment environment) { return {"", environment, ""}; }

constexpr Page everything{.limit = 200, .offset = 0};

Selection filtered(const std::vector<WorkoutEntry>& workouts, const Filters& filters) {
  return selected(workouts, filters, Order::desc, everything);
}

std::vector<std::string> startsOf(const Selection& selection) {
  std::vector<std::string> starts;
  for (const WorkoutEntry& workout : selection.page) starts.push_back(workout.start);
  return starts;
}

std::vector<std::string> activitiesOf(const Selection& selection) {
  std::vector<std::string> activities;
  for (const WorkoutEntry& workout : selection.page) activities.push_back(workout.activity_type);
  return activities;
}

TEST(WorkoutSelections, TakeEverythingWithoutFilters) {
  const Selection selection = filtered(
      {workoutOf("Yoga", "Watch", true), workoutOf("Running", "iPhone"), workoutOf("")}, {});

  EXPECT_THAT(activitiesOf(selection), ElementsAre("Yoga", "Running", ""));
  EXPECT_EQ(selection.totalCount, 3);
}

TEST(WorkoutSelections, AreEmptyWithoutWorkouts) {
  const Selection selection = filtered({}, {});

  EXPECT_EQ(selection.totalCount, 0);
  EXPECT_THAT(selection.page, IsEmpty());
  EXPECT_THAT(selection.byActivity, IsEmpty());
  EXPECT_THAT(selection.availableActivities, IsEmpty());
  EXPECT_THAT(selection.availableSources, IsEmpty());
  EXPECT_EQ(selection.nextOffset, std::nullopt);
}

TEST(WorkoutSelections, ListWhatThereIsWhateverTheFilters) {
  const std::vector<WorkoutEntry> workouts{workoutOf("Yoga", "iPhone"),
                                           workoutOf("Running", "Watch"),
                                           workoutOf("Yoga", "Apple\u00A0Watch")};

  for (const Filters& filters : {Filters{},
                                 activityFilter("Rowing"),
                                 environmentFilter(WorkoutEnvironment::indoor),
                                 sourceFilter("iPhone")}) {
    const Selection selection = filtered(workouts, filters);
    EXPECT_THAT(selection.availableActivities, ElementsAre(Pair("Running", 1), Pair("Yoga", 2)));
    EXPECT_THAT(selection.availableSources, ElementsAre("Apple\u00A0Watch", "Watch", "iPhone"));
  }
}

struct ActivityCase {
  std::string name;
  std::string text;
  std::vector<std::string> activities;
};

class ActivityFilter : public testing::TestWithParam<ActivityCase> {};

TEST_P(ActivityFilter, TakesCodesAndNamesInBothLanguages) {
  const Selection selection = filtered({workoutOf("TableTennis"),
                                        workoutOf("Tennis"),
                                        workoutOf("Walking"),
                                        workoutOf("walking"),
                                        workoutOf("SkiErg")},
                                       activityFilter(GetParam().text));

  EXPECT_EQ(activitiesOf(selection), GetParam().activities);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, ActivityFilter,
    testing::Values(ActivityCase{"Code", "TableTennis", {"TableTennis"}},
                    ActivityCase{"CodeInLowerCase", "tabletennis", {"TableTennis"}},
                    ActivityCase{"CodeInUpperCase", "TENNIS", {"Tennis"}},
                    ActivityCase{"EnglishName", "Table Tennis", {"TableTennis"}},
                    ActivityCase{"EnglishNameInAnyCase", "table TENNIS", {"TableTennis"}},
                    ActivityCase{"ChineseName", "乒乓球", {"TableTennis"}},
                    ActivityCase{"SeveralCodesOfTheText", "WALKING", {"Walking", "walking"}},
                    ActivityCase{"ChineseNameOfOneCode", "步行", {"Walking"}},
                    ActivityCase{"CodeWithoutAChineseName", "skierg", {"SkiErg"}},
                    ActivityCase{"EnglishNameOfIt", "ski erg", {"SkiErg"}},
                    ActivityCase{"PartOfAName", "Table", {}},
                    ActivityCase{"PartOfAChineseName", "乒乓", {}},
                    ActivityCase{"TwoBlanks", "Table  Tennis", {}},
                    ActivityCase{"Unknown", "Rowing", {}},
                    // The code with "ſ", which ignoring case beyond ASCII would take for an "s".
                    ActivityCase{"LetterThatIsNoASCII", "Tenni\u017F", {}}),
    [](const auto& test) { return test.param.name; });

TEST(SourceFilter, IsExact) {
  const std::vector<WorkoutEntry> workouts{workoutOf("A", "Apple Watch"),
                                           workoutOf("B", "Apple\u00A0Watch"),
                                           workoutOf("C", "apple watch"),
                                           workoutOf("D", "Apple Watch ")};

  EXPECT_THAT(activitiesOf(filtered(workouts, sourceFilter("Apple Watch"))), ElementsAre("A"));
  EXPECT_THAT(activitiesOf(filtered(workouts, sourceFilter("Apple\u00A0Watch"))), ElementsAre("B"));
  EXPECT_THAT(activitiesOf(filtered(workouts, sourceFilter("Apple Watch "))), ElementsAre("D"));
  EXPECT_THAT(activitiesOf(filtered(workouts, sourceFilter("Watch"))), IsEmpty());
}

TEST(EnvironmentFilter, NeverTakesUnrecordedForOutdoor) {
  const std::vector<WorkoutEntry> workouts{
      workoutOf("In", "Watch", true), workoutOf("Out", "Watch", false), workoutOf("Unknown")};
  const auto activities = [&workouts](WorkoutEnvironment environment) {
    return activitiesOf(filtered(workouts, environmentFilter(environment)));
  };

  EXPECT_THAT(activities(WorkoutEnvironment::all), ElementsAre("In", "Out", "Unknown"));
  EXPECT_THAT(activities(WorkoutEnvironment::indoor), ElementsAre("In"));
  EXPECT_THAT(activities(WorkoutEnvironment::outdoor), ElementsAre("Out"));
  EXPECT_THAT(activities(WorkoutEnvironment::unspecified), ElementsAre("Unknown"));
}

TEST(WorkoutFilters, AllHaveToPass) {
  const Selection selection = filtered({workoutOf("Yoga", "Watch", true),
                                        workoutOf("Yoga", "Watch", false),
                                        workoutOf("Yoga", "iPhone", true),
                                        workoutOf("Rowing", "Watch", true)},
                                       {"yoga", WorkoutEnvironment::indoor, "Watch"});

  ASSERT_EQ(selection.page.size(), 1U);
  EXPECT_EQ(selection.page.at(0), workoutOf("Yoga", "Watch", true));
}

struct PageCase {
  std::string name;
  Order order;
  Page page;
  std::vector<std::string> starts;
  std::optional<std::int64_t> next;
};

class WorkoutPage : public testing::TestWithParam<PageCase> {};

TEST_P(WorkoutPage, HoldsWhatLiesBetweenOffsetAndLimit) {
  const Selection selection = selected(newestFirst(5), {}, GetParam().order, GetParam().page);

  EXPECT_EQ(startsOf(selection), GetParam().starts);
  EXPECT_EQ(selection.nextOffset, GetParam().next);
  EXPECT_EQ(selection.totalCount, 5);
}

using Starts = std::vector<std::string>;

INSTANTIATE_TEST_SUITE_P(
    NewestFirst, WorkoutPage,
    testing::Values(PageCase{"First", Order::desc, {2, 0}, {"9", "8"}, 2},
                    PageCase{"Next", Order::desc, {2, 2}, {"7", "6"}, 4},
                    PageCase{"Last", Order::desc, {2, 4}, {"5"}, {}},
                    PageCase{"LastThatIsFull", Order::desc, {2, 3}, {"6", "5"}, {}},
                    PageCase{"All", Order::desc, {5, 0}, {"9", "8", "7", "6", "5"}, {}},
                    PageCase{"AllButOne", Order::desc, {4, 0}, {"9", "8", "7", "6"}, 4},
                    PageCase{"JustBeyond", Order::desc, {2, 5}, Starts(), {}},
                    PageCase{"FarBeyond", Order::desc, {200, 2147483647}, Starts(), {}}),
    [](const auto& test) { return test.param.name; });

INSTANTIATE_TEST_SUITE_P(
    OldestFirst, WorkoutPage,
    testing::Values(PageCase{"First", Order::asc, {2, 0}, {"5", "6"}, 2},
                    PageCase{"Next", Order::asc, {2, 2}, {"7", "8"}, 4},
                    PageCase{"Last", Order::asc, {2, 4}, {"9"}, {}},
                    PageCase{"All", Order::asc, {200, 0}, {"5", "6", "7", "8", "9"}, {}}),
    [](const auto& test) { return test.param.name; });

TEST(WorkoutTotals, CoverAllThatPassNotThePage) {
  std::vector<WorkoutEntry> workouts{
      workoutOf("Yoga"), workoutOf("Yoga"), workoutOf("Yoga"), workoutOf("Rowing")};
  workouts[0].duration_min = 10.5;
  workouts[1].duration_min = 20;
  workouts[2].distance_km = 0;
  workouts[3].duration_min = 1000;
  workouts[3].basal_energy_kcal = 1000;

  const Selection selection = selected(workouts, activityFilter("Yoga"), Order::desc, {1, 2});

  EXPECT_EQ(selection.totals[0].sum, 30.5);
  EXPECT_EQ(selection.totals[0].count, 2);
  EXPECT_EQ(selection.totals[1].sum, 0);
  EXPECT_EQ(selection.totals[1].count, 1);
  EXPECT_EQ(selection.totals[2].count, 0);
  EXPECT_EQ(selection.totals[3].count, 0);
}

TEST(WorkoutTotals, AreOfTheFirstFourMeasures) {
  WorkoutEntry workout = workoutOf("Yoga");
  workout.duration_min = 1;
  workout.distance_km = 2;
  workout.active_energy_kcal = 3;
  workout.basal_energy_kcal = 4;

  const Selection selection = filtered({workout, workout}, {});

  ASSERT_EQ(selection.totals.size(), 4U);
  for (std::size_t index = 0; index < selection.totals.size(); ++index) {
    EXPECT_EQ(selection.totals[index].sum, 2 * (static_cast<double>(index) + 1));
    EXPECT_EQ(selection.totals[index].count, 2);
  }
}

TEST(WorkoutCounts, ComeMostFrequentFirstThenByCode) {
  const Selection selection = filtered({workoutOf("Yoga"),
                                        workoutOf("Rowing"),
                                        workoutOf("Cycling"),
                                        workoutOf("Yoga"),
                                        workoutOf("Walking", "iPhone")},
                                       sourceFilter("Watch"));

  EXPECT_THAT(selection.byActivity,
              ElementsAre(Pair("Yoga", 2), Pair("Cycling", 1), Pair("Rowing", 1)));
}

TEST(WorkoutMeasures, ReadTheFieldsOfTheirKeys) {
  WorkoutEntry workout;
  workout.duration_min = 1;
  workout.distance_km = 2;
  workout.active_energy_kcal = 3;
  workout.basal_energy_kcal = 4;
  workout.hr_avg = 5;
  workout.hr_min = 6;
  workout.hr_max = 7;
  workout.elevation_m = 8;
  workout.avg_mets = 9;
  workout.temp_c = 10;
  workout.humidity_pct = 99;
  workout.humidity = WorkoutHumidity{11, "%", {}, "healthkit_value", "com.apple.Workout", {}};
  const std::vector<std::string> keys{"duration_min",
                                      "distance_km",
                                      "active_energy_kcal",
                                      "basal_energy_kcal",
                                      "hr_avg",
                                      "hr_min",
                                      "hr_max",
                                      "elevation_m",
                                      "avg_mets",
                                      "temp_c",
                                      "humidity_pct"};

  ASSERT_EQ(WorkoutSelection::measures.size(), keys.size());
  for (std::size_t index = 0; index < keys.size(); ++index) {
    EXPECT_EQ(WorkoutSelection::measures[index].key, keys[index]);
    EXPECT_EQ(WorkoutSelection::measures[index].read(workout), 1.0 + static_cast<double>(index));
    EXPECT_EQ(WorkoutSelection::measures[index].read(WorkoutEntry()), std::nullopt) << keys[index];
  }
}

}  // namespace
