#pragma once
// The cost of importing an export, compared with its baseline.

#include "bench/process/Measurement.h"

#include <filesystem>
#include <vector>

namespace ImportCost {

/// The time and the memory of the program `importer` for importing the archive `source` into a new
/// data root. Creates its databases in the folder of `source` and removes them. Throws
/// std::runtime_error when the import fails, and DatabaseError when a database fails.
std::vector<Measurement> measured(const std::filesystem::path& importer,
                                  const std::filesystem::path& source);

}  // namespace ImportCost
