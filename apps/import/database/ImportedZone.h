#pragma once
// The time zone of an imported member's database.

#include "import/Interruption.h"
#include "store/Database.h"

#include <optional>
#include <string>

/// All stamps of one database are in one zone; otherwise one sample could have two texts. The
/// database stores the zone in our own row of `stat_meta`. Failures throw DatabaseError.
namespace ImportedZone {

/// The zone information in a database.
struct State {
  std::optional<std::string> name;  ///< of the zone; absent when no import has stored one
  bool holdsSamples = false;        ///< it contains a record or a workout
};

/// The state of the database at `path`; empty when there is no file. Changes nothing, except that
/// it rolls back the transaction of a killed writer. SQLite may leave `-wal` and `-shm` files
/// beside a database with a write-ahead log. `interrupted` can end the wait for a lock.
State of(const std::string& path, const Interrupted& interrupted = neverInterrupted);

/// Stores `name` as the zone of `database`, in the caller's transaction.
void keep(Database& database, const std::string& name);

}  // namespace ImportedZone
