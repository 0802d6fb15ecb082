#pragma once
// What it costs to import an export, beside its baseline.

#include "bench/process/Measurement.h"

#include <filesystem>
#include <vector>

namespace ImportCost {

/// The time and the memory that the program `importer` takes to bring the archive `source` into a
/// new data root. Makes its databases in the folder of `source` and removes them. Throws
/// std::runtime_error when the import fails; failures of a database leave as DatabaseError.
std::vector<Measurement> measured(const std::filesystem::path& importer,
                                  const std::filesystem::path& source);

}  // namespace ImportCost
