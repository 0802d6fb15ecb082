#pragma once
// The ways in which zip archives tell how large their entries are.

#include <filesystem>

/// The form of an archive's last entry, and of the archive's end.
struct ArchiveForm {
  bool dataDescriptor = false;  ///< checksum and sizes follow the data instead of preceding it
  bool zip64 = false;           ///< the directory has the 64-bit form, however small the numbers

  bool operator==(const ArchiveForm&) const = default;
};

/// Brings the archive at `path`, which has no comment, into `form`. A data descriptor has 64-bit
/// sizes where the local header of the last entry has them, else 32-bit ones. Beside that header,
/// only what follows the data is written again. Throws std::system_error when it cannot be read or
/// written; the archive is then of no use.
void reshapeArchive(const std::filesystem::path& path, ArchiveForm form);
