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

/// The file at `path`, open for appending, readable too if permitted; none on failure. Never
/// blocks. Refuses a pipe or a terminal in the file's place: it could block the program, or end it
/// when the reader closes.
Descriptor appending(const std::filesystem::path& path) {
  std::error_code ignored;
  std::filesystem::create_directories(path.parent_path(), ignored);
  constexpr int flags = O_APPEND | O_CREAT | O_NONBLOCK;
  Descriptor file = Descriptor::ofFile(path, flags | O_RDWR);
  if (!file) file = Descriptor::ofFile(path, flags | O_WRONLY);
  struct stat status {};
  const bool known = file && fstat(file.get(), &status) == 0;
  if (!known || S_ISFIFO(status.st_mode) || isatty(file.get()) != 0) return {};
  return file;
}

/// Whether the file ends within a line. False for a file that cannot be read.
bool endsInALine(const Descriptor& file) {
  struct stat status {};
  if (!file || fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode)) return false;
  char last = '\n';
  return status.st_size > 0 && pread(file.get(), &last, 1, status.st_size - 1) == 1 && last != '\n';
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
    : file(path ? appending(*path) : Descriptor()),
      torn(endsInALine(file)),
      minLevel(minLevel),
      toStderr(toStderr),
      stderrMinLevel(isatty(STDERR_FILENO) != 0 ? Level::debug : Level::error),
      clock(std::move(clock)) {}

void Logger::write(Level level, std::string_view message) {
  if (level < minLevel) return;
  std::string record("[");
  record.append(AppleFormat::secondText(clock())).append("] ").append(1, marker(level));
  record.append(" ").append(message);
  const std::lock_guard guard(lock);
  if (toStderr && level >= stderrMinLevel) writeWithoutWaiting(STDERR_FILENO, record + "\n");
  if (file) append(shortened(record, longestRecord - 1) + "\n");
}

void Logger::append(std::string_view record) {
  std::string line(torn ? "\n" : "");
  line.append(record);
  const std::size_t written = writeWhatFits(file.get(), line);
  // If nothing was written, the end of the file has not changed.
  if (written > 0) torn = written < line.size();
}
