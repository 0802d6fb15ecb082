#pragma once
// A whole import: the export, the member's database, the roster.

#include "import/ImportCommandLine.h"
#include "import/ImportProgress.h"
#include "import/ImportReport.h"
#include "import/ImportWriter.h"
#include "platform/Clock.h"
#include "summary/SummaryLang.h"

#include <optional>
#include <ostream>
#include <string>

/// Where an import shows how far it has come, and what time it is there.
struct ImportSurroundings {
  std::ostream& progress;
  ImportProgress::Kind progressKind;
  SummaryLang lang;
  Clock clock;
  std::optional<std::string> timeZone;  ///< the machine's, by its name; absent when it has none
  /// Memory for pages of the database. What does not fit is written early, inside the transaction.
  int cacheKibibytes = ImportWriter::usualCacheKibibytes;
};

/// Does what `order` says. The database comes first, in one transaction, and the roster last. An
/// import that ends before the commit leaves the member's data and the roster as they were; what is
/// not data is not undone: tables and columns that an older database lacks, its write-ahead log
/// mode, and of a new member a folder with an empty database when the process was killed. One that
/// ends between the two is completed by the next of the same name, which finds the data there and
/// only writes the roster. Files are made with the process's creation mask. Refusals and failures
/// leave as ImportError, ReceiverError or std::system_error.
ImportReport runImport(const ImportOrder& order, const ImportSurroundings& surroundings);
