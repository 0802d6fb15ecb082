#pragma once
// Replacing a file so that no crash leaves half of it.

#include <filesystem>
#include <string_view>

/// Makes `bytes` the contents of the file at `path`. A new file is readable by its owner alone; one
/// that is replaced keeps its mode, and owner and group where this process may set them. Where the
/// group cannot be kept, the new one may do no more than everybody could. Whoever opens the file,
/// at any moment and after a power failure too, finds all of the old contents or all of the new. A
/// link stays a link: what it leads to is replaced. Two writers of one file must not run at once.
/// Fails with std::filesystem::filesystem_error.
void replaceDurably(const std::filesystem::path& path, std::string_view bytes);

/// Waits until the entries of the folder at `path` have reached the disk. Fails with
/// std::filesystem::filesystem_error.
void syncFolder(const std::filesystem::path& path);
