#include "import/Import.h"
#include "import/DatabaseFailure.h"
#include "import/ExportFile.h"
#include "import/ExportReader.h"
#include "import/ImportError.h"
#include "import/ImportLock.h"
#include "import/ImportWriter.h"
#include "import/MemberFolder.h"
#include "import/Recipient.h"
#include "import/RosterDocument.h"
#include "platform/AppleFormat.h"
#include "store/HealthStore.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

namespace {

namespace phrases {

constexpr Phrase folderMissing{.zh = "数据目录不可用(盘没挂载?):{0}",
                               .en = "the data folder is not there (drive not mounted?): {0}"};
constexpr Phrase pathUnusable{
    .zh = "名册里「{0}」的 dbPath 不是绝对路径,不知道指的是哪个库:\"{1}\"",
    .en = "the roster's dbPath for {0} is no absolute path, so it names no database: \"{1}\""};
constexpr Phrase rosterUnwritten{
    .zh = "数据已经入库,但名册 {0} 写不了:{1};排除原因后再导入一次即可补完",
    .en =
        "the data is in the database, but the roster {0} cannot be written: {1}; mend that and "
        "import again to complete it"};
constexpr Phrase rosterUnread{
    .zh = "数据已经入库,但名册 {0} 在导入期间变得读不了;修好它再导入一次即可补完",
    .en =
        "the data is in the database, but the roster {0} became unreadable meanwhile; mend it and "
        "import again to complete it"};
constexpr std::array all{folderMissing, pathUnusable, rosterUnwritten, rosterUnread};
static_assert(std::ranges::all_of(all, inBothLanguages));

}  // namespace phrases

/// The stamp of `moment`, in UTC.
std::string stampText(double moment) {
  using namespace std::chrono;
  const sys_seconds time{seconds{static_cast<std::int64_t>(moment)}};
  const sys_days day = floor<days>(time);
  const hh_mm_ss clock{time - day};
  char text[32];
  std::snprintf(text,
                sizeof text,
                " %02d:%02d:%02d +0000",
                static_cast<int>(clock.hours().count()),
                static_cast<int>(clock.minutes().count()),
                static_cast<int>(clock.seconds().count()));
  return AppleFormat::dayParser.text(CivilDay{day}) + text;
}

/// Where the data goes.
struct Place {
  std::string id;
  std::filesystem::path database;
  bool inUse = true;  ///< see ImportWriter::Setting
  std::optional<double> lastSyncAt = std::nullopt;
};

/// The last name in `path`, which may end in a slash.
std::string lastName(const std::filesystem::path& path) {
  return (path.has_filename() ? path : path.parent_path()).filename().string();
}

/// Reads the export into the open transaction of `writer`; returns the bytes read.
std::uint64_t transfer(ExportFile& source, ExportReader& reader, ImportProgress& progress) {
  constexpr std::size_t pieceSize = 131072;
  std::vector<char> piece(pieceSize);
  std::uint64_t total = 0;
  while (const std::size_t count = source.read(piece)) {
    reader.feed(std::string_view(piece.data(), count));
    progress.read(count);
    total += count;
  }
  reader.finish();
  return total;
}

/// What the database holds after the commit, for the roster.
struct Outcome {
  std::optional<std::string> firstDay;
  std::optional<double> exportedAt;
};

/// Everything that happens in the database. Fills the counts of `report`.
Outcome store(ExportFile& source, const Place& place, const ImportSurroundings& surroundings,
              ImportReport& report) {
  // The store makes the file and brings its tables up to date, before the one transaction begins.
  Logger quiet(std::nullopt, Logger::Level::error, false, surroundings.clock);
  const std::string path = place.database.string();
  { const HealthStore migrated(path, {.createIfMissing = true, .readOnly = false}, quiet); }
  Database database(path, {.create = false, .readOnly = false});
  ImportWriter writer(database,
                      {.inUse = place.inUse,
                       .lastSyncAt = place.lastSyncAt,
                       .cacheKibibytes = surroundings.cacheKibibytes});
  ExportReader reader(writer);
  ImportProgress progress(surroundings.progress,
                          surroundings.progressKind,
                          surroundings.lang,
                          surroundings.clock,
                          source.size());
  const std::uint64_t bytes = transfer(source, reader, progress);
  progress.finishing();
  writer.finish({.importedAt = stampText(surroundings.clock()),
                 .sourceFile = lastName(report.source),
                 .sourceBytes = static_cast<std::int64_t>(bytes)});

  report.tally = writer.tally();
  report.repeatedAttributes = reader.repeatedAttributes();
  report.droppedCharacters = reader.droppedCharacters();
  report.replacedSequences = reader.replacedSequences();
  Outcome outcome{.firstDay = writer.firstStoredDay(), .exportedAt = std::nullopt};
  if (report.tally.exportedAt) {
    const auto moment = AppleFormat::stampParser.parse(*report.tally.exportedAt);
    if (moment) outcome.exportedAt = static_cast<double>(*moment);
  }
  return outcome;
}

Outcome storeOrExplain(ExportFile& source, const Place& place,
                       const ImportSurroundings& surroundings, ImportReport& report) {
  try {
    return store(source, place, surroundings, report);
  } catch (const ReceiverError& error) {
    throw databaseFailure(error);
  }
}

Place placeOf(const Member& member) {
  const std::filesystem::path database = member.dbPath;
  // Anything else would depend on the folder that the import happens to be started in.
  if (!database.is_absolute()) {
    throw ImportError(phrases::pathUnusable, {member.name, member.dbPath});
  }
  // Making the folder would put the data where the drive is to be mounted.
  if (!std::filesystem::is_directory(database.parent_path())) {
    throw ImportError(phrases::folderMissing, {database.parent_path().string()});
  }
  return {.id = member.id, .database = database, .inUse = true, .lastSyncAt = member.lastSyncAt};
}

std::vector<std::string> idsOf(const std::vector<Member>& members) {
  std::vector<std::string> ids(members.size());
  std::ranges::transform(members, ids.begin(), &Member::id);
  return ids;
}

/// Names the member in the roster as it is by now: reading the export may have taken minutes.
void enter(const std::filesystem::path& rosterPath, const ImportReport& report,
           const std::filesystem::path& database, const Outcome& outcome, double now) {
  try {
    RosterDocument roster(rosterPath);
    roster.put({.id = report.id,
                .name = report.name,
                .database = database,
                .now = now,
                .exportedAt = outcome.exportedAt,
                .firstDay = outcome.firstDay});
    roster.write();
  } catch (const ImportError&) {
    throw ImportError(phrases::rosterUnread, {rosterPath.string()});
  } catch (const std::system_error& error) {
    throw ImportError(phrases::rosterUnwritten, {rosterPath.string(), error.code().message()});
  }
}

/// The same for a member whom the roster does not name yet.
void storeNew(ExportFile& source, const MemberFolder& folder,
              const std::filesystem::path& rosterPath, const ImportSurroundings& surroundings,
              ImportReport& report) {
  const Place place{.id = folder.id(), .database = folder.database(), .inUse = false};
  report.id = place.id;
  report.newMember = true;
  Outcome outcome;
  try {
    outcome = storeOrExplain(source, place, surroundings, report);
  } catch (...) {
    folder.abandon();
    throw;
  }
  enter(rosterPath, report, place.database, outcome, surroundings.clock());
  folder.finish();
}

}  // namespace

ImportReport runImport(const ImportOrder& order, const ImportSurroundings& surroundings) {
  const double began = surroundings.clock();
  ExportFile source(order.source);
  ImportReport report;
  report.name = order.name;
  report.source = order.source.string();
  report.beside = source.contents();
  const std::filesystem::path root = std::filesystem::absolute(order.dataRoot).lexically_normal();
  const std::filesystem::path rosterPath = root / "members.json";
  // Whoever must not be written for is refused before the first file is made.
  recipient(RosterDocument(rosterPath).members(), order.name, order.id);

  std::filesystem::create_directories(root);
  const ImportLock lock(root);
  const std::vector<Member> members = RosterDocument(rosterPath).members();
  if (const std::optional<Member> member = recipient(members, order.name, order.id)) {
    const Place place = placeOf(*member);
    report.id = place.id;
    const Outcome outcome = storeOrExplain(source, place, surroundings, report);
    enter(rosterPath, report, place.database, outcome, surroundings.clock());
  } else {
    const MemberFolder folder(root, order.name, order.id, idsOf(members), randomID);
    storeNew(source, folder, rosterPath, surroundings, report);
  }
  // Only now: the roster on the disk names these members for certain since it was just replaced.
  removeObsoleteNotes(root, idsOf(members));
  report.seconds = surroundings.clock() - began;
  return report;
}
