#include "sample/export/ExportWriter.h"
#include "sample/export/DocumentType.h"
#include "sample/export/Markup.h"
#include "sample/export/WorkoutMarkup.h"
#include "sample/life/Random.h"

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <variant>

namespace {

using Markup::appendAttribute;
using Markup::appendEntry;

constexpr int hour = 3600;

constexpr std::string_view me =
    " <Me HKCharacteristicTypeIdentifierDateOfBirth=\"\""
    " HKCharacteristicTypeIdentifierBiologicalSex=\"HKBiologicalSexNotSet\""
    " HKCharacteristicTypeIdentifierBloodType=\"HKBloodTypeNotSet\""
    " HKCharacteristicTypeIdentifierFitzpatrickSkinType=\"HKFitzpatrickSkinTypeNotSet\"/>\n";

}  // namespace

void ExportWriter::open(Stamp exported) {
  offset = exported.offset;
  written += documentType;
  written += "<HealthData";
  appendAttribute(written, "locale", person.home == Zone::shanghai ? "zh_CN" : "en_US");
  written += ">\n <ExportDate";
  appendAttribute(written, "value", exported);
  written += "/>\n";
  written += me;
}

const std::string& ExportWriter::attributesOf(const Source& source) {
  if (&source == lastSource) return sourceAttributes;
  lastSource = &source;
  sourceAttributes.clear();
  appendAttribute(sourceAttributes, "sourceName", source.name);
  if (!source.version.empty()) appendAttribute(sourceAttributes, "sourceVersion", source.version);
  if (!source.device.empty()) appendAttribute(sourceAttributes, "device", source.device);
  return sourceAttributes;
}

namespace {

/// The value and the unit of a sample as written.
ExportUnits::Quantity quantityOf(const Sample& sample, UnitSystem units) {
  if (const auto* number = std::get_if<Decimal>(&sample.value)) {
    return ExportUnits::worded(units, sample.type, *number, sample.unit);
  }
  return {std::string(std::get<std::string_view>(sample.value)), sample.unit};
}

}  // namespace

void ExportWriter::add(const Sample& sample) {
  const Source& source = *sample.source;
  const bool isQuantity = std::holds_alternative<Decimal>(sample.value);
  written += " <Record type=\"";
  written += isQuantity ? "HKQuantityTypeIdentifier" : "HKCategoryTypeIdentifier";
  written += sample.type;
  written += '"';
  written += attributesOf(source);
  const ExportUnits::Quantity quantity = quantityOf(sample, units);
  if (!quantity.unit.empty()) appendAttribute(written, "unit", quantity.unit);
  appendAttribute(written, "creationDate", onPhone(sample.created()));
  appendAttribute(written, "startDate", onPhone(sample.start));
  appendAttribute(written, "endDate", onPhone(sample.end));
  appendAttribute(written, "value", quantity.number);

  const std::size_t end = written.size();
  written += ">\n";
  const std::size_t inside = written.size();
  appendChildren(sample);
  if (written.size() == inside) {
    written.resize(end);
    written += "/>\n";
  } else {
    written += " </Record>\n";
  }
  if (person.devices.watch && &source == &*person.devices.watch) rings.add(sample);
  progress.rows(++recordCount);
}

namespace {

/// The place of the person, derived from the offset of the stamp.
Zone zoneOf(Stamp stamp) { return stamp.offset == 8 * hour ? Zone::shanghai : Zone::newYork; }

/// "6:54:32.26 AM", at the offset of the stamp.
std::string timeOfDay(Stamp stamp, int hundredths) {
  const auto second = static_cast<int>((stamp.moment + stamp.offset) % (24 * hour));
  const int wholeHour = second / hour;
  char text[24];
  std::snprintf(text,
                sizeof text,
                "%d:%02d:%02d.%02d %s",
                wholeHour % 12 == 0 ? 12 : wholeHour % 12,
                second / 60 % 60,
                second % 60,
                hundredths,
                wholeHour < 12 ? "AM" : "PM");
  return text;
}

/// The beats of a heart rate variability sample. The generated life has none, so they are derived
/// from the moment.
void appendBeats(std::string& text, Stamp start, Stamp end) {
  Random random(static_cast<std::uint64_t>(start.moment));
  const double usual = random.between(55, 85);
  const auto length = static_cast<double>(end.moment - start.moment);
  text += "  <HeartRateVariabilityMetadataList>\n";
  double at = 0;
  while (true) {
    const Decimal rate = Decimal::nearest(random.bell(usual, 4), 0);
    at += 60 / rate.number();
    if (at >= length) break;
    const auto seconds = static_cast<int>(at);
    const auto hundredths = static_cast<int>((at - seconds) * 100);
    text += "   <InstantaneousBeatsPerMinute";
    appendAttribute(text, "bpm", rate.text());
    appendAttribute(text, "time", timeOfDay(start.after(seconds), hundredths));
    text += "/>\n";
  }
  text += "  </HeartRateVariabilityMetadataList>\n";
}

}  // namespace

void ExportWriter::appendChildren(const Sample& sample) {
  constexpr double lively = 100;
  if (sample.type == "HeartRate") {
    const bool active = std::get<Decimal>(sample.value).number() >= lively;
    appendEntry(written, "HKMetadataKeyHeartRateMotionContext", active ? "2" : "1");
  } else if (sample.type == "HeartRateVariabilitySDNN") {
    appendBeats(written, onPhone(sample.start), onPhone(sample.end));
  } else if (sample.type == "SleepAnalysis") {
    appendEntry(written, "HKTimeZone", nameOf(zoneOf(sample.start)));
  } else if (sample.type == "VO2Max") {
    appendEntry(written, "HKVO2MaxTestType", "2");
  } else if (person.devices.byHand && sample.source == &*person.devices.byHand) {
    appendEntry(written, "HKWasUserEntered", "1");
  }
}

void ExportWriter::add(const Workout& workout) {
  Workout shown = workout;
  shown.start = onPhone(workout.start);
  shown.end = onPhone(workout.end);
  shown.filed = onPhone(workout.created());
  WorkoutMarkup::append(keptWorkouts, shown, attributesOf(*workout.source), units);
  ++workoutCount;
}

void ExportWriter::close() {
  written += keptWorkouts;
  rings.append(written, units);
  written += "</HealthData>\n";
}
