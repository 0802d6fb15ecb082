#pragma once
// What an import says when it has ended.

#include "import/ExportFile.h"
#include "import/ImportTally.h"
#include "summary/SummaryLang.h"

#include <cstdint>
#include <optional>
#include <string>

/// A run that has ended well.
struct ImportReport {
  std::string name;  ///< the member's
  std::string id;    ///< the member's
  bool newMember = false;
  std::string source;  ///< as named on the command line
  ImportTally tally;
  std::string timeZone;  ///< that the member's days are in
  /// The machine's, in which the server tells nights; absent when it has no name.
  std::optional<std::string> machineTimeZone;
  std::int64_t unreadableStamps = 0;
  std::int64_t repeatedAttributes = 0;
  std::int64_t droppedCharacters = 0;
  std::int64_t replacedSequences = 0;
  ExportContents beside;
  double seconds = 0;  ///< that it took

  bool operator==(const ImportReport&) const = default;
};

/// The report for a person to read, in lines with their last line feed.
std::string reportText(const ImportReport& report, SummaryLang lang);
