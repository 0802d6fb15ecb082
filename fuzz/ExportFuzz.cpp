// The export of a phone; the input is the bytes of its XML.

#include "Target.h"
#include "apps/import/CollectingSink.h"
#include "platform/AppleFormat.h"
#include "platform/Text.h"

#include <algorithm>
#include <cmath>
#include <initializer_list>
#include <string>

namespace {

/// The size of the next piece, at least 1, given the rest of a document.
using Length = std::size_t (*)(std::string_view rest);

std::size_t everything(std::string_view rest) { return rest.size(); }
std::size_t oneByte(std::string_view /*rest*/) { return 1; }

/// A size taken from the rest itself, so that the input also determines the pieces.
std::size_t whatItSays(std::string_view rest) {
  return 1 + static_cast<unsigned char>(rest.front()) % 32U;
}

/// Reads `document` into `sink` and describes the end: an error, or the numbers of dropped and
/// replaced characters. An error omits the numbers because they depend on the size of the piece.
std::string endOfReading(CollectingSink& sink, std::string_view document, Length length) {
  TimeZone zone = berlin();
  ExportReader reader(sink, zone);
  try {
    for (std::string_view rest = document; !rest.empty();) {
      const std::string_view piece = rest.substr(0, length(rest));
      reader.feed(piece);
      rest.remove_prefix(piece.size());
    }
    reader.finish();
  } catch (const Failure& error) {
    return error.what();
  }
  return std::to_string(reader.irregularities().droppedCharacters) + " dropped, " +
         std::to_string(reader.irregularities().replacedSequences) + " replaced";
}

/// Whether two readings of one export end alike. After the root element the error and its place may
/// differ: if a piece ends inside a word, the parser rejects the word's beginning.
bool endAlike(std::string_view one, std::string_view other) {
  const auto contains = [](std::string_view end, std::string_view words) {
    return end.find(words) != std::string_view::npos;
  };
  constexpr std::string_view broken = "The XML is broken in line ";
  constexpr std::string_view behindRoot = "something follows the end of the root element";
  if (contains(one, behindRoot)) return contains(other, broken);
  if (contains(other, behindRoot)) return contains(one, broken);
  return one == other;
}

void requireDay(std::string_view day) {
  require(day.size() == 10 && AppleFormat::dayParser.parse(day).has_value(), "a day is one");
}

void requireTexts(std::initializer_list<std::optional<std::string>> texts) {
  const auto forbidden = [](char byte) {
    const bool allowed = byte == '\t' || byte == '\n' || byte == '\r';
    return static_cast<unsigned char>(byte) < ' ' && !allowed;
  };
  for (const std::optional<std::string>& text : texts) {
    require(!text || repaired(*text) == *text, "a text is valid UTF-8");
    require(!text || std::ranges::none_of(*text, forbidden), "a text has no control characters");
  }
}

void requireFinite(std::initializer_list<std::optional<double>> numbers) {
  for (const std::optional<double>& number : numbers) {
    require(!number || std::isfinite(*number), "a number is finite");
  }
}

void check(const KeptRecord& record) {
  require(!record.type.empty(), "a record has a type");
  requireDay(record.startDay.value_or(""));
  require(record.startDate.starts_with(*record.startDay), "a record starts on its day");
  requireTexts({record.type, record.startDate, record.endDate, record.creationDate});
  requireTexts({record.sourceName, record.device, record.unit, record.value});
  requireFinite({record.number});
  require(!record.converted || !record.unknownUnit, "what is converted is in a known unit");
  require(record.number || (!record.converted && !record.unknownUnit), "only numbers have units");
}

void check(const ExportedWorkout& workout) {
  const WorkoutEntry& entry = workout.entry;
  requireDay(entry.start.substr(0, 10));
  requireTexts({entry.activity_type, entry.start, entry.end, entry.source, workout.creationDate});
  requireFinite({entry.duration_min, entry.distance_km, entry.active_energy_kcal});
  requireFinite({entry.basal_energy_kcal, entry.hr_avg, entry.hr_min, entry.hr_max});
  requireFinite({entry.elevation_m, entry.avg_mets, entry.temp_c});
  require(!entry.humidity_pct && !entry.humidityPercent(), "a humidity is kept raw");
  if (!entry.humidity) return;
  requireFinite({entry.humidity->raw_value});
  requireTexts({entry.humidity->raw_text, entry.humidity->source_version});
}

void check(const ExportedActivityDay& day) {
  requireDay(day.date);
  requireTexts({day.activeEnergyUnit});
  requireFinite({day.activeEnergy, day.activeEnergyGoal, day.moveTime, day.moveTimeGoal});
  requireFinite({day.exerciseTime, day.exerciseTimeGoal, day.standHours, day.standHoursGoal});
}

bool toldTheSame(const CollectingSink& one, const CollectingSink& other) {
  return one.exportDate == other.exportDate && one.records == other.records &&
         one.workouts == other.workouts && one.days == other.days && one.others == other.others &&
         one.skips == other.skips;
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view document = textOf(data, size);
  CollectingSink whole;
  const std::string end = endOfReading(whole, document, everything);
  for (const KeptRecord& record : whole.records) check(record);
  for (const ExportedWorkout& workout : whole.workouts) check(workout);
  for (const ExportedActivityDay& day : whole.days) check(day);

  for (const Length length : {oneByte, whatItSays}) {
    CollectingSink cut;
    require(endAlike(endOfReading(cut, document, length), end),
            "an export ends alike however it is cut");
    require(toldTheSame(cut, whole), "an export says the same however it is cut");
  }
  return 0;
}
