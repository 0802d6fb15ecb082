#pragma once
// The closing report of an import.

#include "import/database/RunTally.h"
#include "import/export/Irregularities.h"
#include "import/xml/ExportFile.h"
#include "platform/SummaryLang.h"

#include <optional>
#include <string>

/// The results of a successful run.
struct Report {
  std::string name;  ///< the member's
  std::string id;    ///< the member's
  bool newMember = false;
  std::string source;  ///< as given on the command line
  RunTally tally;
  std::string timeZone;  ///< zone of the member's days
  /// The machine's zone, which the server uses for nights; absent when it has no name.
  std::optional<std::string> machineTimeZone;
  Irregularities irregularities;
  ExportContents beside;
  double seconds = 0;  ///< duration

  bool operator==(const Report&) const = default;
};

/// The report as text in lines, including the last line feed.
std::string reportText(const Report& report, SummaryLang lang);
