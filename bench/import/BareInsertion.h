#pragma once
// The baseline of writing: inserting the same rows and nothing else.

#include "bench/import/Cost.h"

#include <filesystem>

/// The cost of inserting every row of the imported database at `source` into a new one at `target`.
/// Tables, indexes, settings and order are the same, in one transaction that waits for the disk.
/// Reading the rows from `source` is not part of the cost. The import's statistics are not part of
/// the baseline. Failures throw DatabaseError.
Cost bareInsertion(const std::filesystem::path& source, const std::filesystem::path& target);
