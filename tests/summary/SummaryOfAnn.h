#pragma once
// Members without a database and their summaries at noon of 17 March 2024.

#include "summary/SummaryEngine.h"
#include "support/MemorySource.h"
#include "support/Moment.h"

#include <cstdint>
#include <optional>
#include <string>

inline const double noon = moment("2024-03-17 12:00:00 +0000");

/// A member with `records` samples from `firstDay` to `lastDay`.
inline MemorySource sourceOf(std::int64_t records, const std::string& firstDay,
                             const std::string& lastDay) {
  MemorySource source;
  source.covered.records = records;
  source.covered.firstDay = firstDay;
  source.covered.lastDay = lastDay;
  source.covered.typeCount = 1;
  return source;
}

inline HealthSummary summaryOf(const MemorySource& source,
                               const std::optional<BackfillState>& backfill = std::nullopt,
                               SummaryLang lang = SummaryLang::en) {
  return SummaryEngine(source, noon, lang, {}).build("p1", "Ann", std::nullopt, backfill);
}
