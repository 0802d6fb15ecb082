#pragma once
// The household's "members.json": devices and histories in every form that a receiver writes.

#include "roster/Roster.h"
#include "sample/life/History.h"
#include "sample/life/Person.h"

#include <filesystem>
#include <optional>
#include <string>

/// Where the member's database lies under `dataRoot`.
std::filesystem::path databasePath(const std::filesystem::path& dataRoot, const Person& person);

/// The roster's entry of the `position`th member, counted from 0, whose database lies at
/// `database`.
Member memberOf(const Person& person, std::size_t position, const HistoryOptions& options,
                const std::filesystem::path& database);

/// The entry of somebody whose history came from an export alone: no device is paired, and the
/// history is complete from `firstDay` on.
Member importedMemberOf(const Person& person, const HistoryOptions& options,
                        const std::filesystem::path& database,
                        const std::optional<std::string>& firstDay);

/// Writes the roster to `path`, readable by the owner alone, and complete or not at all. Fails with
/// std::filesystem::filesystem_error.
void writeRoster(const std::filesystem::path& path, const Roster::File& file);
