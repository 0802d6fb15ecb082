#pragma once
// Atomic replacement of a file: a crash never leaves a partial file.

#include <filesystem>
#include <string_view>

/// Replaces the contents of the file at `path` with `bytes`, atomically and durably. A reader at
/// any moment, also after a power failure, finds either all of the old contents or all of the new.
/// A new file is readable by its owner only. A replaced file keeps its mode, and its owner and
/// group if this process may set them. If the group cannot be kept, the new group gets no more
/// rights than everybody had. A symbolic link stays a link; its target is replaced. Two processes
/// must not write one file at once. Throws std::filesystem::filesystem_error.
void replaceDurably(const std::filesystem::path& path, std::string_view bytes);

/// Waits until the entries of the folder at `path` are on the disk. Throws
/// std::filesystem::filesystem_error.
void syncFolder(const std::filesystem::path& path);
