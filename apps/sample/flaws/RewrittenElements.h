#pragma once
// Elements of the clean export, rewritten with flaws.

#include "sample/flaws/Flaws.h"
#include "sample/life/Random.h"

#include <cstdint>
#include <string>

/// Rewrites elements. Their meaning stays the same for a reader that knows the flaws.
class RewrittenElements {
public:
  /// `seed` alone decides which elements get a flaw; other flaws have no influence.
  RewrittenElements(const FlawSet& flaws, std::uint64_t seed);

  /// `element`, a whole element of the root with its line feed, with the flaws: unchanged,
  /// rewritten, or several elements.
  std::string rewritten(std::string element);

private:
  FlawSet flaws;
  Random addresses;
  Random control;
  Random repetition;
};
