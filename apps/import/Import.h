#pragma once
// A whole import: the export, the member's database, the roster.

#include "import/CommandLine.h"
#include "import/Interruption.h"
#include "import/Progress.h"
#include "import/Report.h"
#include "import/database/Writer.h"
#include "platform/Clock.h"
#include "platform/SummaryLang.h"

#include <optional>
#include <ostream>
#include <string>

/// Where an import shows how far it has come, and what time it is there.
struct ImportSurroundings {
  std::ostream& progress;
  Importer::Progress::Kind progressKind;
  SummaryLang lang;
  Clock clock;
  std::optional<std::string> timeZone;  ///< the machine's, by its name; absent when it has none
  /// Memory for pages of the database. What does not fit is written early, inside the transaction.
  int cacheKibibytes = Writer::usualCacheKibibytes;
  /// Whether the user or the system wants the import to stop. Not asked any more once the data is
  /// committed.
  Interrupted interrupted = neverInterrupted;
};

/// Does what `order` says. The database comes first, in one transaction, and the roster last. An
/// import that ends before the commit leaves the member's data and the roster as they were, and no
/// file or folder that it made. What is not data is not undone: tables and columns that an older
/// database lacks, and its write-ahead log mode. A process that is killed also leaves, of a new
/// member, a folder with an empty database. An import that ends between commit and roster is
/// completed by the next of the same name, which finds the data there and only writes the roster.
/// Files are made with the process's creation mask. Refusals and failures leave as Failure
/// (Interruption when the import was asked to stop) or std::system_error.
Report runImport(const ImportOrder& order, const ImportSurroundings& surroundings);
