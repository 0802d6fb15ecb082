#pragma once
// Lines from a stream of bytes, with a limit on the length of a line.

#include "platform/ByteSource.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <string>

/// Reads lines one by one.
class LineReader {
public:
  struct Line {
    std::string text;       ///< without its terminator; empty if `overlong`
    bool overlong = false;  ///< longer than the limit or the available memory, and dropped
  };

  static constexpr std::size_t defaultLimit = 16 * 1024 * 1024;

  explicit LineReader(std::unique_ptr<ByteSource> source, std::size_t limit = defaultLimit);

  /// The next line; `nullopt` after the last. A line ends with a line feed or with a carriage
  /// return and a line feed. The last line needs no terminator. Errors of the source are passed on;
  /// a lack of memory is not, it makes the line overlong.
  std::optional<Line> next();

private:
  bool fill();

  std::unique_ptr<ByteSource> source;
  std::size_t limit;
  std::string buffer;  ///< bytes read but not yet returned, from `position`
  std::size_t position = 0;
};
