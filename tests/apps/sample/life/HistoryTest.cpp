#include "sample/life/History.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <set>
#include <string>
#include <utility>

namespace {

using namespace std::chrono_literals;

constexpr CivilDay today = 2026y / 11 / 20;

/// What the tests ask about a life.
class Observer final : public RecordSink {
public:
  void add(const Sample& sample) override {
    ++samples;
    const std::string day(StampText(sample.start).day());
    sourcesOfDay[day].insert(sample.source->name);
    lastEnd = std::max(lastEnd, sample.end.moment);
    const bool isNumber = std::holds_alternative<Decimal>(sample.value);
    std::string key(sample.type);
    key += '|' + sample.source->name + '|' + std::string(StampText(sample.start).text()) + '|' +
           std::to_string(sample.end.moment) + '|' +
           (isNumber ? std::get<Decimal>(sample.value).text()
                     : std::string(std::get<std::string_view>(sample.value)));
    if (!keys.insert(std::move(key)).second) ++repeated;
    if (sample.end.moment < sample.start.moment) ++backwards;
    if (sample.type == "HeartRate") daysWithPulse.insert(day);
    if (sample.type == "StepCount") steps[day] += std::get<Decimal>(sample.value).number();
  }
  void add(const Workout&) override { ++workouts; }

  int samples = 0;
  int workouts = 0;
  int repeated = 0;
  int backwards = 0;
  std::int64_t lastEnd = 0;
  std::map<std::string, std::set<std::string>> sourcesOfDay;
  std::map<std::string, double> steps;
  std::set<std::string> daysWithPulse;
  std::set<std::string> keys;
};

HistoryOptions optionsOf(std::optional<std::int64_t> records, int years = 1) {
  return {.today = today, .years = years, .seed = 1, .records = records};
}

Observer told(const Person& person, const HistoryOptions& options) {
  Observer observer;
  tellHistory(person, options, observer);
  return observer;
}

Person ann() { return household(1).at(0); }
Person ben() { return household(2).at(1); }

TEST(History, TellsNoSampleTwiceAndNoneBackwards) {
  const Observer observer = told(ann(), optionsOf(std::nullopt));

  EXPECT_EQ(observer.repeated, 0);
  EXPECT_EQ(observer.backwards, 0);
}

TEST(History, TellsNoSampleTwiceHoweverDense) {
  const Observer observer = told(ann(), optionsOf(600000));

  EXPECT_EQ(observer.repeated, 0);
}

class WantedRecords : public testing::TestWithParam<int> {};

TEST_P(WantedRecords, AreToldWithinAFewPercent) {
  const Observer observer = told(ann(), optionsOf(GetParam()));

  EXPECT_NEAR(observer.samples, GetParam(), 0.05 * GetParam());
}

INSTANTIATE_TEST_SUITE_P(Cases, WantedRecords, testing::Values(5000, 60000, 500000));

TEST(History, KeepsTheTotalsOfADayWhenItGetsDenser) {
  const Observer natural = told(ann(), optionsOf(std::nullopt));
  const Observer dense = told(ann(), optionsOf(natural.samples * 3));
  const auto sum = [](const Observer& observer) {
    double total = 0;
    for (const auto& [day, steps] : observer.steps) total += steps;
    return total;
  };

  EXPECT_NEAR(sum(dense) / sum(natural), 1, 0.03);
}

TEST(History, EndsWithTheSyncAndBeginsYearsBefore) {
  const Observer observer = told(ann(), optionsOf(10000, 2));

  EXPECT_LE(observer.lastEnd, lastSync(today).moment);
  EXPECT_EQ(observer.sourcesOfDay.begin()->first.substr(0, 7), "2024-11");
}

TEST(History, IsTheSameADayAtATime) {
  const Person person = ann();
  Observer observer;
  History history(person, optionsOf(20000));
  int days = 0;
  while (history.tellNextDay(observer)) ++days;

  EXPECT_EQ(days, 366);
  EXPECT_EQ(observer.keys, told(person, optionsOf(20000)).keys);
  EXPECT_FALSE(history.tellNextDay(observer));
}

TEST(History, HasNothingOfThoseWhoWereJustPaired) {
  const Observer observer = told(household(3).at(2), optionsOf(std::nullopt));

  EXPECT_EQ(observer.samples + observer.workouts, 0);
}

TEST(History, LeavesTheWatchAtHomeNowAndThenAndInRepairForAWeek) {
  const Observer observer = told(ann(), optionsOf(std::nullopt));
  const auto daysWithout = observer.sourcesOfDay.size() - observer.daysWithPulse.size();

  for (const char* day : {"2026-02-10", "2026-02-13", "2026-02-16"}) {
    EXPECT_FALSE(observer.daysWithPulse.contains(day)) << day;
  }
  EXPECT_GT(daysWithout, 7U);
  EXPECT_LT(daysWithout, 40U);
}

TEST(History, HasNothingFromTheFutureOfTheFirstTwoMembers) {
  const Observer observer = told(ben(), optionsOf(std::nullopt));

  EXPECT_LE(observer.lastEnd, lastSync(today).moment);
}

TEST(History, OfAPhoneAloneIsShorterThanFourHundredDaysWithItsMisdatedSample) {
  const Observer observer = told(household(5).at(4), optionsOf(std::nullopt));
  const std::string& first = observer.sourcesOfDay.begin()->first;
  const std::string& last = observer.sourcesOfDay.rbegin()->first;

  EXPECT_EQ(last, "2026-11-29");
  EXPECT_LT(AppleFormat::daysBetween(first, last), 400);
  EXPECT_GT(AppleFormat::daysBetween(first, last), 370);
}

}  // namespace
