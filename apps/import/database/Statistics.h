#pragma once
// The statistics tables, which readers use instead of counting the records.

#include "store/Database.h"

#include <cstdint>
#include <optional>
#include <string>

/// All functions run in the caller's transaction. Failures throw DatabaseError.
namespace Statistics {

/// Whether the tables are marked as complete.
bool built(const Database& database);

/// Counts all records again, by type and by source, and marks the tables as complete.
void rebuild(Database& database);

/// The number of sources in the tables.
std::int64_t sources(const Database& database);

/// The first day of all records, for the types in the tables, and of all workouts. The history is
/// complete from this day on. Absent when there are none.
std::optional<std::string> firstDay(const Database& database);

}  // namespace Statistics
