#include "platform/DurableFile.h"
#include "platform/Descriptor.h"
#include "platform/Files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

namespace {

[[noreturn]] void fail(const std::filesystem::path& path) {
  throw std::filesystem::filesystem_error(
      "cannot write", path, std::error_code(errno, std::generic_category()));
}

/// The result of `call`, repeated while a signal interrupts it: a write must be complete.
template <typename Call>
int uninterrupted(Call call) {
  int result = -1;
  do {
    result = call();
  } while (result < 0 && errno == EINTR);
  return result;
}

/// An open file. Errors contain its path.
class OpenFile {
public:
  OpenFile(const std::filesystem::path& path, int flags)
      : path(path), descriptor(Descriptor::ofFile(path, flags)) {
    if (!descriptor) fail(path);
  }

  void write(std::string_view bytes) const {
    if (!writeAll(descriptor.get(), bytes)) fail(path);
  }

  /// Waits until the written bytes are on the disk.
  void sync() const {
#ifdef F_FULLFSYNC
    // On macOS fsync stops at the drive's cache; F_FULLFSYNC flushes that too. Not every file
    // system supports it.
    if (uninterrupted([this] { return fcntl(descriptor.get(), F_FULLFSYNC); }) == 0) return;
#endif
    if (uninterrupted([this] { return fsync(descriptor.get()); }) != 0) fail(path);
  }

  /// Copies mode, owner and group from `other`. Only the administrator may change a file's owner.
  void take(const struct stat& other) const {
    struct stat own {};
    if (fstat(descriptor.get(), &own) != 0) fail(path);
    const bool sameOwner = own.st_uid == other.st_uid;
    const bool sameGroup = own.st_gid == other.st_gid;
    constexpr auto unchanged = static_cast<uid_t>(-1);
    const bool hasGroup = sameGroup || fchown(descriptor.get(), unchanged, other.st_gid) == 0;
    mode_t mode = other.st_mode & 0777U;
    if (!hasGroup) mode &= ~0070U | (mode & 0007U) << 3U;
    if (fchmod(descriptor.get(), mode) != 0) fail(path);
    if (!sameOwner && fchown(descriptor.get(), other.st_uid, static_cast<gid_t>(-1)) != 0 &&
        errno != EPERM) {
      fail(path);
    }
  }

private:
  const std::filesystem::path& path;  ///< outlives the open file
  Descriptor descriptor;
};

std::filesystem::path withoutLinks(const std::filesystem::path& path) {
  return std::filesystem::is_symlink(path) ? std::filesystem::weakly_canonical(path) : path;
}

}  // namespace

void replaceDurably(const std::filesystem::path& path, std::string_view bytes) {
  const std::filesystem::path target = withoutLinks(path);
  std::filesystem::path unfinished = target;
  unfinished += ".new";
  std::filesystem::remove(unfinished);  // left by an interrupted writer
  const OpenFile file(unfinished, O_WRONLY | O_CREAT | O_EXCL);
  try {
    struct stat replaced {};
    if (stat(target.c_str(), &replaced) == 0) file.take(replaced);
    file.write(bytes);
    file.sync();
    std::filesystem::rename(unfinished, target);
  } catch (...) {
    std::error_code stays;
    std::filesystem::remove(unfinished, stays);
    throw;
  }
  syncFolder(target.has_parent_path() ? target.parent_path()
                                      : ".");  // the folder's entry has the new name
}

void syncFolder(const std::filesystem::path& path) { OpenFile(path, O_RDONLY).sync(); }
