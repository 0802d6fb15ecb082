#pragma once
// The catalogue of metrics: their keys, where they are stored, and how a day's value is computed.

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

/// A metric with one value per day, in the order of the catalogue.
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

/// How a day's value is computed from the day's records.
enum class Aggregation {
  cumulative,      ///< the largest sum of any source: sources overlap, so never add them
  median,          ///< the median of all measurements
  asleepPerNight,  ///< minutes asleep in the night that begins on the day
};

/// One row of the catalogue.
struct MetricInfo {
  HealthMetric metric;
  std::string_view rawValue;   ///< the key for callers: "resting_heart_rate"
  std::string_view storeType;  ///< the type of the stored records: "RestingHeartRate"
  std::string_view unit;       ///< the unit of the stored records; "" for a pure number
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

/// The metric with exactly this key, case-sensitive; `nullopt` when there is none.
std::optional<HealthMetric> metricNamed(std::string_view rawValue);

/// Every metric as key and unit, "steps(count), ...", in catalogue order. The text is the same in
/// both languages.
std::string metricCatalog();
