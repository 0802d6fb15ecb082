#pragma once
// The files of a flawed export: the archive around its XML, or what takes the place of both.

#include "sample/ExportOutput.h"
#include "sample/Flaws.h"

#include <filesystem>
#include <optional>
#include <string>

namespace FlawedFiles {

/// The archive that `flaws` make: its names, its form and the entries beside the text.
ExportOutput::Archive archive(const FlawSet& flaws);

/// What is written in the place of the export's text, or, where the export is empty, of the whole
/// file; `nullopt` where `flaws` leave the export.
std::optional<std::string> inPlaceOf(const FlawSet& flaws, bool isArchive);

/// Cuts the file at `path` in half. Throws std::system_error when it cannot.
void cutOff(const std::filesystem::path& path);

}  // namespace FlawedFiles
