#pragma once
// A finished summary as plain text, the form in which a model reads it.

#include "platform/Locale.h"
#include "platform/SummaryLang.h"
#include "summary/SummaryModel.h"

#include <string>

namespace SummaryText {

/// What goes around the summary itself.
struct Options {
  bool includeOpening = false;    ///< a sentence that asks a model to look at the data
  bool includeSignature = false;  ///< who made the text
};

/// The summary, lines joined by "\n", none at the end: coverage notice, cards, observations. Rows
/// without a text are left out. `now` (seconds since 1970) tells how old the last sync is.
std::string render(const HealthSummary& summary, SummaryLang lang, Options options, double now,
                   const DigitGrouping& grouping);

/// The coverage notice alone: what exists, what is missing and why, and that a gap is no finding.
std::string coverageBlock(const SummaryCoverage& coverage, SummaryLang lang, double now,
                          const DigitGrouping& grouping);

}  // namespace SummaryText
