#pragma once
// Reads an export to its end without storing any of it.

#include "import/CommandLine.h"
#include "import/Failure.h"
#include "import/Interruption.h"
#include "import/Progress.h"
#include "import/census/Census.h"
#include "platform/Clock.h"
#include "platform/SummaryLang.h"

#include <optional>
#include <ostream>

/// Where a check shows how far it has come, and what may end it.
struct CheckSurroundings {
  std::ostream& progress;
  Importer::Progress::Kind progressKind;
  SummaryLang lang;
  Clock clock;                                 ///< for how long it takes; may count from any moment
  Interrupted interrupted = neverInterrupted;  ///< whether the user or the system wants it to stop
};

/// What came of it.
struct CheckOutcome {
  Census census;                   ///< of what could be read
  std::optional<Failure> failure;  ///< why the export cannot be read whole
};

/// Reads the export that `order` names as an import for a new member would, and counts. Makes,
/// writes and locks nothing and opens no other file. An export that cannot even be opened throws
/// Failure; a check that was asked to stop throws Interruption, and has no outcome.
CheckOutcome runCheck(const CheckOrder& order, const CheckSurroundings& surroundings);
