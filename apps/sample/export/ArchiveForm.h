#pragma once
// The forms in which zip archives store the sizes of their entries.

#include <filesystem>

/// The form of an archive's last entry and of the archive's end.
struct ArchiveForm {
  bool dataDescriptor = false;  ///< checksum and sizes follow the data instead of preceding it
  bool zip64 = false;           ///< the directory has the 64-bit form, even for small numbers

  bool operator==(const ArchiveForm&) const = default;
};

/// Converts the archive at `path`, which must have no comment, to `form`. A data descriptor has
/// 64-bit sizes if the local header of the last entry has them, otherwise 32-bit sizes. Only that
/// header and the part after the data are rewritten. Throws std::system_error when reading or
/// writing fails; the archive is then unusable.
void reshapeArchive(const std::filesystem::path& path, ArchiveForm form);
