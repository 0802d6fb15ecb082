#include "apps/import/ZipFile.h"

#include <zip.h>

#include <cstddef>
#include <fstream>
#include <iterator>
#include <stdexcept>

void writeZip(const std::filesystem::path& path,
              const std::vector<std::pair<std::string, std::string>>& entries) {
  int error = 0;
  zip_t* const archive = zip_open(path.c_str(), ZIP_CREATE | ZIP_TRUNCATE, &error);
  if (archive == nullptr) throw std::runtime_error("zip_open fails");
  for (const auto& [name, contents] : entries) {
    // The archive is written when it is closed; until then `entries` holds the bytes.
    zip_source_t* const source =
        zip_source_buffer(archive, contents.data(), contents.size(), /*freep=*/0);
    if (zip_file_add(archive, name.c_str(), source, ZIP_FL_ENC_UTF_8) < 0) {
      throw std::runtime_error(zip_strerror(archive));
    }
  }
  if (zip_close(archive) != 0) throw std::runtime_error(zip_strerror(archive));
}

void declareSize(const std::filesystem::path& path, std::uint32_t size) {
  constexpr std::size_t sizeInLocalHeader = 22;
  constexpr std::size_t sizeInDirectory = 24;
  std::string bytes = contentsOf(path);
  const auto write = [&](std::size_t position) {
    for (std::size_t index = 0; index < 4; ++index) {
      bytes.at(position + index) = static_cast<char>((size >> (8 * index)) & 0xFFU);
    }
  };
  write(bytes.find("PK\x03\x04") + sizeInLocalHeader);
  write(bytes.rfind("PK\x01\x02") + sizeInDirectory);
  std::ofstream(path, std::ios::binary) << bytes;
}

void spoilChecksum(const std::filesystem::path& path) {
  constexpr std::size_t checksumInLocalHeader = 14;
  constexpr std::size_t checksumInDirectory = 16;
  std::string bytes = contentsOf(path);
  bytes.at(bytes.find("PK\x03\x04") + checksumInLocalHeader) ^= 1;
  bytes.at(bytes.rfind("PK\x01\x02") + checksumInDirectory) ^= 1;
  std::ofstream(path, std::ios::binary) << bytes;
}

std::string contentsOf(const std::filesystem::path& path) {
  std::ifstream stream(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}
