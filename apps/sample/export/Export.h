#pragma once
// A Health app export of one member of the household.

#include "sample/Options.h"
#include "sample/Progress.h"

#include <ostream>

/// Writes the export of `options`, made on the morning of `today`, and one closing line to
/// `report`. Importing it into the home's time zone gives the member's data as in a household with
/// the same options and `asImported`. With imperial units the numbers were rounded. Its flaws are
/// those of Flaws.h; the closing line counts only the clean part. Throws UsageError when no member
/// of the household has that name or id, and ReceiverError when the file already exists. Throws
/// std::system_error, and leaves no file, when writing fails.
void writeExport(const Options& options, CivilDay today, std::ostream& report, Progress& progress);
