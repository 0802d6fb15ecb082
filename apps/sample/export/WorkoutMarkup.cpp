#include "sample/export/WorkoutMarkup.h"
#include "sample/export/Markup.h"
#include "sample/life/HumidityForms.h"

#include <optional>

namespace {

using ExportUnits::Quantity;
using ExportUnits::worded;
using Markup::appendAttribute;
using Markup::appendEntry;

/// Generated values have at most two decimals.
Decimal told(double value) { return Decimal::nearest(value, 2); }

std::string textOf(double value) { return told(value).text(); }

void appendEntries(std::string& text, const WorkoutEntry& entry, UnitSystem units) {
  if (entry.indoor) appendEntry(text, "HKIndoorWorkout", *entry.indoor ? "1" : "0");
  if (entry.avg_mets) {
    appendEntry(text, "HKAverageMETs", textOf(*entry.avg_mets) + " kcal/hr·kg");
  }
  if (entry.elevation_m) {
    appendEntry(
        text, "HKElevationAscended", Decimal::nearest(*entry.elevation_m * 100, 0).text() + " cm");
  }
  if (entry.temp_c) {
    Quantity weather = worded(units, "", told(*entry.temp_c), "degC");
    appendEntry(text, "HKWeatherTemperature", weather.number.append(" ").append(weather.unit));
  }
  if (const std::optional<Decimal> humidity = exportedHumidity(entry)) {
    appendEntry(text, "HKWeatherHumidity", humidity->text() + " %");
  }
}

/// One segment for the whole workout, as the watch writes it for an undivided workout.
void appendEvent(std::string& text, const Workout& workout) {
  text += "  <WorkoutEvent type=\"HKWorkoutEventTypeSegment\"";
  appendAttribute(text, "date", workout.start);
  if (workout.entry.duration_min) {
    appendAttribute(text, "duration", textOf(*workout.entry.duration_min));
    appendAttribute(text, "durationUnit", "min");
  }
  text += "/>\n";
}

void beginStatistics(std::string& text, const Workout& workout, std::string_view type) {
  text += "  <WorkoutStatistics type=\"HKQuantityTypeIdentifier";
  text += type;
  text += '"';
  appendAttribute(text, "startDate", workout.start);
  appendAttribute(text, "endDate", workout.end);
}

void appendSum(std::string& text, const Workout& workout, std::string_view type,
               std::optional<double> sum, std::string_view unit, UnitSystem units) {
  if (!sum) return;
  const Quantity quantity = worded(units, type, told(*sum), unit);
  beginStatistics(text, workout, type);
  appendAttribute(text, "sum", quantity.number);
  appendAttribute(text, "unit", quantity.unit);
  text += "/>\n";
}

std::string_view distanceTypeOf(std::string_view activity) {
  if (activity == "Cycling") return "DistanceCycling";
  if (activity == "Swimming") return "DistanceSwimming";
  if (activity == "Rowing") return "DistanceRowing";
  return "DistanceWalkingRunning";
}

void appendHeartRate(std::string& text, const Workout& workout) {
  const WorkoutEntry& entry = workout.entry;
  if (!entry.hr_avg && !entry.hr_min && !entry.hr_max) return;
  beginStatistics(text, workout, "HeartRate");
  if (entry.hr_avg) appendAttribute(text, "average", textOf(*entry.hr_avg));
  if (entry.hr_min) appendAttribute(text, "minimum", textOf(*entry.hr_min));
  if (entry.hr_max) appendAttribute(text, "maximum", textOf(*entry.hr_max));
  appendAttribute(text, "unit", "count/min");
  text += "/>\n";
}

}  // namespace

void WorkoutMarkup::append(std::string& text, const Workout& workout, std::string_view source,
                           UnitSystem units) {
  const WorkoutEntry& entry = workout.entry;
  text += " <Workout workoutActivityType=\"HKWorkoutActivityType";
  text += entry.activity_type;
  text += '"';
  if (entry.duration_min) {
    appendAttribute(text, "duration", textOf(*entry.duration_min));
    appendAttribute(text, "durationUnit", "min");
  }
  text += source;
  appendAttribute(text, "creationDate", workout.created());
  appendAttribute(text, "startDate", workout.start);
  appendAttribute(text, "endDate", workout.end);
  text += ">\n";
  appendEntries(text, entry, units);
  appendEvent(text, workout);
  appendSum(text, workout, "ActiveEnergyBurned", entry.active_energy_kcal, "kcal", units);
  appendSum(text, workout, "BasalEnergyBurned", entry.basal_energy_kcal, "kcal", units);
  appendSum(text, workout, distanceTypeOf(entry.activity_type), entry.distance_km, "km", units);
  appendHeartRate(text, workout);
  text += " </Workout>\n";
}
