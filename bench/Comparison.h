#pragma once
// The rows of the table: calls, and what each may cost at most.

#include "Floor.h"
#include "Subject.h"

#include <functional>
#include <string>
#include <vector>

/// A call, and the baseline of its answer.
struct Comparison {
  std::string what;
  std::function<std::string()> ours;  ///< makes the call, returns its answer
  std::vector<BareQuery> floor;
  double target;  ///< times the baseline

  /// Whether the call is about a range of days, which takes as long however many others there are.
  bool isOfRange = false;

  /// Makes the same answer as a JSON document, which the baseline then encodes; may be empty.
  std::function<std::string()> document = nullptr;
};

/// Every tool and the resource, asked about `subject`, which outlives them.
std::vector<Comparison> comparisons(Subject& subject);
