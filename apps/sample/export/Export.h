#pragma once
// What one member of the household would export from the phone's Health app.

#include "sample/Options.h"
#include "sample/Progress.h"

#include <ostream>

/// Writes the export that `options` describe, made on the morning of `today`, and one closing line
/// to `report`. Importing it into the time zone of the member's home gives what the household of
/// the same options has of that member, as `Imported` hands it on; imperial numbers were rounded on
/// the way. Its flaws are those of Flaws.h; the
/// closing line counts the clean part alone. Throws UsageError when the household has no member of
/// that name or identifier, ReceiverError when the file exists already; fails with
/// std::system_error, and leaves no file behind, when it cannot write.
void writeExport(const Options& options, CivilDay today, std::ostream& report, Progress& progress);
