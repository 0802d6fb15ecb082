#pragma once
// The rows of the table: calls, and what each may cost at most.

#include "Floor.h"
#include "Subject.h"

#include <functional>
#include <string>
#include <vector>

/// A call, and the queries that its answer cannot do without.
struct Comparison {
  std::string what;
  std::function<std::string()> ours;  ///< makes the call, returns its answer
  std::vector<BareQuery> floor;
  double target;  ///< times the floor
};

/// Every tool and the resource, asked about `subject`, which outlives them.
std::vector<Comparison> comparisons(Subject& subject);
