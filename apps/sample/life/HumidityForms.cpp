#include "sample/life/HumidityForms.h"

#include <array>

namespace {

WorkoutHumidity percent(double value, const char* encoding, const char* bundle) {
  return {.raw_value = value,
          .raw_unit = "%",
          .raw_text = std::nullopt,
          .encoding = encoding,
          .source_bundle_id = bundle,
          .source_version = "10.1"};
}

WorkoutHumidity withoutBundle(double value, const char* encoding) {
  WorkoutHumidity humidity = percent(value, encoding, "");
  humidity.source_bundle_id.reset();
  humidity.source_version.reset();
  return humidity;
}

WorkoutHumidity withoutUnit(double value) {
  WorkoutHumidity humidity = percent(value, "healthkit_value", "com.apple.Workout");
  humidity.raw_unit.reset();
  return humidity;
}

WorkoutHumidity withoutNumber() {
  WorkoutHumidity humidity = percent(0, "healthkit_value", "com.apple.health");
  humidity.raw_value.reset();
  humidity.raw_text = "not measured";
  return humidity;
}

constexpr const char* workoutApp = "com.apple.Workout";
constexpr const char* health = "com.apple.health";
constexpr const char* healthOnDevice = "com.apple.health.3F2504E0-4F89-41D3-9A0C-0305E82C3301";
constexpr const char* runningApp = "example.pacelog";

}  // namespace

std::span<const HumidityForm> humidityForms() {
  static const std::array<HumidityForm, 14> forms{{
      {percent(55, "healthkit_percent", workoutApp), std::nullopt},
      {std::nullopt, std::nullopt},
      {percent(71.5, "healthkit_value", health), std::nullopt},
      {percent(48, "healthkit_percent", healthOnDevice), 48},
      {std::nullopt, 66},
      {percent(6200, "healthkit_percent", workoutApp), std::nullopt},
      {percent(-1, "healthkit_percent", health), std::nullopt},
      {withoutNumber(), std::nullopt},
      {withoutUnit(57), std::nullopt},
      {percent(0.6, "fraction_v2", workoutApp), std::nullopt},
      {withoutBundle(60, "legacy_percent"), 60},
      {withoutBundle(5400, "xml_percent"), std::nullopt},
      {percent(0.54, "healthkit_fraction", runningApp), std::nullopt},
      {withoutBundle(44, "healthkit_percent"), std::nullopt},
  }};
  return forms;
}

namespace {

/// The factor from the reading's own unit to the exported unit.
double exportedScale(const WorkoutHumidity& reading) {
  if (reading.encoding == "xml_percent") return 1;
  return reading.encoding.find("fraction") == std::string::npos ? 100 : 10000;
}

}  // namespace

std::optional<Decimal> exportedHumidity(const WorkoutEntry& workout) {
  const std::optional<WorkoutHumidity> reading = workout.humidityReading();
  if (!reading || !reading->raw_value) return std::nullopt;
  return Decimal::nearest(*reading->raw_value * exportedScale(*reading), 0);
}
