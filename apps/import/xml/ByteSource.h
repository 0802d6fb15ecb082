#pragma once
// Bytes, wherever they come from.

#include <cstddef>
#include <span>

/// Bytes in their order, to be read once.
class ByteSource {
public:
  virtual ~ByteSource() = default;

  /// Fills `buffer`, which is not empty, from its start; the count of bytes, 0 at the end alone.
  /// Throws ImportError.
  virtual std::size_t read(std::span<char> buffer) = 0;
};
