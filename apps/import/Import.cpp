#include "import/Import.h"
#include "import/Failure.h"
#include "import/database/NewDatabase.h"
#include "import/database/Writer.h"
#include "import/export/ExportReader.h"
#include "import/member/Lock.h"
#include "import/member/MemberFolder.h"
#include "import/member/MemberZone.h"
#include "import/member/Recipient.h"
#include "import/member/RosterDocument.h"
#include "import/xml/ExportFile.h"
#include "platform/AppleFormat.h"
#include "platform/Phrase.h"
#include "platform/Text.h"
#include "store/Schema.h"

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

namespace {

namespace phrases {

constexpr Phrase folderMissing{"数据目录不可用(盘没挂载?):{0}",
                               "the data folder is not there (drive not mounted?): {0}"};
constexpr Phrase rootNotUTF8{
    "数据根目录的路径不是有效的 UTF-8,无法写入名册:{0}",
    "the data root's path is not UTF-8, and the roster could not hold it: {0}"};
constexpr Phrase pathUnusable{
    "名册里「{0}」的 dbPath 不是绝对路径,无法确定是哪个数据库:\"{1}\"",
    "the roster's dbPath for {0} is no absolute path, so it names no database: \"{1}\""};
constexpr Phrase rosterUnwritten{
    "数据已经写入数据库,但名册 {0} 无法写入:{1};排除原因后再导入一次即可完成",
    "the data is in the database, but the roster {0} cannot be written: {1}; mend that and "
    "import again to complete it"};
constexpr Phrase rosterUnread{
    "数据已经写入数据库,但名册 {0} 在导入期间变得无法读取;修复后再导入一次即可完成",
    "the data is in the database, but the roster {0} became unreadable meanwhile; mend it and "
    "import again to complete it"};

}  // namespace phrases

/// The destination of the data.
struct Place {
  std::string id;
  std::filesystem::path database;
  bool inUse = true;  ///< see Writer::Options
  /// The time of the last update of the database; absent when unknown.
  std::optional<double> lastSyncAt = std::nullopt;
};

/// The last component of `path`, which may end in a slash.
std::string lastName(const std::filesystem::path& path) {
  return (path.has_filename() ? path : path.parent_path()).filename().string();
}

/// Reads the export into the open transaction of the reader's sink. Returns the number of bytes.
std::uint64_t transfer(ExportFile& source, ExportReader& reader, MemberZone& zone,
                       Importer::Progress& progress) {
  std::uint64_t total = 0;
  source.readAll([&](std::string_view piece) {
    reader.feed(piece);
    zone.confirm(reader.exportDate());
    progress.read(piece.size());
    total += piece.size();
  });
  reader.finish();
  zone.confirm(reader.exportDate() ? reader.exportDate() : reader.firstStamp());
  return total;
}

/// The database's state after the commit, for the roster.
struct Outcome {
  std::optional<std::string> firstDay;
  std::optional<double> exportedAt;
};

/// Does all work in the database. Fills the counts of `report`.
Outcome store(ExportFile& source, const Place& place, const ImportOrder& order,
              const ImportSurroundings& surroundings, Report& report) {
  // First, because the zone may forbid this import, and a migration changes the file.
  MemberZone zone({.member = order.name,
                   .id = place.id,
                   .database = place.database,
                   .asked = order.timeZone,
                   .machine = surroundings.timeZone,
                   .interrupted = surroundings.interrupted});
  // Creates the file and, before the import's only transaction, its tables.
  Database database(place.database.string(),
                    {.create = true, .readOnly = false, .interrupted = &surroundings.interrupted});
  Schema::migrate(database);
  Writer writer(database,
                {.inUse = place.inUse,
                 .lastSyncAt = place.lastSyncAt,
                 .cacheKibibytes = surroundings.cacheKibibytes});
  ExportReader reader(writer, zone.zone());
  Importer::Progress progress(surroundings.progress,
                              surroundings.progressKind,
                              surroundings.lang,
                              surroundings.clock,
                              source.size());
  const std::uint64_t bytes = transfer(source, reader, zone, progress);
  progress.finishing();
  const double now = surroundings.clock();
  const StampText importedAt({.moment = static_cast<std::int64_t>(now), .offset = 0});
  writer.finish({.importedAt = std::string(importedAt.text()),
                 .sourceFile = lastName(report.source),
                 .sourceBytes = static_cast<std::int64_t>(bytes),
                 .timeZone = zone.isCertain() ? std::optional(zone.zone().name()) : std::nullopt});

  report.tally = writer.tally();
  report.timeZone = zone.zone().name();
  report.machineTimeZone = surroundings.timeZone;
  report.irregularities = reader.irregularities();
  Outcome outcome{.firstDay = writer.firstStoredDay(), .exportedAt = std::nullopt};
  if (report.tally.exportedAt) {
    const auto moment = AppleFormat::stampParser.parse(*report.tally.exportedAt);
    // An export from the future has a wrong clock. Its time must not make later exports look older.
    if (moment && static_cast<double>(*moment) <= now) {
      outcome.exportedAt = static_cast<double>(*moment);
    }
  }
  return outcome;
}

/// The same, with errors as Failure. A failure leaves no new database behind.
Outcome storeOrExplain(ExportFile& source, const Place& place, const ImportOrder& order,
                       const ImportSurroundings& surroundings, Report& report) {
  NewDatabase made(place.database);
  try {
    Outcome outcome = store(source, place, order, surroundings, report);
    made.keep();
    return outcome;
  } catch (const DatabaseError& error) {
    // SQLite reports an interruption as a failure.
    heed(surroundings.interrupted);
    throw databaseFailure(error);
  } catch (const Failure&) {
    // A signal may have caused this failure by interrupting a read.
    heed(surroundings.interrupted);
    throw;
  }
}

/// The destination for a member in the roster. A sync later than `now` comes from a wrong clock and
/// is ignored.
Place placeOf(const Member& member, double now) {
  const std::filesystem::path database = member.dbPath;
  // A relative path would depend on the current folder of the import.
  if (!database.is_absolute()) {
    throw Failure(phrases::pathUnusable, {member.name, member.dbPath});
  }
  // Creating the folder would put the data on the wrong drive, under an unmounted drive's path.
  if (!std::filesystem::is_directory(database.parent_path())) {
    throw Failure(phrases::folderMissing, {database.parent_path().string()});
  }
  const bool inPast = member.lastSyncAt && *member.lastSyncAt <= now;
  return {.id = member.id,
          .database = database,
          .inUse = true,
          .lastSyncAt = inPast ? member.lastSyncAt : std::nullopt};
}

std::vector<std::string> idsOf(const std::vector<Member>& members) {
  std::vector<std::string> ids(members.size());
  std::ranges::transform(members, ids.begin(), &Member::id);
  return ids;
}

/// Enters the member into the roster. The roster is read again, because reading the export may have
/// taken minutes.
void enter(const std::filesystem::path& rosterPath, const Report& report,
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
  } catch (const Failure&) {
    throw Failure(phrases::rosterUnread, {rosterPath.string()});
  } catch (const std::system_error& error) {
    throw Failure(phrases::rosterUnwritten, {rosterPath.string(), error.code().message()});
  }
}

/// Stores the export for a member who is not in the roster yet.
void storeNew(ExportFile& source, const MemberFolder& folder, const std::vector<Member>& members,
              const std::filesystem::path& rosterPath, const ImportOrder& order,
              const ImportSurroundings& surroundings, Report& report) {
  const Place place{.id = folder.id(), .database = folder.database(), .inUse = false};
  report.id = place.id;
  report.newMember = true;
  Outcome outcome;
  try {
    // The id may come from an unfinished import.
    requireDistinct(members, order.name, folder.id());
    requireUnshared(members, place.database);
    outcome = storeOrExplain(source, place, order, surroundings, report);
  } catch (...) {
    folder.abandon();
    throw;
  }
  enter(rosterPath, report, place.database, outcome, surroundings.clock());
  folder.finish();
}

/// The roster contains the paths of databases and is JSON, which allows only UTF-8.
void requireUTF8(const std::filesystem::path& root) {
  const std::string text = repaired(root.string());
  if (text != root.string()) throw Failure(phrases::rootNotUTF8, {text});
}

}  // namespace

Report runImport(const ImportOrder& order, const ImportSurroundings& surroundings) {
  const double began = surroundings.clock();
  const std::filesystem::path root = std::filesystem::absolute(order.dataRoot).lexically_normal();
  requireUTF8(root);
  if (order.timeZone) knownZone(*order.timeZone);
  ExportFile source(order.source, surroundings.interrupted);
  Report report;
  report.name = order.name;
  report.source = order.source.string();
  report.beside = source.contents();
  const std::filesystem::path rosterPath = root / "members.json";
  // Refuses an invalid recipient before any file is created.
  recipient(RosterDocument(rosterPath).members(), order.name, order.id);

  Lock lock(root);
  const std::vector<Member> members = RosterDocument(rosterPath).members();
  if (const std::optional<Member> member = recipient(members, order.name, order.id)) {
    const Place place = placeOf(*member, began);
    report.id = place.id;
    const Outcome outcome = storeOrExplain(source, place, order, surroundings, report);
    enter(rosterPath, report, place.database, outcome, surroundings.clock());
  } else {
    const MemberFolder folder(root, order.name, order.id, idsOf(members), randomID);
    storeNew(source, folder, members, rosterPath, order, surroundings, report);
  }
  // Only now: the roster on the disk was just replaced, so it certainly contains these members.
  removeObsoleteNotes(root, idsOf(members));
  lock.keep();
  report.seconds = surroundings.clock() - began;
  return report;
}
