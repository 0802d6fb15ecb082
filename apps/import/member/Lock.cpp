#include "import/member/Lock.h"
#include "import/Failure.h"
#include "platform/Phrase.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>
#include <utility>

namespace {

constexpr Phrase anotherImport{"另一次导入正在进行，请等它结束后再试",
                               "another import is running; try again when it has ended"};

[[noreturn]] void fail(const std::filesystem::path& path, int error) {
  throw std::filesystem::filesystem_error(
      "import lock", path, std::error_code(error, std::generic_category()));
}

}  // namespace

// An unsuccessful import that created the file removes it while it has the lock. Another import may
// have opened that file before, and would lock a file that a third import cannot find. So a lock is
// valid only if the file still has its name. Otherwise the loop starts again.
Lock::Lock(const std::filesystem::path& dataRoot) : path(dataRoot / "import.lock") {
  constexpr int attempts = 100;
  for (int attempt = 0; attempt < attempts; ++attempt) {
    folders.emplace(dataRoot);
    if (tryToOpen() && lockFile()) return;
  }
  fail(path, ENOENT);
}

Lock::~Lock() { release(); }

/// False when the folder or the file was removed in between.
bool Lock::tryToOpen() {
  file = Descriptor::ofFile(path, O_RDWR | O_CREAT | O_EXCL);
  madeFile = static_cast<bool>(file);
  if (!file && errno == EEXIST) file = Descriptor::ofFile(path, O_RDWR);
  if (!file && errno != ENOENT) fail(path, errno);
  return static_cast<bool>(file);
}

/// False, with the file closed, when another file has taken its name.
bool Lock::lockFile() {
  int result = 0;
  do {
    result = flock(file.get(), LOCK_EX | LOCK_NB);
  } while (result != 0 && errno == EINTR);
  const int error = errno;
  if (result == 0 && isStillThere()) return true;
  // The file belongs to another import, so this one must not remove it.
  if (result == 0 || error == EWOULDBLOCK) keep();
  release();
  if (result == 0) return false;
  if (error == EWOULDBLOCK) throw Failure(anotherImport);
  fail(path, error);
}

bool Lock::isStillThere() const {
  struct stat locked {};
  struct stat named {};
  return fstat(file.get(), &locked) == 0 && stat(path.c_str(), &named) == 0 &&
         locked.st_dev == named.st_dev && locked.st_ino == named.st_ino;
}

void Lock::release() {
  if (!file) return;
  // Before the lock is released: afterwards the file may belong to another import.
  if (std::exchange(madeFile, false)) unlink(path.c_str());
  file = Descriptor();
}
