#include "sample/Export.h"
#include "sample/ExportDocument.h"
#include "sample/ExportOutput.h"
#include "sample/Household.h"

#include <algorithm>
#include <vector>

namespace {

/// The member whom `options` name, the first when they name nobody.
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

/// The export is made when the last record has arrived. The phone is at home unless the options say
/// otherwise.
Stamp exportedOf(const Person& person, const Options& options, CivilDay today) {
  const Stamp atHome = stampIn(person.home, lastSync(today).moment);
  return {atHome.moment, options.offset.value_or(atHome.offset)};
}

}  // namespace

void writeExport(const Options& options, CivilDay today, std::ostream& report, Progress& progress) {
  const Person person = exporter(options);
  const HistoryRequest request{
      .today = today, .years = options.years, .seed = options.seed, .records = options.records};
  ExportDocument document(person,
                          request,
                          exportedOf(person, options, today),
                          options.units.value_or(UnitSystem::metric),
                          progress);
  const auto nextPiece = [&document] { return document.nextPiece(); };

  progress.begin(person.name);
  if (options.exportTo.extension() == ".zip") {
    ExportOutput::writeZip(
        options.exportTo, {.name = "apple_health_export/export.xml"}, today, nextPiece);
  } else {
    ExportOutput::writeFile(options.exportTo, nextPiece);
  }
  progress.end();
  report << memberReport(person, document.records(), document.workouts()) << std::endl;
}
