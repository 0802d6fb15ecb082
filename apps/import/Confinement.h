#pragma once
// The confinement of an import or a check before it reads the export.

#include "import/CommandLine.h"

/// Confines this process permanently, as far as the system can, to the needs of `order`. It can
/// read the export, time zones and locales, and change the data root, the folder of the member's
/// database and SQLite's temporary files.
void confine(const ImportOrder& order);

/// The same for a check, which only reads the export.
void confine(const CheckOrder& order);
