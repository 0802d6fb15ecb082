#include "sample/export/ExportOutput.h"
#include "platform/ControlProtocol.h"

#include <zip.h>

#include <cerrno>
#include <cstdint>
#include <exception>
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

/// A file that goes away again unless it is kept.
class Unfinished {
public:
  explicit Unfinished(std::filesystem::path path) : path(std::move(path)) {}
  ~Unfinished() {
    std::error_code ignored;
    if (!path.empty()) std::filesystem::remove(path, ignored);
  }
  Unfinished(const Unfinished&) = delete;
  Unfinished& operator=(const Unfinished&) = delete;

  void keepAs(const std::filesystem::path& name) {
    std::filesystem::rename(path, name);
    path.clear();
  }

private:
  std::filesystem::path path;
};

}  // namespace

void ExportOutput::writeFile(const std::filesystem::path& path, const Pieces& pieces) {
  if (std::filesystem::exists(path)) refuseExisting(path);
  std::filesystem::path place = path;
  place += ".new";
  Unfinished unfinished(place);
  errno = 0;
  std::ofstream file(place, std::ios::binary | std::ios::trunc);
  while (file) {
    const std::string_view piece = pieces();
    if (piece.empty()) break;
    file.write(piece.data(), static_cast<std::streamsize>(piece.size()));
  }
  file.close();
  if (!file) fail(path, errno == 0 ? EIO : errno);
  unfinished.keepAs(path);
}

namespace {

/// The pieces as libzip reads them. An exception must not pass through its C code: it is kept.
struct PiecesSource {
  const ExportOutput::Pieces& pieces;
  std::string_view rest = {};
  std::exception_ptr failure = {};
  zip_error_t error = {};

  zip_int64_t read(char* place, std::size_t size) {
    try {
      if (rest.empty()) rest = pieces();
    } catch (...) {
      failure = std::current_exception();
      zip_error_set(&error, ZIP_ER_INTERNAL, 0);
      return -1;
    }
    const std::size_t count = rest.copy(place, size);
    rest.remove_prefix(count);
    return static_cast<zip_int64_t>(count);
  }
};

zip_int64_t answer(void* state, void* data, zip_uint64_t size, zip_source_cmd_t command) {
  auto& source = *static_cast<PiecesSource*>(state);
  switch (command) {
    case ZIP_SOURCE_SUPPORTS:
      return ZIP_SOURCE_SUPPORTS_READABLE;
    case ZIP_SOURCE_OPEN:
    case ZIP_SOURCE_CLOSE:
    case ZIP_SOURCE_FREE:
      return 0;
    case ZIP_SOURCE_READ:
      return source.read(static_cast<char*>(data), size);
    case ZIP_SOURCE_STAT:
      zip_stat_init(static_cast<zip_stat_t*>(data));
      return sizeof(zip_stat_t);
    case ZIP_SOURCE_ERROR:
      return zip_error_to_data(&source.error, data, size);
    default:
      zip_error_set(&source.error, ZIP_ER_OPNOTSUPP, 0);
      return -1;
  }
}

[[noreturn]] void fail(const std::filesystem::path& path, zip_error_t* error) {
  if (zip_error_system_type(error) == ZIP_ET_SYS) fail(path, zip_error_code_system(error));
  const std::string message = path.string() + ": " + zip_error_strerror(error);
  throw std::system_error(EIO, std::generic_category(), message);
}

struct Discard {
  void operator()(zip_t* archive) const { zip_discard(archive); }
};
using Handle = std::unique_ptr<zip_t, Discard>;

Handle newHandle(const std::filesystem::path& path) {
  int code = 0;
  Handle archive(zip_open(path.c_str(), ZIP_CREATE | ZIP_EXCL, &code));
  if (archive) return archive;
  if (code == ZIP_ER_EXISTS) refuseExisting(path);
  zip_error_t error;
  zip_error_init_with_code(&error, code);
  fail(path, &error);
}

/// Seven in the morning of `day`, or of the nearest day that an archive can name.
std::pair<zip_uint16_t, zip_uint16_t> timeAndDate(CivilDay day) {
  const unsigned year =
      static_cast<unsigned>(std::clamp(static_cast<int>(day.year()), 1980, 2107)) - 1980;
  const unsigned date =
      year << 9 | static_cast<unsigned>(day.month()) << 5 | static_cast<unsigned>(day.day());
  return {static_cast<zip_uint16_t>(7U << 11), static_cast<zip_uint16_t>(date)};
}

/// An archive under construction.
class NewArchive {
public:
  NewArchive(const std::filesystem::path& path, CivilDay day)
      : path(path), time(timeAndDate(day)), handle(newHandle(path)) {}

  /// `contents` stay until `close`.
  void add(const std::string& name, const std::string& contents) {
    add(name, zip_source_buffer(handle.get(), contents.data(), contents.size(), 0), false);
  }

  /// `state` stays until `close`.
  void add(const std::string& name, PiecesSource& state, bool isStored) {
    add(name, zip_source_function(handle.get(), answer, &state), isStored);
  }

  /// Writes a temporary file, which then gets the archive's name. False when that fails.
  bool close() {
    if (zip_close(handle.get()) != 0) return false;
    static_cast<void>(handle.release());
    return true;
  }

  [[noreturn]] void fail() const { ::fail(path, zip_get_error(handle.get())); }

private:
  void add(const std::string& name, zip_source_t* source, bool isStored) {
    if (source == nullptr) fail();
    const zip_int64_t index = zip_file_add(handle.get(), name.c_str(), source, ZIP_FL_ENC_UTF_8);
    if (index < 0) {
      zip_source_free(source);
      fail();
    }
    // The lightest compression: an export shrinks to a fourteenth even so.
    constexpr zip_uint32_t lightest = 1;
    const auto entry = static_cast<zip_uint64_t>(index);
    const zip_int32_t method = isStored ? ZIP_CM_STORE : ZIP_CM_DEFLATE;
    if (zip_set_file_compression(handle.get(), entry, method, isStored ? 0 : lightest) != 0 ||
        zip_file_set_dostime(handle.get(), entry, time.first, time.second, 0) != 0) {
      fail();
    }
  }

  std::filesystem::path path;
  std::pair<zip_uint16_t, zip_uint16_t> time;
  Handle handle;
};

}  // namespace

void ExportOutput::writeZip(const std::filesystem::path& path, const Archive& contents,
                            CivilDay day, const Pieces& pieces) {
  PiecesSource state{.pieces = pieces};
  zip_error_init(&state.error);
  NewArchive archive(path, day);
  for (const auto& [name, text] : contents.before) archive.add(name, text);
  archive.add(contents.name, state, contents.isStored);

  // Nothing was read until now.
  if (!archive.close()) {
    if (state.failure) std::rethrow_exception(state.failure);
    archive.fail();
  }
  Unfinished unfinished(path);
  reshapeArchive(path, contents.form);
  unfinished.keepAs(path);
}
