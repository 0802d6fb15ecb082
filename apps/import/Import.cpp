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
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

namespace {

namespace phrases {

constexpr Phrase folderMissing{"数据目录不可用(盘没挂载?):{0}",
                               "the data folder is not there (drive not mounted?): {0}"};
constexpr Phrase rootNotUTF8{
    "数据根目录的路径不是有效的 UTF-8，无法写入名册：{0}",
    "the data root's path is not UTF-8, and the roster could not hold it: {0}"};
constexpr Phrase pathUnusable{
    "名册里「{0}」的 dbPath 不是绝对路径，无法确定是哪个数据库：「{1}」",
    "the roster's dbPath for {0} is no absolute path, so it names no database: \"{1}\""};
constexpr Phrase rosterUnwritten{
    "数据已经写入数据库，但名册 {0} 无法写入：{1}；排除原因后再导入一次即可完成",
    "the data is in the database, but the roster {0} cannot be written: {1}; mend that and "
    "import again to complete it"};
constexpr Phrase rosterUnread{
    "数据已经写入数据库，但在导入期间，名册 {0} 变得无法读取；修复后再导入一次即可完成",
    "the data is in the database, but the roster {0} became unreadable meanwhile; mend it and "
    "import again to complete it"};

}  // namespace phrases

/// The data root as an absolute path. The roster contains paths and is JSON, so they must be UTF-8.
std::filesystem::path rootOf(const ImportOrder& order) {
  std::filesystem::path root = std::filesystem::absolute(order.dataRoot).lexically_normal();
  const std::string text = repaired(root.string());
  if (text != root.string()) throw Failure(phrases::rootNotUTF8, {text});
  return root;
}

/// The destination of the data.
struct Place {
  std::string id;
  std::filesystem::path database;
  /// The time of the last update of the database; absent when unknown.
  std::optional<double> lastSyncAt;
  std::unique_ptr<MemberFolder> folder;  ///< of a member who is not in the roster yet
};

std::vector<std::string> idsOf(const std::vector<Member>& members) {
  std::vector<std::string> ids(members.size());
  std::ranges::transform(members, ids.begin(), &Member::id);
  return ids;
}

/// The place of a member who is in the roster. A sync after `now` comes from a wrong clock.
Place knownPlace(const Member& member, double now) {
  const std::filesystem::path database = member.dbPath;
  // A relative path would depend on the working folder of the import.
  if (!database.is_absolute()) {
    throw Failure(phrases::pathUnusable, {member.name, member.dbPath});
  }
  // The drive may not be mounted. A new folder would put the data below its mount point.
  if (!std::filesystem::is_directory(database.parent_path())) {
    throw Failure(phrases::folderMissing, {database.parent_path().string()});
  }
  const bool inPast = member.lastSyncAt && *member.lastSyncAt <= now;
  return {.id = member.id,
          .database = database,
          .lastSyncAt = inPast ? member.lastSyncAt : std::nullopt,
          .folder = nullptr};
}

/// The place of a new member, in a new folder.
Place newPlace(const std::vector<Member>& members, const ImportOrder& order,
               const std::filesystem::path& root) {
  auto folder =
      std::make_unique<MemberFolder>(root, order.name, order.id, idsOf(members), randomID);
  // The id may be that of an unfinished import.
  requireDistinct(members, order.name, folder->id());
  requireUnshared(members, folder->database());
  Place place{.id = folder->id(),
              .database = folder->database(),
              .lastSyncAt = std::nullopt,
              .folder = nullptr};
  place.folder = std::move(folder);
  return place;
}

Place placeFor(const std::vector<Member>& members, const ImportOrder& order,
               const std::filesystem::path& root, double now) {
  const std::optional<Member> member = recipient(members, order.name, order.id);
  return member ? knownPlace(*member, now) : newPlace(members, order, root);
}

/// The last component of `path`, which may end in a slash.
std::string lastName(const std::filesystem::path& path) {
  return (path.has_filename() ? path : path.parent_path()).filename().string();
}

/// Reads the export into the open transaction of the reader's sink; returns the bytes read.
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

/// The result of storing one export.
struct Stored {
  RunTally tally;
  Irregularities irregularities;
  std::string timeZone;
  std::optional<std::string> firstDay;  ///< of the whole database
  std::optional<double> exportedAt;     ///< moment; absent when unknown or in the future
};

/// The moment of the export's stamp. An export from the future has a wrong clock. Its time must not
/// make later exports look older.
std::optional<double> exportMoment(const std::optional<std::string>& stamp, double now) {
  const auto moment = stamp ? AppleFormat::stampParser.parse(*stamp) : std::nullopt;
  if (!moment || static_cast<double>(*moment) > now) return std::nullopt;
  return static_cast<double>(*moment);
}

/// Does all work in the database.
Stored store(ExportFile& source, const Place& place, const ImportOrder& order,
             const ImportSurroundings& surroundings) {
  // First, because the zone may forbid this import, and a migration changes the file.
  MemberZone zone({.member = order.name,
                   .id = place.id,
                   .database = place.database,
                   .asked = order.timeZone,
                   .machine = surroundings.timeZone,
                   .interrupted = surroundings.interrupted});
  // Creates the file, and its tables before the one transaction begins.
  Database database(place.database.string(),
                    {.create = true, .readOnly = false, .interrupted = &surroundings.interrupted});
  Schema::migrate(database);
  Writer writer(database,
                {.inUse = place.folder == nullptr,
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
                 .sourceFile = lastName(order.source),
                 .sourceBytes = static_cast<std::int64_t>(bytes),
                 .timeZone = zone.isCertain() ? std::optional(zone.zone().name()) : std::nullopt});

  return {.tally = writer.tally(),
          .irregularities = reader.irregularities(),
          .timeZone = zone.zone().name(),
          .firstDay = writer.firstStoredDay(),
          .exportedAt = exportMoment(writer.tally().exportedAt, now)};
}

/// The same, with errors as Failure. A failure leaves no new database behind.
Stored storeOrExplain(ExportFile& source, const Place& place, const ImportOrder& order,
                      const ImportSurroundings& surroundings) {
  NewDatabase made(place.database);
  try {
    Stored stored = store(source, place, order, surroundings);
    made.keep();
    if (place.folder) place.folder->keep();
    return stored;
  } catch (const DatabaseError& error) {
    // An interruption makes SQLite fail.
    heed(surroundings.interrupted);
    throw databaseFailure(error);
  } catch (const Failure&) {
    // A signal may also have interrupted reading.
    heed(surroundings.interrupted);
    throw;
  }
}

/// Writes the member to the roster. Reads the roster again, because the import may have taken
/// minutes.
void enter(const std::filesystem::path& rosterPath, const std::string& name, const Place& place,
           const Stored& stored, double now) {
  try {
    RosterDocument roster(rosterPath);
    roster.put({.id = place.id,
                .name = name,
                .database = place.database,
                .now = now,
                .exportedAt = stored.exportedAt,
                .firstDay = stored.firstDay});
    roster.write();
  } catch (const Failure&) {
    throw Failure(phrases::rosterUnread, {rosterPath.string()});
  } catch (const std::system_error& error) {
    throw Failure(phrases::rosterUnwritten, {rosterPath.string(), error.code().message()});
  }
}

}  // namespace

Report runImport(const ImportOrder& order, const ImportSurroundings& surroundings) {
  const double began = surroundings.clock();
  // A wrong path or zone is refused before a file is created.
  const std::filesystem::path root = rootOf(order);
  if (order.timeZone) knownZone(*order.timeZone);
  ExportFile source(order.source, surroundings.interrupted);

  Lock lock(root);
  const std::filesystem::path rosterPath = root / "members.json";
  const std::vector<Member> members = RosterDocument(rosterPath).members();
  const Place place = placeFor(members, order, root, began);

  const Stored stored = storeOrExplain(source, place, order, surroundings);

  enter(rosterPath, order.name, place, stored, surroundings.clock());

  if (place.folder) place.folder->finish();
  // Only now: the roster on the disk was just replaced, so it certainly names these members.
  removeObsoleteNotes(root, idsOf(members));
  lock.keep();
  return {.name = order.name,
          .id = place.id,
          .newMember = place.folder != nullptr,
          .source = order.source.string(),
          .tally = stored.tally,
          .timeZone = stored.timeZone,
          .machineTimeZone = surroundings.timeZone,
          .irregularities = stored.irregularities,
          .beside = source.contents(),
          .seconds = surroundings.clock() - began};
}
