#include "sample/household/Household.h"
#include "platform/Locale.h"
#include "platform/ReceiverError.h"
#include "sample/household/Imported.h"
#include "sample/household/RecordWriter.h"
#include "sample/household/RosterWriter.h"
#include "sample/life/History.h"
#include "sample/life/Person.h"
#include "store/Schema.h"

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace {

void refuseExisting(const std::filesystem::path& path) {
  if (!std::filesystem::exists(path)) return;
  throw ReceiverError(path.string() + " exists already, and a data root is never written over");
}

/// For a phone without a watch the statistics stay unbuilt, as an old receiver leaves them.
RecordWriter::Statistics statisticsOf(const Person& person) {
  return person.kind == Person::Kind::phoneAlone ? RecordWriter::Statistics::missing
                                                 : RecordWriter::Statistics::built;
}

/// Writes the members' databases according to the options.
class Writing {
public:
  Writing(std::ostream& report, Progress& progress) : report(report), progress(progress) {}

  /// Writes the database as the receiver application does.
  void received(const Person& person, const HistoryOptions& life,
                const std::filesystem::path& database) {
    write(person, database, [&](RecordWriter& writer) {
      tellHistory(person, life, writer);
      writer.finish(statisticsOf(person));
    });
  }

  /// Writes the database as an import of the person's export does. Returns the history's first day,
  /// if any.
  std::optional<std::string> imported(const Person& person, const HistoryOptions& life,
                                      const std::filesystem::path& database) {
    std::optional<std::string> first;
    write(person, database, [&](RecordWriter& writer) {
      Imported imported(writer, person.home);
      tellHistory(person, life, imported);
      writer.noteImportZone(nameOf(person.home));
      writer.finish(RecordWriter::Statistics::built);
      first = imported.firstDay();
    });
    return first;
  }

private:
  template <typename Tell>
  void write(const Person& person, const std::filesystem::path& path, Tell tell) {
    std::filesystem::create_directories(path.parent_path());
    Database database(path.string(), {.create = true, .readOnly = false});
    Schema::migrate(database);
    RecordWriter writer(database, progress);
    progress.begin(person.name);
    tell(writer);
    progress.end();
    report << memberReport(person, writer.records(), writer.workouts()) << std::endl;
  }

  std::ostream& report;
  Progress& progress;
};

}  // namespace

std::string memberReport(const Person& person, std::int64_t records, std::int64_t workouts) {
  return person.name + " (" + person.id + "): " + grouped(records, DigitGrouping{}) + " records, " +
         grouped(workouts, DigitGrouping{}) + " workouts";
}

void writeHousehold(const Options& options, CivilDay today, std::ostream& report,
                    Progress& progress) {
  const std::filesystem::path root = std::filesystem::absolute(options.out).lexically_normal();
  const std::filesystem::path rosterPath = root / "members.json";
  const std::vector<Person> people = household(options.members);
  refuseExisting(rosterPath);
  for (const Person& person : people) refuseExisting(databasePath(root, person));

  HistoryOptions life{
      .today = today, .years = options.years, .seed = options.seed, .records = options.records};
  Writing writing(report, progress);
  Roster::File roster{.version = 1, .members = {}};
  for (const Person& person : people) {
    const std::filesystem::path database = databasePath(root, person);
    if (options.asImported) {
      const std::optional<std::string> first = writing.imported(person, life, database);
      roster.members.push_back(importedMemberOf(person, life, database, first));
    } else {
      writing.received(person, life, database);
      roster.members.push_back(memberOf(person, roster.members.size(), life, database));
    }
    life.records.reset();  // the requested count is for the first member only
  }
  writeRoster(rosterPath, roster);
}
