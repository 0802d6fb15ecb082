#pragma once
// The catalogue of metrics: what can be asked for by name, where it is stored, how a day is made of
// it.

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

/// A metric that has one value a day. The order is that of the catalogue.
enum class HealthMetric {
  steps,
  distance,
  flights,
  activeEnergy,
  restingHeartRate,
  heartRate,
  hrv,
  respiratoryRate,
  oxygenSaturation,
  vo2max,
  weight,
  bmi,
  bodyFat,
  exerciseMinutes,
  standMinutes,
  sleep,
};

/// How the values of one day become the day's value.
enum class Aggregation {
  cumulative,      ///< the sum of each source, then the largest: sources overlap, so never add them
  median,          ///< the median of all measurements
  asleepPerNight,  ///< minutes asleep of the night that begins on the day
};

/// One row of the catalogue.
struct MetricInfo {
  HealthMetric metric;
  std::string_view rawValue;   ///< the key callers use: "resting_heart_rate"
  std::string_view storeType;  ///< the type of the stored records: "RestingHeartRate"
  std::string_view unit;       ///< the unit the records are stored in; "" for a pure number
  Aggregation aggregation;
};

inline constexpr std::size_t metricCount = 16;

/// All metrics in catalogue order.
// clang-format off
inline constexpr std::array<MetricInfo, metricCount> metricTable{{
    {HealthMetric::steps,             "steps",              "StepCount",                 "count",       Aggregation::cumulative},
    {HealthMetric::distance,          "distance",           "DistanceWalkingRunning",    "km",          Aggregation::cumulative},
    {HealthMetric::flights,           "flights",            "FlightsClimbed",            "count",       Aggregation::cumulative},
    {HealthMetric::activeEnergy,      "active_energy",      "ActiveEnergyBurned",        "kcal",        Aggregation::cumulative},
    {HealthMetric::restingHeartRate,  "resting_heart_rate", "RestingHeartRate",          "count/min",   Aggregation::median},
    {HealthMetric::heartRate,         "heart_rate",         "HeartRate",                 "count/min",   Aggregation::median},
    {HealthMetric::hrv,               "hrv",                "HeartRateVariabilitySDNN",  "ms",          Aggregation::median},
    {HealthMetric::respiratoryRate,   "respiratory_rate",   "RespiratoryRate",           "count/min",   Aggregation::median},
    {HealthMetric::oxygenSaturation,  "oxygen_saturation",  "OxygenSaturation",          "%",           Aggregation::median},
    {HealthMetric::vo2max,            "vo2max",             "VO2Max",                    "mL/min·kg",   Aggregation::median},
    {HealthMetric::weight,            "weight",             "BodyMass",                  "kg",          Aggregation::median},
    {HealthMetric::bmi,               "bmi",                "BodyMassIndex",             "",            Aggregation::median},
    {HealthMetric::bodyFat,           "body_fat",           "BodyFatPercentage",         "%",           Aggregation::median},
    {HealthMetric::exerciseMinutes,   "exercise_minutes",   "AppleExerciseTime",         "min",         Aggregation::cumulative},
    {HealthMetric::standMinutes,      "stand_minutes",      "AppleStandTime",            "min",         Aggregation::cumulative},
    {HealthMetric::sleep,             "sleep",              "SleepAnalysis",             "min",         Aggregation::asleepPerNight},
}};
// clang-format on

/// The row of `metric`.
const MetricInfo& infoOf(HealthMetric metric);

/// The metric whose key is exactly `rawValue`, letter case included.
std::optional<HealthMetric> metricNamed(std::string_view rawValue);

/// Every metric as key and unit, "steps(count), ...", in catalogue order. One text for both
/// languages.
std::string metricCatalog();
