#include "import/census/Census.h"
#include "import/census/KnownNames.h"
#include "platform/AppleFormat.h"

namespace {

/// Names of sources usually take some hundred bytes in total.
constexpr std::size_t mostSourceBytes = 4UL << 20;

/// The approximate memory of a name in addition to its letters.
constexpr std::size_t besideAName = 100;

std::string_view publicUnit(std::optional<std::string_view> unit) {
  if (!unit || unit->empty()) return {};
  return KnownNames::unit(*unit).value_or(Census::otherUnit);
}

}  // namespace

void CensusTaker::exportedAt(std::string_view stamp) {
  counts.hasDate = true;
  counts.exportedAt = AppleFormat::stampParser.stamp(stamp);
}

/// Counts the source and the year of a record or workout with the start stamp `start`.
void CensusTaker::meet(std::string_view start, std::string_view source) {
  constexpr std::size_t yearLength = 4;
  const std::string_view year = start.substr(0, yearLength);
  if (!years.contains(year)) years.emplace(year);
  counts.years = years.size();
  if (source.empty() || counts.moreSources || sources.contains(source)) return;
  if (sourcesSize > mostSourceBytes) {
    counts.moreSources = true;
    return;
  }
  sources.emplace(source);
  sourcesSize += source.size() + besideAName;
  counts.sources = sources.size();
}

void CensusTaker::add(const ExportedRecord& exported) {
  ExportedRecord record = exported;
  // No units are stored yet, as for a new member.
  firstUnits.convert(record, [](const ExportedRecord&) { return std::nullopt; });
  counts.tally.read(counts.tally.records, record);
  if (!record.number) {
    ++counts.withoutNumber;
    if (record.unit) ++counts.withUnitAlone;
  }
  meet(record.startDate, record.sourceName.value_or(std::string_view()));

  const std::optional<std::string_view> known = KnownNames::type(record.type);
  Census::Type& type = known ? counts.types[*known] : counts.otherTypes;
  ++type.records;
  const bool converted = record.converted;
  ++type.units[{.unit = publicUnit(record.exportedUnit),
                .stored = converted ? publicUnit(record.unit) : std::string_view()}];
}

void CensusTaker::add(const ExportedWorkout& workout) {
  counts.tally.read(counts.tally.workouts, workout);
  meet(workout.entry.start, workout.entry.source);
}

void CensusTaker::add(const ExportedActivityDay& day) {
  counts.tally.read(counts.tally.activityDays, day);
}

void CensusTaker::notStored(std::string_view element) {
  if (const std::optional<std::string_view> known = KnownNames::element(element)) {
    counts.tally.count(*known);
  } else {
    ++counts.tally.others;
  }
}

void CensusTaker::skipped(std::string_view reason, long long line) {
  counts.tally.skip(reason, line);
}
