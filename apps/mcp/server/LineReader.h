#pragma once
// Lines out of a stream of bytes, with a bound on how much one line may hold.

#include "platform/ByteSource.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <string>

/// Reads lines one by one.
class LineReader {
public:
  struct Line {
    std::string text;       ///< without its terminator; empty when `overlong`
    bool overlong = false;  ///< longer than the limit, or than memory holds, and was not kept
  };

  static constexpr std::size_t defaultLimit = 16 * 1024 * 1024;

  explicit LineReader(std::unique_ptr<ByteSource> source, std::size_t limit = defaultLimit);

  /// The next line. A line feed ends it, a carriage return before the line feed belongs to the end;
  /// a last line needs no end. `nullopt` after the last. What the source throws passes; a lack of
  /// memory does not.
  std::optional<Line> next();

private:
  bool fill();

  std::unique_ptr<ByteSource> source;
  std::size_t limit;
  std::string buffer;  ///< bytes read but not yet given out, from `position`
  std::size_t position = 0;
};
