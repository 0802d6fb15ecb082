#pragma once
// A zip archive, its entries and their bytes.

#include "platform/ByteSource.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

struct zip;

/// One entry. The name is UTF-8, with "/" between folders; a folder's name ends with "/".
struct ZipEntry {
  std::string name;
  std::uint64_t index = 0;
  std::uint64_t size = 0;  ///< declared uncompressed size in bytes
};

/// An archive open for reading; sizes and offsets may exceed 4 GiB. Throws Failure for a truncated
/// or broken archive. The message contains no name of an entry, because the archive chooses the
/// names.
class ZipArchive {
public:
  explicit ZipArchive(const std::filesystem::path& path);

  const std::vector<ZipEntry>& entries() const { return list; }

  /// The first bytes of `entry`, at most `size`.
  std::string beginning(const ZipEntry& entry, std::size_t size) const;

  /// The bytes of `entry`; the returned source owns the archive. Reading throws Failure when the
  /// entry has fewer or more bytes than it declares, or does not match its checksum. No byte beyond
  /// the declared size is returned.
  std::unique_ptr<ByteSource> opened(const ZipEntry& entry) &&;

private:
  struct Closer {
    void operator()(zip* handle) const;
  };

  std::unique_ptr<zip, Closer> archive;
  std::vector<ZipEntry> list;
};
