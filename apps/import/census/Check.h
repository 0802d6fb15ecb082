#pragma once
// Reads an export completely without storing any of it.

#include "import/CommandLine.h"
#include "import/Failure.h"
#include "import/Interruption.h"
#include "import/census/Census.h"
#include "import/report/Progress.h"
#include "platform/Clock.h"
#include "platform/SummaryLang.h"

#include <optional>
#include <ostream>

/// The injected environment of a check: progress output, clock and interruption.
struct CheckSurroundings {
  std::ostream& progress;
  Importer::Progress::Kind progressKind;
  SummaryLang lang;
  Clock clock;                                 ///< for durations; may count from any moment
  Interrupted interrupted = neverInterrupted;  ///< whether the user or the system wants it to stop
};

/// The result of a check.
struct CheckOutcome {
  Census census;                   ///< of the readable part
  std::optional<Failure> failure;  ///< why the export cannot be read completely
};

/// Reads the export of `order` like an import for a new member, and counts. Creates, writes and
/// locks nothing and opens no other file. Throws Failure when the export cannot be opened, and
/// Interruption, without a result, when it was asked to stop.
CheckOutcome runCheck(const CheckOrder& order, const CheckSurroundings& surroundings);
