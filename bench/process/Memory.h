#pragma once
// The most memory that the server has resident while it answers.

#include "bench/process/Measurement.h"

#include <string>
#include <vector>

namespace Memory {

/// One figure for each tool and the resource in a server of its own, one for all of them in the
/// same server, one for the largest answer there is. The data root is one that larkspur_bench has
/// been run on. Throws std::runtime_error when the server refuses a request.
std::vector<Measurement> peaks(const std::vector<std::string>& server);

}  // namespace Memory
