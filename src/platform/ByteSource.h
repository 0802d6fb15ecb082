#pragma once
// Bytes, wherever they come from.

#include <cstddef>
#include <memory>
#include <span>
#include <utility>

/// Bytes in their order, to be read once.
class ByteSource {
public:
  virtual ~ByteSource() = default;

  /// Fills `buffer`, which is not empty, from its start, and waits for the first byte; the count of
  /// bytes, 0 at the end alone. Throws what the source says when it cannot be read.
  virtual std::size_t read(std::span<char> buffer) = 0;
};

/// The source whose `read` is this function.
template <typename Read>
std::unique_ptr<ByteSource> byteSource(Read read) {
  class Made final : public ByteSource {
  public:
    explicit Made(Read function) : function(std::move(function)) {}
    std::size_t read(std::span<char> buffer) override { return function(buffer); }

  private:
    Read function;
  };
  return std::make_unique<Made>(std::move(read));
}
