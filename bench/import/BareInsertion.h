#pragma once
// The baseline of writing: its rows, and nothing but them.

#include "bench/import/Cost.h"

#include <filesystem>

/// The cost of inserting every row that an import made in the database at `source` into a new one
/// at `target`: the same tables, indexes, settings and order, one transaction, waited for until the
/// disk has it. The rows are taken from `source` beforehand, so that reading them costs nothing
/// here. What the import counts afterwards is not among them. Failures leave as DatabaseError.
Cost bareInsertion(const std::filesystem::path& source, const std::filesystem::path& target);
