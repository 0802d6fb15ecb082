#pragma once
// The server's confinement before it reads its first line.

#include "platform/Logger.h"
#include "roster/Roster.h"

#include <filesystem>
#include <vector>

/// Confines this process permanently, as far as the system can, to the needs of a server of
/// `dataRoot` and `members`. It can read the databases, time zones and locales, and write SQLite's
/// files beside the databases. Open descriptors stay usable. Logs at level debug what is in force.
void confine(const std::filesystem::path& dataRoot, const std::vector<Member>& members,
             Logger& log);
