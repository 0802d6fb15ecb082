#include "sample/export/Export.h"
#include "sample/export/ExportDocument.h"
#include "sample/export/ExportOutput.h"
#include "sample/flaws/AddedElements.h"
#include "sample/flaws/FlawedDocument.h"
#include "sample/flaws/FlawedFiles.h"
#include "sample/household/Household.h"

#include <algorithm>
#include <filesystem>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace {

/// The member in `options`; the first member when they name none.
Person exporter(const Options& options) {
  std::vector<Person> people = household(options.members);
  if (!options.member) return people.front();
  const auto isMeant = [&](const Person& person) {
    return person.name == *options.member || person.id == *options.member;
  };
  const auto found = std::ranges::find_if(people, isMeant);
  if (found == people.end()) {
    throw UsageError("--member names nobody among the first " + std::to_string(options.members) +
                     ": " + *options.member);
  }
  return *found;
}

/// The time of the export, after the last record has arrived. Its offset is that of the home unless
/// the options give one.
Stamp exportedOf(const Person& person, const Options& options, CivilDay today) {
  const Stamp atHome = stampIn(person.home, lastSync(today).moment);
  return {atHome.moment, options.offset.value_or(atHome.offset)};
}

/// The elements that the flaws add, in a week that ends before the history begins.
std::string addedTo(const Person& person, const HistoryOptions& life, const FlawSet& flaws,
                    Stamp exported) {
  constexpr int week = 7;
  const CivilDay day = AppleFormat::daysBefore(firstDay(person, life), week);
  return AddedElements::of(flaws, {midnight(person.home, day).moment, exported.offset}, day);
}

/// Writes the file or archive of the options.
void writeOutput(const Options& options, CivilDay today, const ExportOutput::Pieces& pieces) {
  const std::filesystem::path path = FlawedFiles::placeOf(options.flaws, options.exportTo);
  if (options.exportsArchive() && !FlawedFiles::isBare(options.flaws)) {
    ExportOutput::writeZip(path, FlawedFiles::archive(options.flaws), today, pieces);
  } else {
    ExportOutput::writeFile(path, pieces);
  }
  if (options.flaws.contains(Flaw::cutOff)) FlawedFiles::cutOff(path);
}

/// A text as a single piece.
ExportOutput::Pieces once(std::string text) {
  return [text = std::move(text), taken = false]() mutable -> std::string_view {
    if (taken) return {};
    taken = true;
    return text;
  };
}

}  // namespace

void writeExport(const Options& options, CivilDay today, std::ostream& report, Progress& progress) {
  const Person person = exporter(options);
  const HistoryOptions life{
      .today = today, .years = options.years, .seed = options.seed, .records = options.records};
  const Stamp exported = exportedOf(person, options, today);
  ExportDocument document(
      person, life, exported, options.units.value_or(UnitSystem::metric), progress);
  FlawedDocument flawed(
      document, options.flaws, options.seed, addedTo(person, life, options.flaws, exported));

  progress.begin(person.name);
  const bool isArchive = options.exportsArchive();
  if (const auto other = FlawedFiles::inPlaceOf(options.flaws, options.exportTo, isArchive)) {
    writeOutput(options, today, once(*other));
  } else {
    writeOutput(options, today, [&flawed] { return flawed.nextPiece(); });
  }
  progress.end();
  report << memberReport(person, document.records(), document.workouts());
  if (!options.flaws.empty()) report << "; flaws: " << Flaws::names(options.flaws);
  report << std::endl;
}
