#pragma once
// Puts an export into a member's database.

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

/// Writes in one transaction, which `finish` commits: a run that ends in any other way, the death
/// of the process and a power failure included, leaves the database as it was. What is stored
/// already stays as it is, but for the rings of a day, which a newer export knows better. A sample
/// whose unit was changed on the phone since it was stored is stored already. The numbers of one
/// type are all in one unit: a type for which StoredUnit has none takes the one that the database
/// has; what cannot be converted to it is stored as exported and counted. Failures leave as
/// DatabaseError.
class Writer final : public ExportSink {
public:
  static constexpr int usualCacheKibibytes = 24576;

  struct Options {
    /// The roster names the member, so somebody may be reading the database meanwhile.
    bool inUse = true;
    /// Moment of the last export or sync that the database holds, seconds since 1970. The rings of
    /// an older export replace none.
    std::optional<double> lastSyncAt = std::nullopt;
    /// Memory for pages. What does not fit is written early, inside the transaction.
    int cacheKibibytes = usualCacheKibibytes;
  };

  /// What the table of imports keeps of the run.
  struct Origin {
    std::string importedAt;        ///< stamp
    std::string sourceFile;        ///< the export's name
    std::int64_t sourceBytes = 0;  ///< of XML
    /// The name of the zone that the stamps are in, to be kept for every later import; absent when
    /// that is not certain.
    std::optional<std::string> timeZone = std::nullopt;
  };

  /// Begins. `database` has the present schema, may be written, has no open transaction, and
  /// outlives the writer.
  Writer(Database& database, Options options);

  void exportedAt(std::string_view stamp) override;
  void add(const ExportedRecord& record) override;
  void add(const ExportedWorkout& workout) override;
  void add(const ExportedActivityDay& day) override;
  void notStored(std::string_view element) override;
  void skipped(std::string_view reason, long long line) override;

  /// Brings the statistics up to date and commits. The writer takes nothing more.
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
  /// What the first four positions of `insertRecord` are bound to: neighbours share most of it.
  std::array<std::optional<std::string>, 4> bound;
  FirstUnits firstUnits;
  bool olderExport = false;
  RunTally counts;
  std::optional<std::string> firstStored;
};
