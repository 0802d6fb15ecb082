#pragma once
// The files of a flawed export: the archive around its XML, or a replacement of both.

#include "sample/export/ExportOutput.h"
#include "sample/flaws/Flaws.h"

#include <filesystem>
#include <optional>
#include <string>

namespace FlawedFiles {

/// The archive with `flaws`: its names, its form and the entries beside the text.
ExportOutput::Archive archive(const FlawSet& flaws);

/// Whether an export that should be an archive becomes a plain file.
bool isBare(const FlawSet& flaws);

/// The replacement of the export's text or, for a plain file, of the archive; `nullopt` when
/// `flaws` replace nothing. `path` is the intended path of the export.
std::optional<std::string> inPlaceOf(const FlawSet& flaws, const std::filesystem::path& path,
                                     bool isArchive);

/// The actual path of a file with the intended path `path`.
std::filesystem::path placeOf(const FlawSet& flaws, const std::filesystem::path& path);

/// Truncates the file at `path` to half its size. Throws std::system_error on failure.
void cutOff(const std::filesystem::path& path);

}  // namespace FlawedFiles
