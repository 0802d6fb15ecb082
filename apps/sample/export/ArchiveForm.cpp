#include "sample/export/ArchiveForm.h"

#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <fstream>
#include <string>
#include <string_view>
#include <system_error>

namespace {

constexpr std::uint64_t all16 = 0xFFFF;
constexpr std::uint64_t all32 = 0xFFFFFFFF;
constexpr std::uint16_t sizesField = 1;  ///< id of the extra field with 64-bit sizes
constexpr std::uint64_t descriptorFlag = 8;
constexpr std::uint64_t zip64Version = 45;

// Offsets of numbers, from the start of their record.
constexpr std::size_t localSize = 30;
constexpr std::size_t entrySize = 46;
constexpr std::size_t endSize = 22;
constexpr std::size_t locatorSize = 20;
constexpr std::size_t end64Size = 56;

/// The little-endian number in the `count` bytes from `at` on.
std::uint64_t number(std::string_view bytes, std::size_t at, std::size_t count) {
  std::uint64_t value = 0;
  for (std::size_t index = count; index > 0; --index) {
    value = value << 8U | static_cast<unsigned char>(bytes.at(at + index - 1));
  }
  return value;
}

void set(std::string& bytes, std::size_t at, std::size_t count, std::uint64_t value) {
  for (std::size_t index = 0; index < count; ++index) {
    bytes.at(at + index) = static_cast<char>(value >> (8 * index) & 0xFFU);
  }
}

void append(std::string& bytes, std::size_t count, std::uint64_t value) {
  bytes.append(count, '\0');
  set(bytes, bytes.size() - count, count, value);
}

/// The offset of the extra field with 64-bit sizes among the fields from `at` to `end`; `end` when
/// there is none.
std::size_t sizesAmong(std::string_view bytes, std::size_t at, std::size_t end) {
  while (at < end && number(bytes, at, 2) != sizesField) at += 4 + number(bytes, at + 2, 2);
  return at;
}

/// An archive whose end is read, changed and rewritten.
class Archive {
public:
  explicit Archive(const std::filesystem::path& path) : path(path) {
    file.exceptions(std::ios::badbit | std::ios::failbit);
    file.open(path, std::ios::in | std::ios::out | std::ios::binary);
    readEnd();
    directory = read(directoryAt, directory.size());
    while (last + sizeOfEntry(last) < directory.size()) last += sizeOfEntry(last);
    readLastEntry();
  }

  void addDescriptor();
  void widen();
  void write();

private:
  std::string read(std::uint64_t at, std::size_t size) {
    std::string bytes(size, '\0');
    file.seekg(static_cast<std::streamoff>(at));
    file.read(bytes.data(), static_cast<std::streamsize>(size));
    return bytes;
  }

  std::size_t sizeOfEntry(std::size_t at) const {
    return entrySize + number(directory, at + 28, 2) + number(directory, at + 30, 2) +
           number(directory, at + 32, 2);
  }

  void readEnd();
  void readLastEntry();

  std::filesystem::path path;
  std::fstream file;
  std::string end;  ///< the last part of the file
  std::uint64_t directoryAt = 0;
  std::string directory;
  std::string between;       ///< the bytes between the last data and the directory
  std::size_t last = 0;      ///< offset of the last entry in the directory
  std::uint64_t packed = 0;  ///< compressed size of the last entry
  std::uint64_t unpacked = 0;
  std::uint64_t localAt = 0;  ///< offset of its local header
  std::uint64_t entries = 0;
  bool isWide = false;  ///< the end of the archive has the 64-bit form
};

void Archive::readEnd() {
  const std::uint64_t size = std::filesystem::file_size(path);
  end = read(size - endSize, endSize);
  entries = number(end, 10, 2);
  directory.resize(number(end, 12, 4));
  directoryAt = number(end, 16, 4);
  if (directoryAt != all32) return;
  isWide = true;
  const std::string locator = read(size - endSize - locatorSize, locatorSize);
  const std::string end64 = read(number(locator, 8, 8), end64Size);
  entries = number(end64, 32, 8);
  directory.resize(number(end64, 40, 8));
  directoryAt = number(end64, 48, 8);
}

/// Numbers that do not fit are in the extra field, in this order.
void Archive::readLastEntry() {
  const std::size_t extra = last + entrySize + number(directory, last + 28, 2);
  std::size_t wide = 4 + sizesAmong(directory, extra, extra + number(directory, last + 30, 2));
  const auto told = [&](std::size_t at) {
    const std::uint64_t value = number(directory, last + at, 4);
    if (value != all32) return value;
    wide += 8;
    return number(directory, wide - 8, 8);
  };
  unpacked = told(24);
  packed = told(20);
  localAt = told(42);
}

void Archive::addDescriptor() {
  const std::uint64_t checksum = number(directory, last + 16, 4);
  set(directory, last + 8, 2, number(directory, last + 8, 2) | descriptorFlag);

  std::string local = read(localAt, localSize);
  const std::size_t extra = localSize + number(local, 26, 2);
  local = read(localAt, extra + number(local, 28, 2));
  set(local, 6, 2, number(local, 6, 2) | descriptorFlag);
  const std::size_t sizes = sizesAmong(local, extra, local.size());
  const bool isLong = sizes < local.size();
  set(local, 14, 4, 0);
  set(local, 18, 4, isLong ? all32 : 0);
  set(local, 22, 4, isLong ? all32 : 0);
  if (isLong) {
    set(local, sizes + 4, 8, 0);
    set(local, sizes + 12, 8, 0);
  }
  file.seekp(static_cast<std::streamoff>(localAt));
  file.write(local.data(), static_cast<std::streamsize>(local.size()));

  const std::size_t width = isLong ? 8 : 4;
  between = "PK\x07\x08";
  append(between, 4, checksum);
  append(between, width, packed);
  append(between, width, unpacked);
}

void Archive::widen() {
  isWide = true;
  const std::size_t extra = last + entrySize + number(directory, last + 28, 2);
  const std::size_t length = number(directory, last + 30, 2);
  const std::size_t sizes = sizesAmong(directory, extra, extra + length);
  if (sizes < extra + length) {
    directory.erase(sizes, 4 + number(directory, sizes + 2, 2));
  }
  std::string field;
  append(field, 2, sizesField);
  append(field, 2, 24);
  append(field, 8, unpacked);
  append(field, 8, packed);
  append(field, 8, localAt);
  directory.insert(extra, field);
  const std::size_t newLength = directory.size() - extra - number(directory, last + 32, 2);
  set(directory, last + 30, 2, newLength);
  set(directory, last + 6, 2, zip64Version);
  set(directory, last + 20, 4, all32);
  set(directory, last + 24, 4, all32);
  set(directory, last + 42, 4, all32);
}

void Archive::write() {
  const std::uint64_t newDirectoryAt = directoryAt + between.size();
  std::string tail = between + directory;
  if (isWide) {
    const std::uint64_t end64At = newDirectoryAt + directory.size();
    tail += "PK\x06\x06";
    append(tail, 8, end64Size - 12);
    append(tail, 2, zip64Version);
    append(tail, 2, zip64Version);
    append(tail, 8, 0);  // the numbers of this disk and of the directory's disk
    append(tail, 8, entries);
    append(tail, 8, entries);
    append(tail, 8, directory.size());
    append(tail, 8, newDirectoryAt);
    tail += "PK\x06\x07";
    append(tail, 4, 0);
    append(tail, 8, end64At);
    append(tail, 4, 1);
    set(end, 8, 2, all16);
    set(end, 10, 2, all16);
  }
  set(end, 12, 4, isWide ? all32 : directory.size());
  set(end, 16, 4, isWide ? all32 : newDirectoryAt);
  tail += end;
  file.seekp(static_cast<std::streamoff>(directoryAt));
  file.write(tail.data(), static_cast<std::streamsize>(tail.size()));
  file.close();
}

}  // namespace

void reshapeArchive(const std::filesystem::path& path, ArchiveForm form) {
  if (form == ArchiveForm{}) return;
  try {
    Archive archive(path);
    if (form.dataDescriptor) archive.addDescriptor();
    if (form.zip64) archive.widen();
    archive.write();
  } catch (const std::ios_base::failure&) {
    throw std::system_error(errno == 0 ? EIO : errno, std::generic_category(), path.string());
  }
}
