#pragma once
// A whole import: the export, the member's database, the roster.

#include "import/CommandLine.h"
#include "import/Interruption.h"
#include "import/database/Writer.h"
#include "import/report/Progress.h"
#include "import/report/Report.h"
#include "platform/Clock.h"
#include "platform/SummaryLang.h"

#include <optional>
#include <ostream>
#include <string>

/// The injected environment of an import: progress output, clock, time zone and interruption.
struct ImportSurroundings {
  std::ostream& progress;
  Importer::Progress::Kind progressKind;
  SummaryLang lang;
  Clock clock;
  std::optional<std::string> timeZone;  ///< name of the machine's zone; absent when it has none
  /// Memory for the database's page cache. Pages that do not fit are written early, inside the
  /// transaction.
  int cacheKibibytes = Writer::usualCacheKibibytes;
  /// Whether the user or the system wants the import to stop. No longer called after the commit.
  Interrupted interrupted = neverInterrupted;
};

/// Carries out `order`. The database is written first, in one transaction, and the roster last. An
/// import that ends before the commit leaves the member's data and the roster unchanged, and
/// removes every file and folder that it created. Changes of the schema are not undone: tables and
/// columns that an older database lacked, and the write-ahead log mode. A killed process may also
/// leave a new member's folder with an empty database. If an import ends between the commit and the
/// roster, the next import with the same name completes it: it finds the data and only writes the
/// roster. Files are created with the process's umask. Errors throw Failure (Interruption when the
/// import was asked to stop) or std::system_error.
Report runImport(const ImportOrder& order, const ImportSurroundings& surroundings);
