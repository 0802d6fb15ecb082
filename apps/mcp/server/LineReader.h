#pragma once
// Lines out of a stream of bytes, with a bound on how much one line may hold.

#include <cstddef>
#include <functional>
#include <optional>
#include <string>

/// Where the bytes come from: fills up to `size` bytes of `buffer`, waits for the first, and
/// returns how many; 0 at the end.
using ByteSource = std::function<std::size_t(char* buffer, std::size_t size)>;

/// Reads lines one by one.
class LineReader {
public:
  struct Line {
    std::string text;       ///< without its terminator; empty when `overlong`
    bool overlong = false;  ///< longer than the limit, or than memory holds, and was not kept
  };

  static constexpr std::size_t defaultLimit = 16 * 1024 * 1024;

  explicit LineReader(ByteSource source, std::size_t limit = defaultLimit);

  /// The next line. A line feed ends it, a carriage return before the line feed belongs to the end;
  /// a last line needs no end. `nullopt` after the last. What the source throws passes; a lack of
  /// memory does not.
  std::optional<Line> next();

private:
  bool fill();

  ByteSource source;
  std::size_t limit;
  std::string buffer;  ///< bytes read but not yet given out, from `position`
  std::size_t position = 0;
};
