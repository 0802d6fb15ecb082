#include "store/RegularFiles.h"

#include <fcntl.h>
#include <sqlite3.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <string_view>

namespace {

bool mayBeRead(int descriptor, std::string_view path) {
  struct stat status {};
  if (fstat(descriptor, &status) != 0) return false;
  // SQLite draws random numbers from /dev/urandom and fills low descriptors with /dev/null.
  return S_ISREG(status.st_mode) || S_ISDIR(status.st_mode) || path == "/dev/urandom" ||
         path == "/dev/null";
}

/// Stands for the system's open(2). That a file does not block makes no difference to reading and
/// writing it.
int openRegularFile(const char* path, int flags, int mode) {
  int descriptor = open(path, flags | O_NONBLOCK | O_NOCTTY, mode);
  // A file server has leased the file, and gives it back within seconds. Only files are leased.
  if (descriptor < 0 && errno == EWOULDBLOCK) descriptor = open(path, flags | O_NOCTTY, mode);
  if (descriptor < 0 || mayBeRead(descriptor, path)) return descriptor;
  close(descriptor);
  errno = ENXIO;
  return -1;
}

}  // namespace

bool openRegularFilesAlone() {
  constexpr int withSystemCalls = 3;
  sqlite3_vfs* system = sqlite3_vfs_find(nullptr);
  if (system == nullptr || system->iVersion < withSystemCalls ||
      system->xSetSystemCall == nullptr) {
    return false;
  }
  const auto call = reinterpret_cast<sqlite3_syscall_ptr>(&openRegularFile);
  return system->xSetSystemCall(system, "open", call) == SQLITE_OK;
}
