#pragma once
// What an import says when it has ended.

#include "import/database/RunTally.h"
#include "import/export/Irregularities.h"
#include "import/xml/ExportFile.h"
#include "platform/SummaryLang.h"

#include <optional>
#include <string>

/// A run that has ended well.
struct Report {
  std::string name;  ///< the member's
  std::string id;    ///< the member's
  bool newMember = false;
  std::string source;  ///< as named on the command line
  RunTally tally;
  std::string timeZone;  ///< that the member's days are in
  /// The machine's, in which the server tells nights; absent when it has no name.
  std::optional<std::string> machineTimeZone;
  Irregularities irregularities;
  ExportContents beside;
  double seconds = 0;  ///< that it took

  bool operator==(const Report&) const = default;
};

/// The report for a person to read, in lines with their last line feed.
std::string reportText(const Report& report, SummaryLang lang);
