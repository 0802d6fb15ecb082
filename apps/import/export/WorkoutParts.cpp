#include "import/export/WorkoutParts.h"
#include "import/export/TypeNames.h"

#include <utility>

namespace {

std::optional<std::string> owned(std::optional<std::string_view> text) {
  return text ? std::optional<std::string>(*text) : std::nullopt;
}

void addTo(std::optional<double>& sum, std::optional<double> part) {
  if (part) sum = sum.value_or(0) + *part;
}

}  // namespace

WorkoutParts::WorkoutParts(const LocalStamp& start, const Attributes& attributes,
                           LocalStamps& stamps)
    : sourceVersion(owned(attributes.find("sourceVersion"))) {
  WorkoutEntry& entry = workout.entry;
  entry.start = start.text();
  entry.activity_type =
      TypeNames::ofActivity(attributes.find("workoutActivityType").value_or(std::string_view()));
  entry.end = stamps.local(attributes.find("endDate").value_or(std::string_view())).text();
  entry.source = attributes.find("sourceName").value_or(std::string_view());
  if (const auto created = attributes.find("creationDate")) {
    workout.creationDate = stamps.local(*created).text();
  }
  entry.duration_min =
      converted(attributes.find("duration"), attributes.find("durationUnit"), "min");
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
    const auto complete = [&](std::optional<double>& figure, std::string_view name) {
      if (figure) return;
      figure = converted(attributes.find(name), unit, "count/min");
    };
    complete(entry.hr_avg, "average");
    complete(entry.hr_min, "minimum");
    complete(entry.hr_max, "maximum");
  } else if (type == "ActiveEnergyBurned") {
    addTo(entry.active_energy_kcal, converted(sum, unit, "kcal"));
  } else if (type == "BasalEnergyBurned") {
    addTo(entry.basal_energy_kcal, converted(sum, unit, "kcal"));
  } else if (type.starts_with("Distance")) {
    // A triathlon has one distance per discipline; its total distance is their sum.
    addTo(entry.distance_km, converted(sum, unit, "km"));
  }
}

namespace {

/// The exported reading. By its key it is a percentage, whatever the scale of its number ("6900 %"
/// is 69 %), so all of it is stored unchanged. Absent when there is none.
std::optional<WorkoutHumidity> humidityOf(std::string_view value,
                                          const std::optional<std::string>& sourceVersion) {
  if (value.empty()) return std::nullopt;
  WorkoutHumidity humidity;
  humidity.encoding = "xml_percent";
  humidity.raw_unit = "%";
  humidity.source_version = sourceVersion;
  const std::optional<Quantity> quantity = Units::quantity(value);
  if (quantity && (quantity->unit.empty() || quantity->unit == "%")) {
    humidity.raw_value = quantity->number;
  } else {
    humidity.raw_text = value;
  }
  return humidity;
}

}  // namespace

void WorkoutParts::addMetadata(const Attributes& attributes) {
  const std::string_view key = attributes.find("key").value_or(std::string_view());
  const std::string_view value = attributes.find("value").value_or(std::string_view());
  WorkoutEntry& entry = workout.entry;

  if (key == "HKIndoorWorkout") {
    if (!entry.indoor && (value == "0" || value == "1")) entry.indoor = value == "1";
    return;
  }
  if (key == "HKWeatherHumidity") {
    if (!entry.humidity) entry.humidity = humidityOf(value, sourceVersion);
    return;
  }
  std::optional<Quantity> quantity = Units::quantity(value);
  if (!quantity) return;
  const auto complete = [&](std::optional<double>& figure, std::string_view unit) {
    if (!figure) figure = converted(*quantity, unit);
  };
  if (key == "HKAverageMETs") {
    // The key determines the unit, so a missing unit is not ambiguous.
    if (quantity->unit.empty()) quantity->unit = "kcal/hr·kg";
    complete(entry.avg_mets, "kcal/hr·kg");
  } else if (key == "HKElevationAscended") {
    complete(entry.elevation_m, "m");
  } else if (key == "HKWeatherTemperature") {
    complete(entry.temp_c, "degC");
  }
}

ExportedWorkout WorkoutParts::finished() && {
  WorkoutEntry& entry = workout.entry;
  if (!entry.distance_km) {
    entry.distance_km = converted(distance.number, distance.unit, "km");
  }
  if (!entry.active_energy_kcal) {
    entry.active_energy_kcal = converted(energy.number, energy.unit, "kcal");
  }
  return std::move(workout);
}

/// `number` in `target`; absent when it is not a number.
std::optional<double> WorkoutParts::converted(std::optional<std::string_view> number,
                                              std::optional<std::string_view> unit,
                                              std::string_view target) {
  const std::optional<double> value = number ? Units::number(*number) : std::nullopt;
  if (!value) return std::nullopt;
  return converted({.number = *value, .unit = unit.value_or(std::string_view())}, target);
}

std::optional<double> WorkoutParts::converted(const Quantity& quantity, std::string_view target) {
  const std::optional<double> result = Units::converted(quantity, target);
  if (!result) {
    workout.unknownUnit = true;
  } else if (quantity.unit != target) {
    workout.converted = true;
  }
  return result;
}
