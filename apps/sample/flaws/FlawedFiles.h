#pragma once
// The files of a flawed export: the archive around its XML, or what takes the place of both.

#include "sample/export/ExportOutput.h"
#include "sample/flaws/Flaws.h"

#include <filesystem>
#include <optional>
#include <string>

namespace FlawedFiles {

/// The archive that `flaws` make: its names, its form and the entries beside the text.
ExportOutput::Archive archive(const FlawSet& flaws);

/// Whether the export, which is to be an archive, becomes a file without an archive.
bool isBare(const FlawSet& flaws);

/// What is written in the place of the export's text, or, where the file is bare, of the archive;
/// `nullopt` where `flaws` leave the export. `path` is where the export was to be.
std::optional<std::string> inPlaceOf(const FlawSet& flaws, const std::filesystem::path& path,
                                     bool isArchive);

/// Where the file goes that was to be at `path`.
std::filesystem::path placeOf(const FlawSet& flaws, const std::filesystem::path& path);

/// Cuts the file at `path` in half. Throws std::system_error when it cannot.
void cutOff(const std::filesystem::path& path);

}  // namespace FlawedFiles
