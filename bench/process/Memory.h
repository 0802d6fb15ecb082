#pragma once
// The server's peak resident memory while it answers.

#include "bench/process/Measurement.h"

#include <string>
#include <vector>

namespace Memory {

/// One figure for each tool and the resource in a separate server, one for all of them in the same
/// server, and one for the largest possible answer. larkspur_bench must have run on the data root
/// before. Throws std::runtime_error when the server returns an error.
std::vector<Measurement> peaks(const std::vector<std::string>& server);

}  // namespace Memory
