#pragma once
// Writes an export into a member's database.

#include "import/database/RunTally.h"
#include "import/export/ExportSink.h"
#include "import/export/FirstUnits.h"
#include "store/Database.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// Writes in one transaction, which `finish` commits. A run that ends in any other way, including a
/// killed process and a power failure, leaves the database unchanged. Stored data stays as it is,
/// except for the rings of a day, which a newer export corrects. A sample also counts as stored
/// when its unit was changed on the phone since. The numbers of one type are all in one unit. A
/// type without a unit in StoredUnit uses the unit of the database. A number that cannot be
/// converted to it is stored as exported, and counted. Failures throw DatabaseError.
class Writer final : public ExportSink {
public:
  static constexpr int usualCacheKibibytes = 24576;

  struct Options {
    /// The roster contains the member, so another process may be reading the database.
    bool inUse = true;
    /// Time of the last export or sync in the database, seconds since 1970. The rings of an older
    /// export replace none.
    std::optional<double> lastSyncAt = std::nullopt;
    /// Memory for the page cache. Pages that do not fit are written early, inside the transaction.
    int cacheKibibytes = usualCacheKibibytes;
  };

  /// The run's row in the table of imports.
  struct Origin {
    std::string importedAt;        ///< stamp
    std::string sourceFile;        ///< the export's name
    std::int64_t sourceBytes = 0;  ///< size of the XML
    /// The name of the stamps' zone, to be stored for every later import; absent when it is not
    /// certain.
    std::optional<std::string> timeZone = std::nullopt;
  };

  /// Begins the transaction. `database` must have the current schema, be writable and have no open
  /// transaction. It must outlive the writer.
  Writer(Database& database, Options options);

  void exportedAt(std::string_view stamp) override;
  void add(const ExportedRecord& record) override;
  void add(const ExportedWorkout& workout) override;
  void add(const ExportedActivityDay& day) override;
  void notStored(std::string_view element) override;
  void skipped(std::string_view reason, long long line) override;

  /// Updates the statistics and commits. The writer must not be used afterwards.
  void finish(const Origin& origin);

  /// Complete after `finish`.
  const RunTally& tally() const { return counts; }

  /// The first day of all records and workouts in the database, after `finish`; absent without any.
  const std::optional<std::string>& firstStoredDay() const { return firstStored; }

private:
  std::optional<std::string> firstUnitOf(const ExportedRecord& record);
  bool isStored(const ExportedRecord& record);
  void bindIfChanged(std::size_t position, std::optional<std::string_view> text);
  bool isStored(const ExportedActivityDay& day);
  void addHumidity(const WorkoutEntry& entry);
  void insertRun(const Origin& origin);

  Database& database;
  Options options;
  std::int64_t lastRowBefore;
  Statement findRecord;
  Statement insertRecord;
  Statement insertWorkout;
  Statement insertHumidity;
  Statement findDay;
  Statement replaceDay;
  /// The values bound to the first four positions of `insertRecord`: neighbours share most of them.
  std::array<std::optional<std::string>, 4> bound;
  FirstUnits firstUnits;
  bool olderExport = false;
  RunTally counts;
  std::optional<std::string> firstStored;
};
