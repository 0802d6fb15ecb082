#include "import/WorkoutParts.h"
#include "import/TypeNames.h"

#include <utility>

namespace {

std::optional<std::string> owned(std::optional<std::string_view> text) {
  return text ? std::optional<std::string>(*text) : std::nullopt;
}

void addTo(std::optional<double>& sum, std::optional<double> part) {
  if (part) sum = sum.value_or(0) + *part;
}

}  // namespace

WorkoutParts::WorkoutParts(std::string_view startDate, const Attributes& attributes)
    : sourceVersion(owned(attributes.find("sourceVersion"))) {
  WorkoutEntry& entry = workout.entry;
  entry.start = startDate;
  entry.activity_type =
      TypeNames::ofActivity(attributes.find("workoutActivityType").value_or(std::string_view()));
  entry.end = attributes.find("endDate").value_or(std::string_view());
  entry.source = attributes.find("sourceName").value_or(std::string_view());
  workout.creationDate = owned(attributes.find("creationDate"));
  entry.duration_min = converted(
      attributes.find("duration"), attributes.find("durationUnit"), Units::minutes, "min");
  distance = {owned(attributes.find("totalDistance")), owned(attributes.find("totalDistanceUnit"))};
  energy = {owned(attributes.find("totalEnergyBurned")),
            owned(attributes.find("totalEnergyBurnedUnit"))};
}

void WorkoutParts::addStatistics(const Attributes& attributes) {
  const std::string_view type =
      TypeNames::ofRecord(attributes.find("type").value_or(std::string_view()));
  const std::optional<std::string_view> unit = attributes.find("unit");
  const std::optional<std::string_view> sum = attributes.find("sum");
  WorkoutEntry& entry = workout.entry;

  if (type == "HeartRate") {
    const auto beats = [&](std::string_view name) {
      return converted(attributes.find(name), unit, Units::beatsPerMinute, "count/min");
    };
    entry.hr_avg = beats("average");
    entry.hr_min = beats("minimum");
    entry.hr_max = beats("maximum");
  } else if (type == "ActiveEnergyBurned") {
    addTo(entry.active_energy_kcal, converted(sum, unit, Units::kilocalories, "kcal"));
  } else if (type == "BasalEnergyBurned") {
    addTo(entry.basal_energy_kcal, converted(sum, unit, Units::kilocalories, "kcal"));
  } else if (type.starts_with("Distance")) {
    // A triathlon has one of these for each way of moving; its distance is all of them.
    addTo(entry.distance_km, converted(sum, unit, Units::kilometres, "km"));
  }
}

void WorkoutParts::addMetadata(const Attributes& attributes) {
  const std::string_view key = attributes.find("key").value_or(std::string_view());
  const std::string_view value = attributes.find("value").value_or(std::string_view());
  WorkoutEntry& entry = workout.entry;

  if (key == "HKIndoorWorkout") {
    if (value == "0" || value == "1") entry.indoor = value == "1";
    return;
  }
  if (key == "HKWeatherHumidity") {
    setHumidity(value);
    return;
  }
  const std::optional<Quantity> quantity = Units::quantity(value);
  if (!quantity) return;
  if (key == "HKAverageMETs") {
    entry.avg_mets = converted(*quantity, Units::mets, quantity->unit);
  } else if (key == "HKElevationAscended") {
    entry.elevation_m = converted(*quantity, Units::metres, "m");
  } else if (key == "HKWeatherTemperature") {
    entry.temp_c = converted(*quantity, Units::celsius, "degC");
  }
}

/// The scale of the exported number is not known ("6900 %" is 69 %), so all of it is kept as it is.
void WorkoutParts::setHumidity(std::string_view value) {
  WorkoutHumidity humidity;
  humidity.encoding = "xml_percent";
  humidity.source_version = sourceVersion;
  if (const std::optional<Quantity> quantity = Units::quantity(value)) {
    humidity.raw_value = quantity->number;
    if (!quantity->unit.empty()) humidity.raw_unit = quantity->unit;
  } else {
    humidity.raw_text = value;
    if (value.ends_with('%')) humidity.raw_unit = "%";
  }
  workout.entry.humidity = std::move(humidity);
}

ExportedWorkout WorkoutParts::finished() && {
  WorkoutEntry& entry = workout.entry;
  if (!entry.distance_km) {
    entry.distance_km = converted(distance.number, distance.unit, Units::kilometres, "km");
  }
  if (!entry.active_energy_kcal) {
    entry.active_energy_kcal = converted(energy.number, energy.unit, Units::kilocalories, "kcal");
  }
  return std::move(workout);
}

/// `number` in `target`; absent when it is no number.
std::optional<double> WorkoutParts::converted(std::optional<std::string_view> number,
                                              std::optional<std::string_view> unit,
                                              Conversion conversion, std::string_view target) {
  const std::optional<double> value = number ? Units::number(*number) : std::nullopt;
  if (!value) return std::nullopt;
  return converted(
      {.number = *value, .unit = unit.value_or(std::string_view())}, conversion, target);
}

std::optional<double> WorkoutParts::converted(const Quantity& quantity, Conversion conversion,
                                              std::string_view target) {
  const std::optional<double> result = conversion(quantity);
  if (!result) {
    workout.unknownUnit = true;
  } else if (quantity.unit != target) {
    workout.converted = true;
  }
  return result;
}
