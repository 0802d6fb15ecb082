#pragma once
// The baseline of reading: inflating the archive and parsing its XML.

#include "bench/import/Cost.h"

#include <filesystem>

/// The cost of inflating the export.xml in the archive at `path` and parsing it with an empty
/// handler. Like the import, it skips the document type declaration, which would cost the parser a
/// look-up for every attribute. Throws std::runtime_error for anything except a valid export.
Cost bareParse(const std::filesystem::path& path);
