#pragma once
// What an import or a check gives up before it reads the first byte of the export.

#include "import/CommandLine.h"

/// Confines this process, for good and as far as the system can, to what `order` needs: it reads
/// the export, time zones and locales, and changes the data root, the folder of the member's
/// database and SQLite's temporary files.
void confine(const ImportOrder& order);

/// The same for a check, which reads the export and nothing else.
void confine(const CheckOrder& order);
