#include "import/ImportLock.h"
#include "import/ImportError.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

namespace {

constexpr Phrase anotherImport{.zh = "另一个导入正在进行,等它结束再试",
                               .en = "another import is running; try again when it has ended"};
static_assert(inBothLanguages(anotherImport));

[[noreturn]] void fail(const std::filesystem::path& path, int error) {
  throw std::filesystem::filesystem_error(
      "import lock", path, std::error_code(error, std::generic_category()));
}

/// Takes the lock without waiting. An interrupted attempt is made again.
bool locked(int descriptor) {
  while (flock(descriptor, LOCK_EX | LOCK_NB) != 0) {
    if (errno != EINTR) return false;
  }
  return true;
}

}  // namespace

ImportLock::ImportLock(const std::filesystem::path& dataRoot) {
  // The file stays: removing it would let a second import lock a new file of the same name while
  // the first still holds the old one.
  const std::filesystem::path path = dataRoot / "import.lock";
  descriptor = open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
  if (descriptor < 0) fail(path, errno);
  if (locked(descriptor)) return;
  const int error = errno;
  close(descriptor);
  if (error == EWOULDBLOCK) throw ImportError(anotherImport);
  fail(path, error);
}

ImportLock::~ImportLock() { close(descriptor); }
