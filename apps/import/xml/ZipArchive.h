#pragma once
// A zip archive, its entries and the bytes of one of them.

#include "platform/ByteSource.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

struct zip;

/// One entry. The name is UTF-8, its folders set apart by "/", and ends with one for a folder.
struct ZipEntry {
  std::string name;
  std::uint64_t index = 0;
  std::uint64_t size = 0;  ///< bytes that it declares to hold, uncompressed
};

/// An archive open for reading, with entries and offsets beyond 4 GiB. Throws Failure for one
/// that is cut off or broken; what is said names no entry, for the archive chose the names.
class ZipArchive {
public:
  explicit ZipArchive(const std::filesystem::path& path);

  const std::vector<ZipEntry>& entries() const { return list; }

  /// The first bytes of `entry`, `size` at most.
  std::string beginning(const ZipEntry& entry, std::size_t size) const;

  /// The bytes of `entry`; what reads them takes the archive over. Reading throws Failure when
  /// there are fewer or more of them than the entry declares, and when they do not match its
  /// checksum; nothing beyond the declared size is handed out.
  std::unique_ptr<ByteSource> opened(const ZipEntry& entry) &&;

private:
  struct Closer {
    void operator()(zip* handle) const;
  };

  std::unique_ptr<zip, Closer> archive;
  std::vector<ZipEntry> list;
};
