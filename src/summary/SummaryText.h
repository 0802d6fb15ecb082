#pragma once
// A finished summary as plain text, for a model to read.

#include "platform/Locale.h"
#include "platform/SummaryLang.h"
#include "summary/SummaryModel.h"

#include <string>

namespace SummaryText {

/// Optional parts around the summary.
struct Options {
  bool includeOpening = false;    ///< a sentence that asks a model to look at the data
  bool includeSignature = false;  ///< a line that names the program
};

/// The summary as lines joined by "\n", without one at the end: coverage notice, cards,
/// observations. Rows without a text are omitted. `now` (seconds since 1970) determines the age of
/// the last sync.
std::string render(const HealthSummary& summary, SummaryLang lang, Options options, double now,
                   const DigitGrouping& grouping);

/// Only the coverage notice: what exists, what is missing and why, and that a gap is not a finding.
std::string coverageBlock(const SummaryCoverage& coverage, SummaryLang lang, double now,
                          const DigitGrouping& grouping);

}  // namespace SummaryText
