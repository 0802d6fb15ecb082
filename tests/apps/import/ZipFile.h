#pragma once
// Zip archives for tests, sound and unsound.

#include <cstdint>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

/// Makes the archive `path` with these entries (name, contents), deflated.
void writeZip(const std::filesystem::path& path,
              const std::vector<std::pair<std::string, std::string>>& entries);

/// Makes the only entry of the archive `path` declare `size` bytes, in both places that say so.
void declareSize(const std::filesystem::path& path, std::uint32_t size);

/// Makes the only entry of the archive `path` declare a checksum that its bytes do not have.
void spoilChecksum(const std::filesystem::path& path);

/// The bytes of a file.
std::string contentsOf(const std::filesystem::path& path);
