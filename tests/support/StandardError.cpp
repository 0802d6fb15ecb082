#include "support/StandardError.h"
#include "support/TemporaryFolder.h"

#include <fcntl.h>
#include <stdlib.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstddef>
#include <system_error>

namespace {

int checked(int result, const char* what) {
  if (result < 0) throw std::system_error(errno, std::generic_category(), what);
  return result;
}

struct Ends {
  int reader;
  int writer;
};

/// A deleted file, opened for writing and for reading.
Ends openFile() {
  const TemporaryFolder folder;
  const std::string file = (folder / "stderr").string();
  const int writer = checked(open(file.c_str(), O_WRONLY | O_APPEND | O_CREAT, 0600), "open");
  return {checked(open(file.c_str(), O_RDONLY), "open"), writer};
}

Ends openTerminal() {
  const int reader = checked(posix_openpt(O_RDWR | O_NOCTTY), "posix_openpt");
  checked(grantpt(reader), "grantpt");
  checked(unlockpt(reader), "unlockpt");
  const int writer = checked(open(ptsname(reader), O_RDWR | O_NOCTTY), "open");
  termios settings{};
  checked(tcgetattr(writer, &settings), "tcgetattr");
  settings.c_oflag &= ~static_cast<tcflag_t>(OPOST);
  checked(tcsetattr(writer, TCSANOW, &settings), "tcsetattr");
  return {reader, writer};
}

}  // namespace

StandardErrorCapture::StandardErrorCapture(Kind kind)
    : original(checked(dup(STDERR_FILENO), "dup")) {
  const Ends ends = kind == Kind::file ? openFile() : openTerminal();
  reader = ends.reader;
  checked(dup2(ends.writer, STDERR_FILENO), "dup2");
  close(ends.writer);
}

StandardErrorCapture::~StandardErrorCapture() {
  giveBack();
  close(reader);
}

std::string StandardErrorCapture::finished() {
  giveBack();
  std::string text;
  std::array<char, 4096> buffer{};
  // Reading a terminal without a writer ends with an error instead of the end of file.
  for (ssize_t count = 0; (count = read(reader, buffer.data(), buffer.size())) > 0;) {
    text.append(buffer.data(), static_cast<std::size_t>(count));
  }
  return text;
}

void StandardErrorCapture::giveBack() {
  if (original < 0) return;
  dup2(original, STDERR_FILENO);
  close(original);
  original = -1;
}
