#pragma once
// Elements of the clean export, written in the ways of flawed ones.

#include "sample/flaws/Flaws.h"
#include "sample/life/Random.h"

#include <cstdint>
#include <string>

/// Writes elements in other words. What they say stays the same, to a reader who knows the flaws.
class RewrittenElements {
public:
  /// Which elements a flaw meets follows from `seed`, and from no other flaw.
  RewrittenElements(const FlawSet& flaws, std::uint64_t seed);

  /// `element`, a whole one of the root with its line feed, as the flaws make it: the same, other
  /// words for it, or several elements.
  std::string rewritten(std::string element);

private:
  FlawSet flaws;
  Random addresses;
  Random control;
  Random repetition;
};
