#pragma once
// The household's "members.json": devices and histories in every form of a receiver.

#include "roster/Roster.h"
#include "sample/life/History.h"
#include "sample/life/Person.h"

#include <filesystem>
#include <optional>
#include <string>

/// The path of the member's database under `dataRoot`.
std::filesystem::path databasePath(const std::filesystem::path& dataRoot, const Person& person);

/// The roster's entry of the member at `position`, counted from 0, with its database at `database`.
Member memberOf(const Person& person, std::size_t position, const HistoryOptions& options,
                const std::filesystem::path& database);

/// The entry of a member with imported data only: no device is paired, and the history is complete
/// from `firstDay` on.
Member importedMemberOf(const Person& person, const HistoryOptions& options,
                        const std::filesystem::path& database,
                        const std::optional<std::string>& firstDay);

/// Writes the roster to `path`, readable by its owner only, completely or not at all. Throws
/// std::filesystem::filesystem_error.
void writeRoster(const std::filesystem::path& path, const Roster::File& file);
