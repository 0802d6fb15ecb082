#include "sample/household/Imported.h"
#include "sample/life/HumidityForms.h"

void Imported::note(Stamp start) {
  const StampText text(start);
  if (!first || text.day() < *first) first = text.day();
}

namespace {

/// Converts a value to the unit that an import stores for its type.
void convert(Sample& sample) {
  auto* number = std::get_if<Decimal>(&sample.value);
  if (number == nullptr) return;
  if (sample.unit == "m" && sample.type.starts_with("Distance")) {
    sample.unit = "km";
    number->places += 3;
  } else if (sample.unit == "kJ") {
    constexpr double kilojoulesPerKilocalorie = 4.184;
    sample.unit = "kcal";
    *number = Decimal::nearest(number->number() / kilojoulesPerKilocalorie, 6);
  } else if (sample.unit == "bpm") {
    sample.unit = "count/min";
  }
}

}  // namespace

void Imported::add(const Sample& sample) {
  Sample imported = sample;
  imported.start = atHome(sample.start);
  imported.end = atHome(sample.end);
  imported.filed = atHome(sample.created());
  imported.dated = true;
  convert(imported);
  note(imported.start);
  sink.add(imported);
}

void Imported::add(const Workout& workout) {
  Workout imported = workout;
  imported.start = atHome(workout.start);
  imported.end = atHome(workout.end);
  imported.filed = atHome(workout.created());
  imported.entry.start = StampText(imported.start).text();
  imported.entry.end = StampText(imported.end).text();
  imported.entry.humidity_pct.reset();
  imported.entry.humidity.reset();
  if (const std::optional<Decimal> exported = exportedHumidity(workout.entry)) {
    WorkoutHumidity& humidity = imported.entry.humidity.emplace();
    humidity.raw_value = exported->number();
    humidity.raw_unit = "%";
    humidity.encoding = "xml_percent";
    humidity.source_version = workout.source->version;
  }
  note(imported.start);
  sink.add(imported);
}
