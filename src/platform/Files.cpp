#include "platform/Files.h"
#include "platform/Descriptor.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <memory>
#include <new>
#include <string>
#include <system_error>

namespace {

struct Closer {
  void operator()(std::FILE* file) const { std::fclose(file); }
};

/// Whether to retry the call that just failed: it was interrupted, or the descriptor is
/// non-blocking and is now ready for `events`.
bool worthRetrying(int descriptor, short events) {
  if (errno == EINTR) return true;
  if (errno != EAGAIN) return false;
  pollfd waiting{descriptor, events, 0};
  constexpr int forever = -1;
  return poll(&waiting, 1, forever) > 0 || errno == EINTR;
}

}  // namespace

std::optional<std::string> fileContents(const std::filesystem::path& path) {
  // Opening a pipe in the file's place would block the program.
  std::error_code ignored;
  if (!std::filesystem::is_regular_file(path, ignored)) return std::nullopt;
  const std::unique_ptr<std::FILE, Closer> file(std::fopen(path.c_str(), "rb"));
  // A lack of memory must not look like a missing file.
  if (!file && errno == ENOMEM) throw std::bad_alloc();
  if (!file) return std::nullopt;
  std::string contents;
  char block[16384];
  while (const std::size_t count = std::fread(block, 1, sizeof block, file.get())) {
    contents.append(block, count);
  }
  if (std::ferror(file.get()) != 0) return std::nullopt;
  return contents;
}

std::size_t writeWhatFits(int descriptor, std::string_view bytes) {
  std::size_t written = 0;
  while (written < bytes.size()) {
    const ssize_t count = write(descriptor, bytes.data() + written, bytes.size() - written);
    if (count >= 0) {
      written += static_cast<std::size_t>(count);
    } else if (!worthRetrying(descriptor, POLLOUT)) {
      break;
    }
  }
  return written;
}

bool writeAll(int descriptor, std::string_view bytes) {
  return writeWhatFits(descriptor, bytes) == bytes.size();
}

void makeTerminalOwn(int descriptor) {
  if (isatty(descriptor) != 1) return;
  char name[PATH_MAX];
  // In a container, a terminal from outside has no path here, only its descriptor.
  const std::string path = ttyname_r(descriptor, name, sizeof name) == 0
                               ? name
                               : "/dev/fd/" + std::to_string(descriptor);
  const Descriptor own = Descriptor::ofFile(path, O_WRONLY | O_NONBLOCK | O_NOCTTY);
  if (own) dup2(own.get(), descriptor);
}

namespace {

/// Makes an open terminal non-blocking; the destructor restores it. A terminal that could not be
/// reopened is shared with other programs, and they expect it to block.
class NonBlockingTerminal {
public:
  explicit NonBlockingTerminal(int descriptor)
      : descriptor(descriptor), flags(isatty(descriptor) == 1 ? fcntl(descriptor, F_GETFL) : -1) {
    if (isShared()) fcntl(descriptor, F_SETFL, flags | O_NONBLOCK);
  }
  ~NonBlockingTerminal() {
    if (isShared()) fcntl(descriptor, F_SETFL, flags);
  }
  NonBlockingTerminal(const NonBlockingTerminal&) = delete;
  NonBlockingTerminal& operator=(const NonBlockingTerminal&) = delete;

private:
  bool isShared() const { return flags != -1 && (flags & O_NONBLOCK) == 0; }

  int descriptor;
  int flags;  ///< -1 when it is not a terminal
};

}  // namespace

void writeWithoutWaiting(int descriptor, std::string_view bytes) {
  // A ready terminal accepts a part and blocks for the rest.
  const NonBlockingTerminal terminal(descriptor);
  while (!bytes.empty()) {
    // A ready pipe accepts PIPE_BUF bytes at once. A device that cannot be polled is not a pipe.
    pollfd ready{descriptor, POLLOUT, 0};
    if (poll(&ready, 1, 0) == 0) return;
    const ssize_t count =
        write(descriptor, bytes.data(), std::min<std::size_t>(bytes.size(), PIPE_BUF));
    if (count < 0 && errno != EINTR) return;
    if (count > 0) bytes.remove_prefix(static_cast<std::size_t>(count));
  }
}

namespace {

/// A terminal is a device, even after a hang-up.
bool isDevice(int descriptor) {
  struct stat status {};
  return fstat(descriptor, &status) == 0 && S_ISCHR(status.st_mode);
}

}  // namespace

std::size_t readSome(int descriptor, char* buffer, std::size_t size) {
  while (true) {
    const ssize_t count = read(descriptor, buffer, size);
    if (count >= 0) return static_cast<std::size_t>(count);
    if (errno == EIO && isDevice(descriptor)) return 0;
    if (!worthRetrying(descriptor, POLLIN)) {
      throw std::system_error(errno, std::generic_category(), "read");
    }
  }
}

void reserveStandardStreams() {
  // open() returns the lowest free descriptor. A number above 2 therefore means that all three are
  // open.
  int descriptor = 0;
  while (descriptor <= STDERR_FILENO) {
    descriptor = open("/dev/null", O_RDWR);
    if (descriptor < 0) throw std::system_error(errno, std::generic_category(), "/dev/null");
  }
  close(descriptor);
}
