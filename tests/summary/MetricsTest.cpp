#include "summary/Metrics.h"

#include <gtest/gtest.h>

#include <string>

namespace {

struct MetricCase {
  HealthMetric metric;
  std::string key;
  std::string storeType;
  std::string unit;
  Aggregation aggregation;
};

void PrintTo(const MetricCase& metric, std::ostream* stream) { *stream << metric.key; }

class MetricRow : public testing::TestWithParam<MetricCase> {};

TEST_P(MetricRow, IsFoundByMetricAndByKey) {
  const MetricInfo& info = infoOf(GetParam().metric);

  EXPECT_EQ(info.metric, GetParam().metric);
  EXPECT_EQ(info.rawValue, GetParam().key);
  EXPECT_EQ(info.storeType, GetParam().storeType);
  EXPECT_EQ(info.unit, GetParam().unit);
  EXPECT_EQ(info.aggregation, GetParam().aggregation);
  EXPECT_EQ(metricNamed(GetParam().key), GetParam().metric);
}

using enum HealthMetric;
using enum Aggregation;

INSTANTIATE_TEST_SUITE_P(
    Catalog, MetricRow,
    testing::Values(
        MetricCase{steps, "steps", "StepCount", "count", cumulative},
        MetricCase{distance, "distance", "DistanceWalkingRunning", "km", cumulative},
        MetricCase{flights, "flights", "FlightsClimbed", "count", cumulative},
        MetricCase{activeEnergy, "active_energy", "ActiveEnergyBurned", "kcal", cumulative},
        MetricCase{restingHeartRate, "resting_heart_rate", "RestingHeartRate", "count/min", median},
        MetricCase{heartRate, "heart_rate", "HeartRate", "count/min", median},
        MetricCase{hrv, "hrv", "HeartRateVariabilitySDNN", "ms", median},
        MetricCase{respiratoryRate, "respiratory_rate", "RespiratoryRate", "count/min", median},
        MetricCase{oxygenSaturation, "oxygen_saturation", "OxygenSaturation", "%", median},
        MetricCase{vo2max, "vo2max", "VO2Max", "mL/min·kg", median},
        MetricCase{weight, "weight", "BodyMass", "kg", median},
        MetricCase{bmi, "bmi", "BodyMassIndex", "", median},
        MetricCase{bodyFat, "body_fat", "BodyFatPercentage", "%", median},
        MetricCase{exerciseMinutes, "exercise_minutes", "AppleExerciseTime", "min", cumulative},
        MetricCase{standMinutes, "stand_minutes", "AppleStandTime", "min", cumulative},
        MetricCase{sleep, "sleep", "SleepAnalysis", "min", asleepPerNight}),
    [](const auto& test) { return test.param.key; });

TEST(MetricTable, HasSixteenRows) { EXPECT_EQ(metricTable.size(), 16U); }

class UnknownMetric : public testing::TestWithParam<std::string> {};

TEST_P(UnknownMetric, HasNoRow) { EXPECT_EQ(metricNamed(GetParam()), std::nullopt); }

INSTANTIATE_TEST_SUITE_P(Keys, UnknownMetric,
                         testing::Values("", "Steps", "STEPS", "steps ", " steps", "step",
                                         "StepCount"));

TEST(MetricCatalog, ListsEveryMetricWithItsUnit) {
  EXPECT_EQ(metricCatalog(),
            "steps(count), distance(km), flights(count), active_energy(kcal), "
            "resting_heart_rate(count/min), heart_rate(count/min), hrv(ms), "
            "respiratory_rate(count/min), oxygen_saturation(%), vo2max(mL/min·kg), weight(kg), "
            "bmi(无单位), body_fat(%), exercise_minutes(min), stand_minutes(min), sleep(min)");
}

}  // namespace
