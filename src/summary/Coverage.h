#pragma once
// The coverage of a member's data: what exists and how complete it is. No other code computes it.

#include "roster/IngestPayload.h"
#include "summary/SummaryDataSource.h"
#include "summary/SummaryModel.h"

#include <optional>
#include <span>

namespace Coverage {

/// The coverage for the notice under an answer: the range of days, and whether the history is still
/// coming in. The latter is assumed while there are records and they span fewer than 400 days.
SummaryCoverage ofDays(const RecordedDays& days);

/// Adds the counts and the state of the history to the source's own coverage. The roster's
/// `backfill` says how complete the history is; without it, the length of the history decides.
/// `lastSyncAt` is in seconds since 1970. Yearly counts that cannot be read are omitted. Any other
/// reading error of the source is thrown.
void addHistory(SummaryCoverage& coverage, const SummaryDataSource& source,
                std::optional<double> lastSyncAt, const std::optional<BackfillState>& backfill);

/// Adds the kinds of data: each card's title, except the overview's, is listed under the card's
/// state. A backfilling card is listed nowhere. Without records there are no kinds.
void addKinds(SummaryCoverage& coverage, std::span<const SummaryCard> cards);

}  // namespace Coverage
