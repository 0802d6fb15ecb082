#pragma once
// The rows of the table: calls and their permitted ratios.

#include "Floor.h"
#include "Subject.h"

#include <functional>
#include <string>
#include <vector>

/// A call, and the baseline of its answer.
struct Comparison {
  std::string what;
  std::function<std::string()> ours;  ///< makes the call and returns its answer
  std::vector<BareQuery> floor;
  double target;  ///< permitted ratio to the baseline

  /// Whether the call is about a range of days. Its time must not depend on the number of other
  /// days.
  bool isOfRange = false;

  /// Makes the same answer as a JSON document for the baseline to encode; may be empty.
  std::function<std::string()> document = nullptr;
};

/// Every tool and the resource, called for `subject`, which must outlive them.
std::vector<Comparison> comparisons(Subject& subject);
