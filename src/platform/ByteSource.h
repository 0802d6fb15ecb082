#pragma once
// A source of bytes: a file, a stream or a test's own data.

#include <cstddef>
#include <memory>
#include <span>
#include <utility>

/// A sequence of bytes that is read once, from start to end.
class ByteSource {
public:
  virtual ~ByteSource() = default;

  /// Fills `buffer`, which must not be empty, from its start; blocks until at least one byte is
  /// there. Returns the count of bytes; 0 only at the end. Throws the source's own error when
  /// reading fails.
  virtual std::size_t read(std::span<char> buffer) = 0;
};

/// A ByteSource with the function `read` as its implementation.
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
