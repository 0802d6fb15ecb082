#include "summary/Coverage.h"
#include "platform/AppleFormat.h"
#include "summary/Cards.h"
#include "summary/SummaryEngine.h"

#include <utility>

std::int64_t RecordCounts::total() const {
  std::int64_t total = withoutYear;
  for (const auto& [year, count] : byYear) total += count;
  return total;
}

namespace {

/// Whether these days count as an unfinished history, when the roster says nothing about it.
bool spansTooFewDays(const SummaryCoverage& coverage) {
  return AppleFormat::daysBetween(coverage.firstDay, coverage.lastDay) < 400;
}

SummaryCoverage rangeOf(RecordedDays days) {
  SummaryCoverage coverage;
  coverage.firstDay = std::move(days.first);
  coverage.lastDay = std::move(days.last);
  coverage.typeCount = days.typeCount;
  return coverage;
}

}  // namespace

SummaryCoverage Coverage::ofDays(const RecordedDays& days) {
  SummaryCoverage coverage = rangeOf(days);
  coverage.backfilling = days.typeCount > 0 && spansTooFewDays(coverage);
  return coverage;
}

SummaryCoverage SummaryDataSource::coverage() const {
  SummaryCoverage coverage = rangeOf(recordedDays());
  coverage.devices = devices();
  return coverage;
}

namespace {

void addBackfill(SummaryCoverage& coverage, const std::optional<BackfillState>& backfill) {
  if (!backfill) {
    coverage.backfilling = coverage.records > 0 && spansTooFewDays(coverage);
    return;
  }
  coverage.backfilling = coverage.records > 0 && !backfill->done;
  const bool allIsThere = backfill->done && backfill->earliest;
  coverage.completeFrom = allIsThere ? *backfill->earliest : backfill->completeFrom.value_or("");
  coverage.backfillFrontier = backfill->frontier.value_or("");
}

}  // namespace

void Coverage::addHistory(SummaryCoverage& coverage, const SummaryDataSource& source,
                          std::optional<double> lastSyncAt,
                          const std::optional<BackfillState>& backfill) {
  auto counts = orNothing([&source] { return source.yearlyCounts(); });
  coverage.records = counts ? counts->total() : source.recordCount();
  if (counts) coverage.yearly = std::move(counts->byYear);
  addBackfill(coverage, backfill);
  coverage.lastSyncAt = lastSyncAt;
}

void Coverage::addKinds(SummaryCoverage& coverage, std::span<const SummaryCard> cards) {
  if (coverage.records < 1) return;
  for (const SummaryCard& card : cards) {
    if (card.key == Cards::overviewKey) continue;
    switch (card.state) {
      case DataState::present:
        coverage.collected.push_back(card.title);
        break;
      case DataState::absentExpected:
        coverage.absentExpected.push_back(card.title);
        break;
      case DataState::absentSuspicious:
        coverage.suspicious.push_back(card.title);
        break;
      case DataState::backfilling:
        break;
    }
  }
}
