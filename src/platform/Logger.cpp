#include "platform/Logger.h"
#include "platform/AppleFormat.h"
#include "platform/Files.h"
#include "platform/Text.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <string>
#include <system_error>
#include <utility>

namespace {

/// A descriptor that appends to the file at `path`, and reads it where that is allowed; -1 without
/// one. Never waits, and takes neither a pipe nor a terminal: one in the file's place could hold up
/// the program, or end it when its reader leaves.
int appending(const std::filesystem::path& path) {
  std::error_code ignored;
  std::filesystem::create_directories(path.parent_path(), ignored);
  constexpr mode_t ownerOnly = 0600;
  constexpr int flags = O_APPEND | O_CREAT | O_CLOEXEC | O_NONBLOCK;
  int descriptor = open(path.c_str(), flags | O_RDWR, ownerOnly);
  if (descriptor < 0) descriptor = open(path.c_str(), flags | O_WRONLY, ownerOnly);
  struct stat status {};
  if (descriptor < 0) return -1;
  const bool known = fstat(descriptor, &status) == 0;
  if (known && !S_ISFIFO(status.st_mode) && isatty(descriptor) == 0) return descriptor;
  close(descriptor);
  return -1;
}

/// Whether the file ends within a line. One that may not be read counts as whole.
bool endsInALine(int descriptor) {
  struct stat status {};
  if (descriptor < 0 || fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode)) return false;
  char last = '\n';
  return status.st_size > 0 && pread(descriptor, &last, 1, status.st_size - 1) == 1 && last != '\n';
}

char marker(Logger::Level level) {
  switch (level) {
    case Logger::Level::debug:
      return '.';
    case Logger::Level::info:
      return 'i';
    case Logger::Level::error:
      return '!';
  }
  return '?';
}

}  // namespace

Logger::Logger(const std::optional<std::filesystem::path>& path, Level minLevel, bool toStderr,
               Clock clock)
    : handle(path ? appending(*path) : -1),
      torn(endsInALine(handle)),
      minLevel(minLevel),
      toStderr(toStderr),
      stderrMinLevel(isatty(STDERR_FILENO) != 0 ? Level::debug : Level::error),
      clock(std::move(clock)) {}

Logger::~Logger() {
  if (handle >= 0) close(handle);
}

void Logger::write(Level level, std::string_view message) {
  if (level < minLevel) return;
  std::string record("[");
  record.append(AppleFormat::secondText(clock())).append("] ").append(1, marker(level));
  record.append(" ").append(message);
  const std::lock_guard guard(lock);
  if (toStderr && level >= stderrMinLevel) writeWithoutWaiting(STDERR_FILENO, record + "\n");
  if (handle >= 0) append(shortened(record, longestRecord - 1) + "\n");
}

void Logger::append(std::string_view record) {
  std::string line(torn ? "\n" : "");
  line.append(record);
  const std::size_t written = writeWhatFits(handle, line);
  // Where nothing was written, the end of the file is as it was.
  if (written > 0) torn = written < line.size();
}
