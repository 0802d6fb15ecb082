#include "sample/Household.h"
#include "platform/ControlProtocol.h"
#include "platform/Locale.h"
#include "sample/History.h"
#include "sample/Person.h"
#include "sample/RecordWriter.h"
#include "sample/RosterWriter.h"
#include "store/HealthStore.h"

#include <filesystem>
#include <vector>

namespace {

void refuseExisting(const std::filesystem::path& path) {
  if (!std::filesystem::exists(path)) return;
  throw ReceiverError(path.string() + " exists already, and a data root is never written over");
}

/// The statistics of a phone alone are left unbuilt, as by a receiver from before there were any.
RecordWriter::Statistics statisticsOf(const Person& person) {
  return person.kind == Person::Kind::phoneAlone ? RecordWriter::Statistics::missing
                                                 : RecordWriter::Statistics::built;
}

void writePerson(const Person& person, const HistoryRequest& request,
                 const std::filesystem::path& database, std::ostream& report, Progress& progress,
                 Logger& log) {
  HealthStore store(database.string(), {.createIfMissing = true, .readOnly = false}, log);
  RecordWriter writer(store, progress);
  progress.begin(person.name);
  tellHistory(person, request, writer);
  writer.finish(statisticsOf(person));
  progress.end();
  report << person.name << " (" << person.id << "): " << grouped(writer.records(), DigitGrouping{})
         << " records, " << grouped(writer.workouts(), DigitGrouping{}) << " workouts" << std::endl;
}

}  // namespace

void writeHousehold(const Options& options, CivilDay today, std::ostream& report,
                    Progress& progress, Logger& log) {
  const std::filesystem::path root = std::filesystem::absolute(options.out).lexically_normal();
  const std::filesystem::path rosterPath = root / "members.json";
  const std::vector<Person> people = household(options.members);
  refuseExisting(rosterPath);
  for (const Person& person : people) refuseExisting(databasePath(root, person));

  HistoryRequest request{
      .today = today, .years = options.years, .seed = options.seed, .records = options.records};
  Roster::File roster{.version = 1, .members = {}};
  for (const Person& person : people) {
    const std::filesystem::path database = databasePath(root, person);
    writePerson(person, request, database, report, progress, log);
    roster.members.push_back(memberOf(person, roster.members.size(), request, database));
    request.records.reset();  // the wish is for the first member alone
  }
  writeRoster(rosterPath, roster);
}
