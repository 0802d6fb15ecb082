#pragma once
// The coverage of a member's data: what there is and how complete it is. It is made here alone.

#include "roster/IngestPayload.h"
#include "summary/SummaryDataSource.h"
#include "summary/SummaryModel.h"

#include <optional>
#include <span>

namespace Coverage {

/// What the notice under an answer tells: the range of days, and whether the history is still
/// coming in. It counts as such while there are records and they span fewer than 400 days.
SummaryCoverage ofDays(const RecordedDays& days);

/// All that a summary tells but the kinds of data. The roster's `backfill` says how complete the
/// history is; without one its length does. `lastSyncAt` is in seconds since 1970. Years that
/// cannot be counted are left out. Throws what the source throws when anything else cannot be read.
SummaryCoverage ofSummary(const SummaryDataSource& source, std::optional<double> lastSyncAt,
                          const std::optional<BackfillState>& backfill);

/// Adds the kinds of data: the title of each card but the overview, under what became of its data.
/// A card that is still filling in is under none. Without records there are no kinds.
void addKinds(SummaryCoverage& coverage, std::span<const SummaryCard> cards);

}  // namespace Coverage
