#include "sample/export/ExportOutput.h"
#include "platform/ReceiverError.h"

#include <zip.h>

#include <cerrno>
#include <fstream>
#include <memory>
#include <system_error>
#include <utility>

namespace {

[[noreturn]] void fail(const std::filesystem::path& path, int error) {
  throw std::system_error(error, std::generic_category(), path.string());
}

[[noreturn]] void refuseExisting(const std::filesystem::path& path) {
  throw ReceiverError(path.string() +
                      " exists already, and an export is never written over: remove it or give"
                      " --export another name");
}

/// A new file with a temporary longer name. The destructor removes it unless it was kept.
class Unfinished {
public:
  Unfinished(std::filesystem::path name, const char* suffix) : name(std::move(name)) {
    if (std::filesystem::exists(this->name)) refuseExisting(this->name);
    place = this->name;
    place += suffix;
  }
  ~Unfinished() {
    std::error_code ignored;
    std::filesystem::remove(place, ignored);
  }
  Unfinished(const Unfinished&) = delete;
  Unfinished& operator=(const Unfinished&) = delete;

  void write(const ExportOutput::Pieces& pieces) const {
    errno = 0;
    std::ofstream file(place, std::ios::binary | std::ios::trunc);
    while (file) {
      const std::string_view piece = pieces();
      if (piece.empty()) break;
      file.write(piece.data(), static_cast<std::streamsize>(piece.size()));
    }
    file.close();
    if (!file) fail(name, errno == 0 ? EIO : errno);
  }

  void keep() const {
    // Writing takes a while; another program may have used the name meanwhile.
    if (std::filesystem::exists(name)) refuseExisting(name);
    std::filesystem::rename(place, name);
  }

  std::filesystem::path name;
  std::filesystem::path place;  ///< its path until it is kept
};

}  // namespace

void ExportOutput::writeFile(const std::filesystem::path& path, const Pieces& pieces) {
  const Unfinished file(path, ".new");
  file.write(pieces);
  file.keep();
}

namespace {

[[noreturn]] void fail(const std::filesystem::path& path, zip_error_t* error) {
  if (zip_error_system_type(error) == ZIP_ET_SYS) fail(path, zip_error_code_system(error));
  const std::string message = path.string() + ": " + zip_error_strerror(error);
  throw std::system_error(EIO, std::generic_category(), message);
}

struct Discard {
  void operator()(zip_t* archive) const { zip_discard(archive); }
};
using Handle = std::unique_ptr<zip_t, Discard>;

Handle newHandle(const Unfinished& file) {
  int code = 0;
  // Truncates the leftover of an interrupted run.
  Handle archive(zip_open(file.place.c_str(), ZIP_CREATE | ZIP_TRUNCATE, &code));
  if (archive) return archive;
  zip_error_t error;
  zip_error_init_with_code(&error, code);
  fail(file.name, &error);
}

/// 7:00 in the morning of `day`, or of the nearest day in the archive format's range.
std::pair<zip_uint16_t, zip_uint16_t> timeAndDate(CivilDay day) {
  const unsigned year =
      static_cast<unsigned>(std::clamp(static_cast<int>(day.year()), 1980, 2107)) - 1980;
  const unsigned date =
      year << 9 | static_cast<unsigned>(day.month()) << 5 | static_cast<unsigned>(day.day());
  return {static_cast<zip_uint16_t>(7U << 11), static_cast<zip_uint16_t>(date)};
}

/// A new archive.
class NewArchive {
public:
  /// `file` must outlive the archive.
  NewArchive(const Unfinished& file, CivilDay day)
      : file(file), time(timeAndDate(day)), handle(newHandle(file)) {}

  /// `contents` must exist until `close`.
  void add(const std::string& name, const std::string& contents) {
    add(name, zip_source_buffer(handle.get(), contents.data(), contents.size(), 0), false);
  }

  /// The file at `text` must exist until `close`.
  void add(const std::string& name, const std::filesystem::path& text, bool isStored) {
    constexpr zip_int64_t toItsEnd = -1;
    add(name, zip_source_file(handle.get(), text.c_str(), 0, toItsEnd), isStored);
  }

  /// Reads and writes everything; nothing happens before.
  void close() {
    if (zip_close(handle.get()) != 0) fail();
    static_cast<void>(handle.release());
  }

private:
  void add(const std::string& name, zip_source_t* source, bool isStored) {
    if (source == nullptr) fail();
    const zip_int64_t index = zip_file_add(handle.get(), name.c_str(), source, ZIP_FL_ENC_UTF_8);
    if (index < 0) {
      zip_source_free(source);
      fail();
    }
    // The fastest compression: it still reduces an export to a fourteenth.
    constexpr zip_uint32_t lightest = 1;
    const auto entry = static_cast<zip_uint64_t>(index);
    const zip_int32_t method = isStored ? ZIP_CM_STORE : ZIP_CM_DEFLATE;
    if (zip_set_file_compression(handle.get(), entry, method, isStored ? 0 : lightest) != 0 ||
        zip_file_set_dostime(handle.get(), entry, time.first, time.second, 0) != 0) {
      fail();
    }
  }

  [[noreturn]] void fail() const { ::fail(file.name, zip_get_error(handle.get())); }

  const Unfinished& file;
  std::pair<zip_uint16_t, zip_uint16_t> time;
  Handle handle;
};

}  // namespace

void ExportOutput::writeZip(const std::filesystem::path& path, const Archive& contents,
                            CivilDay day, const Pieces& pieces) {
  const Unfinished text(path, ".xml.new");
  text.write(pieces);

  const Unfinished file(path, ".new");
  NewArchive archive(file, day);
  for (const auto& [name, other] : contents.before) archive.add(name, other);
  archive.add(contents.name, text.place, contents.isStored);
  archive.close();
  reshapeArchive(file.place, contents.form);
  file.keep();
}
