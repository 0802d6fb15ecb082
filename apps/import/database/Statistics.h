#pragma once
// The tables of statistics, which readers trust instead of counting the records.

#include "store/Database.h"

#include <cstdint>
#include <optional>
#include <string>

/// All run inside the caller's transaction; failures leave as DatabaseError.
namespace Statistics {

/// Whether the tables are marked as complete.
bool built(const Database& database);

/// Counts all records anew, by type and by source, and marks the tables as complete.
void rebuild(Database& database);

/// How many sources the tables name.
std::int64_t sources(const Database& database);

/// The first day of all records, by the types that the tables name, and of all workouts: the day
/// from which the history is complete. Absent when there are none.
std::optional<std::string> firstDay(const Database& database);

}  // namespace Statistics
