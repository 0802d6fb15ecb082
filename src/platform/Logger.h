#pragma once
// One-line log records to a file, to standard error, or to both. Never to standard output, which
// carries the protocol; never a health value.

#include "platform/Clock.h"
#include "platform/Descriptor.h"

#include <cstddef>
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

  /// The most bytes that a record of the file has, its line feed included. A client says what
  /// stands in it, and must not be able to fill the disk.
  static constexpr std::size_t longestRecord = 16 * 1024;

  /// Writes "[2024-03-01 06:54:32] i message" and a line feed, in local time, if `level` is at
  /// least `minLevel`. The file gets the record in one write, so records of several processes that
  /// share it do not mix; one that is too long is cut there, and ends with "…". Where the last one
  /// was written in part, because the disk was full, the next begins on a line of its own: a record
  /// of this log, or one that the file ended in when it was opened.
  void write(Level level, std::string_view message);

private:
  void append(std::string_view record);

  std::mutex lock;
  Descriptor file;  ///< opened for appending; none without a path
  bool torn;        ///< the last record of the file, as far as is known, has no end
  Level minLevel;
  bool toStderr;
  Level stderrMinLevel;
  Clock clock;
};
