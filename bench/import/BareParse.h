#pragma once
// The baseline of reading: the archive inflated, its XML told apart.

#include "bench/import/Cost.h"

#include <filesystem>

/// The cost of inflating the export.xml in the archive at `path` and parsing it with a handler that
/// does nothing. Like the import, it passes over the document type declaration, which would cost
/// the parser a look-up for every attribute. Throws std::runtime_error for anything but a sound
/// export.
Cost bareParse(const std::filesystem::path& path);
