#pragma once
// A whole import: the export, the member's database, the roster.

#include "import/ImportCommandLine.h"
#include "import/ImportProgress.h"
#include "import/ImportReport.h"
#include "platform/Clock.h"
#include "summary/SummaryLang.h"

#include <ostream>

/// Where an import shows how far it has come, and what time it is there.
struct ImportSurroundings {
  std::ostream& progress;
  ImportProgress::Kind progressKind;
  SummaryLang lang;
  Clock clock;
};

/// Does what `order` says. The database comes first, in one transaction, and the roster last: an
/// import that ends early leaves both as they were, and one that dies between the two is completed
/// by the next, which finds the data there and only writes the roster. Files are made with the
/// process's creation mask. Refusals and failures leave as ImportError, ReceiverError or
/// std::system_error.
ImportReport runImport(const ImportOrder& order, const ImportSurroundings& surroundings);
