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

/// A log. Failures to open or to write are ignored; the program continues without those records.
/// Records for a standard error that nobody reads are dropped too, because a client may never read
/// its pipe.
class Logger {
public:
  enum class Level { debug, info, error };

  /// Records below `minLevel` are dropped. With a `path`, records are appended to that file. The
  /// file and its missing parent directories are created. With `toStderr` they also go to standard
  /// error: only level `error`, or all levels when it is a terminal at this moment.
  Logger(const std::optional<std::filesystem::path>& path, Level minLevel, bool toStderr,
         Clock clock);

  /// The maximum size in bytes of a record in the file, including its line feed. A client chooses
  /// part of the content and must not be able to fill the disk.
  static constexpr std::size_t longestRecord = 16 * 1024;

  /// Writes "[2024-03-01 06:54:32] i message" and a line feed, in local time, if `level` is at
  /// least `minLevel`. A record goes to the file in one write, so records of several processes do
  /// not mix. A longer record is cut and ends with "…". After a partial record (the disk was full,
  /// or the file ended in one when it was opened) the next record starts on a new line.
  void write(Level level, std::string_view message);

private:
  void append(std::string_view record);

  std::mutex lock;
  Descriptor file;  ///< open for appending; none without a path or on failure
  bool torn;        ///< the last record of the file, as far as known, is partial
  Level minLevel;
  bool toStderr;
  Level stderrMinLevel;
  Clock clock;
};
