#pragma once
// The lines of a report about an export, including those common to all such reports.

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

/// A report as text in one language.
class ReportPage {
public:
  ReportPage(SummaryLang lang, DigitGrouping grouping);

  /// Adds a line: `phrase` with its marks replaced by `values`.
  void add(const Phrase& phrase, std::initializer_list<std::string_view> values = {});

  /// Adds a line with a count, unless the count is 0.
  void addUnlessZero(const Phrase& phrase, std::int64_t count);

  /// Adds what was converted, tolerated and not stored, by reason and by name. The files of
  /// `beside` are next to the export.xml and are not stored either.
  void addTroubles(const RunTally& tally, const Irregularities& irregularities,
                   const ExportContents& beside);

  void addTime(double seconds);

  /// `count` with its digits grouped.
  std::string number(std::int64_t count) const { return grouped(count, grouping); }

  /// All lines, including the last line feed.
  std::string text() const { return lines.joined() + "\n"; }

private:
  std::string notStored(const RunTally& tally, const ExportContents& beside) const;

  SummaryLang lang;
  DigitGrouping grouping;
  Lines lines;
};
