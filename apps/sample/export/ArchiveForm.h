#pragma once
// The ways in which zip archives tell how large their entries are.

#include <filesystem>

/// The form of an archive's last entry, and of the archive's end.
struct ArchiveForm {
  bool dataDescriptor = false;  ///< checksum and sizes follow the data instead of preceding it
  bool zip64 = false;           ///< the directory has the 64-bit form, however small the numbers

  bool operator==(const ArchiveForm&) const = default;
};

/// Brings the archive at `path` into `form`. The archive has no comment, and the local header of
/// its last entry has the 64-bit form: an archive written entry after entry without knowing sizes
/// beforehand. Only what follows the data is written again. Throws std::system_error when it cannot
/// be read or written; the archive is then of no use.
void reshapeArchive(const std::filesystem::path& path, ArchiveForm form);
