#pragma once
// The lines of a report about an export, and those that all such reports have in common.

#include "import/database/RunTally.h"
#include "import/export/Irregularities.h"
#include "import/xml/ExportFile.h"
#include "platform/Locale.h"
#include "platform/Phrase.h"
#include "platform/SummaryLang.h"
#include "platform/Text.h"

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>

/// A report for a person to read, in one language.
class ReportPage {
public:
  ReportPage(SummaryLang lang, DigitGrouping grouping);

  /// A line: `phrase` with its marks replaced by `values`.
  void add(const Phrase& phrase, std::initializer_list<std::string_view> values = {});

  /// Leaves the line out when there is nothing to count.
  void addUnlessZero(const Phrase& phrase, std::int64_t count);

  /// What was converted, put up with and left out, by reason and by name. `beside` lies beside the
  /// export.xml and is not stored either.
  void addTroubles(const RunTally& tally, const Irregularities& irregularities,
                   const ExportContents& beside);

  void addTime(double seconds);

  /// `count` with its digits grouped.
  std::string number(std::int64_t count) const { return grouped(count, grouping); }

  /// All lines, with their last line feed.
  std::string text() const { return lines.joined() + "\n"; }

private:
  std::string notStored(const RunTally& tally, const ExportContents& beside) const;

  SummaryLang lang;
  DigitGrouping grouping;
  Lines lines;
};
