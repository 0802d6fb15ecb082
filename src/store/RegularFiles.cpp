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
  // SQLite reads random numbers from /dev/urandom and opens /dev/null to occupy low descriptors.
  return S_ISREG(status.st_mode) || S_ISDIR(status.st_mode) || path == "/dev/urandom" ||
         path == "/dev/null";
}

/// Replaces the system's open(2). O_NONBLOCK has no effect on reading and writing a regular file.
int openRegularFile(const char* path, int flags, int mode) {
  int descriptor = open(path, flags | O_NONBLOCK | O_NOCTTY, mode);
  // EWOULDBLOCK means that a file server has a lease on the file and will release it within
  // seconds. Only regular files have leases.
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
