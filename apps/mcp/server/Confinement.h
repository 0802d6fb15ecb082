#pragma once
// What a server gives up before it reads its first line.

#include "platform/Logger.h"
#include "roster/Roster.h"

#include <filesystem>
#include <vector>

/// Confines this process, for good and as far as the system can, to what a server of `dataRoot` and
/// `members` needs: it reads the databases, time zones and locales, and writes what SQLite keeps
/// beside databases, and what is open. Says to `log` at level debug what holds.
void confine(const std::filesystem::path& dataRoot, const std::vector<Member>& members,
             Logger& log);
