#pragma once
// One-line log records to a file, to standard error, or to both. Never to standard output, which
// carries the protocol; never a health value.

#include "platform/Clock.h"

#include <filesystem>
#include <mutex>
#include <optional>
#include <string_view>

/// A log. Failures to open or to write are dropped: the program goes on without the records. So are
/// records for a standard error that nobody reads: a client may give a pipe and forget about it.
class Logger {
public:
  enum class Level { debug, info, error };

  /// Records below `minLevel` are dropped. With a `path`, records go to the end of that file, which
  /// is created, with its missing parent directories, if need be. With `toStderr` they also go to
  /// standard error: those of level `error`, or all when it is a terminal at this moment.
  Logger(const std::optional<std::filesystem::path>& path, Level minLevel, bool toStderr,
         Clock clock);
  ~Logger();
  Logger(const Logger&) = delete;
  Logger& operator=(const Logger&) = delete;

  /// Writes "[2024-03-01 06:54:32] i message" and a line feed, in local time, if `level` is at
  /// least `minLevel`. The file gets the record in one write, so records of several processes that
  /// share it do not mix.
  void write(Level level, std::string_view message);

private:
  std::mutex lock;
  int handle = -1;  ///< the file, opened for appending; -1 without one
  Level minLevel;
  bool toStderr;
  Level stderrMinLevel;
  Clock clock;
};
