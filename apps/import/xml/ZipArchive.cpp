#include "import/xml/ZipArchive.h"
#include "import/Failure.h"
#include "platform/Phrase.h"

#include <zip.h>

#include <algorithm>
#include <span>
#include <utility>

namespace {

namespace phrases {
constexpr Phrase noArchive{"{0} 不是完整的 zip 文件，可能没有传完：{1}",
                           "{0} is not a complete zip archive, it may be cut off: {1}"};
constexpr Phrase unreadable{"zip 里的导出文件无法读取，没有保存任何数据：{0}",
                            "The export in the zip archive cannot be read, nothing was "
                            "stored: {0}"};
constexpr Phrase tooLong{"zip 里的导出文件超过它声明的 {0} 字节，没有保存任何数据。",
                         "The export in the zip archive holds more than the {0} bytes that "
                         "it declares; nothing was stored."};
constexpr Phrase tooShort{"zip 里的导出文件不到它声明的 {0} 字节，没有保存任何数据。",
                          "The export in the zip archive holds less than the {0} bytes that "
                          "it declares; nothing was stored."};
}  // namespace phrases

struct EntryCloser {
  void operator()(zip_file* file) const { zip_fclose(file); }
};

using EntryHandle = std::unique_ptr<zip_file, EntryCloser>;

EntryHandle entryHandle(zip* archive, const ZipEntry& entry) {
  EntryHandle handle(zip_fopen_index(archive, entry.index, 0));
  if (!handle) throw Failure(phrases::unreadable, {zip_strerror(archive)});
  return handle;
}

std::size_t readSome(zip_file* file, std::span<char> buffer) {
  const zip_int64_t count = zip_fread(file, buffer.data(), buffer.size());
  if (count < 0) throw Failure(phrases::unreadable, {zip_file_strerror(file)});
  return static_cast<std::size_t>(count);
}

/// One entry, together with its archive.
class ZipEntrySource : public ByteSource {
public:
  ZipEntrySource(ZipArchive whole, ZipEntry chosen, EntryHandle opened)
      : archive(std::move(whole)), entry(std::move(chosen)), handle(std::move(opened)) {}

  std::size_t read(std::span<char> buffer) override {
    const std::uint64_t left = entry.size - taken;
    if (left == 0) {
      checkEnd();
      return 0;
    }
    const auto wanted = static_cast<std::size_t>(std::min<std::uint64_t>(left, buffer.size()));
    const std::size_t count = readSome(handle.get(), buffer.first(wanted));
    if (count == 0) throw Failure(phrases::tooShort, {std::to_string(entry.size)});
    taken += count;
    return count;
  }

private:
  /// Reads once more. This finds bytes beyond the declared size, and only a read at the end
  /// verifies the checksum.
  void checkEnd() {
    char beyond = 0;
    if (readSome(handle.get(), {&beyond, 1}) != 0) {
      throw Failure(phrases::tooLong, {std::to_string(entry.size)});
    }
  }

  ZipArchive archive;
  ZipEntry entry;
  EntryHandle handle;  // closed before its archive
  std::uint64_t taken = 0;
};

/// libzip's message for `error`, as a copy.
std::string words(int error) {
  zip_error_t details;
  zip_error_init_with_code(&details, error);
  std::string text = zip_error_strerror(&details);
  zip_error_fini(&details);
  return text;
}

}  // namespace

void ZipArchive::Closer::operator()(zip* handle) const { zip_discard(handle); }

ZipArchive::ZipArchive(const std::filesystem::path& path) {
  int error = 0;
  archive.reset(zip_open(path.c_str(), ZIP_RDONLY, &error));
  if (!archive) throw Failure(phrases::noArchive, {path.string(), words(error)});

  const zip_int64_t count = zip_get_num_entries(archive.get(), 0);
  for (zip_uint64_t index = 0; std::cmp_less(index, count); ++index) {
    zip_stat_t entry;
    if (zip_stat_index(archive.get(), index, 0, &entry) != 0) continue;
    if ((entry.valid & ZIP_STAT_NAME) == 0 || (entry.valid & ZIP_STAT_SIZE) == 0) continue;
    std::string name = entry.name;
    std::ranges::replace(name, '\\', '/');
    list.push_back({.name = std::move(name), .index = index, .size = entry.size});
  }
}

std::string ZipArchive::beginning(const ZipEntry& entry, std::size_t size) const {
  const EntryHandle handle = entryHandle(archive.get(), entry);
  std::string bytes(static_cast<std::size_t>(std::min<std::uint64_t>(size, entry.size)), '\0');
  std::size_t count = 0;
  while (count < bytes.size()) {
    const std::size_t more = readSome(handle.get(), std::span(bytes).subspan(count));
    if (more == 0) break;
    count += more;
  }
  bytes.resize(count);
  return bytes;
}

std::unique_ptr<ByteSource> ZipArchive::opened(const ZipEntry& entry) && {
  ZipEntry chosen = entry;
  EntryHandle handle = entryHandle(archive.get(), chosen);
  return std::make_unique<ZipEntrySource>(std::move(*this), std::move(chosen), std::move(handle));
}
