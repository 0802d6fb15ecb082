#pragma once
// The time zone that an imported member's database is in.

#include "import/Interruption.h"
#include "store/Database.h"

#include <optional>
#include <string>

/// The stamps of one database are all in one zone, or one sample would come to have two texts. The
/// database itself says which, in a row of `stat_meta` that is ours. Failures leave as
/// DatabaseError.
namespace ImportedZone {

/// What a database says of itself.
struct State {
  std::optional<std::string> name;  ///< of the zone; absent when no import has kept one
  bool holdsSamples = false;        ///< it has a record or a workout
};

/// That of the database at `path`; without either when there is no file. Changes nothing but what a
/// killed writer left to be undone. Beside a database with a write-ahead log SQLite may leave its
/// `-wal` and `-shm` files. `interrupted` may end the wait for somebody's lock.
State of(const std::string& path, const Interrupted& interrupted = neverInterrupted);

/// Makes `name` the zone of `database`, in the caller's transaction.
void keep(Database& database, const std::string& name);

}  // namespace ImportedZone
