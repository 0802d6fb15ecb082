#pragma once
// The six cards of a summary: their rows, and the text of a row without a figure.

#include "summary/SummaryEngine.h"
#include "summary/SummaryModel.h"

#include <set>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace Cards {

inline constexpr std::string_view overviewKey = "overview";

/// The input of every card.
struct Context {
  const SummaryEngine& engine;
  const SummaryCoverage&
      coverage;  ///< complete except for the lists of kinds, which depend on the cards
  const std::set<std::string>& presentTypes;  ///< record types ever stored
  bool hasWatch;
};

/// The cards in display order: overview, activity, heart, sleep, workouts, body. Every card is
/// always there; a row without a figure states the reason.
std::vector<SummaryCard> all(const Context& context);

/// The state of a card, the first of these that any row has: present, suspicious, expected to be
/// absent, backfilling.
DataState cardState(std::span<const Metric> metrics);

/// The text of a row without a figure; "" for `present`.
std::string_view stateText(DataState state, bool needsWatch, SummaryLang lang);

}  // namespace Cards
