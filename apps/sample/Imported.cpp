#include "sample/Imported.h"
#include "sample/HumidityForms.h"

void Imported::note(Stamp start) {
  const StampText text(start);
  if (!first || text.day() < *first) first = text.day();
}

void Imported::add(const Sample& sample) {
  Sample imported = sample;
  imported.dated = true;
  const auto* number = std::get_if<Decimal>(&sample.value);
  if (number != nullptr && sample.unit == "m" && sample.type.starts_with("Distance")) {
    imported.unit = "km";
    imported.value = Decimal{number->digits, number->places + 3};
  } else if (number != nullptr && sample.unit == "kJ") {
    constexpr double kilojoulesPerKilocalorie = 4.184;
    imported.unit = "kcal";
    imported.value = Decimal::nearest(number->number() / kilojoulesPerKilocalorie, 6);
  } else if (sample.unit == "bpm") {
    imported.unit = "count/min";
  }
  note(sample.start);
  sink.add(imported);
}

void Imported::add(const Workout& workout) {
  Workout imported = workout;
  imported.entry.humidity_pct.reset();
  imported.entry.humidity.reset();
  if (const std::optional<Decimal> exported = exportedHumidity(workout.entry)) {
    WorkoutHumidity& humidity = imported.entry.humidity.emplace();
    humidity.raw_value = exported->number();
    humidity.raw_unit = "%";
    humidity.encoding = "xml_percent";
    humidity.source_version = workout.source->version;
  }
  note(workout.start);
  sink.add(imported);
}
