#pragma once
// The six cards of a summary: which rows they have, and what stands in a row without a figure.

#include "summary/SummaryEngine.h"
#include "summary/SummaryModel.h"

#include <set>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace Cards {

inline constexpr std::string_view overviewKey = "overview";

/// What every card is made from.
struct Context {
  const SummaryEngine& engine;
  const SummaryCoverage&
      coverage;  ///< complete but for the lists of kinds, which follow from the cards
  const std::set<std::string>& presentTypes;  ///< ever stored
  bool hasWatch;
};

/// The cards in display order: overview, activity, heart, sleep, workouts, body. A card is always
/// there; a figure that does not exist leaves its row with a reason.
std::vector<SummaryCard> all(const Context& context);

/// What a card's rows say together: present when one is, else suspicious when one is, else expected
/// to be absent when one is, else backfilling.
DataState cardState(std::span<const Metric> metrics);

/// What stands in a row without a figure; "" for `present`.
std::string_view stateText(DataState state, bool needsWatch, SummaryLang lang);

}  // namespace Cards
